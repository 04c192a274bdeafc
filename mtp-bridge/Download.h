#pragma once

#include <string>

namespace orvane {

// Where a "get" writes: a file without a name in the destination's folder, which is given its name
// only once every byte has arrived. A transfer cut off by anything, the bridge's own death included,
// leaves nothing at the destination. Where the file system has no unnamed files, a hidden temporary
// name stands in and is renamed at the end; either way nothing already there is ever replaced.
class Download {
public:
    explicit Download(std::string path);
    ~Download(); // discards what was not committed
    Download(const Download&) = delete;
    Download& operator=(const Download&) = delete;

    // Answers an empty text, or the error to show.
    std::string open();
    int fd() const { return descriptor; }
    std::string commit();

private:
    std::string failure(int code) const;

    std::string path;
    std::string temporary; // empty for an unnamed file
    int descriptor = -1;
    bool committed = false;
};

} // namespace orvane
