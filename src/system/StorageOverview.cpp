#include "system/StorageOverview.h"

#include "core/BrowserWindow.h"
#include "core/WindowCommands.h"
#include "kit/CommandBinding.h"
#include "kit/WindowWidgets.h"
#include "system/StorageOverviewController.h"

#include <QToolButton>
#include <QWidget>

namespace orvane {

StorageOverview::StorageOverview(BrowserWindow& window) : QObject(window.widget()), w(window) {
    w.commands().add(QStringLiteral("showStorageOverview"), QStringLiteral("Storage"), [this] { show(); });
    CommandBinding::bind(w.commands(), w.widgets().storageButton, QStringLiteral("showStorageOverview"));
}

StorageOverviewController* StorageOverview::show() {
    if (!overview) {
        overview = new StorageOverviewController(w.widget());
        overview->openVolume = [this](const QUrl& url) {
            w.navigate(url, true);
            w.widget()->raise();
            w.widget()->activateWindow();
        };
        overview->showError = [this](const QString& title, const QString& detail) {
            w.showError(title, detail);
        };
    }
    overview->show();
    overview->raise();
    overview->activateWindow();
    overview->reload();
    return overview;
}

} // namespace orvane
