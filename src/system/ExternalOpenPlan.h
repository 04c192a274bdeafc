#pragma once

#include <QList>
#include <QString>
#include <QUrl>

namespace orvane {

// One folder to show, with the items to select in it, in request order.
struct ExternalFolderRequest {
    QUrl folder;
    QList<QUrl> selection;
};

// What a request from outside to open items comes to: the folders to show, each once however it was
// spelled, and what could not be found. Reads the disk, touches no window.
struct ExternalOpenPlan {
    QList<ExternalFolderRequest> folders;
    QList<QUrl> unavailable;

    // Folders open as themselves; files, bundles and everything when revealing are selected in
    // their parent folder.
    ExternalOpenPlan(const QList<QUrl>& urls, bool reveal);
    ExternalOpenPlan() = default;

    // The location with links resolved, so two spellings of one folder fall together.
    static QString identity(const QUrl& url);
};

} // namespace orvane
