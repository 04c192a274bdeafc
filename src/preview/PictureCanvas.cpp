#include "preview/PictureCanvas.h"

#include <QPainter>

namespace orvane {

PictureCanvas::PictureCanvas(QWidget* parent) : QWidget(parent) {
    setSizePolicy(QSizePolicy::Ignored, QSizePolicy::Ignored);
}

void PictureCanvas::setPicture(const QImage& picture) {
    image = picture;
    update();
}

QRect PictureCanvas::pictureRect() const {
    if (image.isNull()) return {};
    const QSizeF natural = QSizeF(image.size()) / devicePixelRatioF();
    QSizeF shown = natural;
    if (shown.width() > width() || shown.height() > height())
        shown.scale(QSizeF(size()), Qt::KeepAspectRatio);
    QRectF area(QPointF(), shown);
    area.moveCenter(QRectF(rect()).center());
    return area.toRect();
}

void PictureCanvas::paintEvent(QPaintEvent*) {
    if (image.isNull()) return;
    QPainter painter(this);
    painter.setRenderHint(QPainter::SmoothPixmapTransform);
    painter.drawImage(pictureRect(), image);
}

} // namespace orvane
