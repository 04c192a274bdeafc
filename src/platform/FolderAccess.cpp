#include "platform/FolderAccess.h"

#include "platform/NativePath.h"

#include <cerrno>
#include <fcntl.h>
#include <unistd.h>

namespace orvane {

// Opening for reading asks for both rights a listing needs: entering the folder's parent chain and
// reading the folder itself, so a folder one may enter but not read is refused here too.
int FolderAccess::readFailure(const QString& folder) {
    const int fd = open(NativePath::encode(folder).constData(), O_RDONLY | O_DIRECTORY | O_CLOEXEC);
    if (fd < 0) return errno;
    close(fd);
    return 0;
}

bool FolderAccess::isPermissionError(int code) {
    return code == EACCES || code == EPERM;
}

} // namespace orvane
