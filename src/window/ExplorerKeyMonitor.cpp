#include "window/ExplorerKeyMonitor.h"

#include "chrome/ExplorerChrome.h"
#include "core/WindowCommands.h"
#include "views/FileTable.h"
#include "window/Explorer.h"
#include "window/ExplorerKeyboard.h"

#include <QApplication>
#include <QKeyEvent>

namespace orvane {

ExplorerKeyMonitor::ExplorerKeyMonitor(Explorer& window) : QObject(&window), window(window) {
    qApp->installEventFilter(this);
}

ExplorerKeyMonitor::~ExplorerKeyMonitor() {
    if (qApp) qApp->removeEventFilter(this);
}

bool ExplorerKeyMonitor::sameEvent(const Announced& announced, const QKeyEvent& event) {
    return announced.timestamp == event.timestamp() && announced.key == event.key() &&
           announced.modifiers == event.modifiers();
}

std::optional<bool> ExplorerKeyMonitor::previousAnswer(const QKeyEvent& press) const {
    if (!announced || !sameEvent(*announced, press)) return std::nullopt;
    if (announced->used) return true;
    if (announced->scanCode != press.nativeScanCode() || announced->virtualKey != press.nativeVirtualKey())
        return std::nullopt;
    return false;
}

// A key event travels up the parents when ignored, and the filter sees each step; only the first,
// at the focused widget, counts.
bool ExplorerKeyMonitor::isFocusOfWindow(QObject* watched) const {
    auto* widget = qobject_cast<QWidget*>(watched);
    if (!widget || widget->window() != &window) return false;
    const QWidget* focus = window.focusWidget();
    return widget == (focus ? focus : &window);
}

bool ExplorerKeyMonitor::eventFilter(QObject* watched, QEvent* event) {
    const QEvent::Type type = event->type();
    if (type != QEvent::ShortcutOverride && type != QEvent::KeyPress) return false;
    if (!isFocusOfWindow(watched)) return false;
    auto* key = static_cast<QKeyEvent*>(event);
    if (type == QEvent::ShortcutOverride) {
        pressElsewhere = nullptr;
        // Qt announces a press made by a program once more, without key codes; the first answer holds.
        if (announced && sameEvent(*announced, *key) && (announced->used || !key->nativeScanCode())) {
            if (announced->used) key->accept();
            return announced->used;
        }
        announced = Announced{key->timestamp(),        key->key(), key->modifiers(), key->nativeScanCode(),
                              key->nativeVirtualKey(), false};
        announced->used = answer(key);
        // Accepting the override keeps a menu shortcut from firing; the press then comes here.
        if (announced->used) key->accept();
        return announced->used;
    }
    const std::optional<bool> prior = previousAnswer(*key);
    // The table still has to hear that its press was answered already.
    if (!prior || *prior || watched != window.table()) announced.reset();
    if (watched != window.table()) {
        pressElsewhere = event;
        pressElsewhereTime = key->timestamp();
    }
    if (prior) return *prior;
    if (watched == window.table()) return false;
    return answer(key);
}

bool ExplorerKeyMonitor::offerTableKey(QKeyEvent* event) {
    // Return ending an inline rename is the editor's key, not a second Rename.
    if (event == pressElsewhere && event->timestamp() == pressElsewhereTime) return true;
    const std::optional<bool> prior = previousAnswer(*event);
    announced.reset();
    return prior ? *prior : answer(event);
}

bool ExplorerKeyMonitor::answer(QKeyEvent* event) {
    window.commands().run(QStringLiteral("cancelPendingRename"));
    // The icon view answers its own keys.
    if (window.viewMode() != ViewMode::Details && window.keyboard().fileListFocused()) return false;
    return window.handleExplorerShortcut(event);
}

} // namespace orvane
