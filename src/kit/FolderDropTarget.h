#pragma once

#include "kit/DropStatus.h"

#include <QUrl>

class QDropEvent;

namespace orvane {

class BrowserWindow;

// A place outside the file list that takes dropped files into one folder (a row of the navigation
// pane, a tab): the same plan as the list, carried out by the window's "dropFiles".
class FolderDropTarget {
public:
    explicit FolderDropTarget(BrowserWindow& window);

    Qt::DropAction hover(const QDropEvent& event, const QUrl& folder);
    bool drop(QDropEvent& event, const QUrl& folder);
    void leave() { status.clear(); }

private:
    BrowserWindow& w;
    DropStatus status;
};

} // namespace orvane
