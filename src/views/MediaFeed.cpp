#include "views/MediaFeed.h"

#include "core/BrowserWindow.h"
#include "core/Services.h"
#include "media/MediaDimensions.h"
#include "media/MediaThumbnails.h"
#include "views/EntryTableModel.h"
#include "views/ExplorerIconCanvas.h"
#include "views/ExplorerIconView.h"
#include "views/FileTable.h"

namespace orvane {

namespace {

// What is cached, at once; otherwise a request, and null until it arrives.
QImage thumbnailOf(MediaThumbnails& media, const Entry& entry) {
    if (!media.supports(entry)) return {};
    if (auto image = media.cached(entry)) return *image;
    media.request(entry, [](const QImage&) {});
    return {};
}

} // namespace

MediaFeed::MediaFeed(BrowserWindow& window, ExplorerIconView& iconView)
    : QObject(window.widget()), w(window), icons(iconView) {
    MediaThumbnails& pictures = w.services().thumbnails();
    MediaDimensions& sizes = w.services().dimensions();
    ExplorerIconPainter& cells = icons.canvas()->cellPainter();
    cells.thumbnail = [&pictures](const Entry& entry) { return thumbnailOf(pictures, entry); };
    cells.thumbnailPending = [&pictures](const Entry& entry) { return pictures.supports(entry); };
    if (auto* model = qobject_cast<EntryTableModel*>(w.table()->model())) {
        model->thumbnail = [&pictures](const Entry& entry) { return thumbnailOf(pictures, entry); };
        model->dimensions = [&sizes](const Entry& entry) {
            if (auto text = sizes.cached(entry)) return *text;
            sizes.request(entry, [](const QString&) {});
            return QString();
        };
    }
    connect(&pictures, &MediaThumbnails::arrived, this, &MediaFeed::thumbnailArrived);
    connect(&sizes, &MediaDimensions::arrived, this, [this] { w.table()->viewport()->update(); });
}

void MediaFeed::thumbnailArrived(const QString& location) {
    // A picture that failed leaves the stand-in, which is kept from now on.
    icons.canvas()->cellPainter().forgetEntry(location);
    if (icons.isVisible()) icons.canvas()->update();
    if (w.table()->isVisible()) w.table()->viewport()->update();
}

} // namespace orvane
