#pragma once

#include "core/Entry.h"
#include "views/ExplorerIconPainter.h"
#include "views/IconGrid.h"
#include "views/IconGridSelection.h"

#include <QAccessible>
#include <QHash>
#include <QPointer>
#include <QTimer>
#include <QWidget>
#include <functional>
#include <optional>
#include <vector>

class QItemSelectionModel;
class QMimeData;

namespace orvane {

class ExplorerIconView;

// The one painted surface of every icon mode: no widget or item per entry, only arithmetic over the
// listing the window owns. It is the viewport of its scroll view and paints the part of the grid that
// the scroll position shows, cell by cell and only where the dirty rectangle asks.
class ExplorerIconCanvas : public QWidget {
    Q_OBJECT
public:
    ExplorerIconCanvas(ExplorerIconView* owner, QWidget* parent = nullptr);
    ~ExplorerIconCanvas() override;

    // The only way in: the listing (not copied), the table's selection and the mode.
    void setListing(const std::vector<Entry>* entries, QItemSelectionModel* selection, int mode,
                    double extraLargeSize);
    int count() const { return entries ? int(entries->size()) : 0; }
    const Entry* entryAt(int index) const;
    int mode() const { return layout.mode; }

    const IconGridLayout& gridLayout() const { return layout; }
    IconGridSelection& selectionState() { return selection; }
    ExplorerIconPainter& cellPainter() { return cells; }

    // The scroll position: the canvas point shown at the viewport's top left.
    QPoint contentOffset() const { return offset; }
    void setContentOffset(QPoint point);
    // An item's frame in this widget's coordinates, and the item under a point of it.
    QRect itemRect(int index) const;
    std::optional<int> itemAt(const QPoint& point) const;
    void scrollToItem(int index);

    void showDropTarget(std::optional<int> index);

    // What a drag out of the canvas carries: file URLs for local items (text/uri-list, so other
    // programs take them), and what the phone's writer adds for phone items.
    QMimeData* dragData(const std::vector<int>& indexes) const;
    std::vector<int> selectedIndexes() const;

    // The accessible of one item, made when first asked for.
    QAccessibleInterface* accessibleItem(int index);

    // Items drawn faint: cut, and not yet pasted.
    std::function<bool(const Entry&)> isDimmed;

signals:
    // The grid's size changed: the scroll view sets its ranges anew.
    void gridChanged();

protected:
    void paintEvent(QPaintEvent* event) override;
    void resizeEvent(QResizeEvent* event) override;
    void keyPressEvent(QKeyEvent* event) override;
    void mousePressEvent(QMouseEvent* event) override;
    void mouseDoubleClickEvent(QMouseEvent* event) override;
    void mouseMoveEvent(QMouseEvent* event) override;
    void mouseReleaseEvent(QMouseEvent* event) override;
    void leaveEvent(QEvent* event) override;
    void contextMenuEvent(QContextMenuEvent* event) override;
    void dragEnterEvent(QDragEnterEvent* event) override;
    void dragMoveEvent(QDragMoveEvent* event) override;
    void dragLeaveEvent(QDragLeaveEvent* event) override;
    void dropEvent(QDropEvent* event) override;
    bool event(QEvent* event) override;

private:
    void connectModel(QItemSelectionModel* model);
    void listingReplaced();
    void listingResized();
    void recalculateLayout();
    bool handleNavigation(QKeyEvent* event);
    bool isTypeSelectKey(const QKeyEvent* event) const;
    void press(QMouseEvent* event);
    void dragSelection();
    void updateHover(std::optional<int> index);
    void updateItem(std::optional<int> index);
    void paintBand(QPainter& painter);
    void forgetAccessibleItems();
    void announce(QAccessible::Event event);

    ExplorerIconView* owner;
    const std::vector<Entry>* entries = nullptr;
    QPointer<QItemSelectionModel> selectionModel;
    QList<QMetaObject::Connection> modelConnections;
    IconGridSelection selection;
    IconGridLayout layout;
    ExplorerIconPainter cells;
    QPoint offset;
    bool layingOut = false;
    QSize lastViewportSize;

    std::optional<int> hovered;
    std::optional<int> dropTarget;
    std::optional<QPoint> mouseDownLocation;
    std::optional<int> pendingSingleClick;
    std::optional<int> renameCandidate;
    bool draggingFiles = false;
    std::optional<QPointF> bandOrigin;
    QRectF band;
    QTimer renameClick;

    QHash<int, QAccessible::Id> accessibleItems;
};

} // namespace orvane
