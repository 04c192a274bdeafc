// The keyboard side of the browser window: the focus ring, the focus regions, Escape, the guide.
#include "browsing/AppDelegate.h"
#include "browsing/EditablePathBox.h"
#include "browsing/Explorer.h"
#include "browsing/ExplorerKeyMonitor.h"
#include "browsing/ExplorerShortcuts.h"
#include "browsing/PhoneKeyTarget.h"
#include "browsing/ShortcutGuideWindow.h"
#include "fileops/FileClipboard.h"
#include "views/EntryTableModel.h"
#include "views/FileTable.h"

#include <QItemSelection>
#include <QLineEdit>
#include <QListWidget>
#include <QMenu>

namespace orvane {

void Explorer::installKeyboardHandling() {
    keyMonitor = new ExplorerKeyMonitor(*this);
    ui.table->keyHandler = [this](QKeyEvent* event) { return keyMonitor->offerTableKey(event); };
    registerOperation(QStringLiteral("helpAction"), [this] { showShortcutGuide(); });
}

bool Explorer::handleExplorerShortcut(QKeyEvent* event) {
    return orvane::handleExplorerShortcut(*this, event);
}

PhoneKeyTarget* Explorer::activePhone() const {
    if (current().scheme() != QLatin1String("android")) return nullptr;
    return phoneKeyTargets.value(tabs.current().id, nullptr);
}

void Explorer::setPhoneKeyTarget(const QUuid& tabID, PhoneKeyTarget* target) {
    if (target)
        phoneKeyTargets.insert(tabID, target);
    else
        phoneKeyTargets.remove(tabID);
}

// ---------------------------------------------------------------- the focus ring

// The row a command takes as "the selected one": the current row when selected, else the first.
int Explorer::selectedRow() const {
    const QItemSelectionModel* selection = ui.table->selectionModel();
    const QModelIndex current = selection->currentIndex();
    if (current.isValid() && selection->isRowSelected(current.row(), QModelIndex())) return current.row();
    int first = -1;
    for (const QModelIndex& index : selection->selectedRows())
        if (first < 0 || index.row() < first) first = index.row();
    return first;
}

// Replaces the selection by a range without moving the current row, which stays the anchor.
void Explorer::selectRows(int from, int to) {
    const QItemSelection range(tableModel->index(qMin(from, to), 0),
                               tableModel->index(qMax(from, to), tableModel->columnCount() - 1));
    ui.table->extendingKeyboardSelection = true;
    ui.table->selectionModel()->select(range, QItemSelectionModel::ClearAndSelect);
    ui.table->extendingKeyboardSelection = false;
}

void Explorer::moveKeyboardFocus(int delta, bool extending) {
    const int rows = int(entries.size());
    if (rows == 0) return;
    const int selectedNow = selectedRow();
    int start = delta > 0 ? -1 : rows;
    if (const std::optional<int> ring = ui.table->keyboardFocusRow())
        start = *ring;
    else if (selectedNow >= 0)
        start = selectedNow;
    const int row = qBound(0, start + delta, rows - 1);
    ui.table->setKeyboardFocusRow(row);
    updateKeyboardFocus();
    ui.table->scrollTo(tableModel->index(row, 0));
    if (extending) selectRows(qMax(selectedNow, 0), row);
}

void Explorer::toggleKeyboardFocusSelection() {
    if (entries.empty()) return;
    const int row = ui.table->keyboardFocusRow().value_or(qMax(selectedRow(), 0));
    ui.table->setKeyboardFocusRow(row);
    updateKeyboardFocus();
    const QModelIndex index = tableModel->index(row, 0);
    QItemSelectionModel* selection = ui.table->selectionModel();
    ui.table->extendingKeyboardSelection = true;
    if (selection->isRowSelected(row, QModelIndex())) {
        selection->select(index, QItemSelectionModel::Deselect | QItemSelectionModel::Rows);
    } else {
        selection->select(index, QItemSelectionModel::Select | QItemSelectionModel::Rows);
        selection->setCurrentIndex(index, QItemSelectionModel::NoUpdate);
    }
    ui.table->extendingKeyboardSelection = false;
    ui.table->scrollTo(index);
}

void Explorer::selectBoundary(bool last, bool extending) {
    if (entries.empty()) return;
    const int target = last ? int(entries.size()) - 1 : 0;
    const QModelIndex index = tableModel->index(target, 0);
    if (extending)
        selectRows(qMax(selectedRow(), 0), target);
    else
        ui.table->selectionModel()->setCurrentIndex(index, QItemSelectionModel::ClearAndSelect |
                                                               QItemSelectionModel::Rows);
    ui.table->scrollTo(index);
}

void Explorer::updateKeyboardFocus() {
    ui.table->viewport()->update();
}

// ---------------------------------------------------------------- focus regions

bool Explorer::focusIsInside(const QWidget* view) const {
    const QWidget* focus = focusWidget();
    return view && focus && (focus == view || view->isAncestorOf(focus));
}

// Until the icon view is there, the table is the file list in every mode.
bool Explorer::fileListFocused() const {
    return viewMode == 6 && focusIsInside(ui.table);
}

bool Explorer::tableFocusedInDetails() const {
    return viewMode == 6 && focusIsInside(ui.table);
}

int Explorer::focusRegion() const {
    if (focusIsInside(ui.pathBox)) return 0;
    if (focusIsInside(ui.searchField)) return 1;
    if (focusIsInside(ui.navigationPane)) return 2;
    return 3;
}

void Explorer::cycleFocus(bool backward) {
    const int next = (focusRegion() + (backward ? 3 : 1)) % 4;
    if (next == 0) {
        focusAddress();
        return;
    }
    ui.pathBox->showPathBar();
    if (next == 1)
        focusSearch();
    else if (next == 2)
        ui.places->setFocus(Qt::TabFocusReason);
    else
        focusFileList();
}

void Explorer::focusSearch() {
    ui.searchField->setFocus(Qt::ShortcutFocusReason);
    ui.searchField->selectAll();
}

// ---------------------------------------------------------------- Escape and the context menu

void Explorer::escapeFileArea() {
    if (dismissQuickLook && dismissQuickLook()) return;
    FileClipboard::shared().clearCut();
    setSearchText(QString());
}

void Explorer::escapeTextEditing(QLineEdit* editor) {
    if (editor == renameEditor) {
        if (const Operation cancel = operation(QStringLiteral("cancelInlineRename"))) {
            cancel();
            return;
        }
        // Without the rename commands nothing may be renamed: the editor simply goes.
        renameEditor.clear();
        editor->hide();
        editor->deleteLater();
        focusFileList();
        return;
    }
    if (current().isLocalFile()) ui.pathBox->addressField()->setText(current().toLocalFile());
    ui.pathBox->showPathBar();
    focusFileList();
}

void Explorer::showKeyboardContextMenu() {
    if (focusIsInside(ui.navigationPane)) {
        if (const Operation show = operation(QStringLiteral("showSidebarContextMenu"))) show();
        return;
    }
    QMenu* menu = ui.table->contextMenuProvider ? ui.table->contextMenuProvider() : nullptr;
    if (!menu) return;
    QPoint at(40, 32);
    if (viewMode == 6) {
        const int row = ui.table->keyboardFocusRow().value_or(selectedRow());
        at = row >= 0 ? QPoint(30, ui.table->rowViewportPosition(row) + ui.table->rowHeight(row) - 30)
                      : QPoint(30, 30);
    }
    connect(menu, &QMenu::aboutToHide, menu, &QObject::deleteLater);
    menu->popup(ui.table->viewport()->mapToGlobal(at));
}

// Until the navigation tree is there the pane is a plain list: arrows walk it, Return opens.
bool Explorer::handleSidebarKey(PhysicalKey key) {
    if (sidebarTreeKey) return sidebarTreeKey(key);
    QListWidget* list = ui.places;
    if (key == PhysicalKey::Return || key == PhysicalKey::Enter) {
        const QUrl url = list->currentItem() ? list->currentItem()->data(Qt::UserRole).toUrl() : QUrl();
        if (url.isValid()) navigate(url);
        return true;
    }
    if (key != PhysicalKey::Up && key != PhysicalKey::Down) return false;
    const int step = key == PhysicalKey::Up ? -1 : 1;
    for (int row = list->currentRow() + step; row >= 0 && row < list->count(); row += step) {
        if (list->item(row)->flags() & Qt::ItemIsSelectable) {
            list->setCurrentRow(row);
            break;
        }
    }
    return true;
}

// ---------------------------------------------------------------- window commands

void Explorer::showShortcutGuide() {
    if (!shortcutsWindow) shortcutsWindow = new ShortcutGuideWindow(this);
    shortcutsWindow->show();
    shortcutsWindow->raise();
    shortcutsWindow->activateWindow();
}

void Explorer::zoomWindow() {
    isMaximized() ? showNormal() : showMaximized();
}

void Explorer::newWindowAction() {
    if (app) app->newWindow();
}

} // namespace orvane
