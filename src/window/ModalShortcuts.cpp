#include "window/ModalShortcuts.h"

#include "window/Explorer.h"
#include "window/ExplorerShortcuts.h"

#include <QApplication>
#include <QDialog>
#include <QKeyEvent>
#include <QLineEdit>

namespace orvane {

ModalShortcuts::ModalShortcuts(QObject* parent) : QObject(parent) {
    qApp->installEventFilter(this);
}

ModalShortcuts::~ModalShortcuts() {
    if (qApp) qApp->removeEventFilter(this);
}

bool ModalShortcuts::eventFilter(QObject* watched, QEvent* event) {
    if (event->type() != QEvent::KeyPress) return false;
    auto* receiver = qobject_cast<QWidget*>(watched);
    if (!receiver) return false;
    // Only the first delivery, at the focused widget, not the steps up through its parents.
    const QWidget* focus = receiver->window()->focusWidget();
    if (receiver != (focus ? focus : receiver->window())) return false;
    return handleKey(receiver, static_cast<QKeyEvent*>(event));
}

bool ModalShortcuts::handleKey(QWidget* receiver, QKeyEvent* event) {
    QWidget* modal = QApplication::activeModalWidget();
    QWidget* window = receiver->window();
    const PhysicalKey key = physicalKey(*event);
    // A popup of the dialog, such as an open menu, keeps its own Escape.
    if (modal && modal == window && key == PhysicalKey::Escape) {
        if (auto* dialog = qobject_cast<QDialog*>(modal))
            dialog->done(escapeCode);
        else
            modal->close();
        return true;
    }
    if (!(modal && modal == window) && qobject_cast<Explorer*>(window)) return false;
    const KeyModifiers m = keyModifiers(event->modifiers());
    if (m.alt || !(m.control || m.command)) return false;
    auto* editor = qobject_cast<QLineEdit*>(window->focusWidget());
    if (!editor) return false;
    if (handleWindowsTextKey(editor, event)) return true;
    switch (key) {
    case PhysicalKey::A:
        editor->selectAll();
        return true;
    case PhysicalKey::X:
        editor->cut();
        return true;
    case PhysicalKey::C:
        editor->copy();
        return true;
    case PhysicalKey::V:
        editor->paste();
        return true;
    case PhysicalKey::Z:
        m.shift ? editor->redo() : editor->undo();
        return true;
    default:
        return false;
    }
}

} // namespace orvane
