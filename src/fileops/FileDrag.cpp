#include "fileops/FileDrag.h"

#include "core/BrowserWindow.h"
#include "core/InlineRename.h"
#include "core/UriList.h"
#include "views/FileTable.h"

#include <QDrag>
#include <QLineEdit>
#include <QMimeData>

namespace orvane {

FileDrag::FileDrag(BrowserWindow& window) : QObject(window.widget()), w(window) {
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
    if (!RowDragGesture::concerns(event)) return false; // the viewport outlives the window's tabs
    const RowDragGesture::Step step = gesture.feed(*w.table(), event, w.current().isLocalFile());
    if (step != RowDragGesture::Step::Start) return step == RowDragGesture::Step::Hold;
    QMimeData* data = dragData();
    if (!data) return true;
    if (InlineRename* ops = w.inlineRename()) ops->cancelPendingRename();
    auto* drag = new QDrag(w.table()->viewport());
    drag->setMimeData(data);
    drag->exec(Qt::CopyAction | Qt::MoveAction | Qt::LinkAction, Qt::CopyAction);
    return true;
}

} // namespace orvane
