#include "fileops/TransferProgressSnapshot.h"

#include "platform/NativePath.h"

#include <algorithm>
#include <dirent.h>
#include <fcntl.h>
#include <sys/stat.h>
#include <unistd.h>

namespace orvane {

TransferProgressSnapshot::TransferProgressSnapshot(const TransferJobs& jobs) {
    for (const TransferJob& job : jobs) {
        const QByteArray source = NativePath::encode(job.source);
        struct stat st;
        if (lstat(source.constData(), &st) != 0) continue; // unreadable now: it drops out of the weights
        add(S_ISREG(st.st_mode), st.st_size, job.destination);
        if (!S_ISDIR(st.st_mode)) continue;
        const int folder = open(source.constData(), O_RDONLY | O_DIRECTORY | O_NOFOLLOW | O_CLOEXEC);
        if (folder >= 0) addTree(folder, job.destination);
    }
    qint64 weights = 0;
    for (const Item& item : list)
        weights += item.weight;
    sum = std::max<qint64>(1, weights);
}

void TransferProgressSnapshot::add(bool regular, qint64 size, const QString& destination) {
    list.push_back({destination, regular ? std::max<qint64>(1, size) : 1, regular});
    native.push_back(NativePath::encode(destination));
}

// Takes over `top`. Links are never entered, so a link is one item and its target is never weighed. The
// open folders wait on a stack of their own, so no depth of tree can overflow the thread's.
void TransferProgressSnapshot::addTree(int top, const QString& destination) {
    std::vector<std::pair<DIR*, QString>> open;
    const auto enter = [&open](int fd, const QString& path) {
        if (DIR* dir = fdopendir(fd))
            open.emplace_back(dir, path);
        else
            close(fd);
    };
    enter(top, destination);
    while (!open.empty()) {
        DIR* dir = open.back().first;
        const dirent* d = readdir(dir);
        if (!d) {
            closedir(dir);
            open.pop_back();
            continue;
        }
        const char* n = d->d_name;
        struct stat st;
        if ((n[0] == '.' && (n[1] == 0 || (n[1] == '.' && n[2] == 0))) ||
            fstatat(dirfd(dir), n, &st, AT_SYMLINK_NOFOLLOW) != 0)
            continue;
        const QString path = open.back().second + u'/' + NativePath::decode(n);
        add(S_ISREG(st.st_mode), st.st_size, path);
        if (!S_ISDIR(st.st_mode)) continue;
        const int sub = openat(dirfd(dir), n, O_RDONLY | O_DIRECTORY | O_NOFOLLOW | O_CLOEXEC);
        if (sub >= 0) enter(sub, path);
    }
}

double TransferProgressSnapshot::fraction() const {
    qint64 done = 0;
    for (size_t i = 0; i < list.size(); ++i) {
        const Item& item = list[i];
        struct stat st;
        if (lstat(native[i].constData(), &st) != 0) continue;
        // Being there counts one unit, which is all an empty file weighs, so such a run moves item by item.
        done += item.regular ? std::clamp<qint64>(st.st_size, 1, item.weight) : item.weight;
    }
    return std::min(0.99, double(done) / double(sum));
}

} // namespace orvane
