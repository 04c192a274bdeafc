#include "platform/DesktopTrash.h"

#include "platform/NativePath.h"
#include "platform/NoReplaceRename.h"

#include <QDateTime>
#include <QSet>
#include <QStandardPaths>
#include <cerrno>
#include <cstdio>
#include <cstring>
#include <dirent.h>
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

QByteArray homeTrash() {
    return NativePath::encode(QStandardPaths::writableLocation(QStandardPaths::GenericDataLocation)) +
           "/Trash";
}

bool placeFor(const QByteArray& item, Place& place, QString& error) {
    const QByteArray home = homeTrash();
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

namespace {

// The Trash keeps the sizes of its folders in one file, a line per folder ending in its encoded name.
void dropDirectorySize(const QByteArray& trash, const QByteArray& name) {
    const QByteArray path = trash + "/directorysizes";
    FILE* in = fopen(path.constData(), "re");
    if (!in) return;
    QByteArray kept, line(4096, '\0');
    bool dropped = false;
    while (fgets(line.data(), int(line.size()), in)) {
        const QByteArray text(line.constData());
        if (text.trimmed().split(' ').value(2) == name.toPercentEncoding())
            dropped = true;
        else
            kept += text;
    }
    fclose(in);
    if (!dropped) return;
    const QByteArray temporary = path + ".orvane";
    const int fd = open(temporary.constData(), O_WRONLY | O_CREAT | O_TRUNC | O_CLOEXEC, 0600);
    if (fd < 0) return;
    const bool written = write(fd, kept.constData(), size_t(kept.size())) == kept.size();
    if (close(fd) == 0 && written && rename(temporary.constData(), path.constData()) == 0) return;
    unlink(temporary.constData());
}

// A folder of ours that nobody else may enter, as a Trash has to be; never a link.
bool ownedFolder(const QByteArray& path) {
    struct stat st;
    return lstat(path.constData(), &st) == 0 && S_ISDIR(st.st_mode) && st.st_uid == getuid() &&
           (st.st_mode & 077) == 0;
}

// The mount table escapes blanks and backslashes in a mount point as \ooo.
QByteArray unescaped(const QByteArray& field) {
    QByteArray out;
    for (qsizetype i = 0; i < field.size(); ++i) {
        if (field[i] == '\\' && i + 3 < field.size()) {
            bool ok = false;
            const int code = field.mid(i + 1, 3).toInt(&ok, 8);
            if (ok) {
                out += char(code);
                i += 3;
                continue;
            }
        }
        out += field[i];
    }
    return out;
}

std::vector<QByteArray> mountPoints() {
    std::vector<QByteArray> points;
    FILE* table = fopen("/proc/self/mountinfo", "re");
    if (!table) return points;
    QByteArray line(8192, '\0');
    while (fgets(line.data(), int(line.size()), table)) {
        const QList<QByteArray> fields = QByteArray(line.constData()).split(' ');
        if (fields.size() > 4) points.push_back(unescaped(fields[4]));
    }
    fclose(table);
    return points;
}

// The same folder seen through two mounts is one Trash.
QByteArray identity(const QByteArray& path) {
    struct stat st;
    if (stat(path.constData(), &st) != 0) return {};
    return QByteArray::number(qulonglong(st.st_dev)) + ':' + QByteArray::number(qulonglong(st.st_ino));
}

// A record is read leniently: only its group's Path and DeletionDate count. A path that climbs out of
// its volume is not trusted, since restoring there would write outside it.
void parseRecord(const QByteArray& text, const QByteArray& top, DesktopTrash::Record& record) {
    bool inGroup = false;
    for (const QByteArray& raw : text.split('\n')) {
        const QByteArray line = raw.trimmed();
        if (line.startsWith('[')) inGroup = line == "[Trash Info]";
        if (!inGroup) continue;
        if (line.startsWith("DeletionDate="))
            record.deleted = QDateTime::fromString(QString::fromLatin1(line.mid(13)),
                                                   QStringLiteral("yyyy-MM-ddThh:mm:ss"));
        if (!line.startsWith("Path=")) continue;
        QByteArray path = QByteArray::fromPercentEncoding(line.mid(5));
        if (path.isEmpty() || path.contains('\0') || path.split('/').contains("..")) continue;
        if (path[0] != '/') {
            if (top.isEmpty()) continue;
            path = (top == "/" ? QByteArray() : top) + '/' + path;
        }
        record.original = NativePath::decode(path);
    }
}

QByteArray readSmallFile(const QByteArray& path) {
    const int fd = open(path.constData(), O_RDONLY | O_CLOEXEC | O_NOFOLLOW);
    if (fd < 0) return {};
    QByteArray text(65536, '\0');
    const ssize_t n = ::read(fd, text.data(), size_t(text.size()));
    close(fd);
    return n > 0 ? text.left(n) : QByteArray();
}

} // namespace

void DesktopTrash::forget(const QString& trashed) {
    const QByteArray item = NativePath::encode(trashed);
    const qsizetype slash = item.lastIndexOf('/');
    const QByteArray trash = parentOf(item.left(slash)), name = item.mid(slash + 1);
    unlink((trash + "/info/" + name + ".trashinfo").constData());
    dropDirectorySize(trash, name);
}

std::vector<DesktopTrash::Folder> DesktopTrash::folders() {
    std::vector<Folder> found;
    QSet<QByteArray> seen;
    const auto add = [&](const QByteArray& trash, const QByteArray& top) {
        const QByteArray id = identity(trash);
        if (id.isEmpty() || seen.contains(id)) return;
        seen.insert(id);
        found.push_back({NativePath::decode(trash), NativePath::decode(top)});
    };
    if (NativePath::isDir(NativePath::decode(homeTrash()))) add(homeTrash(), {});
    const QByteArray uid = QByteArray::number(getuid());
    for (const QByteArray& top : mountPoints()) {
        const QByteArray base = top == "/" ? QByteArray() : top;
        if (sharedTrash(base + "/.Trash") && ownedFolder(base + "/.Trash/" + uid))
            add(base + "/.Trash/" + uid, top);
        if (ownedFolder(base + "/.Trash-" + uid)) add(base + "/.Trash-" + uid, top);
    }
    return found;
}

std::vector<DesktopTrash::Record> DesktopTrash::read(const QString& trash, const QString& top) {
    std::vector<Record> records;
    const QByteArray folder = NativePath::encode(trash), volume = NativePath::encode(top);
    DIR* info = opendir((folder + "/info").constData());
    if (!info) return records;
    while (const dirent* d = readdir(info)) {
        const QByteArray file(d->d_name);
        if (!file.endsWith(".trashinfo") || file.size() == 10) continue;
        const QByteArray item = folder + "/files/" + file.chopped(10);
        struct stat st;
        if (lstat(item.constData(), &st) != 0) continue;
        Record record;
        record.trashed = NativePath::decode(item);
        parseRecord(readSmallFile(folder + "/info/" + file), volume, record);
        records.push_back(std::move(record));
    }
    closedir(info);
    return records;
}

std::vector<DesktopTrash::Record> DesktopTrash::contents() {
    std::vector<Record> all;
    for (const Folder& folder : folders()) {
        std::vector<Record> some = read(folder.trash, folder.top);
        std::move(some.begin(), some.end(), std::back_inserter(all));
    }
    return all;
}

bool DesktopTrash::isEmpty() {
    for (const Folder& folder : folders()) {
        DIR* files = opendir(NativePath::encode(folder.trash + QStringLiteral("/files")).constData());
        if (!files) continue;
        bool any = false;
        while (const dirent* d = readdir(files))
            if (strcmp(d->d_name, ".") != 0 && strcmp(d->d_name, "..") != 0) any = true;
        closedir(files);
        if (any) return false;
    }
    return true;
}

} // namespace orvane
