#include "system/DesktopIntegration.h"

#include "core/BrowserApp.h"
#include "core/Services.h"
#include "system/DefaultBrowserSettings.h"
#include "system/DefaultBrowserWindow.h"
#include "system/FileManagerBus.h"

namespace orvane {

const QString DesktopIntegration::desktopId = QStringLiteral("org.orvane.Orvane.desktop");

DesktopIntegration::DesktopIntegration(BrowserApp& app, const InstanceChannel* channel)
    : QObject(app.object()), fileManager(new FileManagerBus(app, channel)),
      settings(new DefaultBrowserSettings(DefaultBrowserSettings::desktop(*fileManager),
                                          app.services().settings(),
                                          QStringLiteral("inode/directory=") + desktopId + u';', this)) {
    if (settings->recoverInterruptedChange([](const DefaultBrowserSettings::Result&) {})) return;
    if (settings->status().folderIdentifier == settings->paneIdentifier()) fileManager->takeName();
}

void DesktopIntegration::presentSettingsWindow() {
    if (!window) window = new DefaultBrowserWindow(*settings);
    window->present();
}

} // namespace orvane
