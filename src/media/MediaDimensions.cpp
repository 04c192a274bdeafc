#include "media/MediaDimensions.h"

#include "media/MediaFile.h"
#include "media/MediaThumbnails.h"
#include "media/VideoSize.h"

#include <QFile>
#include <QImageReader>
#include <cmath>

namespace orvane {

namespace {

const QString none = QStringLiteral("—");

std::optional<QSize> imageSize(const QString& path) {
    const auto file = MediaFile::open(path);
    if (!file) return std::nullopt;
    QImageReader reader(file.get());
    const QSize size = reader.size();
    if (!size.isValid()) return std::nullopt;
    return reader.transformation().testFlag(QImageIOHandler::TransformationRotate90) ? size.transposed()
                                                                                     : size;
}

} // namespace

MediaDimensions::MediaDimensions(QObject* parent) : QObject(parent), texts(cacheLimit) {
    pool.setMaxThreadCount(readers);
}

MediaDimensions::~MediaDimensions() {
    pool.clear();
    pool.waitForDone();
}

bool MediaDimensions::readable(const Entry& entry) {
    const QString mime = ThumbnailMaker::typeOf(entry.location);
    return ThumbnailMaker::isImage(mime) || ThumbnailMaker::isVideo(mime);
}

std::optional<QString> MediaDimensions::cached(const Entry& entry) const {
    if (entry.directory) return QString();
    if (entry.isPhone() || !readable(entry)) return none;
    if (const QString* text = texts.object(MediaThumbnails::key(entry))) return *text;
    return std::nullopt;
}

void MediaDimensions::request(const Entry& entry, Completion completion) {
    if (const auto known = cached(entry)) return completion(*known);
    const QString key = MediaThumbnails::key(entry);
    auto waiter = waiting.find(key);
    if (waiter != waiting.end()) return waiter->push_back(std::move(completion));
    waiting[key].push_back(std::move(completion));
    pool.start([this, key, path = entry.location] {
        const QString text = read(path).value_or(none);
        QMetaObject::invokeMethod(
            this, [this, key, path, text] { finished(key, path, text); }, Qt::QueuedConnection);
    });
}

void MediaDimensions::finished(const QString& key, const QString& location, const QString& text) {
    texts.insert(key, new QString(text)); // "—" too, so a failed file is read once
    for (const Completion& completion : waiting.take(key))
        completion(text);
    emit arrived(location);
}

std::optional<QString> MediaDimensions::read(const QString& path) {
    if (const auto size = imageSize(path)) return format(*size);
    if (!ThumbnailMaker::isVideo(ThumbnailMaker::typeOf(path))) return std::nullopt;
    if (const auto size = VideoSize::read(path)) return format(*size);
    return std::nullopt;
}

std::optional<QString> MediaDimensions::format(QSizeF size) {
    const double width = std::fabs(size.width()), height = std::fabs(size.height());
    if (!std::isfinite(width) || !std::isfinite(height) || width < 1 || height < 1) return std::nullopt;
    return QString::number(std::lround(width)) + QStringLiteral(" × ") + QString::number(std::lround(height));
}

} // namespace orvane
