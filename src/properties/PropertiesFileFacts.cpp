#include "properties/PropertiesFileFacts.h"

#include "platform/NativePath.h"
#include "platform/TypeIndex.h"

#include <QDir>
#include <QFile>
#include <QLocale>
#include <QMimeDatabase>
#include <QStringList>
#include <algorithm>
#include <cerrno>
#include <cstring>
#include <fcntl.h>
#include <grp.h>
#include <linux/fs.h>
#include <pwd.h>
#include <sys/ioctl.h>
#include <sys/stat.h>
#include <unistd.h>
#include <vector>

namespace orvane {

namespace {

QDateTime fromStamp(const statx_timestamp& t) {
    return QDateTime::fromMSecsSinceEpoch(t.tv_sec * 1000 + t.tv_nsec / 1000000, Qt::UTC);
}

QString systemText(int code) {
    return QString::fromLocal8Bit(strerror(code));
}

QString ownerName(uid_t uid) {
    std::vector<char> buffer(16384);
    passwd entry;
    passwd* found = nullptr;
    if (getpwuid_r(uid, &entry, buffer.data(), buffer.size(), &found) != 0 || !found) return {};
    return QString::fromLocal8Bit(found->pw_name);
}

QString groupName(gid_t gid) {
    std::vector<char> buffer(16384);
    group entry;
    group* found = nullptr;
    if (getgrgid_r(gid, &entry, buffer.data(), buffer.size(), &found) != 0 || !found) return {};
    return QString::fromLocal8Bit(found->gr_name);
}

std::optional<QString> readLink(const QByteArray& path, qint64 expected) {
    std::vector<char> buffer(size_t(std::clamp<qint64>(expected + 1, 64, 1 << 16)));
    const ssize_t n = readlink(path.constData(), buffer.data(), buffer.size());
    if (n < 0 || size_t(n) >= buffer.size()) return std::nullopt;
    return NativePath::decode(QByteArray(buffer.data(), n));
}

// The immutable flag: from statx where the file system reports it, else from the inode flags of an
// opened file. Only files and folders are opened; opening a device or a pipe can have effects.
std::optional<bool> immutable(const QByteArray& path, const struct statx& sx) {
    if (sx.stx_attributes_mask & STATX_ATTR_IMMUTABLE) return (sx.stx_attributes & STATX_ATTR_IMMUTABLE) != 0;
    if (!S_ISREG(sx.stx_mode) && !S_ISDIR(sx.stx_mode)) return std::nullopt;
    const int fd = open(path.constData(), O_RDONLY | O_NONBLOCK | O_NOFOLLOW | O_CLOEXEC);
    if (fd < 0) return std::nullopt;
    int flags = 0;
    const bool known = ioctl(fd, FS_IOC_GETFLAGS, &flags) == 0;
    close(fd);
    return known ? std::optional<bool>((flags & FS_IMMUTABLE_FL) != 0) : std::nullopt;
}

// The first bytes of a file for the type database, read so that the file's access time stays as it
// was; where that is not allowed the name alone decides.
std::optional<QByteArray> headBytes(const QByteArray& path) {
    const int fd = open(path.constData(), O_RDONLY | O_NONBLOCK | O_NOFOLLOW | O_CLOEXEC | O_NOATIME);
    if (fd < 0) return std::nullopt;
    QByteArray head(4096, Qt::Uninitialized);
    const ssize_t n = ::read(fd, head.data(), size_t(head.size()));
    close(fd);
    if (n < 0) return std::nullopt;
    head.truncate(n);
    return head;
}

QMimeType typeOf(const QByteArray& path, const QString& name, const struct statx& sx) {
    static const QMimeDatabase db;
    if (S_ISFIFO(sx.stx_mode)) return db.mimeTypeForName(QStringLiteral("inode/fifo"));
    if (S_ISSOCK(sx.stx_mode)) return db.mimeTypeForName(QStringLiteral("inode/socket"));
    if (S_ISCHR(sx.stx_mode)) return db.mimeTypeForName(QStringLiteral("inode/chardevice"));
    if (S_ISBLK(sx.stx_mode)) return db.mimeTypeForName(QStringLiteral("inode/blockdevice"));
    if (const std::optional<QByteArray> head = headBytes(path))
        return db.mimeTypeForFileNameAndData(name, *head);
    return db.mimeTypeForFile(name, QMimeDatabase::MatchExtension);
}

void readType(PropertiesFileFacts& facts, const QByteArray& path, const QString& name,
              const struct statx& sx) {
    if (facts.isSymbolicLink) {
        facts.kind = QStringLiteral("Symbolic link");
        return;
    }
    // A folder reads "File folder", as in the listing's Type column.
    if (facts.isDirectory) {
        facts.kind = QStringLiteral("File folder");
        return;
    }
    const QMimeType type = typeOf(path, name, sx);
    facts.typeName = type.name();
    facts.kind = type.comment().isEmpty() ? QStringLiteral("File") : TypeIndex::description(type);
}

} // namespace

PropertiesFileFacts PropertiesFileFacts::read(const QUrl& url) {
    PropertiesFileFacts facts;
    facts.url = url;
    if (!url.isLocalFile()) {
        facts.error = QStringLiteral("Not a local item");
        return facts;
    }
    const QString path = QDir::cleanPath(url.toLocalFile());
    const QByteArray native = NativePath::encode(path);
    struct statx sx;
    const unsigned mask = STATX_BASIC_STATS | STATX_BTIME;
    if (statx(AT_FDCWD, native.constData(), AT_SYMLINK_NOFOLLOW | AT_NO_AUTOMOUNT, mask, &sx) != 0) {
        facts.error = systemText(errno);
        return facts;
    }
    facts.isSymbolicLink = S_ISLNK(sx.stx_mode);
    facts.isDirectory = S_ISDIR(sx.stx_mode);
    const QString name = path.section(u'/', -1);
    readType(facts, native, name, sx);
    // A birth time of exactly zero is a file system's way of not knowing it.
    if ((sx.stx_mask & STATX_BTIME) && (sx.stx_btime.tv_sec || sx.stx_btime.tv_nsec))
        facts.created = fromStamp(sx.stx_btime);
    if (sx.stx_mask & STATX_MTIME) facts.modified = fromStamp(sx.stx_mtime);
    if (sx.stx_mask & STATX_ATIME) facts.accessed = fromStamp(sx.stx_atime);
    const int accessFlags = AT_EACCESS | AT_SYMLINK_NOFOLLOW;
    facts.readable = faccessat(AT_FDCWD, native.constData(), R_OK, accessFlags) == 0;
    facts.writable = faccessat(AT_FDCWD, native.constData(), W_OK, accessFlags) == 0;
    facts.locked = facts.isSymbolicLink ? std::optional<bool>(false) : immutable(native, sx);
    facts.hidden = name.startsWith(u'.');
    const QString owner = ownerName(sx.stx_uid);
    if (!owner.isEmpty()) facts.owner = owner;
    const QString group = groupName(sx.stx_gid);
    if (!group.isEmpty()) facts.group = group;
    if (sx.stx_mask & STATX_MODE)
        facts.permissions = QString::asprintf("%03o", unsigned(sx.stx_mode & 07777));
    if (facts.isSymbolicLink) facts.linkTarget = readLink(native, qint64(sx.stx_size));
    return facts;
}

QString PropertiesFileFacts::dateText(const std::optional<QDateTime>& date) {
    if (!date || !date->isValid()) return unavailable();
    static const QLocale english(QLocale::English, QLocale::UnitedStates);
    return english.toString(date->toLocalTime(), QStringLiteral("MMM d, yyyy 'at' h:mm:ss AP"));
}

QString PropertiesFileFacts::accessText() const {
    if (!readable || !writable) return unavailable();
    if (*readable && *writable) return QStringLiteral("Read and write");
    if (*readable) return QStringLiteral("Read-only");
    if (*writable) return QStringLiteral("Write-only");
    return QStringLiteral("No read or write access");
}

QString PropertiesFileFacts::attributesText() const {
    if (error) return unavailable();
    QStringList list;
    if (locked.value_or(false)) list << QStringLiteral("Locked");
    if (hidden.value_or(false)) list << QStringLiteral("Hidden");
    if (isSymbolicLink) list << QStringLiteral("Symbolic link");
    return list.isEmpty() ? QStringLiteral("None") : list.join(QStringLiteral(", "));
}

QString PropertiesFileFacts::text(const QString& key) const {
    if (key == QLatin1String("type")) return kind;
    if (key == QLatin1String("location")) {
        const QString path = QDir::cleanPath(url.toLocalFile());
        const qsizetype slash = path.lastIndexOf(u'/');
        return slash <= 0 ? QStringLiteral("/") : path.left(slash);
    }
    if (key == QLatin1String("created")) return dateText(created);
    if (key == QLatin1String("modified")) return dateText(modified);
    if (key == QLatin1String("accessed")) return dateText(accessed);
    if (key == QLatin1String("owner")) return owner;
    if (key == QLatin1String("group")) return group;
    if (key == QLatin1String("permissions"))
        return permissions == unavailable() ? permissions : permissions + QStringLiteral(" (POSIX)");
    if (key == QLatin1String("target")) return linkTarget.value_or(QStringLiteral("Not a symbolic link"));
    if (key == QLatin1String("access")) return accessText();
    if (key == QLatin1String("attributes")) return attributesText();
    return {};
}

} // namespace orvane
