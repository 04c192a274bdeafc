#include "window/ExplorerKeyboard.h"

#include "chrome/ExplorerChrome.h"
#include "core/Services.h"
#include "core/WindowCommands.h"
#include "core/WindowListing.h"
#include "fileops/ExplorerFileOps.h"
#include "fileops/FileClipboard.h"
#include "kit/EditablePathBox.h"
#include "views/EntryTableModel.h"
#include "views/FileTable.h"
#include "window/Explorer.h"
#include "window/ExplorerKeyMonitor.h"

#include <QItemSelection>
#include <QLineEdit>
#include <QMenu>

namespace orvane {

ExplorerKeyboard::ExplorerKeyboard(Explorer& window)
    : QObject(&window), w(window), monitor(new ExplorerKeyMonitor(window)) {
    w.table()->keyHandler = [this](QKeyEvent* event) { return monitor->offerTableKey(event); };
    WindowCommands& c = w.commands();
    c.add(QStringLiteral("focusAddress"), QStringLiteral("Edit the address"), [this] { focusAddress(); });
    c.add(QStringLiteral("focusSearch"), QStringLiteral("Search"), [this] { focusSearch(); });
    c.add(Command{QStringLiteral("cycleFocus"),
                  QStringLiteral("Next region"),
                  [this](const QVariant& backward) { cycleFocus(backward.toBool()); },
                  {},
                  {}});
    c.add(QStringLiteral("showKeyboardContextMenu"), QStringLiteral("Context menu"),
          [this] { showKeyboardContextMenu(); });
    c.add(QStringLiteral("escapeFileArea"), QStringLiteral("Clear"), [this] { escapeFileArea(); });
}

// ---------------------------------------------------------------- the focus ring

// The row a command takes as "the selected one": the current row when selected, else the first.
int ExplorerKeyboard::selectedRow() const {
    const QItemSelectionModel* selection = w.table()->selectionModel();
    const QModelIndex current = selection->currentIndex();
    if (current.isValid() && selection->isRowSelected(current.row(), QModelIndex())) return current.row();
    int first = -1;
    for (const QModelIndex& index : selection->selectedRows())
        if (first < 0 || index.row() < first) first = index.row();
    return first;
}

// Replaces the selection by a range without moving the current row, which stays the anchor.
void ExplorerKeyboard::selectRows(int from, int to) {
    const QItemSelection range(
        w.table()->model()->index(qMin(from, to), 0),
        w.table()->model()->index(qMax(from, to), w.table()->model()->columnCount() - 1));
    w.table()->extendingKeyboardSelection = true;
    w.table()->selectionModel()->select(range, QItemSelectionModel::ClearAndSelect);
    w.table()->extendingKeyboardSelection = false;
}

void ExplorerKeyboard::moveKeyboardFocus(int delta, bool extending) {
    const int rows = int(w.entries().size());
    if (rows == 0) return;
    const int selectedNow = selectedRow();
    int start = delta > 0 ? -1 : rows;
    if (const std::optional<int> ring = w.table()->keyboardFocusRow())
        start = *ring;
    else if (selectedNow >= 0)
        start = selectedNow;
    const int row = qBound(0, start + delta, rows - 1);
    w.table()->setKeyboardFocusRow(row);
    w.table()->viewport()->update();
    w.table()->scrollTo(w.table()->model()->index(row, 0));
    if (extending) selectRows(qMax(selectedNow, 0), row);
}

void ExplorerKeyboard::toggleKeyboardFocusSelection() {
    if (w.entries().empty()) return;
    const int row = w.table()->keyboardFocusRow().value_or(qMax(selectedRow(), 0));
    w.table()->setKeyboardFocusRow(row);
    w.table()->viewport()->update();
    const QModelIndex index = w.table()->model()->index(row, 0);
    QItemSelectionModel* selection = w.table()->selectionModel();
    w.table()->extendingKeyboardSelection = true;
    if (selection->isRowSelected(row, QModelIndex())) {
        selection->select(index, QItemSelectionModel::Deselect | QItemSelectionModel::Rows);
    } else {
        selection->select(index, QItemSelectionModel::Select | QItemSelectionModel::Rows);
        selection->setCurrentIndex(index, QItemSelectionModel::NoUpdate);
    }
    w.table()->extendingKeyboardSelection = false;
    w.table()->scrollTo(index);
}

void ExplorerKeyboard::selectBoundary(bool last, bool extending) {
    if (w.entries().empty()) return;
    const int target = last ? int(w.entries().size()) - 1 : 0;
    const QModelIndex index = w.table()->model()->index(target, 0);
    if (extending)
        selectRows(qMax(selectedRow(), 0), target);
    else
        w.table()->selectionModel()->setCurrentIndex(index, QItemSelectionModel::ClearAndSelect |
                                                                QItemSelectionModel::Rows);
    w.table()->scrollTo(index);
}

// ---------------------------------------------------------------- focus regions

bool ExplorerKeyboard::focusIsInside(const QWidget* view) const {
    const QWidget* focus = w.focusWidget();
    return view && focus && (focus == view || view->isAncestorOf(focus));
}

QWidget* ExplorerKeyboard::fileList() const {
    QWidget* icons = hooks.iconFileList ? hooks.iconFileList() : nullptr;
    return icons ? icons : w.table();
}

bool ExplorerKeyboard::fileListFocused() const {
    return focusIsInside(fileList());
}

bool ExplorerKeyboard::tableFocusedInDetails() const {
    return w.viewMode() == ViewMode::Details && focusIsInside(w.table());
}

int ExplorerKeyboard::focusRegion() const {
    if (focusIsInside(w.widgets().pathBox)) return 0;
    if (focusIsInside(w.widgets().searchField)) return 1;
    if (focusIsInside(w.widgets().navigationPane)) return 2;
    return 3;
}

void ExplorerKeyboard::cycleFocus(bool backward) {
    const int next = (focusRegion() + (backward ? 3 : 1)) % 4;
    if (next == 0) {
        focusAddress();
        return;
    }
    w.widgets().pathBox->showPathBar();
    if (next == 1)
        focusSearch();
    else if (next == 2)
        w.widgets().navigationPane->setFocus(Qt::TabFocusReason);
    else
        w.focusFileList();
}

void ExplorerKeyboard::focusAddress() {
    w.widgets().pathBox->showAddress();
}

void ExplorerKeyboard::focusSearch() {
    w.widgets().searchField->setFocus(Qt::ShortcutFocusReason);
    w.widgets().searchField->selectAll();
}

// ---------------------------------------------------------------- Escape and the context menu

void ExplorerKeyboard::escapeFileArea() {
    w.services().clipboard().clearCut();
    w.commands().run(QStringLiteral("clearSearch"));
}

void ExplorerKeyboard::escapeTextEditing(QLineEdit* editor) {
    if (w.inlineRename() && editor == w.inlineRename()->renameEditor()) {
        w.commands().run(QStringLiteral("cancelInlineRename"));
        return;
    }
    // The search field: the first Escape clears the filter, the next goes back to the files.
    if (editor == w.widgets().searchField && !editor->text().isEmpty()) {
        w.commands().run(QStringLiteral("clearSearch"));
        return;
    }
    if (w.current().isLocalFile()) w.widgets().pathBox->addressField()->setText(w.current().toLocalFile());
    w.widgets().pathBox->showPathBar();
    w.focusFileList();
}

void ExplorerKeyboard::showKeyboardContextMenu() {
    if (focusIsInside(w.widgets().navigationPane)) {
        w.commands().run(QStringLiteral("showSidebarContextMenu"));
        return;
    }
    QMenu* menu = w.table()->contextMenuProvider ? w.table()->contextMenuProvider() : nullptr;
    if (!menu) return;
    QPoint at(40, 32);
    if (w.viewMode() == ViewMode::Details) {
        const int row = w.table()->keyboardFocusRow().value_or(selectedRow());
        at = row >= 0 ? QPoint(30, w.table()->rowViewportPosition(row) + w.table()->rowHeight(row) - 30)
                      : QPoint(30, 30);
    }
    connect(menu, &QMenu::aboutToHide, menu, &QObject::deleteLater);
    menu->popup(w.table()->viewport()->mapToGlobal(at));
}

// The navigation pane answers its own keys through the hook it fills in.
bool ExplorerKeyboard::handleSidebarKey(PhysicalKey key) {
    return hooks.sidebarKey && hooks.sidebarKey(key);
}

} // namespace orvane
