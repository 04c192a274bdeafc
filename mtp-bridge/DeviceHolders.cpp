#include "DeviceHolders.h"

#include <cstdlib>
#include <cstring>
#include <dirent.h>
#include <fstream>
#include <iterator>
#include <memory>
#include <sys/stat.h>
#include <unistd.h>

namespace orvane {

namespace {
using Dir = std::unique_ptr<DIR, int (*)(DIR*)>;

bool sameFile(const struct stat& a, const struct stat& b) {
    return a.st_dev == b.st_dev && a.st_ino == b.st_ino;
}

// The name a person knows a program by: its command's last component, else the kernel's short name.
std::string programOf(const std::string& pid) {
    std::ifstream cmdline("/proc/" + pid + "/cmdline", std::ios::binary);
    std::string command;
    std::getline(cmdline, command, '\0');
    if (command.empty()) {
        std::ifstream comm("/proc/" + pid + "/comm");
        std::getline(comm, command);
        return command;
    }
    const size_t slash = command.rfind('/');
    return slash == std::string::npos ? command : command.substr(slash + 1);
}

bool holds(const std::string& pid, const struct stat& device) {
    const std::string folder = "/proc/" + pid + "/fd";
    Dir fds(::opendir(folder.c_str()), &::closedir);
    if (!fds) return false;
    while (const dirent* fd = ::readdir(fds.get())) {
        struct stat status;
        if (fd->d_name[0] != '.' && ::fstatat(dirfd(fds.get()), fd->d_name, &status, 0) == 0 &&
            sameFile(status, device))
            return true;
    }
    return false;
}
} // namespace

std::vector<DeviceHolder> deviceHolders(const std::string& node) {
    std::vector<DeviceHolder> found;
    struct stat device;
    Dir proc(::opendir("/proc"), &::closedir);
    if (!proc || ::stat(node.c_str(), &device) != 0) return found;
    const std::string self = std::to_string(::getpid());
    while (const dirent* entry = ::readdir(proc.get())) {
        const std::string pid = entry->d_name;
        if (pid.find_first_not_of("0123456789") != std::string::npos || pid == self) continue;
        if (holds(pid, device)) found.push_back({std::atoi(pid.c_str()), programOf(pid)});
    }
    return found;
}

std::string heldText(const std::vector<DeviceHolder>& holders) {
    if (holders.empty())
        return "The phone is in use by another program. Close any other app that reads it "
               "(a photo importer, a desktop phone service, another file manager), then click Refresh.";
    std::string names;
    for (const DeviceHolder& holder : holders) {
        if (!names.empty()) names += ", ";
        names += holder.program + " (process " + std::to_string(holder.pid) + ")";
    }
    return "The phone is in use by " + names + ". Close " + (holders.size() == 1 ? "it" : "them") +
           " or eject the phone there, then click Refresh.";
}

} // namespace orvane
