#include "navigation/SidebarRowPainter.h"

#include "kit/Palette.h"
#include "kit/Symbols.h"

#include <QHash>
#include <QPainter>
#include <QPainterPath>

namespace orvane {

int SidebarRowPainter::indent(int depth, int width) {
    return qMax(0, qMin(depth * indentStep, width - keptWidth));
}

QColor SidebarRowPainter::tint(const QString& symbol) {
    static const QHash<QString, QColor> tints = {
        {QStringLiteral("house"), QColor(255, 159, 10)},
        {QStringLiteral("desktopcomputer"), QColor(100, 210, 255)},
        {QStringLiteral("arrow.down.circle"), QColor(64, 200, 190)},
        {QStringLiteral("photo"), QColor(64, 156, 255)},
        {QStringLiteral("film"), QColor(191, 90, 242)},
        {QStringLiteral("music.note"), QColor(255, 85, 140)},
    };
    return tints.value(symbol, Palette::accent());
}

namespace {

void paintSection(QPainter& p, const QRect& rect, const SidebarPlace& place, int depth) {
    QFont font = p.font();
    font.setPixelSize(10);
    font.setWeight(QFont::Medium);
    font.setLetterSpacing(QFont::AbsoluteSpacing, 0.6);
    p.setFont(font);
    p.setPen(Palette::muted());
    // A note inside the tree stands where the folders it speaks for would.
    const int left =
        depth > 0 ? SidebarRowPainter::indent(depth, rect.width()) + SidebarRowPainter::contentInset : 10;
    const QRect text = rect.adjusted(left, depth > 0 ? 0 : 8, -8, 0);
    p.drawText(text, Qt::AlignLeft | Qt::AlignVCenter,
               p.fontMetrics().elidedText(place.title.toUpper(), Qt::ElideRight, text.width()));
}

void paintBackground(QPainter& p, const QRect& rect, const SidebarRowPainter::State& state) {
    if (!state.selected && !state.hovered) return;
    QColor fill = Palette::accent();
    fill.setAlphaF(state.selected ? (state.focused ? 0.34f : 0.24f) : 0.10f);
    QPainterPath shape;
    shape.addRoundedRect(QRectF(rect.adjusted(4, 2, -4, -2)), 6, 6);
    p.fillPath(shape, fill);
}

} // namespace

void SidebarRowPainter::paint(QPainter& p, const QRect& rect, const SidebarPlace& place, int depth,
                              const State& state, const QIcon& icon) {
    p.save();
    if (place.isSection()) {
        paintSection(p, rect, place, depth);
        p.restore();
        return;
    }
    paintBackground(p, rect, state);
    const int left = rect.left() + indent(depth, rect.width()) + contentInset;
    const QRect iconRect(left, rect.center().y() - iconSize / 2 + 1, iconSize, iconSize);
    icon.paint(&p, iconRect);
    int right = rect.right() - 8;
    if (state.pinned) {
        const QRect pinRect(right - indicatorSize, rect.center().y() - indicatorSize / 2 + 1, indicatorSize,
                            indicatorSize);
        static const QIcon pinIcon = symbolIcon(QStringLiteral("pin.fill"), Palette::muted());
        pinIcon.paint(&p, pinRect.adjusted(3, 3, -3, -3));
        right = pinRect.left() - 4;
    }
    const QRect text(iconRect.right() + 9, rect.top(), right - iconRect.right() - 9, rect.height());
    p.setPen(state.selected ? Palette::ink() : Palette::ink().darker(106));
    p.drawText(text, Qt::AlignLeft | Qt::AlignVCenter,
               p.fontMetrics().elidedText(place.title, Qt::ElideRight, text.width()));
    p.restore();
}

void SidebarRowPainter::paintDropLine(QPainter& p, int y, int left, int right) {
    p.save();
    p.setRenderHint(QPainter::Antialiasing);
    p.setPen(QPen(Palette::accent(), 2));
    p.setBrush(Qt::NoBrush);
    p.drawEllipse(QPointF(left + 3, y), 3, 3);
    p.drawLine(QPointF(left + 6, y), QPointF(right, y));
    p.restore();
}

} // namespace orvane
