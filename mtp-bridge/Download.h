#pragma once

#include <string>

namespace orvane {

// Where a "get" writes: a file without a name in the destination's folder, which is given its name
// only once every byte has arrived. A transfer cut off by anything, the bridge's own death included,
// leaves nothing at the destination. Where the file system has no unnamed files, a hidden temporary
// name stands in and is renamed at the end; either way nothing already there is ever replaced.
class Download {
public:
    explicit Download(const std::string& path);
    // A name inside an open folder, which is not taken over.
    Download(int folder, std::string name);
    ~Download(); // discards what was not committed
    Download(const Download&) = delete;
    Download& operator=(const Download&) = delete;

    // Answers an empty text, or the error to show.
    std::string open();
    int fd() const { return descriptor; }
    std::string commit();

    // The hidden name a file has while it arrives where unnamed files can't be made.
    static bool isPartName(const std::string& name);

private:
    std::string failure(int code) const;

    int folder;
    std::string name;
    std::string temporary; // empty for an unnamed file
    int descriptor = -1;
    bool committed = false;
};

} // namespace orvane
