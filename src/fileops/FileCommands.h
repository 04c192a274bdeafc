#pragma once

#include "fileops/FileUndo.h"

#include <QString>

namespace orvane {

// The outcome of one file command: on success the item's path and the undo step that replaces the window's
// former one; on failure the alert's title and detail, with nothing changed on disk.
struct FileCommandResult {
    bool ok = false;
    QString path;
    FileUndo undo;
    QString title;
    QString detail;
};

// New folder, new text document and rename on the local disk. Main thread, synchronous, and never
// replacing anything: each creation and rename is refused by the kernel if the name is taken.
class FileCommands {
public:
    // Creates "New Folder" or the first free "New Folder (n)"; its undo sends it to the Trash.
    static FileCommandResult createFolder(const QString& folder);
    // Creates an empty file; a taken or invalid name fails. Its undo sends it to the Trash.
    static FileCommandResult createTextDocument(const QString& folder, const QString& name);
    // Renames within the item's folder. An unchanged name succeeds with no undo step. `onMoved` of the
    // undo lets pins follow the item back.
    static FileCommandResult rename(const QString& path, const QString& newName, PathMoved onMoved = {});
};

} // namespace orvane
