#pragma once

#include <QByteArray>
#include <QImage>
#include <QString>

namespace orvane {

// The desktop's shared thumbnail folder, $XDG_CACHE_HOME/thumbnails, kept by the freedesktop rules
// so every file manager on the desktop uses the pictures the others made. A picture is found by the
// MD5 of its file's URI and is valid only while its Thumb::URI and Thumb::MTime match the file.
class ThumbnailCache {
public:
    // The side of what Orvane writes: the standard's "large" folder.
    static constexpr int side = 256;

    // The folder holding normal/, large/ and fail/; empty takes it from the environment.
    explicit ThumbnailCache(const QString& folder = {});

    QString folder() const { return base; }
    // "file://" and the path's exact bytes percent-encoded as the desktop's file managers do.
    static QByteArray uri(const QString& path);
    // The name a picture of `uri` has in each size folder.
    static QString fileName(const QByteArray& uri);
    // Whether `path` lies inside the thumbnail folder, whose files never get thumbnails written.
    bool holds(const QString& path) const;

    // A valid picture of the file from any program, largest folder first; null when there is none.
    QImage read(const QString& path, qint64 modified) const;
    // Whether Orvane already failed on this version of the file.
    bool failed(const QString& path, qint64 modified) const;
    bool write(const QString& path, qint64 modified, qint64 size, const QString& mime, QImage image) const;
    bool recordFailure(const QString& path, qint64 modified) const;
    QString failFolder() const;

private:
    QImage readValid(const QString& file, const QByteArray& uri, qint64 modified) const;
    bool store(const QString& folder, const QString& name, const QImage& image) const;

    QString base;
};

} // namespace orvane
