#pragma once

#include <QString>

namespace orvane {

// A file's name as Qt's media classes and child processes can carry it. Both turn a byte that is
// not UTF-8 into U+FFFD and so name another file; such a path is reached through a link with a plain
// name in a private folder, which lives as long as this object.
class MediaPath {
public:
    explicit MediaPath(const QString& path);
    ~MediaPath();
    MediaPath(const MediaPath&) = delete;
    MediaPath& operator=(const MediaPath&) = delete;

    const QString& original() const { return source; }
    // The path to hand over; empty if the link could not be made.
    const QString& usable() const { return carried; }

private:
    QString source;
    QString carried;
    QString folder;
};

} // namespace orvane
