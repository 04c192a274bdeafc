#pragma once

#include "media/DesktopThumbnailers.h"
#include "media/ThumbnailCache.h"

#include <QImage>
#include <QString>

namespace orvane {

// Makes one file's thumbnail on any thread: the shared cache first, then the picture read scaled
// (a JPEG decodes at a fraction of its size), then the desktop's thumbnailer for its type; what it
// makes goes back into the cache, and a failure is recorded so it is not tried again.
class ThumbnailMaker {
public:
    ThumbnailMaker(ThumbnailCache cache, DesktopThumbnailers thumbnailers);

    // By the name only, as the views ask while they scroll.
    static QString typeOf(const QString& path);
    static bool isImage(const QString& mime);
    static bool isVideo(const QString& mime) { return mime.startsWith(QLatin1String("video/")); }
    bool supports(const QString& path) const;

    QImage make(const QString& path) const;
    // The picture upright by its EXIF orientation, at most `side` pixels across; null when the file
    // is no picture or too large to decode.
    static QImage readImage(const QString& path, int side);

    const ThumbnailCache& cache() const { return store; }

private:
    ThumbnailCache store;
    DesktopThumbnailers thumbnailers;
};

} // namespace orvane
