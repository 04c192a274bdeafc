#include "preview/TextPreview.h"

#include <QIODevice>
#include <QStringDecoder>

namespace orvane {

bool TextPreview::accepts(const QMimeType& type) const {
    return type.inherits(QStringLiteral("text/plain"));
}

PreviewContent TextPreview::load(const Source& source) const {
    PreviewContent content;
    const QByteArray bytes = source.file->read(limit);
    if (bytes.contains('\0')) return content;
    // A character cut by the limit is left out rather than shown as a stand-in.
    QStringDecoder utf8(QStringDecoder::Utf8);
    content.text = utf8.decode(bytes);
    if (content.text.isNull()) content.text = QStringLiteral("");
    content.path = source.path;
    return content;
}

} // namespace orvane
