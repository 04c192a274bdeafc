#include "kit/FolderDropTarget.h"

#include "core/BrowserWindow.h"
#include "core/WindowCommands.h"
#include "kit/DroppedFiles.h"
#include "kit/WindowWidgets.h"

#include <QDropEvent>

namespace orvane {

FolderDropTarget::FolderDropTarget(BrowserWindow& window) : w(window), status(window.widgets().status) {}

Qt::DropAction FolderDropTarget::hover(const QDropEvent& event, const QUrl& folder) {
    QString refusal;
    const std::optional<FileDropPlan> plan =
        DroppedFiles::plan(event, folder, std::nullopt, w.busy(), &refusal);
    status.show(plan, refusal);
    return plan ? plan->operation : Qt::IgnoreAction;
}

// The keys at the release decide, so the plan is asked once more.
bool FolderDropTarget::drop(QDropEvent& event, const QUrl& folder) {
    const std::optional<FileDropPlan> plan = DroppedFiles::plan(event, folder, std::nullopt, w.busy());
    status.clear();
    DroppedFiles::answer(event, plan);
    if (plan) w.commands().run(QStringLiteral("dropFiles"), plan->toVariant());
    return plan.has_value();
}

} // namespace orvane
