#include "platform/NoReplaceRename.h"

#include <cerrno>
#include <fcntl.h>
#include <stdio.h>
#include <sys/stat.h>
#include <unistd.h>

namespace orvane {

int renameNoReplace(const char* from, const char* to) {
    if (renameat2(AT_FDCWD, from, AT_FDCWD, to, RENAME_NOREPLACE) == 0) return 0;
    const int error = errno;
    if (error != EINVAL && error != ENOSYS) return error;
    // Some file systems lack the flag. A hard link refuses an existing name just as firmly, but only
    // works for things that are not folders; a folder there is refused rather than risked.
    struct stat st;
    if (lstat(from, &st) != 0) return errno;
    if (S_ISDIR(st.st_mode)) return error;
    if (link(from, to) != 0) return errno;
    if (unlink(from) != 0) {
        const int unlinkError = errno;
        unlink(to);
        return unlinkError;
    }
    return 0;
}

} // namespace orvane
