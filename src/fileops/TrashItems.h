#pragma once

#include "fileops/FileUndo.h"
#include "fileops/PermanentDelete.h"
#include "platform/DesktopTrash.h"

#include <QStringList>
#include <vector>

namespace orvane {

// Taking items back out of the Trash, or removing them from it for good.
class TrashItems {
public:
    struct Restored {
        QString trashed;  // where it lay in the Trash
        QString restored; // where it went
    };
    struct Outcome {
        std::vector<Restored> restored;
        QStringList failures; // "<name>: <text>"
    };

    // The original path when free, else the first free numbered name beside it: "notes (2).txt".
    static QString freePath(const QString& original, bool folder);
    // Moves each item back where it was deleted from, making its folder again when it is gone, never
    // replacing anything there; the item's record goes with it.
    static Outcome restore(const std::vector<DesktopTrash::Record>& records);
    // Puts restored items back into the Trash; a rerun after a failure resumes at the one that failed.
    static FileUndo undoStep(std::vector<Restored> items);
    // Removes the items and their records; every one is tried.
    static PermanentDelete::Result erase(const QStringList& trashed);

    static QString restoreFailureTitle() { return QStringLiteral("Some items could not be restored"); }
    static QString unknownOrigin() {
        return QStringLiteral("The Trash does not say where this item was deleted from.");
    }
};

} // namespace orvane
