#pragma once

#include "fileops/FileUndo.h"
#include "fileops/TransferJob.h"

#include <QMetaType>
#include <QStringList>

namespace orvane {

// What a finished transfer run did: the jobs that arrived, in order, and one line per job that did not.
struct TransferResult {
    bool moving = false;
    bool cancelled = false; // stopped by the person; what arrived whole is in `finished`
    TransferJobs finished;
    std::vector<qint64> arrivedAt; // each finished item's modification time when it arrived, in ns
    QStringList failures;          // "<name>: <system text>"

    static QString failureTitle() { return QStringLiteral("Some items could not be transferred"); }
    QString failureDetail() const { return failures.join(u'\n'); }
    // "3 items copied · Ctrl+Z to undo"; "0 items copied" when nothing arrived.
    QString statusText() const;
    // Sources that have left their place, for the cut list and for pins to follow.
    QStringList movedSources() const;

    // Reverses only the finished jobs, last first: moves go back (and `onMoved` lets pins follow), copies
    // go to the Trash and are never deleted outright. A copy modified since it arrived (an edited file,
    // a folder with new items) goes only once `confirm` agrees. None when nothing finished.
    FileUndo undo(PathMoved onMoved = {}, UndoConfirm confirm = {}) const;
    // An item's modification time in ns, links not followed; -1 when it is gone.
    static qint64 modifiedAt(const QString& path);
};

} // namespace orvane

Q_DECLARE_METATYPE(orvane::TransferResult)
