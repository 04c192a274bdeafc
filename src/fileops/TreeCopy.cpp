#include "fileops/TreeCopy.h"

#include "fileops/FileMetadata.h"

#include <cerrno>
#include <cstring>
#include <dirent.h>
#include <fcntl.h>
#include <unistd.h>

namespace orvane {

namespace {

// Closes on every return path; the copy keeps two descriptors per folder level open.
class Fd {
public:
    explicit Fd(int fd = -1) : fd(fd) {}
    ~Fd() {
        if (fd >= 0) ::close(fd);
    }
    Fd(const Fd&) = delete;
    Fd& operator=(Fd&& other) {
        std::swap(fd, other.fd);
        return *this;
    }
    int get() const { return fd; }
    bool valid() const { return fd >= 0; }
    int release() { return std::exchange(fd, -1); }

private:
    int fd;
};

struct Name {
    std::string text;
    unsigned char type; // DT_UNKNOWN where the file system does not tell
};

bool isDots(const char* n) {
    return n[0] == '.' && (n[1] == 0 || (n[1] == '.' && n[2] == 0));
}

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
    while (dirent* d = readdir(dir))
        if (!isDots(d->d_name)) names.push_back({d->d_name, d->d_type});
    const int error = errno;
    closedir(dir);
    errno = error;
    return error == 0;
}

std::string join(const std::string& parent, const char* name) {
    return parent.empty() ? std::string(name) : parent + '/' + name;
}

QString systemText(int code) {
    return QString::fromLocal8Bit(strerror(code));
}

bool sameContent(const struct stat& a, const struct stat& b) {
    return a.st_dev == b.st_dev && a.st_ino == b.st_ino && a.st_size == b.st_size &&
           a.st_mtim.tv_sec == b.st_mtim.tv_sec && a.st_mtim.tv_nsec == b.st_mtim.tv_nsec;
}

} // namespace

bool TreeCopy::run(const QByteArray& from, const QByteArray& to) {
    destination = to;
    struct stat st;
    if (lstat(from.constData(), &st) != 0) return fail({}, errno);
    return item(AT_FDCWD, from.constData(), AT_FDCWD, to.constData(), st, {});
}

bool TreeCopy::item(int srcDir, const char* srcName, int dstDir, const char* dstName, const struct stat& st,
                    const std::string& rel) {
    visited.insert(rel);
    if (FileData::stopped()) return fail(rel, ECANCELED);
    if (S_ISDIR(st.st_mode)) return folder(srcDir, srcName, dstDir, dstName, rel);
    if (S_ISREG(st.st_mode)) return file(srcDir, srcName, dstDir, dstName, rel);
    if (S_ISLNK(st.st_mode)) return link(srcDir, srcName, dstDir, dstName, st, rel);
    if (S_ISFIFO(st.st_mode)) {
        if (mkfifoat(dstDir, dstName, 0600) != 0) return fail(rel, errno);
        FileMetadata::copyAt(dstDir, dstName, st, move);
        arrived(rel, st);
        return true;
    }
    return fail(rel, ENOTSUP); // devices and sockets are not copied
}

// One open folder of the copy, its items read, on a stack of its own rather than the thread's, so no
// depth of tree can overflow it.
struct TreeCopy::Level {
    Fd src, dst;
    struct stat st;
    std::vector<Name> names;
    size_t next = 0;
    std::string rel;
};

bool TreeCopy::folder(int srcDir, const char* srcName, int dstDir, const char* dstName,
                      const std::string& rel) {
    std::vector<std::unique_ptr<Level>> stack;
    if (auto top = enter(srcDir, srcName, dstDir, dstName, rel)) stack.push_back(std::move(top));
    if (stack.empty()) return false;
    while (!stack.empty()) {
        Level& level = *stack.back();
        if (level.next == level.names.size()) {
            FileMetadata::copy(level.src.get(), level.dst.get(), level.st, move);
            arrived(level.rel, level.st);
            stack.pop_back();
            continue;
        }
        const Name& name = level.names[level.next++];
        const char* n = name.text.c_str();
        const std::string inner = join(level.rel, n);
        struct stat cst;
        if (name.type == DT_REG) { // a regular file needs no stat of its own: its open descriptor tells
            visited.insert(inner);
            file(level.src.get(), n, level.dst.get(), n, inner);
        } else if (fstatat(level.src.get(), n, &cst, AT_SYMLINK_NOFOLLOW) != 0) {
            visited.insert(inner);
            fail(inner, errno);
        } else if (!S_ISDIR(cst.st_mode)) {
            item(level.src.get(), n, level.dst.get(), n, cst, inner);
        } else {
            visited.insert(inner);
            if (auto sub = enter(level.src.get(), n, level.dst.get(), n, inner))
                stack.push_back(std::move(sub));
        }
    }
    return true;
}

std::unique_ptr<TreeCopy::Level> TreeCopy::enter(int srcDir, const char* srcName, int dstDir,
                                                 const char* dstName, const std::string& rel) {
    auto level = std::make_unique<Level>();
    level->rel = rel;
    level->src = Fd(openat(srcDir, srcName, O_RDONLY | O_DIRECTORY | O_NOFOLLOW | O_CLOEXEC));
    if (!level->src.valid() || fstat(level->src.get(), &level->st) != 0) return fail(rel, errno), nullptr;
    // The copy met itself, through a bind mount: going on would copy the copy for ever.
    if (level->st.st_dev == copyTop.first && level->st.st_ino == copyTop.second) {
        problems.push_back({rel, QStringLiteral("Cannot copy a folder into itself")});
        return nullptr;
    }
    if (!readNames(level->src.get(), level->names)) return fail(rel, errno), nullptr;
    // Private while it fills; the source's mode comes last, since a read-only one would block the copy.
    if (mkdirat(dstDir, dstName, 0700) != 0) return fail(rel, errno), nullptr;
    level->dst = Fd(openat(dstDir, dstName, O_RDONLY | O_DIRECTORY | O_NOFOLLOW | O_CLOEXEC));
    struct stat made;
    if (!level->dst.valid() || fstat(level->dst.get(), &made) != 0) {
        const int code = errno;
        unlinkat(dstDir, dstName, AT_REMOVEDIR);
        return fail(rel, code), nullptr;
    }
    if (rel.empty()) copyTop = {made.st_dev, made.st_ino};
    return level;
}

