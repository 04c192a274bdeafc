#include "Download.h"

#include "platform/NoReplaceRename.h"

#include <atomic>
#include <cerrno>
#include <csignal>
#include <cstdlib>
#include <cstring>
#include <dirent.h>
#include <fcntl.h>
#include <mutex>
#include <set>
#include <sys/stat.h>
#include <unistd.h>
#include <utility>

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

std::string partName(const std::string& name, pid_t pid, unsigned n) {
    return '.' + name + ".part-" + std::to_string(pid) + '-' + std::to_string(n);
}

bool digits(const std::string& text) {
    return !text.empty() && text.size() < 10 && text.find_first_not_of("0123456789") == std::string::npos;
}

// The process that wrote a part file, or 0 for a name that is no part file.
pid_t writerOf(const std::string& name) {
    if (!Download::isPartName(name)) return 0;
    const size_t part = name.rfind(".part-"), dash = name.rfind('-');
    return pid_t(std::strtol(name.substr(part + 6, dash - part - 6).c_str(), nullptr, 10));
}

// A bridge killed while writing leaves its part file behind; the first write into a folder since
// this bridge started removes those whose writer is gone.
void removeStaleParts(int folder) {
    static std::mutex mutex;
    static std::set<std::pair<dev_t, ino_t>> swept;
    struct stat self;
    if (::fstat(folder, &self) != 0) return;
    std::lock_guard lock(mutex);
    if (!swept.insert({self.st_dev, self.st_ino}).second) return;
    DIR* dir = ::fdopendir(::dup(folder));
    if (!dir) return;
    while (const dirent* e = ::readdir(dir)) {
        const pid_t writer = writerOf(e->d_name);
        struct stat st;
        if (writer > 0 && ::kill(writer, 0) != 0 && errno == ESRCH &&
            ::fstatat(folder, e->d_name, &st, AT_SYMLINK_NOFOLLOW) == 0 && S_ISREG(st.st_mode))
            ::unlinkat(folder, e->d_name, 0);
    }
    ::closedir(dir);
}
} // namespace

Download::Download(const std::string& path)
    : folder(::open(folderOf(path).c_str(), O_RDONLY | O_DIRECTORY | O_CLOEXEC)), name(nameOf(path)) {}

Download::Download(int folder, std::string name) : folder(::dup(folder)), name(std::move(name)) {}

Download::~Download() {
    if (descriptor >= 0) ::close(descriptor);
    if (!committed && !temporary.empty()) ::unlinkat(folder, temporary.c_str(), 0);
    if (folder >= 0) ::close(folder);
}

bool Download::isPartName(const std::string& name) {
    const size_t part = name.rfind(".part-"), dash = name.rfind('-');
    return name.size() > 1 && name[0] == '.' && part != std::string::npos && part > 1 && dash > part + 5 &&
           digits(name.substr(part + 6, dash - part - 6)) && digits(name.substr(dash + 1));
}

std::string Download::failure(int code) const {
    return "Cannot create " + name + ": " + std::strerror(code) + ".";
}

std::string Download::open() {
    if (folder < 0) return failure(errno);
    struct stat st;
    if (::fstatat(folder, name.c_str(), &st, AT_SYMLINK_NOFOLLOW) == 0) return failure(EEXIST);
#ifdef O_TMPFILE
    descriptor = ::openat(folder, ".", O_TMPFILE | O_WRONLY | O_CLOEXEC, 0644);
    if (descriptor >= 0) return {};
#endif
    removeStaleParts(folder);
    static std::atomic<unsigned> counter{0};
    temporary = partName(name, ::getpid(), ++counter);
    descriptor =
        ::openat(folder, temporary.c_str(), O_WRONLY | O_CREAT | O_EXCL | O_NOFOLLOW | O_CLOEXEC, 0644);
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
        if (::linkat(AT_FDCWD, self.c_str(), folder, name.c_str(), AT_SYMLINK_FOLLOW) != 0) code = errno;
    } else {
        code = renameNoReplaceAt(folder, temporary.c_str(), folder, name.c_str());
    }
    if (code != 0) return failure(code);
    committed = true;
    return {};
}

} // namespace orvane
