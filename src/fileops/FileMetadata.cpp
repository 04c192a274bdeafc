#include "fileops/FileMetadata.h"

#include <cerrno>
#include <cstdint>
#include <cstring>
#include <fcntl.h>
#include <string_view>
#include <unistd.h>
#include <vector>

#if defined(__linux__)
#include <sys/xattr.h>
#endif

namespace orvane {

namespace {

void stampTimes(int out, const struct stat& st) {
#if defined(__APPLE__)
    const timespec times[2] = {st.st_atimespec, st.st_mtimespec};
#else
    const timespec times[2] = {st.st_atim, st.st_mtim};
#endif
    futimens(out, times);
}

#if defined(__linux__)
constexpr std::string_view accessAcl = "system.posix_acl_access";

// What cp -a keeps: user attributes and the two ACLs. Security and trusted attributes belong to the system.
bool kept(std::string_view name) {
    return name.substr(0, 5) == "user." || name == accessAcl || name == "system.posix_acl_default";
}

std::vector<char> attribute(int fd, const char* name) {
    std::vector<char> value;
    for (ssize_t size; (size = fgetxattr(fd, name, nullptr, 0)) >= 0;) {
        value.resize(size_t(size));
        const ssize_t got = fgetxattr(fd, name, value.data(), value.size());
        if (got >= 0) {
            value.resize(size_t(got));
            return value;
        }
        if (errno != ERANGE) break; // it grew in between: ask again
    }
    return {};
}

// The permissions the owning group really has under an ACL: its own entry limited by the mask.
mode_t effectiveGroup(const std::vector<char>& acl, mode_t mode) {
    constexpr uint16_t groupObj = 0x04, mask = 0x10;
    mode_t group = (mode >> 3) & 7, limit = 7;
    for (size_t at = 4; at + 8 <= acl.size(); at += 8) {
        uint16_t tag, perm;
        std::memcpy(&tag, acl.data() + at, 2);
        std::memcpy(&perm, acl.data() + at + 2, 2);
        if (tag == groupObj) group = perm & 7;
        if (tag == mask) limit = perm & 7;
    }
    return group & limit;
}

void copyAttributes(int in, int out) {
    const ssize_t size = flistxattr(in, nullptr, 0);
    if (size <= 0) return;
    std::vector<char> names(static_cast<size_t>(size));
    const ssize_t got = flistxattr(in, names.data(), names.size());
    for (size_t at = 0; got > 0 && at < size_t(got); at += std::strlen(names.data() + at) + 1) {
        const char* name = names.data() + at;
        if (!kept(name)) continue;
        const std::vector<char> value = attribute(in, name);
        fsetxattr(out, name, value.data(), value.size(), 0);
    }
}
#endif

} // namespace

void FileMetadata::copy(int in, int out, const struct stat& st, bool owner) {
    // Only a privileged process may give a file away; without the right to, the copy stays the user's.
    if (owner) (void)!fchown(out, st.st_uid, st.st_gid);
    mode_t mode = st.st_mode & 07777;
#if defined(__linux__)
    // Under an ACL the group bits are its mask. The mode set first grants the group no more than the ACL
    // did, so nothing is wider if the ACL cannot follow; where it does follow, it sets the mask again.
    const std::vector<char> acl = attribute(in, accessAcl.data());
    if (!acl.empty()) mode = (mode & ~mode_t(070)) | (effectiveGroup(acl, mode) << 3);
    fchmod(out, mode);
    copyAttributes(in, out);
#else
    (void)in;
    fchmod(out, mode);
#endif
    stampTimes(out, st);
}

void FileMetadata::copyAt(int dir, const char* name, const struct stat& st, bool owner) {
    if (owner) (void)!fchownat(dir, name, st.st_uid, st.st_gid, AT_SYMLINK_NOFOLLOW);
    if (!S_ISLNK(st.st_mode)) fchmodat(dir, name, st.st_mode & 07777, 0);
#if defined(__APPLE__)
    const timespec times[2] = {st.st_atimespec, st.st_mtimespec};
#else
    const timespec times[2] = {st.st_atim, st.st_mtim};
#endif
    utimensat(dir, name, times, AT_SYMLINK_NOFOLLOW);
}

} // namespace orvane
