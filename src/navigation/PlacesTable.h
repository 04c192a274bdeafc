#pragma once

#include "navigation/SidebarPinLayout.h"
#include "navigation/SidebarTree.h"
#include "platform/PhysicalKeys.h"

#include <QAbstractScrollArea>
#include <QFileSystemWatcher>
#include <QHash>
#include <QIcon>
#include <functional>
#include <optional>
#include <vector>

class QAbstractButton;
class QMenu;
class QToolButton;

namespace orvane {

class PinnedStore;

// The navigation pane: Home, "Quick access" with the pins, "Locations", each folder expandable in
// place. One column of rows drawn from the tree; only the rows in sight have widgets of their own.
// It never navigates by itself: it asks, and follows the window through syncSelection.
class PlacesTable : public QAbstractScrollArea {
    Q_OBJECT
public:
    static constexpr const char* pinDragType = "local.tevrin.quilland.pinned-folder";

    explicit PlacesTable(PinnedStore& pins, QWidget* parent = nullptr);
    ~PlacesTable() override;

    SidebarTree& tree() const { return *model; }
    PinnedStore& pins() const { return store; }

    // Rebuilds all rows from the pins, the mounted volumes and the disk.
    void setupPlaces();
    void setPhoneConnected(bool on, const QString& state = {});
    bool phoneConnected() const { return phone; }
    void setShowHidden(bool on) { model->setShowHidden(on); }
    // The window shows `current`.
    void syncSelection(const QUrl& current);
    // Opens the tree down to the folder and selects it; false when it shows nowhere.
    bool expandToCurrentFolder(const QUrl& current);

    // A click on the row, selected already or not: select it and ask to go there.
    void openRow(int row);
    // Left, right, keypad plus and minus open and close folders; up and down walk the rows.
    bool handleKey(PhysicalKey key);
    // Open, Open in new tab, Pin or Unpin, and the colour submenu; null for a section.
    QMenu* sidebarMenu(int row);
    void popupMenu(int row, const QPoint& globalPos);

    // A drag of the pin whose path is `path` over `pos`: where it would land, or none.
    std::optional<SidebarPinLayout::Target> proposePinDrop(const QString& path, const QPoint& pos);
    // Drops it there: true when the order changed and was saved.
    bool dropPin(const QString& path, const QPoint& pos);

    int rowAt(const QPoint& viewportPos) const;
    QRect rowRect(int row) const;
    QAbstractButton* disclosureButton(int row) const;
    // "Expand A" or "Collapse A": the name and tool tip of the row's disclosure, and where it sits.
    QString disclosureText(int row) const;
    QRect disclosureRect(int row) const;
    void scrollToRow(int row);

    // Hooks for folder colours: a coloured folder icon (null for none), and the colour submenu.
    std::function<QIcon(const QUrl& url)> folderColourIcon;
    std::function<void(QMenu* menu, const QUrl& url)> addColourMenu;
    // The Trash row's menu offers to empty it, through the window's command.
    std::function<void()> emptyTrash;
    // Files dragged over a row: what a drop into its place would do (IgnoreAction refuses), the drop
    // itself, and the drag leaving.
    std::function<Qt::DropAction(const QDropEvent& event, const QUrl& place)> fileDropOperation;
    std::function<bool(QDropEvent& event, const QUrl& place)> performFileDrop;
    std::function<void()> fileDropExit;

signals:
    void openRequested(const QUrl& url);
    void openInNewTabRequested(const QUrl& url);
    void statusMessage(const QString& text);

protected:
    void paintEvent(QPaintEvent* event) override;
    void resizeEvent(QResizeEvent* event) override;
    void scrollContentsBy(int dx, int dy) override;
    bool viewportEvent(QEvent* event) override;
    void mousePressEvent(QMouseEvent* event) override;
    void mouseMoveEvent(QMouseEvent* event) override;
    void mouseReleaseEvent(QMouseEvent* event) override;
    void contextMenuEvent(QContextMenuEvent* event) override;
    void keyPressEvent(QKeyEvent* event) override;
    void dragEnterEvent(QDragEnterEvent* event) override;
    void dragMoveEvent(QDragMoveEvent* event) override;
    void dragLeaveEvent(QDragLeaveEvent* event) override;
    void dropEvent(QDropEvent* event) override;

private:
    void watchTrash();
    void treeRebuilt();
    void layoutRows();
    void layoutDisclosures();
    void refreshHover();
    bool canExpandCached(int row) const;
    QIcon iconFor(const SidebarPlace& place) const;
    void startPinDrag(int row);
    QPixmap dragImage(int row);
    std::optional<QString> draggedPin(const QDropEvent* event) const;
    QUrl placeAt(const QPoint& pos) const;
    Qt::DropAction fileDragOver(QDropEvent* event);
    int pinSlot(const SidebarPinLayout& layout, const QString& path) const;
    void selectAndReveal(int row);
    void stepSelection(int delta);

    PinnedStore& store;
    SidebarTree* model;
    bool phone = false;
    QString phoneState;
    std::vector<int> tops; // the top of each row in content coordinates, and the end
    mutable QHash<int, bool> expandable;
    QSet<QString> pinnedKeys;
    mutable QHash<QString, QIcon> icons;
    std::vector<QToolButton*> disclosures;
    QList<SidebarPlace> lastLocations;
    // The Trash's folders: its row shows whether anything is in it.
    QFileSystemWatcher trashWatch;
    int hovered = -1;
    int pressed = -1;
    QPoint pressPos;
    std::optional<SidebarPinLayout::Target> dropLine;
    QUrl contextURL;
    QUrl shown; // what the window shows
};

} // namespace orvane
