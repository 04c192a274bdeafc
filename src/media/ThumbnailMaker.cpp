#include "media/ThumbnailMaker.h"

#include "media/MediaFile.h"
#include "platform/NativePath.h"

#include <QFile>
#include <QImageReader>
#include <QMimeDatabase>
#include <sys/stat.h>

namespace orvane {

ThumbnailMaker::ThumbnailMaker(ThumbnailCache cache, DesktopThumbnailers thumbnailers)
    : store(std::move(cache)), thumbnailers(std::move(thumbnailers)) {}

QString ThumbnailMaker::typeOf(const QString& path) {
    static const QMimeDatabase types;
    return types.mimeTypeForFile(path.mid(path.lastIndexOf(u'/') + 1), QMimeDatabase::MatchExtension).name();
}

bool ThumbnailMaker::isImage(const QString& mime) {
    static const QList<QByteArray> readable = QImageReader::supportedMimeTypes();
    return mime.startsWith(QLatin1String("image/")) && readable.contains(mime.toLatin1());
}

bool ThumbnailMaker::supports(const QString& path) const {
    const QString mime = typeOf(path);
    return isImage(mime) || isVideo(mime) || thumbnailers.handles(mime);
}

QImage ThumbnailMaker::readImage(const QString& path, int side) {
    const auto file = MediaFile::open(path);
    if (!file) return {};
    QImageReader reader(file.get());
    reader.setAutoTransform(true);
    const QSize full = reader.size();
    // Past the reader's allocation limit a picture is refused rather than decoded whole.
    if (full.isValid() && (full.width() > side || full.height() > side))
        reader.setScaledSize(full.scaled(side, side, Qt::KeepAspectRatio).expandedTo(QSize(1, 1)));
    QImage image = reader.read();
    if (image.width() > side || image.height() > side) // a format that cannot scale while decoding
        image = image.scaled(side, side, Qt::KeepAspectRatio, Qt::SmoothTransformation);
    return image;
}

QImage ThumbnailMaker::make(const QString& path) const {
    struct stat st;
    if (stat(NativePath::encode(path).constData(), &st) != 0 || !S_ISREG(st.st_mode)) return {};
    const qint64 modified = st.st_mtim.tv_sec;
    QImage image = store.read(path, modified);
    if (!image.isNull() || store.failed(path, modified)) return image;
    const QString mime = typeOf(path);
    if (isImage(mime)) image = readImage(path, ThumbnailCache::side);
    if (image.isNull() && st.st_size > 0) image = thumbnailers.make(path, mime, ThumbnailCache::side);
    if (image.isNull())
        store.recordFailure(path, modified);
    else
        store.write(path, modified, st.st_size, mime, image);
    return image;
}

} // namespace orvane
