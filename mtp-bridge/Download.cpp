#include "Download.h"

#include "platform/NoReplaceRename.h"

#include <atomic>
#include <cerrno>
#include <cstring>
#include <fcntl.h>
#include <sys/stat.h>
#include <unistd.h>

namespace orvane {

namespace {
std::string folderOf(const std::string& path) {
    const size_t slash = path.rfind('/');
    if (slash == std::string::npos) return ".";
    return slash == 0 ? "/" : path.substr(0, slash);
}

std::string nameOf(const std::string& path) {
    const size_t slash = path.rfind('/');
    return slash == std::string::npos ? path : path.substr(slash + 1);
}
} // namespace

Download::Download(std::string path) : path(std::move(path)) {}

Download::~Download() {
    if (descriptor >= 0) ::close(descriptor);
    if (!committed && !temporary.empty()) ::unlink(temporary.c_str());
}

std::string Download::failure(int code) const {
    return "Cannot create " + nameOf(path) + ": " + std::strerror(code) + ".";
}

std::string Download::open() {
    struct stat st;
    if (::lstat(path.c_str(), &st) == 0) return failure(EEXIST);
#ifdef O_TMPFILE
    descriptor = ::open(folderOf(path).c_str(), O_TMPFILE | O_WRONLY | O_CLOEXEC, 0644);
    if (descriptor >= 0) return {};
#endif
    static std::atomic<unsigned> counter{0};
    temporary = folderOf(path) + "/." + nameOf(path) + ".part-" + std::to_string(::getpid()) + '-' +
                std::to_string(++counter);
    descriptor = ::open(temporary.c_str(), O_WRONLY | O_CREAT | O_EXCL | O_CLOEXEC, 0644);
    if (descriptor >= 0) return {};
    temporary.clear();
    return failure(errno);
}

// No fsync: a transfer cut off by the cable or the bridge never reaches the link below, which is
// what keeps a partial file from its name; like local copies, durability across a power cut is
// left to the file system, and a flush per file would make a folder of photos crawl.
std::string Download::commit() {
    int code = 0;
    if (temporary.empty()) {
        // An unnamed file gets its name by a link, which the kernel refuses when the name is taken.
        const std::string self = "/proc/self/fd/" + std::to_string(descriptor);
        if (::linkat(AT_FDCWD, self.c_str(), AT_FDCWD, path.c_str(), AT_SYMLINK_FOLLOW) != 0) code = errno;
    } else {
        code = renameNoReplace(temporary.c_str(), path.c_str());
    }
    if (code != 0) return failure(code);
    committed = true;
    return {};
}

} // namespace orvane
