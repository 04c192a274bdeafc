#include "window/PointerNavigation.h"

#include "core/TabContent.h"
#include "core/WindowCommands.h"
#include "views/FileTable.h"
#include "window/Explorer.h"

#include <QApplication>
#include <QListWidget>
#include <QMouseEvent>

namespace orvane {

PointerNavigation::PointerNavigation(Explorer& window) : QObject(&window), w(window) {
    // The buttons act wherever the pointer is in the window, before any view takes the press
    // for a click of its own.
    qApp->installEventFilter(this);
}

PointerNavigation::~PointerNavigation() {
    if (qApp) qApp->removeEventFilter(this);
}

bool PointerNavigation::eventFilter(QObject* watched, QEvent* event) {
    const QEvent::Type type = event->type();
    if (type != QEvent::MouseButtonPress && type != QEvent::MouseButtonRelease &&
        type != QEvent::MouseButtonDblClick)
        return false;
    auto* widget = qobject_cast<QWidget*>(watched);
    if (!widget || widget->window() != &w) return false;
    auto* mouse = static_cast<QMouseEvent*>(event);
    const Qt::MouseButton button = mouse->button();
    if (button == Qt::BackButton || button == Qt::ForwardButton) {
        if (type == QEvent::MouseButtonPress)
            w.commands().run(button == Qt::BackButton ? QStringLiteral("back") : QStringLiteral("forward"));
        return true;
    }
    // The middle button never selects in the file list; its click opens the folder under it.
    const bool inList = watched == w.table()->viewport();
    if (button != Qt::MiddleButton || !inList) return false;
    if (type == QEvent::MouseButtonRelease) openInNewTab(watched, mouse->position().toPoint());
    return true;
}

// The folder under the pointer in the file list; the selection stays as it is.
void PointerNavigation::openInNewTab(QObject* watched, const QPoint& at) {
    QUrl folder;
    if (watched == w.table()->viewport()) {
        const QModelIndex index = w.table()->indexAt(at);
        if (!index.isValid() || size_t(index.row()) >= w.entries().size()) return;
        const Entry& entry = w.entries()[size_t(index.row())];
        if (!entry.isPlainFolder()) return;
        folder = w.contentFor(w.current())->address(entry);
    }
    if (!folder.isValid()) return;
    w.newTab();
    w.navigate(folder);
}

} // namespace orvane
