#pragma once

#include <QObject>
#include <QPointer>

namespace orvane {

class BrowserApp;
class DefaultBrowserSettings;
class DefaultBrowserWindow;
class FileManagerBus;
class InstanceChannel;

// Orvane as the desktop's file manager: the reveal service on the session bus and the default
// folder browser, with its window made when first asked for. A change cut short by a crash is
// undone here at the next start; while Orvane is the default it claims the reveal service.
class DesktopIntegration : public QObject {
    Q_OBJECT
public:
    static const QString desktopId;

    DesktopIntegration(BrowserApp& app, const InstanceChannel* channel);

    FileManagerBus& bus() const { return *fileManager; }
    DefaultBrowserSettings& defaults() const { return *settings; }
    void presentSettingsWindow();

private:
    FileManagerBus* fileManager;
    DefaultBrowserSettings* settings;
    QPointer<DefaultBrowserWindow> window;
};

} // namespace orvane
