#include "platform/NoReplaceRename.h"

#include <cerrno>
#include <stdio.h>

namespace orvane {

int renameNoReplace(const char* from, const char* to) {
    return renamex_np(from, to, RENAME_EXCL) == 0 ? 0 : errno;
}

} // namespace orvane