bool TreeCopy::file(int srcDir, const char* srcName, int dstDir, const char* dstName,
                    const std::string& rel) {
    // Non-blocking, so an item that became a pipe since the listing cannot hang the copy.
    Fd in(openat(srcDir, srcName, O_RDONLY | O_NOFOLLOW | O_NONBLOCK | O_CLOEXEC));
    struct stat st;
    if (!in.valid() || fstat(in.get(), &st) != 0) return fail(rel, errno);
    if (!S_ISREG(st.st_mode)) return fail(rel, EAGAIN); // it changed between the listing and the open
    if (st.st_nlink > 1 && linkAgain(st, dstDir, dstName, rel)) return true;
    Fd out(openat(dstDir, dstName, O_WRONLY | O_CREAT | O_EXCL | O_NOFOLLOW | O_CLOEXEC, 0600));
    if (!out.valid()) return fail(rel, errno);
    if (!data.copy(in.get(), out.get(), st)) {
        const int code = errno;
        ::close(out.release());
        discard(dstDir, dstName, rel, code);
        return false;
    }
    FileMetadata::copy(in.get(), out.get(), st, move);
    if (::close(out.release()) != 0) {
        discard(dstDir, dstName, rel, errno);
        return false;
    }
    if (st.st_nlink > 1) linked.emplace(std::make_pair(st.st_dev, st.st_ino), rel);
    arrived(rel, st);
    return true;
}

// A second name of a file already copied in this tree becomes a second name of its copy.
bool TreeCopy::linkAgain(const struct stat& st, int dstDir, const char* dstName, const std::string& rel) {
    const auto first = linked.find({st.st_dev, st.st_ino});
    if (first == linked.end() ||
        linkat(AT_FDCWD, destinationOf(first->second).constData(), dstDir, dstName, 0) != 0)
        return false; // where links are refused (FAT) it is copied again
    arrived(rel, st);
    return true;
}

bool TreeCopy::link(int srcDir, const char* srcName, int dstDir, const char* dstName, const struct stat& st,
                    const std::string& rel) {
    std::string target(size_t(st.st_size > 0 ? st.st_size : 256) + 1, '\0');
    ssize_t n;
    while ((n = readlinkat(srcDir, srcName, target.data(), target.size())) == ssize_t(target.size()))
        target.resize(target.size() * 2);
    if (n < 0) return fail(rel, errno);
    target.resize(size_t(n));
    if (symlinkat(target.c_str(), dstDir, dstName) != 0) return fail(rel, errno);
    FileMetadata::copyAt(dstDir, dstName, st, move);
    arrived(rel, st);
    return true;
}

bool TreeCopy::fail(const std::string& rel, int code, const QString& note) {
    problems.push_back({rel, systemText(code ? code : EIO) + note});
    return false;
}

// A file that did not arrive whole goes again; if even that fails, the report says a part is left.
void TreeCopy::discard(int dstDir, const char* dstName, const std::string& rel, int code) {
    if (unlinkat(dstDir, dstName, 0) == 0) {
        fail(rel, code);
        return;
    }
    fail(rel, code, QStringLiteral(" (the partial copy could not be removed: ") + systemText(errno) + u')');
}

void TreeCopy::arrived(const std::string& rel, const struct stat& st) {
    if (move) manifest.push_back({rel, st});
}

QByteArray TreeCopy::destinationOf(const std::string& rel) const {
    return rel.empty() ? destination : destination + '/' + QByteArray::fromStdString(rel);
}

void TreeCopy::removeCopied(const QByteArray& from) {
    for (const Copied& copied : manifest) {
        const QByteArray path =
            copied.where.empty() ? from : from + '/' + QByteArray::fromStdString(copied.where);
        struct stat now;
        if (lstat(path.constData(), &now) != 0) {
            if (errno != ENOENT) fail(copied.where, errno);
            continue;
        }
        const bool folder = S_ISDIR(copied.st.st_mode);
        if (folder ? now.st_ino != copied.st.st_ino || now.st_dev != copied.st.st_dev
                   : !sameContent(now, copied.st)) {
            problems.push_back({copied.where, QStringLiteral("Changed while it was moved; left in place")});
            continue;
        }
        if ((folder ? rmdir(path.constData()) : unlink(path.constData())) == 0) continue;
        if (folder && (errno == ENOTEMPTY || errno == EEXIST))
            leftovers(path, copied.where);
        else
            fail(copied.where, errno);
    }
}

// What keeps a moved folder from going: items that appeared after the copy had listed it.
void TreeCopy::leftovers(const QByteArray& folder, const std::string& rel) {
    Fd dir(open(folder.constData(), O_RDONLY | O_DIRECTORY | O_NOFOLLOW | O_CLOEXEC));
    std::vector<Name> names;
    if (!dir.valid() || !readNames(dir.get(), names)) {
        fail(rel, errno);
        return;
    }
    for (const Name& name : names) {
        const std::string inner = join(rel, name.text.c_str());
        if (!visited.count(inner))
            problems.push_back({inner, QStringLiteral("Appeared while its folder was moved; left in place")});
    }
}

} // namespace orvane
