#include "window/AppDelegate.h"

#include "chrome/WindowSnapping.h"
#include "kit/CommandBinding.h"

#include "core/Job.h"
#include "core/Jobs.h"
#include "core/Services.h"
#include "core/WindowCommands.h"
#include "fileops/FileClipboard.h"
#include "kit/ExplorerAlert.h"
#include "media/AudioPreview.h"
#include "media/MediaDimensions.h"
#include "media/MediaThumbnails.h"
#include "media/VideoPreview.h"
#include "platform/Platform.h"
#include "system/AppUpdates.h"
#include "system/CustomizationWindow.h"
#include "system/ExternalOpenRequests.h"
#include "views/FileIcons.h"
#include "views/FileTable.h"
#include "window/Explorer.h"
#include "window/ModalShortcuts.h"

#include <QApplication>
#include <QLineEdit>
#include <QMenuBar>
#include <QTimer>

namespace orvane {

AppDelegate::AppDelegate(QObject* parent) : AppDelegate(new Services, parent) {}

AppDelegate::AppDelegate(Services* services, QObject* parent)
    : QObject(parent), shared(services), external(new ExternalOpenRequests(*this)) {
    shared->setParent(this);
    shared->provide(FileClipboard::shared(), FileIcons::shared());
    auto* updates = new AppUpdates(shared->settings(), UpdateSource::builtIn(),
                                   QCoreApplication::applicationVersion(), shared);
    updates->setPackaged(AppUpdates::ownedByPackage(QCoreApplication::applicationFilePath().toUtf8()));
    shared->provideUpdates(*updates);
    updates->start();
    auto* audio = new AudioPreview(shared);
    shared->provideMedia(*audio, *new VideoPreview(*audio, shared));
    shared->provideMediaFacts(*new MediaThumbnails(shared), *new MediaDimensions(shared));
    QApplication::setQuitOnLastWindowClosed(false);
}

AppDelegate::~AppDelegate() = default;

void AppDelegate::applicationDidFinishLaunching() {
    installModalShortcuts();
    didFinishLaunching = true;
    // Queued, so open requests that arrive just after launch are served before a window is made.
    QTimer::singleShot(0, this, [this] {
        drainExternalRequests();
        if (windows.empty() && openFirstWindow) newWindow();
        if (!windows.empty()) windows.back()->activateWindow();
        emit firstWindowDecided();
    });
}

Explorer* AppDelegate::newWindow(const std::optional<QUrl>& initialURL) {
    auto window = std::make_unique<Explorer>(this, initialURL);
    Explorer* raw = window.get();
    makeMenu(raw->widgets().menuBar, raw);
    connect(raw, &Explorer::closing, this, &AppDelegate::windowWillClose);
    windows.push_back(std::move(window));
    raw->show();
    raw->activateWindow();
    return raw;
}

std::vector<BrowserWindow*> AppDelegate::browserWindows() const {
    std::vector<BrowserWindow*> all;
    for (const auto& window : windows)
        all.push_back(window.get());
    return all;
}

BrowserWindow* AppDelegate::openWindow(const std::optional<QUrl>& initialURL) {
    return newWindow(initialURL);
}

void AppDelegate::receiveExternalURLs(const QList<QUrl>& urls, ExternalOpenMode mode) {
    external->receive(urls, mode);
}

void AppDelegate::drainExternalRequests() {
    external->drain();
}

void AppDelegate::installModalShortcuts() {
    if (!modalKeyMonitor) modalKeyMonitor = std::make_unique<ModalShortcuts>();
}

bool AppDelegate::anyWindowBusy() const {
    return shared->jobs().anyHolding();
}

bool AppDelegate::shouldTerminateAfterLastWindowClosed() const {
    return !defaultBrowserChanging() && !anyWindowBusy();
}

bool AppDelegate::shouldTerminate() {
    if (defaultBrowserChanging()) {
        QApplication::beep();
        return false;
    }
    for (const Job* job : shared->jobs().running()) {
        if (!job->holdsWindow()) continue;
        alert = ExplorerAlert::showError(qobject_cast<QWidget*>(job->window()),
                                         QStringLiteral("A file transfer is still running"),
                                         QStringLiteral("Wait for it to finish before quitting."));
        return false;
    }
    return true;
}

void AppDelegate::requestQuit() {
    if (shouldTerminate()) QCoreApplication::quit();
}

void AppDelegate::windowWillClose(Explorer* window) {
    auto it =
        std::find_if(windows.begin(), windows.end(), [window](const auto& w) { return w.get() == window; });
    if (it == windows.end()) return;
    // The close event is still on the stack of this window; let it unwind before the window goes.
    it->release()->deleteLater();
    windows.erase(it);
    if (windows.empty() && shouldTerminateAfterLastWindowClosed())
        QTimer::singleShot(0, qApp, &QCoreApplication::quit);
}

void AppDelegate::routeEdit(int tag, Explorer* window) {
    if (auto* editor = qobject_cast<QLineEdit*>(QApplication::focusWidget())) {
        switch (tag) {
        case 0:
            editor->cut();
            break;
        case 1:
            editor->copy();
            break;
        case 2:
            editor->paste();
            break;
        case 3:
            editor->selectAll();
            break;
        case 4:
            editor->undo();
            break;
        }
        return;
    }
    if (tag == 3) {
        window->table()->selectAll();
        return;
    }
    const char* const names[] = {"cutAction", "copyAction", "pasteAction", "", "undoAction"};
    window->commands().run(QLatin1String(names[tag]));
}

void AppDelegate::makeMenu(QMenuBar* bar, Explorer* window) {
    QMenu* appMenu = bar->addMenu(QStringLiteral("Orvane"));
    appMenu->addAction(QStringLiteral("About Orvane"), window, [window] {
        auto* about =
            new ExplorerAlert(ExplorerAlert::Kind::Error, QStringLiteral("About Orvane"),
                              QStringLiteral("Orvane %1\nA file browser for one person at a desktop.")
                                  .arg(QCoreApplication::applicationVersion()),
                              window);
        about->setIconPixmap(window->services().icons().folder().pixmap(36, 36));
        about->setAttribute(Qt::WA_DeleteOnClose);
        about->open();
    });
    appMenu->addSeparator();
    appMenu->addAction(QStringLiteral("Settings…"), window, [this, window] {
        CustomizationWindow::present(shared->updates(), shared->settings(), window);
    });
    appMenu->addAction(QStringLiteral("Check for Updates…"), window, [this, window] {
        CustomizationWindow::present(shared->updates(), shared->settings(), window);
        shared->updates().checkForUpdates();
    });
    QAction* defaults = appMenu->addAction(QStringLiteral("Default File Browser…"), this, [this] {
        if (showDefaultBrowserSettings) showDefaultBrowserSettings();
    });
    defaults->setShortcut(QKeySequence(Qt::CTRL | Qt::Key_Comma));
    defaults->setEnabled(bool(showDefaultBrowserSettings));
    if (const QString access = Platform::instance().word(PlatformWord::FullDiskAccess); !access.isEmpty())
        appMenu->addAction(access)->setEnabled(false);
    appMenu->addSeparator();
    appMenu->addAction(QStringLiteral("Quit Orvane"), QKeySequence(Qt::CTRL | Qt::Key_Q), this,
                       &AppDelegate::requestQuit);

    QMenu* file = bar->addMenu(QStringLiteral("File"));
    file->addAction(QStringLiteral("New Window"), QKeySequence(Qt::CTRL | Qt::Key_N), this,
                    [this] { newWindow(); });
    CommandBinding::addTo(window->commands(), file, QStringLiteral("openTerminalHere"));
    // Ctrl+W closes the tab, as the keys do; the window has its own item.
    CommandBinding::addTo(window->commands(), file, QStringLiteral("closeTab"), {},
                          QStringLiteral("Close Tab"))
        ->setShortcut(QKeySequence(Qt::CTRL | Qt::Key_W));
    CommandBinding::addTo(window->commands(), file, QStringLiteral("closeWindow"), {},
                          QStringLiteral("Close Window"))
        ->setShortcut(QKeySequence(Qt::ALT | Qt::Key_F4));

    QMenu* edit = bar->addMenu(QStringLiteral("Edit"));
    const struct {
        const char* title;
        Qt::Key key;
    } editItems[] = {{"Cut", Qt::Key_X},
                     {"Copy", Qt::Key_C},
                     {"Paste", Qt::Key_V},
                     {"Select All", Qt::Key_A},
                     {"Undo File Operation", Qt::Key_Z}};
    for (int tag = 0; tag < 5; ++tag)
        edit->addAction(QLatin1String(editItems[tag].title), QKeySequence(Qt::CTRL | editItems[tag].key),
                        window, [this, tag, window] { routeEdit(tag, window); });

    QMenu* arrange = bar->addMenu(QStringLiteral("Window"));
    int tag = 0;
    // Where windows cannot place themselves (Wayland), the menu offers only what the compositor does.
    for (const char* title : {"Left half", "Right half", "Maximize", "Restore size", "Top left quarter",
                              "Top right quarter", "Bottom left quarter", "Bottom right quarter"})
        if (const int t = tag++; WindowSnapping::canPlaceWindows() || t == 2 || t == 3)
            CommandBinding::addTo(window->commands(), arrange, QStringLiteral("arrangeWindow"), t,
                                  QLatin1String(title));
}

} // namespace orvane
