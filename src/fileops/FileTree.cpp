#include "fileops/FileTree.h"

#include "platform/NativePath.h"
#include "platform/NoReplaceRename.h"

#include <cerrno>
#include <cstring>
#include <dirent.h>
#include <fcntl.h>
#include <memory>
#include <string>
#include <sys/stat.h>
#include <unistd.h>
#include <utility>
#include <vector>

#if defined(__linux__)
#include <linux/fs.h>
#include <sys/ioctl.h>
#endif

namespace orvane {

namespace {

// Closes on every return path; the copy keeps up to two descriptors per folder level open.
class Fd {
public:
    explicit Fd(int fd = -1) : fd(fd) {}
    ~Fd() {
        if (fd >= 0) ::close(fd);
    }
    Fd(const Fd&) = delete;
    Fd& operator=(const Fd&) = delete;
    int get() const { return fd; }
    bool valid() const { return fd >= 0; }
    int release() { return std::exchange(fd, -1); }

private:
    int fd;
};

std::string join(const std::string& parent, const char* name) {
    return parent.empty() ? std::string(name) : parent + '/' + name;
}

// Access and modification times in the form utimensat and futimens take.
struct Times {
    timespec at[2];
};

Times timesOf(const struct stat& st) {
#if defined(__APPLE__)
    return {{st.st_atimespec, st.st_mtimespec}};
#else
    return {{st.st_atim, st.st_mtim}};
#endif
}

struct Name {
    std::string text;
    unsigned char type; // DT_UNKNOWN where the file system does not tell
};

// A folder's items, read before any of them is copied so the listing's descriptor is not held.
bool readNames(int dirFd, std::vector<Name>& names) {
    const int dup = fcntl(dirFd, F_DUPFD_CLOEXEC, 0);
    if (dup < 0) return false;
    DIR* dir = fdopendir(dup);
    if (!dir) {
        ::close(dup);
        return false;
    }
    errno = 0;
    while (dirent* d = readdir(dir)) {
        const char* n = d->d_name;
        if (!(n[0] == '.' && (n[1] == 0 || (n[1] == '.' && n[2] == 0)))) names.push_back({n, d->d_type});
    }
    const int error = errno;
    closedir(dir);
    errno = error;
    return error == 0;
}

class Copier {
public:
    int code = 0;
    std::string where;       // relative path below the top, empty for the top itself
    bool topCreated = false; // the destination's top is this copy's own, so a failed copy may remove it

    bool entry(int srcDir, const char* srcName, int dstDir, const char* dstName, const std::string& rel) {
        struct stat st;
        if (fstatat(srcDir, srcName, &st, AT_SYMLINK_NOFOLLOW) != 0) return fail(rel);
        if (S_ISDIR(st.st_mode)) return folder(srcDir, srcName, dstDir, dstName, st, rel);
        if (S_ISREG(st.st_mode)) return file(srcDir, srcName, dstDir, dstName, rel);
        if (S_ISLNK(st.st_mode)) return link(srcDir, srcName, dstDir, dstName, st, rel);
        if (S_ISFIFO(st.st_mode)) {
            if (mkfifoat(dstDir, dstName, st.st_mode & 07777) != 0) return fail(rel);
            created(rel);
            stamp(dstDir, dstName, st);
            return true;
        }
        errno = ENOTSUP; // devices and sockets are not copied
        return fail(rel);
    }

private:
#if defined(__linux__)
    bool cloneUnsupported = false;
    bool rangeUnsupported = false;
#endif

    void created(const std::string& rel) {
        if (rel.empty()) topCreated = true;
    }

    bool fail(const std::string& rel) {
        code = errno ? errno : EIO;
        where = rel;
        return false;
    }

    // Metadata is kept where the destination holds it; FAT has no modes and some FUSE file systems no
    // times, and that is no reason to refuse the data (cp -r does the same).
    static void stamp(int dir, const char* name, const struct stat& st) {
        const Times times = timesOf(st);
        utimensat(dir, name, times.at, AT_SYMLINK_NOFOLLOW);
    }

    static void stamp(int fd, const struct stat& st) {
        const Times times = timesOf(st);
        fchmod(fd, st.st_mode & 07777);
        futimens(fd, times.at);
    }

    bool folder(int srcDir, const char* srcName, int dstDir, const char* dstName, const struct stat& st,
                const std::string& rel) {
        Fd src(openat(srcDir, srcName, O_RDONLY | O_DIRECTORY | O_NOFOLLOW | O_CLOEXEC));
        if (!src.valid()) return fail(rel);
        // Private while it fills; the source's mode comes last, since a read-only one would block the copy.
        if (mkdirat(dstDir, dstName, 0700) != 0) return fail(rel);
        created(rel);
        Fd dst(openat(dstDir, dstName, O_RDONLY | O_DIRECTORY | O_NOFOLLOW | O_CLOEXEC));
        if (!dst.valid()) return fail(rel);
        std::vector<Name> names;
        if (!readNames(src.get(), names)) return fail(rel);
        for (const Name& name : names) {
            const char* n = name.text.c_str();
            // A regular file needs no stat of its own: the one on its open descriptor tells all.
            const bool ok = name.type == DT_REG ? file(src.get(), n, dst.get(), n, join(rel, n))
                                                : entry(src.get(), n, dst.get(), n, join(rel, n));
            if (!ok) return false;
        }
        stamp(dst.get(), st);
        return true;
    }

