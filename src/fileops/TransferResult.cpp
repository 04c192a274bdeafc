#include "fileops/TransferResult.h"

#include "fileops/FileTrash.h"
#include "fileops/FileTree.h"
#include "platform/NativePath.h"

#include <memory>

namespace orvane {

QString TransferResult::statusText() const {
    const QString done = QString::number(finished.size()) + QStringLiteral(" items ") +
                         (moving ? QStringLiteral("moved") : QStringLiteral("copied"));
    // Nothing arrived: there is no undo step, so none is offered.
    return finished.empty() ? done : done + QStringLiteral(" · Ctrl+Z to undo");
}

QStringList TransferResult::movedSources() const {
    QStringList list;
    if (moving)
        for (const TransferJob& job : finished)
            list << job.source;
    return list;
}

namespace {
QString shownName(const QString& path) {
    return NativePath::display(path.section(u'/', -1));
}

bool undoJob(const TransferJob& job, bool moving, const PathMoved& onMoved, QString& error) {
    QString text;
    if (moving) {
        if (!FileTree::move(job.destination, job.source, text)) {
            error = shownName(job.destination) + QStringLiteral(": ") + text;
            return false;
        }
        if (onMoved) onMoved(job.destination, job.source);
        return true;
    }
    QString trashed;
    if (FileTrash::moveToTrash(job.destination, trashed, text)) return true;
    error = shownName(job.destination) + QStringLiteral(": ") + text;
    return false;
}
} // namespace

FileUndo TransferResult::undo(PathMoved onMoved) const {
    if (finished.empty()) return {};
    // Counts the jobs still to reverse, so a rerun after a failure starts where the last one stopped.
    auto left = std::make_shared<size_t>(finished.size());
    return [jobs = finished, moving = moving, onMoved = std::move(onMoved), left](QString& error) {
        for (; *left > 0; --*left)
            if (!undoJob(jobs[*left - 1], moving, onMoved, error)) return false;
        return true;
    };
}

} // namespace orvane
