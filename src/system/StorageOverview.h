#pragma once

#include <QObject>
#include <QPointer>

#include "system/StorageOverviewController.h"

namespace orvane {

class BrowserWindow;

// The window's way to its storage overview: the Storage button and command, one overview per
// window, made on first use; a volume opened there opens in this window.
class StorageOverview : public QObject {
    Q_OBJECT
public:
    explicit StorageOverview(BrowserWindow& window);
    // Shown, in front, and read again.
    StorageOverviewController* show();
    StorageOverviewController* controller() const { return overview; }

private:
    BrowserWindow& w;
    QPointer<StorageOverviewController> overview;
};

} // namespace orvane
