#include "fileops/FileDrag.h"

#include "browsing/Explorer.h"
#include "fileops/ExplorerFileOps.h"
#include "fileops/UriList.h"
#include "views/FileTable.h"

#include <QApplication>
#include <QDrag>
#include <QLineEdit>
#include <QMimeData>
#include <QMouseEvent>

namespace orvane {

FileDrag::FileDrag(Explorer& window) : QObject(&window), w(window) {
    w.table()->viewport()->installEventFilter(this);
}

QMimeData* FileDrag::dragData() const {
    if (!w.current().isLocalFile()) return nullptr;
    QList<QUrl> urls;
    for (const Entry& entry : w.selected())
        if (!entry.isPhone()) urls << entry.url();
    if (urls.isEmpty()) return nullptr;
    auto* data = new QMimeData;
    UriList::write(*data, urls);
    return data;
}

bool FileDrag::eventFilter(QObject*, QEvent* event) {
    if (event->type() != QEvent::MouseButtonPress && event->type() != QEvent::MouseMove &&
        event->type() != QEvent::MouseButtonRelease)
        return false;
    auto* mouse = static_cast<QMouseEvent*>(event);
    if (event->type() == QEvent::MouseButtonPress) {
        const QModelIndex index = w.table()->indexAt(mouse->position().toPoint());
        const bool onSelected = index.isValid() && w.table()->selectionModel()->isRowSelected(index.row());
        pressedAt = onSelected && w.current().isLocalFile() && mouse->button() == Qt::LeftButton &&
                            !mouse->modifiers()
                        ? std::optional<QPoint>(mouse->position().toPoint())
                        : std::nullopt;
        return false;
    }
    if (event->type() == QEvent::MouseButtonRelease || !pressedAt || !(mouse->buttons() & Qt::LeftButton)) {
        pressedAt.reset();
        return false;
    }
    if ((mouse->position().toPoint() - *pressedAt).manhattanLength() < QApplication::startDragDistance())
        return true; // a press on the selection does not start a rubber band
    pressedAt.reset();
    QMimeData* data = dragData();
    if (!data) return true;
    if (ExplorerFileOps* ops = w.fileOps()) ops->cancelPendingRename();
    auto* drag = new QDrag(w.table()->viewport());
    drag->setMimeData(data);
    drag->exec(Qt::CopyAction | Qt::MoveAction, Qt::CopyAction);
    return true;
}

} // namespace orvane
