#include "SimulatedPhone.h"

#include "DeviceHolders.h"
#include "Download.h"
#include "ImageSize.h"
#include "StreamCopy.h"

#include <algorithm>
#include <cerrno>
#include <cstdio>
#include <cstdlib>
#include <cstring>
#include <ctime>
#include <dirent.h>
#include <fcntl.h>
#include <memory>
#include <unistd.h>

#include "platform/NoReplaceRename.h"

namespace orvane {

namespace {
constexpr uint32_t firstStorage = 0x00010001u;
constexpr uint32_t storageStep = 0x00010000u;

using Dir = std::unique_ptr<DIR, int (*)(DIR*)>;

class Fd {
public:
    explicit Fd(int fd) : fd(fd) {}
    ~Fd() {
        if (fd >= 0) ::close(fd);
    }
    Fd(const Fd&) = delete;
    Fd& operator=(const Fd&) = delete;
    int get() const { return fd; }

private:
    int fd;
};

std::string notFound() {
    return "This item is no longer on the phone. Click Refresh.";
}

std::string exists(const std::string& name) {
    return "An item named \u201c" + name + "\u201d already exists here.";
}

std::string systemError(const std::string& what) {
    return what + ": " + std::strerror(errno) + ".";
}

std::string join(const std::string& folder, const std::string& name) {
    return folder.empty() ? name : folder + '/' + name;
}

std::string lastComponent(const std::string& path) {
    const size_t slash = path.rfind('/');
    return slash == std::string::npos ? path : path.substr(slash + 1);
}

std::string parentOf(const std::string& path) {
    const size_t slash = path.rfind('/');
    return slash == std::string::npos ? std::string() : path.substr(0, slash);
}

bool validName(const std::string& name) {
    return !name.empty() && name != "." && name != ".." && name.find('/') == std::string::npos &&
           name.find('\0') == std::string::npos;
}

const struct timespec& modifiedTime(const struct stat& status) {
#ifdef __APPLE__
    return status.st_mtimespec;
#else
    return status.st_mtim;
#endif
}

double seconds(const struct timespec& t) {
    return double(t.tv_sec) + double(t.tv_nsec) / 1e9;
}

bool isJpeg(const std::string& name) {
    std::string lower = name;
    std::transform(lower.begin(), lower.end(), lower.begin(),
                   [](unsigned char c) { return char(std::tolower(c)); });
    const auto endsWith = [&](const char* s) {
        const size_t n = std::strlen(s);
        return lower.size() >= n && lower.compare(lower.size() - n, n, s) == 0;
    };
    return endsWith(".jpg") || endsWith(".jpeg");
}

// The phone's own text form of a date, local time with a tenth of a second.
std::string phoneText(time_t when) {
    struct tm local {};
    localtime_r(&when, &local);
    char text[32];
    std::strftime(text, sizeof text, "%Y%m%dT%H%M%S.0", &local);
    return text;
}

// What the phone holds: folders and files, never a link or a device.
bool servable(const struct stat& status) {
    return S_ISDIR(status.st_mode) || S_ISREG(status.st_mode);
}

int openChild(int folder, const std::string& name, int flags) {
    if (!validName(name)) return errno = ENOENT, -1;
    return ::openat(folder, name.c_str(), flags | O_NOFOLLOW | O_CLOEXEC);
}

// Depth first, each level through the folder opened above it, so a link inside is removed, not followed.
int removeTree(int parent, const std::string& name) {
    Dir dir(::fdopendir(openChild(parent, name, O_RDONLY | O_DIRECTORY)), &::closedir);
    if (!dir) return -1;
    while (const dirent* e = ::readdir(dir.get())) {
        if (std::strcmp(e->d_name, ".") == 0 || std::strcmp(e->d_name, "..") == 0) continue;
        struct stat status;
        if (::fstatat(dirfd(dir.get()), e->d_name, &status, AT_SYMLINK_NOFOLLOW) != 0) return -1;
        const int done = S_ISDIR(status.st_mode) ? removeTree(dirfd(dir.get()), e->d_name)
                                                 : ::unlinkat(dirfd(dir.get()), e->d_name, 0);
        if (done != 0) return -1;
    }
    return ::unlinkat(parent, name.c_str(), AT_REMOVEDIR);
}

// Copies one open file into a new file at `to`, which must not exist; a partial copy is removed.
std::string copyInto(int from, uint64_t size, const std::string& to, const std::string& shownName,
                     const TransferProgress& progress) {
    Fd target(::open(to.c_str(), O_WRONLY | O_CREAT | O_EXCL | O_CLOEXEC, 0644));
    if (target.get() < 0)
        return errno == EEXIST ? exists(shownName) : systemError("Cannot create " + shownName);
    const std::string error = copyStream(from, target.get(), size, progress);
    if (!error.empty()) ::unlink(to.c_str());
    return error;
}
} // namespace

SimulatedPhone::Located::~Located() {
    if (fd >= 0) ::close(fd);
}

SimulatedPhone::SimulatedPhone(std::string root) : root(std::move(root)) {
    while (this->root.size() > 1 && this->root.back() == '/')
        this->root.pop_back();
    const auto on = [](const char* name) {
        const char* value = std::getenv(name);
        return value && *value && std::strcmp(value, "0") != 0;
    };
    if (const char* node = std::getenv("MTP_BRIDGE_HELD"); node && *node) {
        condition = "held";
        heldNode = node;
    }
    if (on("MTP_BRIDGE_CHARGING_ONLY")) condition = "charging";
    if (on("MTP_BRIDGE_LOCKED")) condition = "locked";
}

// What a real phone answers before any storage can be read, asked anew at each request.
std::string SimulatedPhone::unreachable() const {
    if (condition == "locked") return lockedText;
    if (condition == "charging") return chargingOnlyText;
    if (condition == "held") return heldText(deviceHolders(heldNode));
    return {};
}

// Storages keep their numbers for the life of the process, even when folders come and go.
std::string SimulatedPhone::refreshStorages() {
    if (std::string error = unreachable(); !error.empty()) return error;
    Dir dir(::opendir(root.c_str()), &::closedir);
    if (!dir) return noPhoneText;
    std::vector<std::string> names;
    while (const dirent* e = ::readdir(dir.get())) {
        struct stat status;
        if (e->d_name[0] != '.' &&
            ::fstatat(dirfd(dir.get()), e->d_name, &status, AT_SYMLINK_NOFOLLOW) == 0 &&
            S_ISDIR(status.st_mode))
            names.emplace_back(e->d_name);
    }
    std::sort(names.begin(), names.end());
    for (const std::string& name : names)
        if (std::none_of(known.begin(), known.end(), [&](const Storage& s) { return s.label == name; }))
            known.push_back({firstStorage + uint32_t(known.size()) * storageStep, name});
    return names.empty() ? lockedText : std::string();
}

const SimulatedPhone::Storage* SimulatedPhone::storage(uint32_t id) const {
    for (const Storage& s : known)
        if (s.id == id) return &s;
    return nullptr;
}

std::string SimulatedPhone::storages(std::vector<PhoneObject>& out) {
    if (std::string error = refreshStorages(); !error.empty()) return error;
    for (const Storage& s : known) {
        struct stat status;
        if (::lstat((root + '/' + s.label).c_str(), &status) == 0 && S_ISDIR(status.st_mode))
            out.push_back({rootHandle, s.id, s.label, true, 0, {}});
    }
    return {};
}

std::string SimulatedPhone::scan() {
    return refreshStorages();
}

// One name at a time from the root, none of them a link; -1 with errno set.
int SimulatedPhone::openFolder(const std::string& label, const std::string& path) const {
    std::vector<std::string> names{label};
    for (size_t start = 0; !path.empty() && start <= path.size();) {
        const size_t end = std::min(path.find('/', start), path.size());
        names.push_back(path.substr(start, end - start));
        start = end + 1;
    }
    int fd = ::open(root.c_str(), O_RDONLY | O_DIRECTORY | O_CLOEXEC);
    for (const std::string& name : names) {
        if (fd < 0) break;
        const int next = openChild(fd, name, O_RDONLY | O_DIRECTORY);
        const int code = errno;
        ::close(fd);
        errno = code;
        fd = next;
    }
    return fd;
}

std::string SimulatedPhone::folder(uint32_t storageId, uint32_t parent, Located& out) {
    if (std::string error = unreachable(); !error.empty()) return error;
    if (known.empty()) refreshStorages();
    const Storage* s = storage(storageId);
    if (!s) return "The phone has no storage " + std::to_string(storageId) + ".";
    if (parent != rootHandle) {
        const HandleTable::Place* place = handles.find(parent);
        if (!place || place->storage != storageId) return notFound();
        out.path = place->path;
    }
    out.storage = storageId;
    out.fd = openFolder(s->label, out.path);
    if (out.fd >= 0 && ::fstat(out.fd, &out.status) == 0) return {};
    if (errno == ENOTDIR) return "This item is not a folder.";
    if (!out.path.empty()) handles.forget(storageId, out.path);
    return notFound();
}

std::string SimulatedPhone::object(uint32_t id, Located& out) {
    if (std::string error = unreachable(); !error.empty()) return error;
    const HandleTable::Place* place = id == rootHandle ? nullptr : handles.find(id);
    const Storage* s = place ? storage(place->storage) : nullptr;
    if (!s) return notFound();
    out.storage = place->storage;
    out.path = place->path;
    out.name = lastComponent(out.path);
    out.fd = openFolder(s->label, parentOf(out.path));
    if (out.fd < 0 || ::fstatat(out.fd, out.name.c_str(), &out.status, AT_SYMLINK_NOFOLLOW) != 0 ||
        !servable(out.status)) {
        handles.forget(out.storage, out.path);
        return notFound();
    }
    return {};
}

std::string SimulatedPhone::list(uint32_t storageId, uint32_t parent, std::vector<PhoneObject>& out) {
    Located where;
    if (std::string error = folder(storageId, parent, where); !error.empty()) return error;
    Dir dir(::fdopendir(::dup(where.fd)), &::closedir);
    if (!dir) return systemError("Cannot read this folder");
    while (const dirent* e = ::readdir(dir.get())) {
        struct stat status;
        if (!validName(e->d_name) || Download::isPartName(e->d_name) ||
            ::fstatat(dirfd(dir.get()), e->d_name, &status, AT_SYMLINK_NOFOLLOW) != 0 || !servable(status))
            continue;
        const bool isFolder = S_ISDIR(status.st_mode);
        const uint32_t id = handles.handleFor(storageId, join(where.path, e->d_name));
        out.push_back({id, storageId, e->d_name, isFolder, isFolder ? 0 : uint64_t(status.st_size),
                       seconds(modifiedTime(status))});
    }
    return {};
}

// The size is the open file's own, so the copy is whole or an error.
std::string SimulatedPhone::get(uint32_t id, int target, const std::string&,
                                const TransferProgress& progress) {
    Located source;
    if (std::string error = object(id, source); !error.empty()) return error;
    if (S_ISDIR(source.status.st_mode)) return "A folder can't be copied as one file.";
    Fd from(openChild(source.fd, source.name, O_RDONLY));
    struct stat status;
    if (from.get() < 0 || ::fstat(from.get(), &status) != 0) return systemError("Cannot read " + source.name);
    if (!S_ISREG(status.st_mode)) return notFound();
    return copyStream(from.get(), target, uint64_t(status.st_size), progress);
}

// A file arrives under its name only when whole, as on a phone whose bridge may die half-way.
std::string SimulatedPhone::put(uint32_t storageId, uint32_t parent, const std::string& path,
                                const TransferProgress& progress) {
    const std::string name = lastComponent(path);
    if (!validName(name)) return "Not a file to send: " + path;
    Located target;
    if (std::string error = folder(storageId, parent, target); !error.empty()) return error;
    Fd from(::open(path.c_str(), O_RDONLY | O_CLOEXEC));
    struct stat status;
    if (from.get() < 0 || ::fstat(from.get(), &status) != 0) return systemError("Cannot read " + name);
    if (!S_ISREG(status.st_mode)) return "Only files can be sent: " + name;
    struct stat there;
    if (::fstatat(target.fd, name.c_str(), &there, AT_SYMLINK_NOFOLLOW) == 0) return exists(name);
    Download into(target.fd, name);
    std::string error = into.open();
    if (error.empty()) error = copyStream(from.get(), into.fd(), uint64_t(status.st_size), progress);
    if (error.empty()) error = into.commit();
    if (error.empty()) handles.handleFor(storageId, join(target.path, name));
    return error;
}

std::string SimulatedPhone::makeFolder(uint32_t storageId, uint32_t parent, const std::string& name,
                                       uint32_t& id) {
    if (!validName(name)) return "\u201c" + name + "\u201d is not a valid folder name.";
    Located target;
    if (std::string error = folder(storageId, parent, target); !error.empty()) return error;
    if (::mkdirat(target.fd, name.c_str(), 0755) != 0)
        return errno == EEXIST ? exists(name) : systemError("Cannot create " + name);
    id = handles.handleFor(storageId, join(target.path, name));
    return {};
}

std::string SimulatedPhone::remove(uint32_t id) {
    if (id == rootHandle) return "A storage can't be deleted.";
    Located what;
    if (std::string error = object(id, what); !error.empty()) return error;
    const int status = S_ISDIR(what.status.st_mode) ? removeTree(what.fd, what.name)
                                                    : ::unlinkat(what.fd, what.name.c_str(), 0);
    if (status != 0) return systemError("Cannot delete " + what.name);
    handles.forget(what.storage, what.path);
    return {};
}

// `folder` is the open folder that is to hold the item at `path`.
std::string SimulatedPhone::relocate(const Located& from, int folder, uint32_t storageId,
                                     const std::string& path) {
    const std::string name = lastComponent(path);
    if (const int code = renameNoReplaceAt(from.fd, from.name.c_str(), folder, name.c_str()); code != 0) {
        if (code == EEXIST) return exists(name);
        errno = code;
        return code == EXDEV ? "This item can't be moved to that storage."
                             : systemError("Cannot move " + name);
    }
    handles.relocate(from.storage, from.path, storageId, path);
    return {};
}

std::string SimulatedPhone::rename(uint32_t id, const std::string& name) {
    if (!validName(name)) return "\u201c" + name + "\u201d is not a valid name.";
    if (id == rootHandle) return "A storage can't be renamed.";
    Located what;
    if (std::string error = object(id, what); !error.empty()) return error;
    const std::string path = join(parentOf(what.path), name);
    return path == what.path ? std::string() : relocate(what, what.fd, what.storage, path);
}

std::string SimulatedPhone::move(uint32_t id, uint32_t storageId, uint32_t parent) {
    Located what, target;
    if (std::string error = object(id, what); !error.empty()) return error;
    if (std::string error = folder(storageId, parent, target); !error.empty()) return error;
    const bool inside =
        target.path == what.path || target.path.compare(0, what.path.size() + 1, what.path + '/') == 0;
    if (storageId == what.storage && inside) return "A folder can't be moved into itself.";
    const std::string path = join(target.path, what.name);
    if (storageId == what.storage && path == what.path) return {};
    return relocate(what, target.fd, storageId, path);
}

std::string SimulatedPhone::info(uint32_t id, PhoneObjectInfo& out) {
    Located what;
    if (std::string error = object(id, what); !error.empty()) return error;
    uint32_t width = 0, height = 0;
    Fd file(S_ISREG(what.status.st_mode) ? openChild(what.fd, what.name, O_RDONLY) : -1);
    if (file.get() >= 0 && readImageSize(file.get(), width, height)) {
        out.width = width;
        out.height = height;
    }
    out.created = phoneText(modifiedTime(what.status).tv_sec);
    return {};
}

// The simulated phone keeps thumbnails of its photos only, and a photo is its own thumbnail.
std::string SimulatedPhone::thumbnail(uint32_t id, const std::string& path) {
    Located what;
    if (std::string error = object(id, what); !error.empty()) return error;
    if (!S_ISREG(what.status.st_mode) || !isJpeg(what.path)) return noThumbnailText;
    Fd from(openChild(what.fd, what.name, O_RDONLY));
    struct stat status;
    if (from.get() < 0 || ::fstat(from.get(), &status) != 0) return systemError("Cannot read " + what.name);
    return copyInto(from.get(), uint64_t(status.st_size), path, lastComponent(path), nullptr);
}

} // namespace orvane
