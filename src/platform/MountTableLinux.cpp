#include "platform/MountTable.h"

#include <cerrno>
#include <fcntl.h>
#include <unistd.h>

namespace orvane {

// Read in one go with plain reads: the kernel builds the text as it is read, and QFile asks for a
// size that /proc does not have.
std::vector<MountPoint> MountTable::current() {
    const int fd = open("/proc/self/mountinfo", O_RDONLY | O_CLOEXEC);
    if (fd < 0) return {};
    QByteArray text;
    char buffer[16384];
    for (ssize_t n; (n = read(fd, buffer, sizeof buffer)) != 0;) {
        if (n < 0) {
            if (errno == EINTR) continue;
            break;
        }
        text.append(buffer, n);
    }
    close(fd);
    return parse(text);
}

} // namespace orvane
