#pragma once

#include <QPoint>
#include <optional>

class QAbstractItemView;
class QEvent;

namespace orvane {

// A plain left press on a selected row that may become a drag of the selection: it starts once the
// pointer has moved far enough with the button held. Until then the moves are held back, so a press
// on the selection never turns into a rubber band.
class RowDragGesture {
public:
    enum class Step { Pass, Hold, Start };
    // Whether the gesture reads this event at all; ask before touching a window that may be going away.
    static bool concerns(const QEvent* event);
    // Fed the view's mouse events; `armed` says whether a press may start a drag here at all.
    Step feed(const QAbstractItemView& view, QEvent* event, bool armed);

private:
    std::optional<QPoint> pressedAt;
};

} // namespace orvane
