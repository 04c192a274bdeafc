#include "views/ExplorerIconAccessibilityItem.h"

#include "views/ExplorerIconCanvas.h"

#include <QWindow>

namespace orvane {

ExplorerIconAccessibilityItem::ExplorerIconAccessibilityItem(ExplorerIconCanvas* canvas, int index)
    : canvas(canvas), item(index) {}

bool ExplorerIconAccessibilityItem::isValid() const {
    return canvas && item < canvas->count();
}

QWindow* ExplorerIconAccessibilityItem::window() const {
    return canvas ? canvas->window()->windowHandle() : nullptr;
}

QAccessibleInterface* ExplorerIconAccessibilityItem::parent() const {
    return canvas ? QAccessible::queryAccessibleInterface(canvas.data()) : nullptr;
}

QString ExplorerIconAccessibilityItem::text(QAccessible::Text kind) const {
    const Entry* entry = canvas ? canvas->entryAt(item) : nullptr;
    if (!entry) return {};
    if (kind == QAccessible::Name) return entry->name();
    if (kind == QAccessible::Help || kind == QAccessible::Description) return entry->location;
    return {};
}

QRect ExplorerIconAccessibilityItem::rect() const {
    if (!isValid()) return {};
    const QRect frame = canvas->itemRect(item);
    return QRect(canvas->mapToGlobal(frame.topLeft()), frame.size());
}

QAccessible::State ExplorerIconAccessibilityItem::state() const {
    QAccessible::State state;
    if (!isValid()) {
        state.invalid = true;
        return state;
    }
    state.selectable = true;
    state.focusable = true;
    state.selected = canvas->selectionState().isSelected(item);
    state.focused = canvas->hasFocus() && canvas->selectionState().focus == item;
    state.offscreen = !canvas->rect().intersects(canvas->itemRect(item));
    return state;
}

void* ExplorerIconAccessibilityItem::interface_cast(QAccessible::InterfaceType type) {
    return type == QAccessible::ActionInterface ? static_cast<QAccessibleActionInterface*>(this) : nullptr;
}

QStringList ExplorerIconAccessibilityItem::actionNames() const {
    return {pressAction(), toggleAction()};
}

void ExplorerIconAccessibilityItem::doAction(const QString& actionName) {
    if (!isValid()) return;
    IconGridSelection& selection = canvas->selectionState();
    if (actionName == pressAction()) {
        selection.selectOnly(item);
        canvas->scrollToItem(item);
    } else if (actionName == toggleAction()) {
        selection.press(item, true, false);
    }
}

} // namespace orvane
