#include "views/RowDragGesture.h"

#include <QAbstractItemView>
#include <QApplication>
#include <QMouseEvent>

namespace orvane {

bool RowDragGesture::concerns(const QEvent* event) {
    const QEvent::Type type = event->type();
    return type == QEvent::MouseButtonPress || type == QEvent::MouseMove ||
           type == QEvent::MouseButtonRelease;
}

RowDragGesture::Step RowDragGesture::feed(const QAbstractItemView& view, QEvent* event, bool armed) {
    if (!concerns(event)) return Step::Pass;
    const QEvent::Type type = event->type();
    const auto* mouse = static_cast<QMouseEvent*>(event);
    const QPoint at = mouse->position().toPoint();
    if (type == QEvent::MouseButtonPress) {
        const QModelIndex index = view.indexAt(at);
        const bool onSelection = index.isValid() && view.selectionModel()->isRowSelected(index.row());
        const bool plain = mouse->button() == Qt::LeftButton && !mouse->modifiers();
        pressedAt = armed && onSelection && plain ? std::optional<QPoint>(at) : std::nullopt;
        return Step::Pass;
    }
    if (type == QEvent::MouseButtonRelease || !pressedAt || !(mouse->buttons() & Qt::LeftButton)) {
        pressedAt.reset();
        return Step::Pass;
    }
    if ((at - *pressedAt).manhattanLength() < QApplication::startDragDistance()) return Step::Hold;
    pressedAt.reset();
    return Step::Start;
}

} // namespace orvane
