#pragma once

#include <atomic>
#include <sys/stat.h>

namespace orvane {

// The bytes of one regular file, from one open descriptor to another, as the file system allows best: a
// reflink, the kernel's own copy, or large buffers. Holes stay holes, and a file whose size reads as 0
// (/proc, some FUSE files) is read to its end. One object serves a whole tree, remembering what the file
// systems refused so it is not asked again for every file.
class FileData {
public:
    // `st` is the source's status from its open descriptor. False with errno set.
    bool copy(int in, int out, const struct stat& st);

    // While one lives, copies on this thread stop between chunks once `flag` is set, failing with
    // ECANCELED, so a cancelled transfer ends inside a big file too.
    class StopWhen {
    public:
        explicit StopWhen(const std::atomic<bool>* flag);
        ~StopWhen();
        StopWhen(const StopWhen&) = delete;
        StopWhen& operator=(const StopWhen&) = delete;

    private:
        const std::atomic<bool>* before;
    };
    static bool stopped();

private:
    bool sparse(int in, int out, off_t size);
    bool range(int in, int out, off_t offset, off_t length);
    static bool buffered(int in, int out, off_t offset, off_t length);
    static bool toEnd(int in, int out);

    bool cloneUnsupported = false;
    bool rangeUnsupported = false;
};

} // namespace orvane