    bool file(int srcDir, const char* srcName, int dstDir, const char* dstName, const std::string& rel) {
        // Non-blocking, so an item that became a pipe since the listing cannot hang the copy.
        Fd in(openat(srcDir, srcName, O_RDONLY | O_NOFOLLOW | O_NONBLOCK | O_CLOEXEC));
        struct stat st;
        if (!in.valid() || fstat(in.get(), &st) != 0) return fail(rel);
        if (!S_ISREG(st.st_mode)) {
            errno = EAGAIN; // it changed between the listing and the open
            return fail(rel);
        }
        Fd out(openat(dstDir, dstName, O_WRONLY | O_CREAT | O_EXCL | O_NOFOLLOW | O_CLOEXEC, 0600));
        if (!out.valid()) return fail(rel);
        created(rel);
        if (!data(in.get(), out.get(), st.st_size)) return fail(rel);
        stamp(out.get(), st);
        if (::close(out.release()) != 0) return fail(rel);
        return true;
    }

    bool link(int srcDir, const char* srcName, int dstDir, const char* dstName, const struct stat& st,
              const std::string& rel) {
        std::string target(size_t(st.st_size > 0 ? st.st_size : 256) + 1, '\0');
        ssize_t n;
        while ((n = readlinkat(srcDir, srcName, target.data(), target.size())) == ssize_t(target.size()))
            target.resize(target.size() * 2);
        if (n < 0) return fail(rel);
        target.resize(size_t(n));
        if (symlinkat(target.c_str(), dstDir, dstName) != 0) return fail(rel);
        created(rel);
        stamp(dstDir, dstName, st);
        return true;
    }

    // A reflink where the file system offers one, else the kernel's own copy, else large buffers.
    bool data(int in, int out, off_t size) {
#if defined(__linux__)
        if (size > 0 && !cloneUnsupported) {
            if (ioctl(out, FICLONE, in) == 0) return true;
            cloneUnsupported = true;
        }
        if (!rangeUnsupported) {
            // Stops at the size seen at open, sparing an extra call per file to find the end.
            off_t copied = 0;
            ssize_t n = 0;
            while (copied < size && (n = copy_file_range(in, nullptr, out, nullptr, size_t(1) << 30, 0)) > 0)
                copied += n;
            if (copied >= size || n == 0) return true;
            if (copied > 0 || (errno != EXDEV && errno != EINVAL && errno != ENOSYS && errno != EOPNOTSUPP))
                return false;
            rangeUnsupported = true;
        }
#else
        Q_UNUSED(size);
#endif
        return buffered(in, out);
    }

    static bool buffered(int in, int out) {
        constexpr size_t size = size_t(1) << 20;
        thread_local std::unique_ptr<char[]> buffer(new char[size]);
        ssize_t n;
        while ((n = ::read(in, buffer.get(), size)) > 0) {
            for (ssize_t done = 0; done < n;) {
                const ssize_t w = ::write(out, buffer.get() + done, size_t(n - done));
                if (w < 0) {
                    if (errno == EINTR) continue;
                    return false;
                }
                done += w;
            }
        }
        return n == 0;
    }
};

bool removeAt(int dir, const char* name, int& code) {
    struct stat st;
    if (fstatat(dir, name, &st, AT_SYMLINK_NOFOLLOW) != 0) return code = errno, false;
    if (S_ISDIR(st.st_mode)) {
        Fd sub(openat(dir, name, O_RDONLY | O_DIRECTORY | O_NOFOLLOW | O_CLOEXEC));
        std::vector<Name> names;
        if (!sub.valid() || !readNames(sub.get(), names)) return code = errno, false;
        for (const Name& n : names)
            if (!removeAt(sub.get(), n.text.c_str(), code)) return false;
    }
    if (unlinkat(dir, name, S_ISDIR(st.st_mode) ? AT_REMOVEDIR : 0) != 0) return code = errno, false;
    return true;
}

QString describe(int code, const std::string& where) {
    const QString text = FileTree::systemText(code);
    return where.empty()
               ? text
               : text + QStringLiteral(" (") + NativePath::display(NativePath::decode(where.c_str())) + u')';
}

} // namespace

QString FileTree::systemText(int code) {
    return QString::fromLocal8Bit(strerror(code));
}

bool FileTree::copy(const QString& source, const QString& destination, QString& error) {
    const QByteArray from = NativePath::encode(source);
    const QByteArray to = NativePath::encode(destination);
    Copier copier;
    if (copier.entry(AT_FDCWD, from.constData(), AT_FDCWD, to.constData(), std::string())) return true;
    error = describe(copier.code, copier.where);
    if (copier.topCreated) {
        int ignored = 0;
        removeAt(AT_FDCWD, to.constData(), ignored);
    }
    return false;
}

bool FileTree::move(const QString& source, const QString& destination, QString& error) {
    const QByteArray from = NativePath::encode(source);
    const QByteArray to = NativePath::encode(destination);
    const int code = renameNoReplace(from.constData(), to.constData());
    if (code == 0) return true;
    if (code != EXDEV) {
        error = systemText(code);
        return false;
    }
    if (!copy(source, destination, error)) return false;
    return remove(source, error);
}

bool FileTree::remove(const QString& path, QString& error) {
    int code = 0;
    if (removeAt(AT_FDCWD, NativePath::encode(path).constData(), code)) return true;
    error = systemText(code);
    return false;
}

} // namespace orvane
