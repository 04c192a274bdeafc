#include "chrome/TabStripLayout.h"

#include <QtMath>

namespace orvane {

TabStripLayout TabStripLayout::compute(int count, qreal contentWidth, int allowance) {
    TabStripLayout l;
    l.count = qMax(1, count);
    const int gaps = qMax(0, l.count - 1) * tabGap;
    l.available = qMax(minimumAvailable, int(qFloor(contentWidth)) - allowance);
    l.overflow = l.available < l.count * tabMinimumWidth + gaps;
    l.reserve = l.overflow ? overflowReserve : 0;
    const qreal share = qreal(l.available - l.reserve - gaps) / l.count;
    l.tabWidth = qBound<qreal>(tabMinimumWidth, share, tabMaximumWidth);
    l.documentWidth = l.count * l.tabWidth + gaps;
    l.viewportWidth = qMin<qreal>(l.documentWidth, l.available - l.reserve);
    return l;
}

QRect TabStripLayout::frame(int index) const {
    const int left = qRound(index * (tabWidth + tabGap));
    const int right = qRound(index * (tabWidth + tabGap) + tabWidth);
    return QRect(left, 0, right - left, tabHeight);
}

qreal TabStripLayout::clampOrigin(qreal origin) const {
    return qBound<qreal>(0, origin, qMax<qreal>(0, documentWidth - viewportWidth));
}

qreal TabStripLayout::revealOrigin(qreal origin, qreal left, qreal right) const {
    if (left < origin) return clampOrigin(left);
    if (right > origin + viewportWidth) return clampOrigin(right - viewportWidth);
    return clampOrigin(origin);
}

qreal TabStripLayout::scrollTarget(qreal origin, int direction) const {
    const qreal step = qMax<qreal>(tabMinimumWidth, 0.65 * viewportWidth);
    return clampOrigin(origin + (direction < 0 ? -step : step));
}

} // namespace orvane
