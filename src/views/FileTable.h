#pragma once

#include <QHash>
#include <QPersistentModelIndex>
#include <QTableView>
#include <functional>
#include <memory>
#include <optional>

class QMenu;

namespace orvane {

class ColumnSettings;
class Settings;
class ExplorerHeaderView;
class ExplorerRowDelegate;

// The details table. Its selected rows are the one truth about the selection in every view mode.
// The window plugs in through the hooks and signals below; the table itself knows nothing of files
// beyond the column keys.
class FileTable : public QTableView {
    Q_OBJECT
public:
    static constexpr int standardRowHeight = 32;
    static constexpr int compactRowHeight = 24;

    explicit FileTable(Settings& settings, QWidget* parent = nullptr);
    ~FileTable() override;

    // Also lays out the columns from the saved widths and the visible list.
    void setModel(QAbstractItemModel* model) override;

    // --- columns ---
    bool isColumnVisible(const QString& key) const;
    // The folder column is no choice of the person's: it shows while search results do.
    void setFolderColumn(bool shown) { setPlaceColumn(QStringLiteral("folder"), shown); }
    // A column that only one kind of place shows ("folder" for search results, "origin" and "deleted"
    // in the Trash): not offered in the columns menu, not kept in the preferences.
    void setPlaceColumn(const QString& key, bool shown);
    static bool isPlaceColumn(const QString& key);
    // Whether a chosen column is on show now; a narrow table leaves some out for the time being.
    bool columnShown(const QString& key) const;
    // The width below which the table starts to leave columns out.
    int comfortableWidth() const;
    // Flips a column and saves the visible list; "name" is refused.
    void toggleColumn(const QString& key);
    // "Columns": one checkable item per column, then "Size columns to fit". The caller owns it.
    QMenu* columnsMenu(QWidget* parent = nullptr);
    // "Size columns to fit" is offered only while the details view shows.
    bool detailsMode = true;
    // Fits every visible column to its texts (the model's, or the given ones) and its title.
    void autosizeColumns();
    void autosizeColumns(const std::function<QStringList(const QString& key)>& textsForColumn);
    // The fitted width of one column: widest text plus room, never below the column's minimum.
    static int fittedWidth(const QString& key, const QStringList& texts);

    // --- rows ---
    bool compact() const { return compactRows; }
    void setCompact(bool compact);
    // The ring follows its item when rows come and go around it.
    std::optional<int> keyboardFocusRow() const;
    void setKeyboardFocusRow(std::optional<int> row);
    // Set while the window moves the selection from the keyboard, so the focus ring stays.
    bool extendingKeyboardSelection = false;
    // The folder row a drag would drop into, marked as chosen while the drag is over it.
    void setDropRow(std::optional<int> row);
    std::optional<int> dropRow() const { return dropTargetRow; }
    // Selected rows are drawn emphasised while the table has the keyboard focus in the active window.
    bool selectionEmphasised() const;

    // --- sorting ---
    // Shows the sort state; emits nothing.
    void setSortIndicator(const QString& key, bool ascending);
    QString sortKey() const;
    bool sortAscending() const;

    // --- hooks ---
    // Offered every key press first; the table handles the key only when this answers false.
    std::function<bool(QKeyEvent*)> keyHandler;
    // Makes the context menu after a right click has settled the selection. The table shows the
    // menu and deletes it when it closes.
    std::function<QMenu*()> contextMenuProvider;
    // Rows of cut items, drawn faint.
    std::function<bool(int row)> isCutRow;

    ExplorerRowDelegate* rowDelegate() const { return delegate; }

signals:
    // A click on a sortable column's title: ascending on a new column, flipped on the same one.
    void sortRequested(const QString& key, bool ascending);
    void clickedOnNoRow();
    void selectionStatusChanged();
    void columnVisibilityChanged(const QString& key, bool visible);

protected:
    void mousePressEvent(QMouseEvent* event) override;
    void mouseReleaseEvent(QMouseEvent* event) override;
    void mouseMoveEvent(QMouseEvent* event) override;
    void leaveEvent(QEvent* event) override;
    void keyPressEvent(QKeyEvent* event) override;
    void contextMenuEvent(QContextMenuEvent* event) override;
    void paintEvent(QPaintEvent* event) override;
    bool viewportEvent(QEvent* event) override;
    void scrollContentsBy(int dx, int dy) override;
    void changeEvent(QEvent* event) override;
    void focusInEvent(QFocusEvent* event) override;
    void focusOutEvent(QFocusEvent* event) override;
    void selectionChanged(const QItemSelection& selected, const QItemSelection& deselected) override;

private:
    void configureColumns();
    void applyColumnVisibility(const QString& key, bool visible);
    void headerClicked(int logicalIndex);
    void sectionResized(int logicalIndex, int oldSize, int newSize);
    void viewportResized(int oldWidth, int newWidth);
    void fillSpareWidth();
    void fitColumns();
    void saveHeaderState();
    bool isToggleClick(const QMouseEvent* event) const;
    void selectOnly(int row);
    QRect rowRect(int row) const;
    void updateRow(std::optional<int> row);
    void setHoverRow(std::optional<int> row);
    void scheduleHoverRefresh();
    void paintRows(const QRect& area);

    std::unique_ptr<ColumnSettings> columns;
    ExplorerHeaderView* headerView;
    ExplorerRowDelegate* delegate;
    bool compactRows = false;
    QPersistentModelIndex focusIndex;
    std::optional<int> hoveredRow;
    std::optional<int> dropTargetRow;
    bool hoverRefreshQueued = false;
    bool toggleClickInProgress = false;
    bool suppressContextMenu = false;
    bool adjustingColumns = false;
    QStringList placeColumns; // shown now
    // Columns narrowed or left out for want of room, with the width they come back to.
    QHash<int, int> preferred;
};

} // namespace orvane
