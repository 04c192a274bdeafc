#include "browsing/ExplorerKeyMonitor.h"

#include "browsing/Explorer.h"
#include "views/FileTable.h"

#include <QApplication>
#include <QKeyEvent>

namespace orvane {

ExplorerKeyMonitor::ExplorerKeyMonitor(Explorer& window) : QObject(&window), window(window) {
    qApp->installEventFilter(this);
}

ExplorerKeyMonitor::~ExplorerKeyMonitor() {
    if (qApp) qApp->removeEventFilter(this);
}

ExplorerKeyMonitor::Stamp ExplorerKeyMonitor::Stamp::of(const QKeyEvent& event) {
    return {event.timestamp(), event.key(), event.nativeScanCode(), event.modifiers()};
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
        answered = Stamp::of(*key);
        answeredUsed = answer(key);
        // Accepting the override keeps a menu shortcut from firing; the press then comes here.
        if (answeredUsed) key->accept();
        return answeredUsed;
    }
    if (answered && *answered == Stamp::of(*key)) {
        const bool used = answeredUsed;
        // The table still has to hear that this press was already answered.
        if (used || watched != window.table()) answered.reset();
        return used;
    }
    answered.reset();
    if (watched == window.table()) return false;
    return answer(key);
}

bool ExplorerKeyMonitor::offerTableKey(QKeyEvent* event) {
    if (answered && *answered == Stamp::of(*event)) {
        answered.reset();
        return false;
    }
    return answer(event);
}

bool ExplorerKeyMonitor::answer(QKeyEvent* event) {
    if (const Explorer::Operation cancel = window.operation(QStringLiteral("cancelPendingRename"))) cancel();
    // The icon view answers its own keys.
    if (window.viewMode != 6 && window.fileListFocused()) return false;
    return window.handleExplorerShortcut(event);
}

} // namespace orvane
