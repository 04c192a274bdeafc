#include "fileops/TransferResult.h"

#include "fileops/FileTrash.h"
#include "fileops/FileTree.h"
#include "platform/NativePath.h"

#include <memory>
#include <sys/stat.h>

namespace orvane {

QString TransferResult::statusText() const {
    const QString done = (cancelled ? QStringLiteral("Cancelled · ") : QString()) +
                         QString::number(finished.size()) + QStringLiteral(" items ") +
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

// The copies still to undo that were modified since they arrived, by their names.
QStringList changedCopies(const TransferJobs& jobs, const std::vector<qint64>& arrivedAt, size_t left) {
    QStringList names;
    for (size_t i = 0; i < left && i < arrivedAt.size(); ++i) {
        const qint64 now = TransferResult::modifiedAt(jobs[i].destination);
        if (now >= 0 && now != arrivedAt[i]) names << shownName(jobs[i].destination);
    }
    return names;
}

// The peers ask too: the Trash keeps it, but the person may not know the copy is the edited one.
bool agreed(const QStringList& changed, const UndoConfirm& confirm) {
    if (changed.isEmpty()) return true;
    const QString subject = changed.size() == 1 ? u'"' + changed.front() + u'"'
                                                : QString::number(changed.size()) + QStringLiteral(" copies");
    const QString info = changed.size() == 1 ? QStringLiteral("It has changed since it was copied.")
                                             : QStringLiteral("Changed since they were copied: ") +
                                                   changed.join(QStringLiteral(", ")) + u'.';
    return confirm && confirm(QStringLiteral("Move ") + subject + QStringLiteral(" to Trash?"), info);
}
} // namespace

qint64 TransferResult::modifiedAt(const QString& path) {
    struct stat st;
    if (lstat(NativePath::encode(path).constData(), &st) != 0) return -1;
    return qint64(st.st_mtim.tv_sec) * 1000000000 + st.st_mtim.tv_nsec;
}

FileUndo TransferResult::undo(PathMoved onMoved, UndoConfirm confirm) const {
    if (finished.empty()) return {};
    // Counts the jobs still to reverse, so a rerun after a failure starts where the last one stopped.
    auto left = std::make_shared<size_t>(finished.size());
    return [jobs = finished, moving = moving, arrivedAt = arrivedAt, onMoved = std::move(onMoved),
            confirm = std::move(confirm), left](QString& error) {
        if (!moving && !agreed(changedCopies(jobs, arrivedAt, *left), confirm)) return false;
        for (; *left > 0; --*left)
            if (!undoJob(jobs[*left - 1], moving, onMoved, error)) return false;
        return true;
    };
}

} // namespace orvane
