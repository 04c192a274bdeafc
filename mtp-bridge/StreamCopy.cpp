#include "StreamCopy.h"

#include <algorithm>
#include <cerrno>
#include <cstring>
#include <unistd.h>
#include <vector>

namespace orvane {

namespace {
constexpr size_t chunk = size_t(4) << 20;

std::string systemError(const char* what) {
    return std::string(what) + ": " + std::strerror(errno);
}

// In-kernel copy where the file system offers it; answers false at once where it doesn't.
bool kernelCopy(int from, int to, uint64_t total, const TransferProgress& progress, std::string& error) {
#ifdef __linux__
    uint64_t done = 0;
    while (done < total) {
        const ssize_t n =
            ::copy_file_range(from, nullptr, to, nullptr, size_t(std::min<uint64_t>(chunk, total - done)), 0);
        if (n < 0 && errno == EINTR) continue;
        if (n < 0 && done == 0 &&
            (errno == EXDEV || errno == ENOSYS || errno == EINVAL || errno == EOPNOTSUPP))
            return false;
        if (n <= 0) {
            error = n < 0 ? systemError("Cannot copy the file") : "The file ended early.";
            return true;
        }
        done += uint64_t(n);
        if (progress && !progress(done, total)) {
            error = cancelledText;
            return true;
        }
    }
    return true;
#else
    (void)from, (void)to, (void)total, (void)progress, (void)error;
    return false;
#endif
}

bool writeAll(int to, const char* data, size_t size) {
    while (size > 0) {
        const ssize_t n = ::write(to, data, size);
        if (n < 0 && errno == EINTR) continue;
        if (n <= 0) return false;
        data += n;
        size -= size_t(n);
    }
    return true;
}
} // namespace

std::string copyStream(int from, int to, uint64_t total, const TransferProgress& progress) {
    std::string error;
    if (kernelCopy(from, to, total, progress, error)) return error;
    std::vector<char> buffer(chunk);
    uint64_t done = 0;
    while (done < total) {
        const ssize_t n = ::read(from, buffer.data(), size_t(std::min<uint64_t>(chunk, total - done)));
        if (n < 0 && errno == EINTR) continue;
        if (n <= 0) return n < 0 ? systemError("Cannot read the file") : "The file ended early.";
        if (!writeAll(to, buffer.data(), size_t(n))) return systemError("Cannot write the file");
        done += uint64_t(n);
        if (progress && !progress(done, total)) return cancelledText;
    }
    return {};
}

} // namespace orvane
