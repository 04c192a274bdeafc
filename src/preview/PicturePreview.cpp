#include "preview/PicturePreview.h"

#include <QImageReader>

namespace orvane {

bool PicturePreview::accepts(const QMimeType& type) const {
    static const QList<QByteArray> readable = QImageReader::supportedMimeTypes();
    if (readable.contains(type.name().toLatin1())) return true;
    for (const QString& alias : type.aliases())
        if (readable.contains(alias.toLatin1())) return true;
    return false;
}

PreviewContent PicturePreview::load(const Source& source) const {
    QImageReader reader(source.file);
    reader.setAutoTransform(true);
    // The scaled size is taken before the turn, so a quarter turn swaps the bound.
    QSize bound = source.bound;
    if (reader.transformation() & QImageIOHandler::TransformationRotate90) bound.transpose();
    const QSize size = reader.size();
    if (size.isValid() && (size.width() > bound.width() || size.height() > bound.height()))
        reader.setScaledSize(size.scaled(bound, Qt::KeepAspectRatio));
    PreviewContent content;
    content.path = source.path;
    content.picture = reader.read();
    return content;
}

} // namespace orvane
