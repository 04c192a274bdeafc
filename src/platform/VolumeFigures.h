#pragma once

#include <QString>
#include <optional>
#include <vector>

namespace orvane {

// What a file system says of its space, in bytes, counted as `df -B1` counts it.
struct VolumeFigures {
    qint64 total = 0;
    qint64 available = 0;    // what an ordinary user may still write
    qint64 used = 0;         // blocks in use; reserved blocks are neither used nor available
    bool unreadable = false; // the system refused at once (a FUSE mount whose server has gone)

    // Asks every volume at once and waits at most `waitMs` in all. A volume that does not answer in
    // time (a hung network mount) has no figures; its question is left to finish on its own thread.
    static std::vector<std::optional<VolumeFigures>> read(const std::vector<QString>& paths, int waitMs);
};

} // namespace orvane
