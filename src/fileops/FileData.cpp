#include "fileops/FileData.h"

#include <algorithm>
#include <cerrno>
#include <memory>
#include <unistd.h>

#if defined(__linux__)
#include <linux/fs.h>
#include <sys/ioctl.h>
#endif

namespace orvane {

namespace {

constexpr size_t bufferSize = size_t(1) << 20;
// The kernel's copy goes in pieces this big, so a stop is seen within one of them.
constexpr off_t rangeChunk = off_t(8) << 20;

thread_local const std::atomic<bool>* stopFlag = nullptr;

bool stopNow() {
    if (!FileData::stopped()) return false;
    errno = ECANCELED;
    return true;
}

char* buffer() {
    thread_local std::unique_ptr<char[]> block(new char[bufferSize]);
    return block.get();
}

bool writeAll(int out, const char* data, size_t length, off_t offset) {
    for (size_t done = 0; done < length;) {
        const ssize_t w = pwrite(out, data + done, length - done, offset + off_t(done));
        if (w < 0) {
            if (errno == EINTR) continue;
            return false;
        }
        done += size_t(w);
    }
    return true;
}

// Fewer blocks than bytes: some of the file is holes.
bool hasHoles(const struct stat& st) {
    return off_t(st.st_blocks) * 512 < st.st_size;
}

} // namespace

FileData::StopWhen::StopWhen(const std::atomic<bool>* flag) : before(stopFlag) {
    stopFlag = flag;
}

FileData::StopWhen::~StopWhen() {
    stopFlag = before;
}

bool FileData::stopped() {
    return stopFlag && stopFlag->load(std::memory_order_relaxed);
}

bool FileData::copy(int in, int out, const struct stat& st) {
    if (st.st_size == 0) return toEnd(in, out); // a size of 0 may be a file that has no size to tell
#if defined(__linux__)
    if (!cloneUnsupported) {
        if (ioctl(out, FICLONE, in) == 0) return true;
        cloneUnsupported = true;
    }
#endif
    if (hasHoles(st)) return sparse(in, out, st.st_size);
    return range(in, out, 0, st.st_size);
}

// Copies only the data between the holes and sets the size last, so the copy's holes are the source's.
bool FileData::sparse(int in, int out, off_t size) {
    off_t offset = 0;
    while (offset < size) {
        const off_t data = lseek(in, offset, SEEK_DATA);
        if (data < 0) {
            if (errno == ENXIO) break;                       // a hole to the end
            if (offset == 0) return range(in, out, 0, size); // no SEEK_DATA here: copy it all
            return false;
        }
        off_t hole = lseek(in, data, SEEK_HOLE);
        if (hole < 0) return false;
        hole = std::min(hole, size);
        if (data >= hole) break;
        if (!range(in, out, data, hole - data)) return false;
        offset = hole;
    }
    return ftruncate(out, size) == 0;
}

bool FileData::range(int in, int out, off_t offset, off_t length) {
#if defined(__linux__)
    if (!rangeUnsupported) {
        off_t from = offset, to = offset;
        const off_t end = offset + length;
        ssize_t n = 0;
        bool stop = false;
        while (from < end && !(stop = stopNow()) &&
               (n = copy_file_range(in, &from, out, &to, size_t(std::min(end - from, rangeChunk)), 0)) > 0) {
        }
        if (stop) return false;
        if (from >= end || n == 0) return true; // at the end, or the file shrank while it was copied
        if (from > offset || (errno != EXDEV && errno != EINVAL && errno != ENOSYS && errno != EOPNOTSUPP))
            return false;
        rangeUnsupported = true;
    }
#endif
    return buffered(in, out, offset, length);
}

bool FileData::buffered(int in, int out, off_t offset, off_t length) {
    char* data = buffer();
    const off_t end = offset + length;
    while (offset < end) {
        if (stopNow()) return false;
        const ssize_t n = pread(in, data, size_t(std::min<off_t>(end - offset, off_t(bufferSize))), offset);
        if (n < 0 && errno == EINTR) continue;
        if (n < 0) return false;
        if (n == 0) break; // the file shrank while it was copied: what was there has arrived
        if (!writeAll(out, data, size_t(n), offset)) return false;
        offset += n;
    }
    return true;
}

bool FileData::toEnd(int in, int out) {
    char* data = buffer();
    off_t offset = 0;
    for (;;) {
        if (stopNow()) return false;
        const ssize_t n = read(in, data, bufferSize);
        if (n < 0 && errno == EINTR) continue;
        if (n < 0) return false;
        if (n == 0) return true;
        if (!writeAll(out, data, size_t(n), offset)) return false;
        offset += n;
    }
}

} // namespace orvane
