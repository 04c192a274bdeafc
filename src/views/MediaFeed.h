#pragma once

#include <QObject>

namespace orvane {

class BrowserWindow;
class ExplorerIconView;

// Gives a window's views the pictures and sizes of its files: the table's icons and dimensions
// column and the icon view's cells ask the media services for what they show, drawing what is
// cached at once, and repaint the item when the rest arrives.
class MediaFeed : public QObject {
    Q_OBJECT
public:
    MediaFeed(BrowserWindow& window, ExplorerIconView& icons);

private:
    void thumbnailArrived(const QString& location);

    BrowserWindow& w;
    ExplorerIconView& icons;
};

} // namespace orvane
