#include "platform/DesktopTrash.h"

#include "platform/NativePath.h"
#include "platform/NoReplaceRename.h"

#include <QDateTime>
#include <QStandardPaths>
#include <cerrno>
#include <cstring>
#include <fcntl.h>
#include <sys/stat.h>
#include <unistd.h>

namespace orvane {

// The freedesktop.org Trash: an item goes to files/<name> beside an info/<name>.trashinfo that records
// where it came from. The home Trash takes what lies on its volume; another volume has its own
// .Trash-<uid> at its top, since a move across volumes would be a copy.
namespace {

QString systemText(int code) {
    return QString::fromLocal8Bit(strerror(code));
}

bool makeFolders(const QByteArray& path) {
    for (qsizetype slash = path.indexOf('/', 1); slash != -1; slash = path.indexOf('/', slash + 1))
        if (mkdir(path.left(slash).constData(), 0700) != 0 && errno != EEXIST) return false;
    return mkdir(path.constData(), 0700) == 0 || errno == EEXIST;
}

dev_t deviceOf(const QByteArray& path) {
    struct stat st;
    return lstat(path.constData(), &st) == 0 ? st.st_dev : dev_t(-1);
}

QByteArray parentOf(const QByteArray& path) {
    const qsizetype slash = path.lastIndexOf('/');
    return slash <= 0 ? QByteArray("/") : path.left(slash);
}

// The highest folder above `path` that is still on its volume.
QByteArray topOfVolume(const QByteArray& path, dev_t device) {
    QByteArray top = parentOf(path);
    while (top != "/" && deviceOf(parentOf(top)) == device)
        top = parentOf(top);
    return top;
}

struct Place {
    QByteArray trash; // the folder holding files/ and info/
    QByteArray top;   // empty for the home Trash, whose records hold absolute paths
};

// Deleted items stay readable and replaceable by whoever can enter their Trash, so a Trash that is
// a link, someone else's or open to others is never used. Answers 0, -1 for such a folder, or errno.
int ownFolder(const QByteArray& path) {
    if (mkdir(path.constData(), 0700) != 0 && errno != EEXIST) return errno;
    struct stat st;
    if (lstat(path.constData(), &st) != 0) return errno;
    return S_ISDIR(st.st_mode) && st.st_uid == getuid() && (st.st_mode & 077) == 0 ? 0 : -1;
}

// The administrator's shared Trash: the sticky bit keeps users from taking each other's folders in it.
bool sharedTrash(const QByteArray& path) {
    struct stat st;
    return lstat(path.constData(), &st) == 0 && S_ISDIR(st.st_mode) && (st.st_mode & S_ISVTX);
}

bool withSubfolders(const QByteArray& trash) {
    for (const char* sub : {"/files", "/info"})
        if (mkdir((trash + sub).constData(), 0700) != 0 && errno != EEXIST) return false;
    return true;
}

// Another volume's Trash: the shared .Trash/<uid> when fit, else .Trash-<uid>, else none.
bool volumeTrash(const QByteArray& top, Place& place, QString& error) {
    const QByteArray base = (top == "/" ? QByteArray() : top), uid = QByteArray::number(getuid());
    const QByteArray shared = base + "/.Trash/" + uid, own = base + "/.Trash-" + uid;
    if (sharedTrash(base + "/.Trash") && ownFolder(shared) == 0 && withSubfolders(shared)) {
        place = {shared, top};
        return true;
    }
    if (const int code = ownFolder(own); code != 0) {
        error = code > 0
                    ? systemText(code)
                    : QStringLiteral("The Trash on this volume, %1, belongs to someone else or is open to "
                                     "others. Nothing was moved there.")
                          .arg(NativePath::decode(own));
        return false;
    }
    if (!withSubfolders(own)) return error = systemText(errno), false;
    place = {own, top};
    return true;
}

bool placeFor(const QByteArray& item, Place& place, QString& error) {
    const QByteArray home =
        NativePath::encode(QStandardPaths::writableLocation(QStandardPaths::GenericDataLocation)) + "/Trash";
    if (!makeFolders(home + "/files") || !makeFolders(home + "/info"))
        return error = systemText(errno), false;
    const dev_t device = deviceOf(item);
    if (device == deviceOf(home)) {
        place = {home, {}};
        return true;
    }
    return volumeTrash(topOfVolume(item, device), place, error);
}

QByteArray record(const QByteArray& item, const Place& place) {
    QByteArray path = item;
    if (!place.top.isEmpty()) path = item.mid(place.top == "/" ? 1 : place.top.size() + 1);
    return "[Trash Info]\nPath=" + path.toPercentEncoding("/") + "\nDeletionDate=" +
           QDateTime::currentDateTime().toString(QStringLiteral("yyyy-MM-ddThh:mm:ss")).toLatin1() + '\n';
}

// Claims info/<name>.trashinfo before the item moves, so two items of one name never share a record.
int claim(const Place& place, const QByteArray& name, const QByteArray& text) {
    const QByteArray info = place.trash + "/info/" + name + ".trashinfo";
    const int fd = open(info.constData(), O_WRONLY | O_CREAT | O_EXCL | O_CLOEXEC, 0600);
    if (fd < 0) return errno;
    const bool written = write(fd, text.constData(), size_t(text.size())) == text.size();
    const int error = errno;
    if (close(fd) != 0 || !written) {
        unlink(info.constData());
        return written ? EIO : error;
    }
    return 0;
}

QByteArray candidate(const QByteArray& name, int n) {
    return n == 1 ? name : name + '.' + QByteArray::number(n);
}

} // namespace

bool DesktopTrash::moveIn(const QString& path, QString& trashed, QString& error) {
    const QByteArray item = NativePath::encode(path);
    const QByteArray name = item.mid(item.lastIndexOf('/') + 1);
    Place place;
    struct stat st;
    if (lstat(item.constData(), &st) != 0) return error = systemText(errno), false;
    if (!placeFor(item, place, error)) return false;
    int code = 0;
    const QByteArray text = record(item, place);
    for (int n = 1; n < 10000; ++n) {
        const QByteArray slot = candidate(name, n);
        code = claim(place, slot, text);
        if (code == EEXIST) continue;
        if (code != 0) break;
        const QByteArray target = place.trash + "/files/" + slot;
        code = renameNoReplace(item.constData(), target.constData());
        if (code == 0) {
            trashed = NativePath::decode(target);
            return true;
        }
        unlink((place.trash + "/info/" + slot + ".trashinfo").constData());
        if (code != EEXIST) break;
    }
    error = code == EXDEV ? QStringLiteral("The Trash could not be reached.") : systemText(code);
    return false;
}

void DesktopTrash::forget(const QString& trashed) {
    const QByteArray item = NativePath::encode(trashed);
    const qsizetype slash = item.lastIndexOf('/');
    const QByteArray trash = parentOf(item.left(slash));
    unlink((trash + "/info/" + item.mid(slash + 1) + ".trashinfo").constData());
}

} // namespace orvane
