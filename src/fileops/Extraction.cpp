#include "fileops/Extraction.h"

#include "fileops/FileTree.h"
#include "platform/NativePath.h"
#include "platform/NoReplaceRename.h"

#include <QFileInfo>
#include <QUuid>
#include <algorithm>
#include <archive.h>
#include <archive_entry.h>
#include <cerrno>
#include <fcntl.h>
#include <linux/openat2.h>
#include <sys/stat.h>
#include <sys/statvfs.h>
#include <sys/syscall.h>
#include <unistd.h>

namespace orvane {

namespace {
constexpr qint64 reserve = 64LL << 20;

const char* const extensions[] = {".tar.gz", ".tar.bz2", ".tar.xz", ".tar.zst", ".tgz", ".tbz2",
                                  ".txz",    ".tzst",    ".zip",    ".tar",     ".7z"};

// The kernel resolves every path below the staging folder: "..", absolute links and links that lead
// out all fail there, whatever the archive made before.
int openBeneath(int folder, const QByteArray& path, int flags, mode_t mode = 0) {
    open_how how{};
    how.flags = quint64(flags | O_CLOEXEC);
    how.mode = (flags & O_CREAT) ? mode : 0;
    how.resolve = RESOLVE_BENEATH | RESOLVE_NO_MAGICLINKS;
    return int(::syscall(SYS_openat2, folder, path.isEmpty() ? "." : path.constData(), &how, sizeof how));
}

// Components without "." and empty ones; false for an absolute path or one that climbs with "..".
bool relativeParts(const QByteArray& path, QList<QByteArray>& parts) {
    if (path.startsWith('/')) return false;
    for (const QByteArray& part : path.split('/')) {
        if (part == "..") return false;
        if (!part.isEmpty() && part != ".") parts << part;
    }
    return true;
}

// Whether a link's target, read from the folder of the link, stays inside: depth never below zero.
bool targetInside(const QList<QByteArray>& linkParts, const QByteArray& target) {
    if (target.startsWith('/')) return false;
    qsizetype depth = linkParts.size() - 1;
    for (const QByteArray& part : target.split('/')) {
        if (part == "..") {
            if (--depth < 0) return false;
        } else if (!part.isEmpty() && part != ".") {
            ++depth;
        }
    }
    return true;
}

QString outsideText() {
    return QStringLiteral("The archive tries to write outside its folder: ");
}

QString pointsOutText() {
    return QStringLiteral("The archive holds a link that points outside its folder: ");
}

QString shown(const QByteArray& path) {
    return NativePath::display(NativePath::decode(path));
}
} // namespace

bool Extraction::handles(const QString& name) {
    for (const char* ext : extensions)
        if (name.endsWith(QLatin1String(ext), Qt::CaseInsensitive) && name.size() > int(qstrlen(ext)))
            return true;
    return false;
}

QString Extraction::stem(const QString& name) {
    for (const char* ext : extensions)
        if (name.endsWith(QLatin1String(ext), Qt::CaseInsensitive) && name.size() > int(qstrlen(ext)))
            return name.left(name.size() - int(qstrlen(ext)));
    return name;
}

QString Extraction::numbered(const QString& name, int n, bool folder) {
    if (n == 1) return name;
    const qsizetype dot = folder ? -1 : name.lastIndexOf(u'.');
    const QString number = QStringLiteral(" (%1)").arg(n);
    return dot > 0 ? name.left(dot) + number + name.mid(dot) : name + number;
}

Extraction::Outcome Extraction::run(const QString& archivePath, const QString& into) {
    Outcome out;
    const int fd = ::open(NativePath::encode(archivePath).constData(), O_RDONLY | O_CLOEXEC);
    struct stat facts;
    if (fd < 0 || ::fstat(fd, &facts) != 0) {
        out.error = FileTree::systemText(errno);
        if (fd >= 0) ::close(fd);
        return out;
    }
    const QString staged =
        into + u'/' + QLatin1String(stagingPrefix) + QUuid::createUuid().toString(QUuid::WithoutBraces);
    if (::mkdir(NativePath::encode(staged).constData(), 0700) != 0) {
        out.error = FileTree::systemText(errno);
        ::close(fd);
        return out;
    }
    root = ::open(NativePath::encode(staged).constData(), O_PATH | O_DIRECTORY | O_CLOEXEC);
    struct statvfs space;
    budget = spaceLimit >= 0                 ? spaceLimit
             : ::fstatvfs(root, &space) == 0 ? qint64(space.f_bavail) * qint64(space.f_frsize) - reserve
                                             : std::numeric_limits<qint64>::max();
    struct archive* a = archive_read_new();
    archive_read_support_filter_all(a);
    // Only the kinds offered: "all" would also read any text file as an mtree listing.
    archive_read_support_format_zip(a);
    archive_read_support_format_tar(a);
    archive_read_support_format_7zip(a);
    if (archive_read_open_fd(a, fd, 1 << 16) != ARCHIVE_OK)
        out.error = QStringLiteral("The archive is damaged or incomplete: ") +
                    QString::fromUtf8(archive_error_string(a));
    else
        out.error = unpack(a, facts.st_size);
    archive_read_free(a);
    ::close(fd);
    if (out.error.isEmpty() && stopped) out.cancelled = true;
    if (out.error.isEmpty() && !stopped) out.error = checkLinks();
    if (out.error.isEmpty() && !stopped)
        out.result = place(staged, into, QFileInfo(archivePath).fileName(), out.error);
    ::close(root);
    QString ignored;
    FileTree::remove(staged, ignored);
    return out;
}

QString Extraction::unpack(struct archive* a, qint64 size) {
    struct archive_entry* entry = nullptr;
    double shownShare = 0;
    for (;;) {
        if (stopped) return {};
        const int read = archive_read_next_header(a, &entry);
        if (read == ARCHIVE_EOF) break;
        if (read < ARCHIVE_WARN)
            return QStringLiteral("The archive is damaged or incomplete: ") +
                   QString::fromUtf8(archive_error_string(a));
        const char* name = archive_entry_pathname(entry);
        if (!name) return QStringLiteral("The name of an item in the archive cannot be read.");
        if (archive_entry_is_encrypted(entry))
            return QStringLiteral("The archive is protected by a password, which is not supported.");
        if (const QString failed = writeEntry(a, entry, QByteArray(name)); !failed.isEmpty()) return failed;
        const double share = size > 0 ? double(archive_filter_bytes(a, -1)) / double(size) : 1;
        if (progress && share - shownShare >= 0.01) progress(shownShare = std::min(share, 1.0));
    }
    if (topLevel.isEmpty()) return QStringLiteral("The archive holds nothing to extract.");
    // Folders get their own times and modes last: writing into them changed both.
    std::sort(folders.begin(), folders.end(),
              [](const Folder& x, const Folder& y) { return x.path > y.path; });
    for (const Folder& f : folders) {
        const int fd = openBeneath(root, f.path, O_RDONLY | O_DIRECTORY | O_NOFOLLOW);
        if (fd < 0) continue;
        const timespec times[2] = {{f.mtime, f.mtimeNsec}, {f.mtime, f.mtimeNsec}};
        ::futimens(fd, times);
        ::fchmod(fd, mode_t(f.mode));
        ::close(fd);
    }
    return {};
}

// A parent folder below the staging folder, made on the way where missing.
int Extraction::openParent(const QByteArray& path, QByteArray& name, QString& error) {
    const qsizetype slash = path.lastIndexOf('/');
    name = path.mid(slash + 1);
    const QByteArray parent = slash < 0 ? QByteArray() : path.left(slash);
    int fd = openBeneath(root, parent, O_PATH | O_DIRECTORY);
    if (fd >= 0 || errno != ENOENT) {
        if (fd < 0) error = shown(path) + QStringLiteral(": ") + FileTree::systemText(errno);
        return fd;
    }
    QByteArray made;
    for (const QByteArray& part : parent.split('/')) {
        const int above = openBeneath(root, made, O_PATH | O_DIRECTORY);
        if (above < 0) break;
        ::mkdirat(above, part.constData(), 0755);
        ::close(above);
        made += (made.isEmpty() ? "" : "/") + part;
    }
    fd = openBeneath(root, parent, O_PATH | O_DIRECTORY);
    if (fd < 0) error = shown(path) + QStringLiteral(": ") + FileTree::systemText(errno);
    return fd;
}

QString Extraction::writeEntry(struct archive* a, void* item, const QByteArray& raw) {
    auto* entry = static_cast<archive_entry*>(item);
    QList<QByteArray> parts;
    if (!relativeParts(raw, parts)) return outsideText() + shown(raw);
    if (parts.isEmpty()) return {};
    const QByteArray path = parts.join('/');
    topLevel.insert(parts.front());
    QByteArray name;
    QString error;
    const int parent = openParent(path, name, error);
    if (parent < 0) return error;
    const timespec when = {archive_entry_mtime(entry), archive_entry_mtime_nsec(entry)};
    const int mode = int(archive_entry_perm(entry) & 07777 & ~(S_ISUID | S_ISGID));
    const mode_t type = archive_entry_filetype(entry);
    if (const char* original = archive_entry_hardlink(entry)) {
        error = writeHardLink(parent, name, original);
    } else if (type == AE_IFDIR) {
        if (::mkdirat(parent, name.constData(), 0700) != 0 && errno != EEXIST)
            error = shown(raw) + QStringLiteral(": ") + FileTree::systemText(errno);
        folders.push_back({path, mode, when.tv_sec, when.tv_nsec});
    } else if (type == AE_IFLNK) {
        error = writeLink(parent, name, parts, archive_entry_symlink(entry));
        if (error.isEmpty()) links.push_back(path);
    } else if (type == AE_IFREG) {
        error = writeFile(a, parent, name, mode);
    }
    const timespec times[2] = {when, when};
    if (error.isEmpty() && type != AE_IFDIR)
        ::utimensat(parent, name.constData(), times, AT_SYMLINK_NOFOLLOW);
    ::close(parent);
    return error;
}

// The link is made as it is; only one whose text leads out is refused here, the rest in checkLinks.
QString Extraction::writeLink(int parent, const QByteArray& name, const QList<QByteArray>& parts,
                              const char* target) {
    if (!target || !targetInside(parts, target)) return pointsOutText() + shown(parts.join('/'));
    if (::symlinkat(target, parent, name.constData()) == 0) return {};
    return shown(parts.join('/')) + QStringLiteral(": ") + FileTree::systemText(errno);
}

QString Extraction::writeHardLink(int parent, const QByteArray& name, const QByteArray& original) {
    QList<QByteArray> parts;
    if (!relativeParts(original, parts) || parts.isEmpty()) return outsideText() + shown(original);
    QByteArray originalName;
    QString error;
    const int originalParent = openParent(parts.join('/'), originalName, error);
    if (originalParent < 0) return error;
    if (::linkat(originalParent, originalName.constData(), parent, name.constData(), 0) != 0)
        error = shown(name) + QStringLiteral(": ") + FileTree::systemText(errno);
    ::close(originalParent);
    return error;
}

QString Extraction::writeFile(struct archive* a, int parent, const QByteArray& name, int mode) {
    int fd = ::openat(parent, name.constData(), O_WRONLY | O_CREAT | O_EXCL | O_NOFOLLOW | O_CLOEXEC, 0600);
    // A later entry of the same name is the newer one (tar appends updates).
    if (fd < 0 && errno == EEXIST && ::unlinkat(parent, name.constData(), 0) == 0)
        fd = ::openat(parent, name.constData(), O_WRONLY | O_CREAT | O_EXCL | O_NOFOLLOW | O_CLOEXEC, 0600);
    if (fd < 0) return shown(name) + QStringLiteral(": ") + FileTree::systemText(errno);
    const void* block = nullptr;
    size_t length = 0;
    la_int64_t offset = 0;
    QString error;
    qint64 end = 0;
    for (;;) {
        if (stopped) break;
        const int r = archive_read_data_block(a, &block, &length, &offset);
        if (r == ARCHIVE_EOF) break;
        if (r < ARCHIVE_WARN) {
            error = QStringLiteral("The archive is damaged or incomplete: ") +
                    QString::fromUtf8(archive_error_string(a));
            break;
        }
        written += qint64(length);
        if (written > budget) {
            error = QStringLiteral("The archive expands past the free space of this folder.");
            break;
        }
        for (size_t done = 0; done < length;) {
            const ssize_t n =
                ::pwrite(fd, static_cast<const char*>(block) + done, length - done, offset + off_t(done));
            if (n < 0 && errno == EINTR) continue;
            if (n < 0) {
                error = errno == ENOSPC
                            ? QStringLiteral("The archive expands past the free space of this folder.")
                            : shown(name) + QStringLiteral(": ") + FileTree::systemText(errno);
                break;
            }
            done += size_t(n);
        }
        if (!error.isEmpty()) break;
        end = std::max(end, qint64(offset) + qint64(length));
    }
    if (error.isEmpty()) {
        if (::lseek(fd, 0, SEEK_END) < end) ::ftruncate(fd, end);
        ::fchmod(fd, mode_t(mode));
    }
    ::close(fd);
    return error;
}

// Links are made as they come; one that leads out through others made later is caught here.
QString Extraction::checkLinks() const {
    for (const QByteArray& link : links) {
        const int fd = openBeneath(root, link, O_PATH);
        if (fd >= 0)
            ::close(fd);
        else if (errno == EXDEV)
            return pointsOutText() + shown(link);
    }
    return {};
}

// One item keeps its own name; several go into a folder named after the archive. Both are numbered
// when taken, and the kernel refuses a name taken in between.
QString Extraction::place(const QString& staged, const QString& into, const QString& archiveName,
                          QString& error) {
    const bool single = topLevel.size() == 1;
    const QByteArray only = single ? *topLevel.begin() : QByteArray();
    const QByteArray from = single ? NativePath::encode(staged) + '/' + only : NativePath::encode(staged);
    struct stat facts;
    const bool folder = !single || (::lstat(from.constData(), &facts) == 0 && S_ISDIR(facts.st_mode));
    const QString base = single ? NativePath::decode(only) : stem(archiveName);
    if (!single) ::chmod(from.constData(), 0755);
    return FileTree::placeNumbered(
        from, into, [&](int n) { return numbered(base, n, folder); }, error);
}

} // namespace orvane
