#pragma once

#include "fileops/FileUndo.h"

#include <QObject>
#include <QPointer>

namespace orvane {

class BrowserWindow;
class Job;

// Compress and Extract here for one window: each runs as a job that holds the window, off the main
// thread, and leaves one undo step that moves what it made to the Trash.
class ArchiveCommands : public QObject {
    Q_OBJECT
public:
    ArchiveCommands(BrowserWindow& window, FileUndo& undo, QObject* parent);

    void compressAction();
    void extractHere();
    // The one archive selected in a local folder, or empty.
    QString selectedArchive() const;

signals:
    // The job ended and the window has caught up with it.
    void finished();

private:
    void land(const QString& made, const QString& status);

    BrowserWindow& w;
    FileUndo& fileUndo;
};

} // namespace orvane
