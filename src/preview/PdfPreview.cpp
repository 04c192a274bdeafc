#include "preview/PdfPreview.h"

#include <QPainter>
#include <QPdfDocument>

namespace orvane {

bool PdfPreview::accepts(const QMimeType& type) const {
    return type.inherits(QStringLiteral("application/pdf"));
}

PreviewContent PdfPreview::load(const Source& source) const {
    PreviewContent content;
    QPdfDocument document;
    document.load(source.file);
    if (document.status() != QPdfDocument::Status::Ready || document.pageCount() < 1) return content;
    const QSize size = document.pagePointSize(0).scaled(source.bound, Qt::KeepAspectRatio).toSize();
    if (size.isEmpty()) return content;
    const QImage page = document.render(0, size);
    if (page.isNull()) return content;
    // A page without a background of its own is paper, not the pane behind it.
    content.picture = QImage(page.size(), QImage::Format_RGB32);
    content.picture.fill(Qt::white);
    QPainter(&content.picture).drawImage(0, 0, page);
    content.path = source.path;
    return content;
}

} // namespace orvane
