#pragma once

#include "fileops/FileUndo.h"

#include <QStringList>
#include <vector>

namespace orvane {

// The desktop Trash: moving in, moving back out without leaving a ghost entry behind.
class FileTrash {
public:
    struct TrashedItem {
        QString original;
        QString trashed; // the item's path inside the Trash's "files" folder
    };
    struct Batch {
        std::vector<TrashedItem> items;
        QStringList failures; // the system's text, one per item that stayed
    };

    static bool moveToTrash(const QString& path, QString& trashed, QString& error);
    // Moves the item back, refusing to replace anything at its old place, and drops its .trashinfo.
    static bool restore(const TrashedItem& item, QString& error);

    // Trashes each path in order; a failure does not stop the others.
    static Batch trash(const QStringList& paths);
    // Restores the items from first to last; a rerun after a failure resumes at the one that failed.
    static FileUndo undoStep(std::vector<TrashedItem> items);

    static QString failureTitle() { return QStringLiteral("Some items could not be moved to Trash"); }
};

} // namespace orvane
