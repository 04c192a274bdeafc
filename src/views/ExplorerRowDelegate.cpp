#include "views/ExplorerRowDelegate.h"

#include "kit/ExplorerCorners.h"
#include "kit/ExplorerFont.h"
#include "kit/Palette.h"

#include <QIcon>
#include <QPainter>

namespace orvane {

namespace {

// Radii of a plain row and of a row on glass.
constexpr qreal itemRadius = ExplorerCorners::item;
constexpr qreal surfaceRadius = ExplorerCorners::surface;

QColor white(int alpha) {
    return QColor(255, 255, 255, alpha);
}

QColor accentAlpha(qreal alpha) {
    QColor color = Palette::accent();
    color.setAlphaF(float(alpha));
    return color;
}

// Brushes and pens of the row marks, made once rather than on every painted row.
struct RowInk {
    QBrush hover{Palette::hover()};
    QBrush hoverOnSelection{white(10)};
    QBrush plainSelected{Palette::selection()};
    QBrush plainSelectedInactive{Palette::selectionInactive()};
    QPen plainRim{QBrush(accentAlpha(0.6)), 1};
    QPen plainRimInactive{QBrush(accentAlpha(0.22)), 1};
    QBrush glassSelected{QColor::fromRgbF(0.46f, 0.4f, 0.92f, 0.23f)};
    QBrush glassSelectedInactive{QColor::fromRgbF(0.46f, 0.4f, 0.92f, 0.13f)};
    QPen glassRim{QBrush(QColor::fromRgbF(1, 1, 1, 0.16f)), 0.5};
    QPen ring{QBrush(Palette::muted()), 1};
    QPen none{Qt::NoPen};
    QBrush empty{Qt::NoBrush};

