#pragma once

#include <QSize>
#include <QString>
#include <optional>

namespace orvane {

// The size a video shows at, read from its container's header by libavformat in this process (a
// child process per file costs about 50 ms, a read here about 1 ms), turned by its display matrix,
// so a portrait video is taller than wide.
class VideoSize {
public:
    static std::optional<QSize> read(const QString& path);
};

} // namespace orvane
