#include "platform/LinuxPlatform.h"

#include "platform/NativePath.h"

#include <cerrno>
#include <cstring>
#include <dirent.h>
#include <fcntl.h>
#include <sys/stat.h>
#include <unistd.h>

namespace orvane {

const Platform& Platform::instance() {
    static const LinuxPlatform platform;
    return platform;
}

namespace {

QDateTime fromStamp(const statx_timestamp& t) {
    return QDateTime::fromMSecsSinceEpoch(t.tv_sec * 1000 + t.tv_nsec / 1000000, Qt::UTC);
}

} // namespace

// Follows links so a link to a folder browses like one; a broken link still shows, as itself.
bool LinuxPlatform::readItemAt(int dirfd, const char* name, RawItem& out) {
    struct statx sx;
    const unsigned mask = STATX_TYPE | STATX_SIZE | STATX_MTIME | STATX_BTIME;
    if (statx(dirfd, name, AT_NO_AUTOMOUNT, mask, &sx) != 0 &&
        statx(dirfd, name, AT_NO_AUTOMOUNT | AT_SYMLINK_NOFOLLOW, mask, &sx) != 0)
        return false;
    out.directory = S_ISDIR(sx.stx_mode);
    out.symlink = S_ISLNK(sx.stx_mode);
    out.size = out.directory ? 0 : qint64(sx.stx_size); // a folder's own block size means nothing to a person
    out.modified = fromStamp(sx.stx_mtime);
    if (sx.stx_mask & STATX_BTIME) out.created = fromStamp(sx.stx_btime);
    return true;
}

namespace {
// Calls `each(dirfd, name, entry)` for every name but "." and ".."; false with the reason when the
// folder cannot be opened.
template <typename Each> bool eachName(const QString& path, QString& error, Each each) {
    const QByteArray native = NativePath::encode(path);
    DIR* dir = opendir(native.constData());
    if (!dir) {
        error = QString::fromLocal8Bit(strerror(errno));
        return false;
    }
    const int fd = dirfd(dir);
    while (const dirent* d = readdir(dir)) {
        const char* n = d->d_name;
        if (n[0] == '.' && (n[1] == 0 || (n[1] == '.' && n[2] == 0))) continue;
        each(fd, n, *d);
    }
    closedir(dir);
    return true;
}
} // namespace

bool LinuxPlatform::listFolder(const QString& path, bool includeHidden, const ItemSink& sink,
                               QString& error) const {
    return eachName(path, error, [&](int fd, const char* n, const dirent&) {
        const bool hidden = n[0] == '.';
        if (hidden && !includeHidden) return;
        RawItem item;
        item.name = NativePath::decode(n);
        item.hidden = hidden;
        readItemAt(fd, n, item);
        sink(std::move(item));
    });
}

bool LinuxPlatform::readItem(const QString& path, RawItem& out) const {
    const QByteArray native = NativePath::encode(path);
    out.name = path.section(u'/', -1);
    out.hidden = out.name.startsWith(u'.');
    return readItemAt(AT_FDCWD, native.constData(), out);
}

// The type from the directory entry spares a stat per name; only file systems that leave it out pay one.
bool LinuxPlatform::listSubfolders(const QString& path, const FolderSink& sink, QString& error) const {
    return eachName(path, error, [&](int fd, const char* n, const dirent& d) {
        bool folder = d.d_type == DT_DIR;
        if (d.d_type == DT_UNKNOWN) {
            struct stat st;
            folder = fstatat(fd, n, &st, AT_SYMLINK_NOFOLLOW | AT_NO_AUTOMOUNT) == 0 && S_ISDIR(st.st_mode);
        }
        if (folder) sink(NativePath::decode(n), n[0] == '.');
    });
}

bool LinuxPlatform::isPlainFolder(const QString& path) const {
    struct stat st;
    return lstat(NativePath::encode(path).constData(), &st) == 0 && S_ISDIR(st.st_mode);
}

QString LinuxPlatform::word(PlatformWord word) const {
    switch (word) {
    case PlatformWord::RootVolume:
        return QStringLiteral("File System");
    case PlatformWord::ShowInFileManager:
        return QStringLiteral("Show in File Manager");
    case PlatformWord::CopyToComputer:
        return QStringLiteral("Copy to Computer");
    case PlatformWord::FileManager:
        return QStringLiteral("the file manager");
    case PlatformWord::PropertiesNote:
        return QStringLiteral(
            "Values are read from Linux. Folder sizes include hidden files; symbolic links are "
            "counted without following their targets. Hard links and shared extents may be "
            "counted more than once in Size on disk.");
    case PlatformWord::ThisComputer:
        return QStringLiteral("This Computer");
    case PlatformWord::ThisComputerInText:
        return QStringLiteral("this computer");
    case PlatformWord::FilesCopiedToComputer:
        return QStringLiteral("Files copied to this computer");
    case PlatformWord::FullDiskAccess:
    case PlatformWord::ModifierNote:
        return {};
    case PlatformWord::MakeAlias:
        return QStringLiteral("Create a symbolic link");
    case PlatformWord::QuickLook:
        return QStringLiteral("Quick Preview");
    }
    return {};
}

} // namespace orvane
