#include "fileops/FileDrop.h"

#include "core/BrowserWindow.h"
#include "core/WindowCommands.h"
#include "kit/DroppedFiles.h"
#include "kit/WindowWidgets.h"
#include "views/ExplorerIconView.h"
#include "views/ExplorerViewModes.h"
#include "views/FileTable.h"

#include <QDropEvent>
#include <QMimeData>

namespace orvane {

FileDrop::FileDrop(BrowserWindow& window)
    : QObject(window.widget()), w(window), status(window.widgets().status) {
    QWidget* viewport = w.table()->viewport();
    viewport->setAcceptDrops(true);
    viewport->installEventFilter(this);
    attachIcons();
}

void FileDrop::attachIcons() {
    ExplorerViewModes* modes = w.widget()->findChild<ExplorerViewModes*>();
    ExplorerIconView* icons = modes ? modes->iconView() : nullptr;
    if (!icons) return;
    icons->onDropOperation = [this](std::optional<int> index, const QDropEvent& event) {
        return hover(event, index);
    };
    icons->onPerformDrop = [this](std::optional<int> index, QDropEvent& event) { return drop(event, index); };
    icons->onDropExit = [this] { leave(); };
}

std::optional<FileDropPlan> FileDrop::plan(const QDropEvent& event, std::optional<int> row,
                                           QString* refusal) const {
    if (!w.current().isLocalFile()) return std::nullopt;
    QUrl folder = w.current();
    std::optional<int> onto;
    bool ontoFile = false;
    if (row && *row >= 0 && size_t(*row) < w.entries().size()) {
        const Entry& under = w.entries()[size_t(*row)];
        ontoFile = !under.isPlainFolder() || under.isPhone();
        if (!ontoFile) {
            folder = under.url();
            onto = row;
        }
    }
    FileDropPlan::Drag drag = DroppedFiles::facts(event, folder, w.busy());
    drag.row = onto;
    drag.ontoFile = ontoFile;
    return FileDropPlan::make(drag, refusal);
}

Qt::DropAction FileDrop::hover(const QDropEvent& event, std::optional<int> row) {
    QString refusal;
    const std::optional<FileDropPlan> chosen = plan(event, row, &refusal);
    w.table()->setDropRow(chosen ? chosen->row : std::nullopt);
    status.show(chosen, refusal);
    return chosen ? chosen->operation : Qt::IgnoreAction;
}

// The keys at the release decide, so the plan is asked once more.
bool FileDrop::drop(QDropEvent& event, std::optional<int> row) {
    const std::optional<FileDropPlan> chosen = plan(event, row);
    leave();
    DroppedFiles::answer(event, chosen);
    if (chosen) w.commands().run(QStringLiteral("dropFiles"), chosen->toVariant());
    return chosen.has_value();
}

void FileDrop::leave() {
    w.table()->setDropRow(std::nullopt);
    status.clear();
}

bool FileDrop::eventFilter(QObject*, QEvent* event) {
    switch (event->type()) {
    case QEvent::DragEnter:
    case QEvent::DragMove: {
        auto* over = static_cast<QDragMoveEvent*>(event);
        const QModelIndex index = w.table()->indexAt(over->position().toPoint());
        const Qt::DropAction action =
            hover(*over, index.isValid() ? std::optional(index.row()) : std::nullopt);
        over->setDropAction(action);
        // A refused enter would end the moves, and a folder row further on could no longer take it.
        over->setAccepted(action != Qt::IgnoreAction || event->type() == QEvent::DragEnter);
        return true;
    }
    case QEvent::Drop: {
        auto* dropped = static_cast<QDropEvent*>(event);
        const QModelIndex index = w.table()->indexAt(dropped->position().toPoint());
        drop(*dropped, index.isValid() ? std::optional(index.row()) : std::nullopt);
        return true;
    }
    case QEvent::DragLeave:
        leave();
        return false;
    default:
        return false;
    }
}

} // namespace orvane
