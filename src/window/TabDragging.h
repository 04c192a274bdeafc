#pragma once

#include "core/TabState.h"

#include <QObject>
#include <QPoint>
#include <optional>

class QMimeData;

namespace orvane {

class Explorer;

// Tabs dragged out of a window's strip: reordered within it, dropped on another window's strip, or
// let go anywhere else to become a window of their own. A tab keeps its whole state on the way, its
// id, history and search text. Another Orvane process of the same user takes it by the data.
class TabDragging : public QObject {
    Q_OBJECT
public:
    explicit TabDragging(Explorer& window);

    // The tab as a drag carries it: its id, and its state for another process.
    static QMimeData* tabData(const TabState& tab);
    static std::optional<TabState> readTab(const QMimeData& data);

    // Moves the tab to `target` before `slot`; false when refused (either window busy, no such tab).
    static bool moveTab(Explorer& source, const QUuid& id, Explorer& target, int slot);
    // The tab becomes a window of its own: beside the source, or with `dropPoint` 20 below the middle
    // of its top edge. The only tab of a window takes the window along instead. Null when refused.
    static Explorer* detachTab(Explorer& source, const QUuid& id, std::optional<QPoint> dropPoint = {});

protected:
    bool eventFilter(QObject* watched, QEvent* event) override;

private:
    void startDrag(const QUuid& id);
    void finishDrag(Qt::DropAction result, const QUuid& id);
    void dropped(const QMimeData* data, int slot);
    void showMenu(const QUuid& id, const QPoint& globalPos);

    Explorer& w;
    bool cancelled = false;
};

} // namespace orvane
