#include "views/ExplorerHeaderView.h"

#include "kit/ExplorerFont.h"
#include "kit/Palette.h"

#include <QContextMenuEvent>
#include <QLinearGradient>
#include <QPainter>

namespace orvane {

namespace {
constexpr int titleLeft = 8;
constexpr int titleTop = 9;
constexpr int separatorInset = 6;
constexpr int sortMarkRight = 10;
} // namespace

ExplorerHeaderView::ExplorerHeaderView(QWidget* parent) : QHeaderView(Qt::Horizontal, parent) {
    setSectionsMovable(false);
    setSectionsClickable(true);
    setHighlightSections(false);
    setSortIndicatorShown(false);
    setStretchLastSection(false);
    setFixedHeight(headerHeight);
    setFont(explorerFont());
    // The window's own background shows through the gradient.
    setAutoFillBackground(false);
    viewport()->setAutoFillBackground(false);
}

QSize ExplorerHeaderView::sizeHint() const {
    return QSize(QHeaderView::sizeHint().width(), headerHeight);
}

void ExplorerHeaderView::setSortColumn(int logicalIndex, bool sortAscending) {
    if (logicalIndex == sortSection && sortAscending == ascending) return;
    sortSection = logicalIndex;
    ascending = sortAscending;
    viewport()->update();
}

void ExplorerHeaderView::paintEvent(QPaintEvent* event) {
    QPainter painter(viewport());
    QLinearGradient shade(0, 0, 0, height());
    shade.setColorAt(0, QColor::fromRgbF(0, 0, 0, 0.2f));
    shade.setColorAt(1, QColor::fromRgbF(0, 0, 0, 0.04f));
    painter.fillRect(viewport()->rect(), shade);
    for (int visual = 0; visual < count(); ++visual) {
        const int logical = logicalIndex(visual);
        if (isSectionHidden(logical)) continue;
        const QRect rect(sectionViewportPosition(logical), 0, sectionSize(logical), height());
        if (rect.intersects(event->rect())) paintSection(&painter, rect, logical);
    }
}

void ExplorerHeaderView::paintSection(QPainter* painter, const QRect& rect, int logicalIndex) const {
    painter->fillRect(rect, QColor::fromRgbF(1, 1, 1, 0.025f));
    const bool sorted = logicalIndex == sortSection;
    const int markRoom = sorted ? sortMarkRight + 12 : 0;
    const QRect title = rect.adjusted(titleLeft, titleTop, -titleLeft - markRoom, 0);
    const QString text = model() ? model()->headerData(logicalIndex, orientation()).toString() : QString();
    painter->setFont(explorerFont());
    painter->setPen(Palette::muted());
    painter->drawText(title, Qt::AlignLeft | Qt::AlignTop,
                      painter->fontMetrics().elidedText(text, Qt::ElideRight, title.width()));
    painter->fillRect(
        QRectF(rect.right(), rect.top() + separatorInset, 1, rect.height() - 2 * separatorInset),
        QColor::fromRgbF(1, 1, 1, 0.1f));
    if (sorted) paintSortMark(painter, rect);
}

// A small chevron: up for ascending, down for descending.
void ExplorerHeaderView::paintSortMark(QPainter* painter, const QRect& rect) const {
    const qreal cx = rect.right() - sortMarkRight - 3.5;
    const qreal cy = rect.center().y() + 0.5;
    const qreal dy = ascending ? -1.75 : 1.75;
    const QPointF points[] = {{cx - 3.5, cy - dy}, {cx, cy + dy}, {cx + 3.5, cy - dy}};
    painter->save();
    painter->setRenderHint(QPainter::Antialiasing);
    painter->setPen(QPen(Palette::muted(), 1.5, Qt::SolidLine, Qt::RoundCap, Qt::RoundJoin));
    painter->drawPolyline(points, 3);
    painter->restore();
}

void ExplorerHeaderView::contextMenuEvent(QContextMenuEvent* event) {
    emit columnsMenuRequested(event->globalPos());
    event->accept();
}

} // namespace orvane
