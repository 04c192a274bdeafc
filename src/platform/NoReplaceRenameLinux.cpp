#include "platform/NoReplaceRename.h"

#include <cerrno>
#include <fcntl.h>
#include <stdio.h>
#include <sys/stat.h>
#include <unistd.h>

namespace orvane {

namespace {

bool sameItem(const struct stat& a, const struct stat& b) {
    return a.st_dev == b.st_dev && a.st_ino == b.st_ino;
}

// The name is claimed first by an exclusive create, which the kernel refuses when anything is there, and
// the file is then renamed over its own placeholder.
int renameOverPlaceholder(int fromFolder, const char* from, int toFolder, const char* to) {
    const int fd = openat(toFolder, to, O_WRONLY | O_CREAT | O_EXCL | O_NOFOLLOW | O_CLOEXEC, 0600);
    if (fd < 0) return errno;
    struct stat placeholder;
    const bool known = fstat(fd, &placeholder) == 0;
    close(fd);
    if (::renameat(fromFolder, from, toFolder, to) == 0) return 0;
    const int error = errno;
    struct stat now;
    if (known && fstatat(toFolder, to, &now, AT_SYMLINK_NOFOLLOW) == 0 && sameItem(now, placeholder))
        unlinkat(toFolder, to, 0);
    return error;
}

// A folder renamed onto a taken name can replace nothing but an empty folder: the kernel refuses a file
// (ENOTDIR) and a folder with anything in it (ENOTEMPTY). So a check and a plain rename lose nothing.
int renameFolder(int fromFolder, const char* from, int toFolder, const char* to) {
    struct stat st;
    if (fstatat(toFolder, to, &st, AT_SYMLINK_NOFOLLOW) == 0) return EEXIST;
    if (::renameat(fromFolder, from, toFolder, to) == 0) return 0;
    return errno == ENOTDIR || errno == ENOTEMPTY ? EEXIST : errno;
}

} // namespace

int renameNoReplace(const char* from, const char* to) {
    return renameNoReplaceAt(AT_FDCWD, from, AT_FDCWD, to);
}

int renameNoReplaceAt(int fromFolder, const char* from, int toFolder, const char* to) {
    if (renameat2(fromFolder, from, toFolder, to, RENAME_NOREPLACE) == 0) return 0;
    const int error = errno;
    if (error != EINVAL && error != ENOSYS && error != EOPNOTSUPP) return error;
    // Some file systems lack the flag (FAT, exFAT, some FUSE ones). A hard link refuses an existing name
    // just as firmly, where the file system has links at all.
    struct stat st;
    if (fstatat(fromFolder, from, &st, AT_SYMLINK_NOFOLLOW) != 0) return errno;
    if (S_ISDIR(st.st_mode)) return renameFolder(fromFolder, from, toFolder, to);
    if (linkat(fromFolder, from, toFolder, to, 0) == 0) {
        if (unlinkat(fromFolder, from, 0) == 0) return 0;
        const int unlinkError = errno;
        unlinkat(toFolder, to, 0);
        return unlinkError;
    }
    if (errno == EEXIST) return EEXIST;
    return renameOverPlaceholder(fromFolder, from, toFolder, to);
}

} // namespace orvane
