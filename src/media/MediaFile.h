#pragma once

#include <QString>
#include <memory>

class QFile;

namespace orvane {

// A file opened by the exact bytes of its path, for readers that take a device. Only regular files
// open: a pipe or a device named like a picture must never block a reader.
class MediaFile {
public:
    static std::unique_ptr<QFile> open(const QString& path);
    // Seconds since 1970 of the last change, 0 when the file cannot be asked.
    static qint64 modified(const QString& path);
    // Makes each missing folder of `path` with mode 0700.
    static bool makeFolders(const QString& path);
};

} // namespace orvane
