#pragma once

#include "core/Entry.h"

#include <QWidget>
#include <functional>
#include <optional>
#include <vector>

class QDropEvent;
class QItemSelectionModel;
class QKeyEvent;
class QMimeData;
class QWheelEvent;

namespace orvane {

class ExplorerIconCanvas;
class ExplorerIconScrollView;

// The icon modes of a file list, as the window and the phone browser see them: a scroll view with the
// canvas inside. The window hands it its listing and the table's selection model; the selection stays
// in that model, so the table and the canvas never disagree and nothing is echoed back.
class ExplorerIconView : public QWidget {
    Q_OBJECT
public:
    explicit ExplorerIconView(QWidget* parent = nullptr);
    ~ExplorerIconView() override;

    using QWidget::update;
    // The only way in. The entries are the window's own; the canvas keeps the pointer and follows
    // the selection model's model for rows that come and go.
    void update(const std::vector<Entry>* entries, QItemSelectionModel* selection, int mode,
                double extraLargeSize);

    void scrollToItem(int index);
    void showDropTarget(std::optional<int> index);
    // Where the inline name editor of an item goes, in the canvas's coordinates.
    QRect renamePlacement(int row) const;
    void makeFileListFirstResponder();

    ExplorerIconCanvas* canvas() const { return fileCanvas; }
    ExplorerIconScrollView* scrollView() const { return scroller; }

    // --- hooks, all optional ---
    std::function<void(int index)> onOpen;
    // After a right click has settled the selection; nothing for empty space.
    std::function<void(std::optional<int> index, const QPoint& globalPos)> onContextMenu;
    // Keys the canvas does not move by; true when the window used the key.
    std::function<bool(QKeyEvent* event)> onKeyDown;
    // Offered every wheel first (Control and the wheel change the mode); true swallows it.
    std::function<bool(QWheelEvent* event)> onMouseWheel;
    // A slow second click on the one selected item: the rename starts.
    std::function<void(int index)> onRenameClick;
    // The data of a drag of phone items, made by the phone browser; null leaves them out.
    std::function<QMimeData*(const std::vector<int>& indexes)> remoteDragData;
    // What a drop over an item (or the folder, for nothing) would do; IgnoreAction refuses it.
    // The event carries the data, the keys held, the actions offered and whether the drag is ours.
    std::function<Qt::DropAction(std::optional<int> index, const QDropEvent& event)> onDropOperation;
    std::function<void()> onDropExit;
    std::function<bool(std::optional<int> index, QDropEvent& event)> onPerformDrop;

private:
    ExplorerIconScrollView* scroller;
    ExplorerIconCanvas* fileCanvas;
};

} // namespace orvane
