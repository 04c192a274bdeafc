#pragma once

#include <QRect>
#include <QtGlobal>

namespace orvane {

// The arithmetic of the tab strip: how wide each tab is, whether the strip overflows into a scrolled
// viewport, and where that viewport may scroll. Tabs never make the window wider: they shrink from the
// maximum to the minimum width, and only then does the strip scroll.
struct TabStripLayout {
    static constexpr int tabGap = 0;
    static constexpr int tabMinimumWidth = 112;
    static constexpr int tabMaximumWidth = 228;
    static constexpr int tabHeight = 38;
    // What a title row with nothing but the window buttons and the plus button keeps for itself.
    static constexpr int titleRowAllowance = 186;
    static constexpr int minimumAvailable = 120;
    static constexpr int overflowReserve = 52;

    int count = 0;
    int available = minimumAvailable;
    bool overflow = false;
    int reserve = 0;
    qreal tabWidth = tabMaximumWidth;
    qreal documentWidth = 0;
    qreal viewportWidth = 0;

    // `contentWidth` is the room of the row the strip lives in, of which `allowance` is taken by
    // other controls. A count below 1 is laid out as one tab, since a window always has one.
    static TabStripLayout compute(int count, qreal contentWidth, int allowance = titleRowAllowance);

    // The frame of the tab at `index` in document coordinates; edges are rounded so that
    // neighbouring tabs meet without a gap or an overlap.
    QRect frame(int index) const;

    // The scroll origins, in document coordinates, that keep the viewport inside the document.
    qreal clampOrigin(qreal origin) const;
    // Scrolls the least distance that brings [left, right] into the viewport.
    qreal revealOrigin(qreal origin, qreal left, qreal right) const;
    // One press of an overflow button: -1 goes back, +1 forward.
    qreal scrollTarget(qreal origin, int direction) const;
    bool canScrollBack(qreal origin) const { return origin > 0.5; }
    bool canScrollForward(qreal origin) const { return origin + viewportWidth < documentWidth - 0.5; }
};

} // namespace orvane
