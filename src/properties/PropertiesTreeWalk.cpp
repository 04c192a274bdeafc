#include "properties/PropertiesTreeWalk.h"

#include <cerrno>
#include <chrono>
#include <cstring>
#include <dirent.h>
#include <fcntl.h>
#include <sys/stat.h>
#include <sys/syscall.h>
#include <sys/sysmacros.h>
#include <unistd.h>

namespace orvane {

namespace {

struct LinuxDirent64 {
    ino64_t inode;
    off64_t offset;
    unsigned short length;
    unsigned char type;
    char name[];
};

constexpr size_t bufferSize = 64 * 1024;
constexpr unsigned statMask = STATX_TYPE | STATX_SIZE | STATX_BLOCKS | STATX_INO | STATX_NLINK;
constexpr int statFlags = AT_SYMLINK_NOFOLLOW | AT_NO_AUTOMOUNT | AT_STATX_DONT_SYNC;
constexpr int openFlags = O_RDONLY | O_DIRECTORY | O_NOFOLLOW | O_CLOEXEC;
// Past this many kept descriptors (a very deep tree) subfolders are opened by their paths instead.
constexpr int maxHandles = 256;
// How long the caller waits for the helper's folders before it asks about cancellation again.
constexpr std::chrono::milliseconds idlePoll(5);

// Each count has one writer, so a plain store is enough; readers only want a recent value.
void bump(std::atomic<qint64>& count, qint64 by) {
    count.store(count.load(std::memory_order_relaxed) + by, std::memory_order_relaxed);
}

qint64 read(const std::atomic<qint64>& count) {
    return count.load(std::memory_order_relaxed);
}

bool isDotOrDotDot(const char* n) {
    return n[0] == '.' && (n[1] == 0 || (n[1] == '.' && n[2] == 0));
}

std::string joined(const std::string& folder, const char* name) {
    std::string path = folder;
    if (path.empty() || path.back() != '/') path += '/';
    path += name;
    return path;
}

} // namespace

PropertiesTreeWalk::Handle::~Handle() {
    close(fd);
}

PropertiesTreeWalk::PropertiesTreeWalk(Poll poll) : poll(std::move(poll)) {}

PropertiesTreeWalk::~PropertiesTreeWalk() {
    {
        std::lock_guard guard(lock);
        quitting = true;
    }
    wake.notify_all();
    if (helper.joinable()) helper.join();
}

bool PropertiesTreeWalk::walk(const QByteArray& folder, std::vector<std::unique_ptr<Mark>>* toMark) {
    marks = toMark && !toMark->empty() ? toMark : nullptr;
    stopped = false;
    {
        std::lock_guard guard(lock);
        walking = true;
        ++active;
    }
    // The caller reads the top folder itself, then shares what it found there.
    Folder top{nullptr, folder.toStdString(), 0};
    if (!readFolder(top, workers[0], true)) stopped = true;
    finish(workers[0]);
    if (!helper.joinable()) helper = std::thread(&PropertiesTreeWalk::helperLoop, this);
    drain(workers[0], true);
    {
        // After a stop the helper is at most one item away from idle.
        std::unique_lock guard(lock);
        wake.wait(guard, [this] { return active == 0; });
        walking = false;
        stack.clear();
    }
    marks = nullptr;
    return !stopped;
}

bool PropertiesTreeWalk::firstSight(dev_t device, ino_t inode) {
    std::lock_guard guard(seenLock);
    return seen.insert({device, inode}).second;
}

PropertiesSizeSummary PropertiesTreeWalk::counted() const {
    PropertiesSizeSummary sum;
    for (const Worker& w : workers) {
        sum.logicalBytes += read(w.counts.logical);
        sum.allocatedBytes += read(w.counts.allocated);
        sum.files += read(w.counts.files);
        sum.folders += read(w.counts.folders);
        sum.unreadable += read(w.counts.unreadable);
        sum.unavailableAllocation += read(w.counts.unavailable);
    }
    return sum;
}

void PropertiesTreeWalk::helperLoop() {
    for (;;) {
        {
            std::unique_lock guard(lock);
            wake.wait(guard, [this] { return quitting || (walking && !stopped && !stack.empty()); });
            if (quitting) return;
        }
        drain(workers[1], false);
    }
}

void PropertiesTreeWalk::drain(Worker& me, bool caller) {
    Folder folder;
    while (take(folder, caller)) {
        const bool complete = readFolder(folder, me, caller);
        if (!complete) stopped = true;
        finish(me);
        if (!complete) break;
    }
}

bool PropertiesTreeWalk::take(Folder& folder, bool caller) {
    std::unique_lock guard(lock);
    for (;;) {
        if (stopped) return false;
        if (!stack.empty()) {
            folder = std::move(stack.back());
            stack.pop_back();
            ++active;
            return true;
        }
        // The helper goes back to sleep; the caller stays until no folder can come any more.
        if (!caller || active == 0) return false;
        wake.wait_for(guard, idlePoll);
        guard.unlock();
        if (stopNow(true)) return false;
        guard.lock();
    }
}

void PropertiesTreeWalk::finish(Worker& me) {
    {
        std::lock_guard guard(lock);
        for (Folder& found : me.found)
            stack.push_back(std::move(found));
        --active;
    }
    me.found.clear();
    wake.notify_all();
}

bool PropertiesTreeWalk::stopNow(bool caller) {
    if (stopped.load(std::memory_order_relaxed)) return true;
    if (poll(caller)) {
        stopped = true;
        wake.notify_all();
        return true;
    }
    return false;
}

int PropertiesTreeWalk::openFolder(Folder& folder) {
    const int fd = folder.parent ? openat(folder.parent->fd, folder.path.c_str() + folder.nameAt, openFlags)
                                 : open(folder.path.c_str(), openFlags);
    folder.parent.reset(); // the parent closes once its last subfolder is open
    return fd;
}

// Hands the folder's descriptor to the subfolders found in it since `from`, or closes it when there
// are none (or too many descriptors are open already).
void PropertiesTreeWalk::shareHandle(Worker& me, int fd, size_t from) {
    if (from == me.found.size() || handles.load(std::memory_order_relaxed) >= maxHandles) {
        close(fd);
        return;
    }
    ++handles;
    auto handle = std::shared_ptr<const Handle>(new Handle(fd), [this](const Handle* h) {
        --handles;
        delete h;
    });
    for (size_t i = from; i < me.found.size(); ++i)
        me.found[i].parent = handle;
}

bool PropertiesTreeWalk::readFolder(Folder& folder, Worker& me, bool caller) {
    const int fd = openFolder(folder);
    if (fd < 0) {
        bump(me.counts.unreadable, 1);
        return true;
    }
    struct stat st;
    if (fstat(fd, &st) == 0 && !firstSight(st.st_dev, st.st_ino)) {
        if (folder.nameAt > 0) bump(me.counts.folders, -1); // counted when it was found, before it was known
        close(fd);
        return true;
    }
    if (me.buffer.empty()) me.buffer.resize(bufferSize);
    bool complete = true;
    bool searchable = false; // once one item could be looked up, every folder in here can be
    const size_t firstFound = me.found.size();
    for (;;) {
        const long n = syscall(SYS_getdents64, fd, me.buffer.data(), me.buffer.size());
        if (n < 0 && errno == EINTR) continue;
        if (n < 0) bump(me.counts.unreadable, 1);
        if (n <= 0) break;
        for (long offset = 0; offset < n && complete;) {
            const auto* d = reinterpret_cast<const LinuxDirent64*>(me.buffer.data() + offset);
            offset += d->length;
            if (isDotOrDotDot(d->name)) continue;
            if (stopNow(caller))
                complete = false;
            else if (d->type == DT_DIR && searchable && !marks)
                countFolder(d->name, folder.path, me);
            else
                searchable = countItem(fd, d->name, folder.path, me) || searchable;
        }
        if (!complete) break;
    }
    shareHandle(me, fd, firstFound);
    return complete;
}

void PropertiesTreeWalk::countFolder(const char* name, const std::string& folder, Worker& me) {
    bump(me.counts.folders, 1);
    std::string path = joined(folder, name);
    const size_t nameAt = path.size() - strlen(name);
    me.found.push_back({nullptr, std::move(path), nameAt});
}

bool PropertiesTreeWalk::countItem(int dirfd, const char* name, const std::string& folder, Worker& me) {
    struct statx sx;
    if (statx(dirfd, name, statFlags, statMask, &sx) != 0 || !(sx.stx_mask & STATX_TYPE)) {
        bump(me.counts.unreadable, 1);
        return false;
    }
    if (marks) {
        const dev_t device = makedev(sx.stx_dev_major, sx.stx_dev_minor);
        for (const auto& mark : *marks)
            if (mark->inode == sx.stx_ino && mark->device == device && mark->path == joined(folder, name))
                mark->reached = true;
    }
    if (S_ISDIR(sx.stx_mode)) {
        countFolder(name, folder, me);
        return true;
    }
    if ((sx.stx_mask & STATX_NLINK) && sx.stx_nlink > 1 &&
        !firstSight(makedev(sx.stx_dev_major, sx.stx_dev_minor), sx.stx_ino))
        return true;
    bump(me.counts.files, 1);
    if (sx.stx_mask & STATX_SIZE)
        bump(me.counts.logical, qint64(sx.stx_size));
    else
        bump(me.counts.unreadable, 1);
    if (sx.stx_mask & STATX_BLOCKS)
        bump(me.counts.allocated, qint64(sx.stx_blocks) * 512);
    else
        bump(me.counts.unavailable, 1);
    return true;
}

} // namespace orvane