    static const RowInk& shared() {
        static const RowInk ink;
        return ink;
    }
    const QBrush& selection(const ExplorerRowDelegate::RowState& state) const {
        if (state.glassBackground) return state.emphasised ? glassSelected : glassSelectedInactive;
        return state.emphasised ? plainSelected : plainSelectedInactive;
    }
};

void fillShape(QPainter* painter, const QRectF& shape, qreal radius, const QBrush& brush) {
    painter->setPen(RowInk::shared().none);
    painter->setBrush(brush);
    painter->drawRoundedRect(shape, radius, radius);
}

void strokeShape(QPainter* painter, const QRectF& shape, qreal radius, const QPen& pen) {
    painter->setPen(pen);
    painter->setBrush(RowInk::shared().empty);
    painter->drawRoundedRect(shape, radius, radius);
}

} // namespace

ExplorerRowDelegate::ExplorerRowDelegate(QObject* parent)
    : QStyledItemDelegate(parent), font(explorerFont()), inkPen(Palette::ink()), mutedPen(Palette::muted()) {}

void ExplorerRowDelegate::paintRow(QPainter* painter, const QRect& rowRect, const RowState& state) {
    const RowInk& ink = RowInk::shared();
    const QPen oldPen = painter->pen();
    const QBrush oldBrush = painter->brush();
    const bool antialiased = painter->testRenderHint(QPainter::Antialiasing);
    painter->setRenderHint(QPainter::Antialiasing);
    const QRectF shape = QRectF(rowRect).adjusted(3, 2, -3, -2);
    const qreal radius = state.glassBackground ? surfaceRadius : itemRadius;
    const bool hovered = state.hoverEnabled && state.hovering;
    if (state.selected) {
        fillShape(painter, shape, radius, ink.selection(state));
        if (state.glassBackground)
            strokeShape(painter, shape, radius, ink.glassRim);
        else
            strokeShape(painter, shape.adjusted(0.5, 0.5, -0.5, -0.5), radius,
                        state.emphasised ? ink.plainRim : ink.plainRimInactive);
        if (hovered) fillShape(painter, shape, radius, ink.hoverOnSelection);
    } else if (hovered) {
        fillShape(painter, shape, radius, ink.hover);
    }
    if (state.keyboardFocused)
        strokeShape(painter, QRectF(rowRect).adjusted(3.5, 2.5, -3.5, -2.5), itemRadius, ink.ring);
    painter->setRenderHint(QPainter::Antialiasing, antialiased);
    painter->setPen(oldPen);
    painter->setBrush(oldBrush);
}

QRect ExplorerRowDelegate::accessoryRect(const QRect& cellRect) {
    return QRect(cellRect.right() + 1 - accessoryRight - accessorySize,
                 cellRect.top() + (cellRect.height() - accessorySize) / 2, accessorySize, accessorySize);
}

QRect ExplorerRowDelegate::textRect(const QRect& cellRect, bool hasImage, bool hasAccessory) {
    const int left =
        cellRect.left() + (hasImage ? imageLeft + imageSize + textAfterImage : textLeftWithoutImage);
    const int right =
        hasAccessory ? accessoryRect(cellRect).left() - textRight : cellRect.right() + 1 - textRight;
    return QRect(left, cellRect.top(), qMax(0, right - left), cellRect.height());
}

void ExplorerRowDelegate::paint(QPainter* painter, const QStyleOptionViewItem& option,
                                const QModelIndex& index) const {
    const QRect cell = option.rect;
    const qreal opacity = painter->opacity();
    if (isDimmedRow && isDimmedRow(index.row())) painter->setOpacity(opacity * dimmedOpacity);
    const QVariant decoration = index.data(Qt::DecorationRole);
    const bool hasImage = decoration.userType() == QMetaType::QIcon;
    if (hasImage) {
        const QRect image(cell.left() + imageLeft, cell.top() + (cell.height() - imageSize) / 2, imageSize,
                          imageSize);
        painter->drawPixmap(image, iconPixmap(*static_cast<const QIcon*>(decoration.constData()),
                                              painter->device()->devicePixelRatioF()));
    }
    const QRect area = textRect(cell, hasImage, hasAccessory && hasAccessory(index));
    const QVariant alignment = index.data(Qt::TextAlignmentRole);
    const Qt::Alignment align = alignment.isValid() ? Qt::Alignment(alignment.toInt()) : Qt::AlignLeft;
    painter->setPen(index.column() == primaryColumn ? inkPen : mutedPen);
    drawText(painter, area, index.data(Qt::DisplayRole).toString(), align);
    painter->setOpacity(opacity);
}

QPixmap ExplorerRowDelegate::iconPixmap(const QIcon& icon, qreal ratio) const {
    // Icons are few (one per file type), so their pixmaps are kept; thumbnails would be many, so
    // the store starts over when it grows large.
    if (ratio != pixmapRatio) {
        pixmaps.clear();
        pixmapRatio = ratio;
    }
    const auto found = pixmaps.constFind(icon.cacheKey());
    if (found != pixmaps.constEnd()) return *found;
    if (pixmaps.size() >= 1024) pixmaps.clear();
    QPixmap pixmap = icon.pixmap(QSize(imageSize, imageSize), ratio);
    pixmaps.insert(icon.cacheKey(), pixmap);
    return pixmap;
}

void ExplorerRowDelegate::drawText(QPainter* painter, const QRect& rect, const QString& text,
                                   Qt::Alignment alignment) const {
    if (text.isEmpty() || rect.width() <= 0) return;
    if (painter->font() != font) painter->setFont(font);
    const QFontMetrics metrics(font);
    int width = metrics.horizontalAdvance(text);
    const bool fits = width <= rect.width();
    const QString shown = fits ? text : metrics.elidedText(text, Qt::ElideRight, rect.width());
    if (!fits) width = metrics.horizontalAdvance(shown);
    const int x = (alignment & Qt::AlignRight) ? rect.right() + 1 - width : rect.left();
    const int baseline = rect.top() + (rect.height() - metrics.height()) / 2 + metrics.ascent();
    painter->drawText(QPoint(x, baseline), shown);
}

QSize ExplorerRowDelegate::sizeHint(const QStyleOptionViewItem& option, const QModelIndex& index) const {
    const bool hasImage = index.data(Qt::DecorationRole).userType() == QMetaType::QIcon;
    const int lead = hasImage ? imageLeft + imageSize + textAfterImage : textLeftWithoutImage;
    const int width = QFontMetrics(font).horizontalAdvance(index.data(Qt::DisplayRole).toString());
    return QSize(lead + width + textRight, option.rect.height() > 0 ? option.rect.height() : 32);
}

} // namespace orvane
