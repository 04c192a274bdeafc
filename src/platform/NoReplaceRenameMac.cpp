#include "platform/NoReplaceRename.h"

#include <cerrno>
#include <fcntl.h>
#include <stdio.h>

namespace orvane {

int renameNoReplace(const char* from, const char* to) {
    return renamex_np(from, to, RENAME_EXCL) == 0 ? 0 : errno;
}

int renameNoReplaceAt(int fromFolder, const char* from, int toFolder, const char* to) {
    return renameatx_np(fromFolder, from, toFolder, to, RENAME_EXCL) == 0 ? 0 : errno;
}

} // namespace orvane
