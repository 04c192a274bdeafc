#include "kit/FolderTint.h"

#include <QPainter>
#include <QPainterPath>

namespace orvane {

namespace {

QColor blended(const QColor& color, const QColor& towards, double share) {
    return QColor::fromRgbF(float(color.redF() + (towards.redF() - color.redF()) * share),
                            float(color.greenF() + (towards.greenF() - color.greenF()) * share),
                            float(color.blueF() + (towards.blueF() - color.blueF()) * share));
}

void fill(QPainter& painter, const QRectF& rect, double radius, const QColor& color) {
    QPainterPath path;
    path.addRoundedRect(rect, radius, radius);
    painter.fillPath(path, color);
}

} // namespace

QIcon FolderTint::icon(const QColor& color) {
    QIcon icon;
    for (const int scale : {1, 2, 4, 8, 16}) {
        QPixmap pixmap(20 * scale, 18 * scale);
        pixmap.fill(Qt::transparent);
        QPainter painter(&pixmap);
        painter.setRenderHint(QPainter::Antialiasing);
        painter.scale(scale, scale);
        const QColor back = blended(color, Qt::black, 0.22);
        fill(painter, QRectF(1, 1, 8, 5), 2, back); // the tab
        fill(painter, QRectF(1, 3, 18, 11), 3, back);
        fill(painter, QRectF(1, 5, 18, 11), 2, color);
        painter.fillRect(QRectF(2, 11, 16, 1.5), blended(color, Qt::white, 0.28));
        painter.end();
        icon.addPixmap(pixmap);
    }
    return icon;
}

} // namespace orvane
