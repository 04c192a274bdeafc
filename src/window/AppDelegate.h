#pragma once

#include "core/BrowserApp.h"

#include <QObject>
#include <QPointer>
#include <QUrl>
#include <functional>
#include <memory>
#include <optional>
#include <vector>

class QMenuBar;
class QMessageBox;

namespace orvane {

class Explorer;
class ExternalOpenRequests;
class ModalShortcuts;

// The one application object: the registry of windows and the guards on closing and quitting.
class AppDelegate : public QObject, public BrowserApp {
    Q_OBJECT
public:
    explicit AppDelegate(QObject* parent = nullptr);
    // Runs on the services given (a test's own settings file); it owns them from now on.
    explicit AppDelegate(Services* services, QObject* parent = nullptr);
    ~AppDelegate() override;

    // The only owner of windows: a window lives exactly as long as it is listed here.
    std::vector<std::unique_ptr<Explorer>> windows;
    bool didFinishLaunching = false;
    // Started by the session bus for a request, which decides the first window itself.
    bool openFirstWindow = true;
    // Answers whether a change of the system's default folder browser is still under way.
    std::function<bool()> defaultBrowserChanging = [] { return false; };
    // Opens the default-browser window; empty where the desktop has none.
    std::function<void()> showDefaultBrowserSettings;

    void applicationDidFinishLaunching();
    Explorer* newWindow(const std::optional<QUrl>& initialURL = std::nullopt);
    // Requests from outside to open folders and files; they wait until launching is over.
    void receiveExternalURLs(const QList<QUrl>& urls,
                             ExternalOpenMode mode = ExternalOpenMode::Open) override;
    QObject* object() override { return this; }
    std::vector<BrowserWindow*> browserWindows() const override;
    BrowserWindow* openWindow(const std::optional<QUrl>& initialURL = std::nullopt) override;
    bool launched() const override { return didFinishLaunching; }
    Services& services() override { return *shared; }
    void drainExternalRequests();
    bool anyWindowBusy() const;
    bool shouldTerminateAfterLastWindowClosed() const;
    // Asked on every quit; refuses with an alert while something still runs.
    bool shouldTerminate();
    void requestQuit();
    void makeMenu(QMenuBar* bar, Explorer* window);
    // The application-wide key watch for dialogs and other windows that are no browser windows.
    void installModalShortcuts();
    std::unique_ptr<ModalShortcuts> modalKeyMonitor;
    QPointer<QMessageBox> lastAlert() const { return alert; }

signals:
    void firstWindowDecided();

private:
    void windowWillClose(Explorer* window);
    void routeEdit(int tag, Explorer* window);

    QPointer<QMessageBox> alert;
    Services* shared;
    ExternalOpenRequests* external;
};

} // namespace orvane
