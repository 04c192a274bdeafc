#include "phone/PhoneDrop.h"
#include "core/Job.h"
#include "core/Jobs.h"

#include "core/BrowserWindow.h"
#include "core/WindowCommands.h"
#include "kit/TransferProgressEdge.h"
#include "phone/AndroidBrowser.h"
#include "phone/AndroidContent.h"
#include "phone/PhoneClipboard.h"
#include "phone/PhoneDragData.h"
#include "phone/PhoneTransfer.h"
#include "platform/NativePath.h"
#include "views/ExplorerIconView.h"
#include "views/ExplorerViewModes.h"
#include "views/FileTable.h"

#include <QDrag>
#include <QDropEvent>
#include <QFile>
#include <QMimeData>
#include <QPointer>

namespace orvane {

PhoneDrop::PhoneDrop(BrowserWindow& window, AndroidContent& phones)
    : QObject(window.widget()), w(window), phones(phones) {
    QWidget* viewport = w.table()->viewport();
    viewport->setAcceptDrops(true);
    viewport->installEventFilter(this);
    ExplorerViewModes* modes = w.widget()->findChild<ExplorerViewModes*>();
    ExplorerIconView* icons = modes ? modes->iconView() : nullptr;
    if (!icons) return;
    icons->remoteDragData = [this](const std::vector<int>& indexes) -> QMimeData* {
        AndroidBrowser* browser = this->phones.active();
        if (!browser || browser->state().busy()) return nullptr;
        std::vector<Entry> entries;
        for (int index : indexes)
            if (size_t(index) < w.entries().size()) entries.push_back(w.entries()[size_t(index)]);
        const QList<PhoneItem> items = browser->itemsOf(entries);
        return items.isEmpty() ? nullptr : new PhoneDragData(items);
    };
    // In front of the file drop: what is not the phone's goes on to it.
    icons->onDropOperation = [this, files = icons->onDropOperation](std::optional<int> index,
                                                                    const QDropEvent& event) {
        if (AndroidBrowser* browser = this->phones.active())
            return browser->dropOperation(event.mimeData(), index);
        if (target(event.mimeData(), index)) return Qt::CopyAction;
        return files ? files(index, event) : Qt::IgnoreAction;
    };
    icons->onPerformDrop = [this, files = icons->onPerformDrop](std::optional<int> index, QDropEvent& event) {
        if (AndroidBrowser* browser = this->phones.active())
            return browser->performDrop(event.mimeData(), index);
        const std::optional<QString> folder = target(event.mimeData(), index);
        if (folder) perform(PhoneClipboard::read(event.mimeData()), *folder);
        return folder.has_value() || (files && files(index, event));
    };
}

std::optional<QString> PhoneDrop::target(const QMimeData* data, std::optional<int> row) const {
    if (!w.current().isLocalFile() || w.busy() || PhoneClipboard::read(data).isEmpty()) return std::nullopt;
    if (row && size_t(*row) < w.entries().size()) {
        const Entry& under = w.entries()[size_t(*row)];
        if (under.isPlainFolder() && !under.isPhone()) return under.location;
    }
    return w.current().toLocalFile();
}

void PhoneDrop::perform(const QList<PhoneItem>& items, const QString& folder) {
    QPointer<Job> job = w.jobs().start(QStringLiteral("Copying from phone…"), w.widget());
    w.commands().refresh();
    auto transfer = std::make_shared<PhoneTransfer>();
    transfer->progress = [job](double fraction) {
        if (job) job->setProgress(fraction);
    };
    transfer->download(items, NativePath::encode(folder),
                       [self = QPointer(this), job](const std::optional<QString>& error) {
                           if (job) job->finish();
                           if (!self) return;
                           BrowserWindow& w = self->w;
                           w.refresh();
                           if (error) w.showError(QStringLiteral("Copy from phone"), *error);
                       });
}

std::optional<int> PhoneDrop::rowAt(const QPoint& point) const {
    const QModelIndex index = w.table()->indexAt(point);
    return index.isValid() ? std::optional<int>(index.row()) : std::nullopt;
}

bool PhoneDrop::eventFilter(QObject*, QEvent* event) {
    switch (event->type()) {
    case QEvent::DragEnter:
    case QEvent::DragMove:
    case QEvent::Drop:
        return phones.active() ? phoneDropEvent(event) : dropEvent(event);
    case QEvent::DragLeave:
        w.table()->setDropRow(std::nullopt);
        return false;
    case QEvent::MouseButtonPress:
    case QEvent::MouseMove:
    case QEvent::MouseButtonRelease:
        return dragOut(event);
    default:
        return false;
    }
}

// Only phone items are taken here; anything else is left to the table.
bool PhoneDrop::dropEvent(QEvent* event) {
    auto* drop = static_cast<QDropEvent*>(event);
    const std::optional<QString> folder = target(drop->mimeData(), rowAt(drop->position().toPoint()));
    if (!folder) return false;
    drop->setDropAction(Qt::CopyAction);
    drop->accept();
    if (event->type() == QEvent::Drop) perform(PhoneClipboard::read(drop->mimeData()), *folder);
    return true;
}

// Onto a phone folder: phone items move, local files are sent, a folder row under the pointer is
// marked as the target; nothing else is taken.
bool PhoneDrop::phoneDropEvent(QEvent* event) {
    auto* drop = static_cast<QDropEvent*>(event);
    AndroidBrowser* browser = phones.active();
    const std::optional<int> row = rowAt(drop->position().toPoint());
    const Qt::DropAction action = browser->dropOperation(drop->mimeData(), row);
    const std::optional<AndroidBrowser::DropTarget> into = browser->dropTarget(row);
    const bool onFolder = into && into->parents.size() > browser->state().history().size();
    w.table()->setDropRow(
        action != Qt::IgnoreAction && onFolder && event->type() != QEvent::Drop ? row : std::nullopt);
    if (action == Qt::IgnoreAction) {
        drop->ignore();
        return true;
    }
    drop->setDropAction(action);
    drop->accept();
    if (event->type() == QEvent::Drop && !browser->performDrop(drop->mimeData(), row)) drop->ignore();
    return true;
}

// A press on a selected row of a phone tab that moves far enough drags the selected items out.
bool PhoneDrop::dragOut(QEvent* event) {
    AndroidBrowser* browser = phones.active();
    const RowDragGesture::Step step = gesture.feed(*w.table(), event, browser != nullptr);
    if (step != RowDragGesture::Step::Start) return step == RowDragGesture::Step::Hold;
    const QList<PhoneItem> items = browser ? browser->selectedItems() : QList<PhoneItem>();
    if (items.isEmpty() || browser->state().busy()) return true;
    auto* data = new PhoneDragData(items);
    auto* drag = new QDrag(w.table()->viewport());
    drag->setMimeData(data);
    drag->exec(Qt::CopyAction | Qt::MoveAction | Qt::LinkAction, Qt::CopyAction);
    return true;
}

} // namespace orvane
