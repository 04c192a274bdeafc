#include "platform/MountTable.h"

#include "platform/NativePath.h"

#include <sys/mount.h>

namespace orvane {

std::vector<MountPoint> MountTable::current() {
    struct statfs* list = nullptr;
    const int count = getmntinfo(&list, MNT_NOWAIT);
    std::vector<MountPoint> mounts;
    for (int i = 0; i < count; ++i) {
        const struct statfs& s = list[i];
        mounts.push_back({NativePath::decode(s.f_mntonname),
                          QString::fromUtf8(s.f_fstypename),
                          NativePath::decode(s.f_mntfromname),
                          QString::number(s.f_fsid.val[0]) + u':' + QString::number(s.f_fsid.val[1]),
                          {}});
    }
    return mounts;
}

} // namespace orvane
