#include "system/ExternalOpenRequests.h"

#include "core/BrowserApp.h"
#include "core/BrowserWindow.h"
#include "core/Services.h"
#include "core/Settings.h"
#include "core/TabList.h"
#include "core/WindowCommands.h"
#include "core/WindowListing.h"
#include "platform/NativePath.h"

#include <QApplication>
#include <QDir>
#include <QPointer>
#include <QStringList>
#include <QWidget>
#include <unistd.h>

namespace orvane {

namespace {
bool candidate(const BrowserWindow* window) {
    return window && !window->busy();
}

int tabShowing(BrowserWindow& window, const QString& identity) {
    const QList<TabState>& tabs = window.tabs().all();
    for (int i = 0; i < tabs.size(); ++i)
        if (tabs[i].url.isLocalFile() && ExternalOpenPlan::identity(tabs[i].url) == identity) return i;
    return -1;
}

QString workingFolder() {
    char buffer[4096];
    return ::getcwd(buffer, sizeof buffer) ? NativePath::decode(buffer) : QDir::currentPath();
}
} // namespace

ExternalOpenRequests::ExternalOpenRequests(BrowserApp& app) : QObject(app.object()), app(app) {
    retry.setSingleShot(true);
    retry.setInterval(250);
    connect(&retry, &QTimer::timeout, this, &ExternalOpenRequests::drain);
}

void ExternalOpenRequests::receive(const QList<QUrl>& urls, ExternalOpenMode mode) {
    pending.append({urls, mode});
    if (app.launched()) drain();
}

// A modal dialog holds the requests back, however long it stays; they keep their order.
void ExternalOpenRequests::drain() {
    if (!app.launched() || pending.isEmpty()) return;
    if (QApplication::activeModalWidget()) {
        if (!retry.isActive()) retry.start();
        return;
    }
    for (const auto& [urls, mode] : std::exchange(pending, {}))
        open(ExternalOpenPlan(urls, mode != ExternalOpenMode::Open), true,
             mode == ExternalOpenMode::Properties);
}

void ExternalOpenRequests::open(const ExternalOpenPlan& plan, bool activate, bool properties) {
    BrowserWindow* preferred = preferredWindow();
    BrowserWindow* last = nullptr;
    for (const ExternalFolderRequest& request : plan.folders) {
        last = show(request, preferred);
        applyExternalSelection(*last, request.selection, properties);
        if (activate) {
            QWidget* shown = last->widget();
            if (shown->isMinimized()) shown->showNormal();
            shown->show();
            shown->raise();
            shown->activateWindow();
        }
        app.services().settings().setLastFolder(last->current().toLocalFile());
    }
    report(plan, last, !plan.folders.isEmpty());
}

BrowserWindow* ExternalOpenRequests::preferredWindow() const {
    const QWidget* active = QApplication::activeWindow();
    for (BrowserWindow* window : app.browserWindows())
        if (window->widget() == active && candidate(window)) return window;
    for (BrowserWindow* window : app.browserWindows())
        if (candidate(window)) return window;
    return nullptr;
}

// A tab already showing the folder, in any window that is free; else a new tab of the preferred
// window; else a new window, which is preferred from then on.
BrowserWindow* ExternalOpenRequests::show(const ExternalFolderRequest& request, BrowserWindow*& preferred) {
    const QString identity = ExternalOpenPlan::identity(request.folder);
    for (BrowserWindow* window : app.browserWindows()) {
        if (!candidate(window)) continue;
        if (const int tab = tabShowing(*window, identity); tab >= 0) {
            window->activateTab(tab);
            return window;
        }
    }
    if (preferred) {
        preferred->activateTab(preferred->tabs().append(TabState::at(request.folder)));
        return preferred;
    }
    preferred = app.openWindow(request.folder);
    return preferred;
}

// With nothing to show at all, the answer is an alert, so it is seen even without a window.
void ExternalOpenRequests::report(const ExternalOpenPlan& plan, BrowserWindow* last, bool openedAny) {
    if (plan.unavailable.isEmpty()) return;
    if (last)
        last->setStatus(QStringLiteral("Could not find %1 requested item(s)").arg(plan.unavailable.size()));
    if (openedAny) return;
    if (app.browserWindows().empty()) app.openWindow();
    QStringList paths;
    for (const QUrl& url : plan.unavailable)
        paths << (url.isLocalFile() ? NativePath::display(url.toLocalFile()) : url.toDisplayString());
    app.browserWindows().back()->showError(QStringLiteral("Requested item is unavailable"),
                                           paths.join(u'\n'));
}

void ExternalOpenRequests::applyExternalSelection(BrowserWindow& window, const QList<QUrl>& urls,
                                                  bool properties) {
    window.commands().run(QStringLiteral("clearSearch"));
    const bool hidden = std::any_of(urls.begin(), urls.end(),
                                    [](const QUrl& url) { return url.fileName().startsWith(u'.'); });
    if (hidden && !window.listing().showHidden()) window.commands().run(QStringLiteral("toggleHidden"));
    window.refresh();
    // By name, which suits any spelling of the folder the window shows.
    QList<QUrl> items;
    const QString folder = window.current().toLocalFile();
    for (const QUrl& url : urls)
        items << QUrl::fromLocalFile(folder + (folder.endsWith(u'/') ? QString() : QStringLiteral("/")) +
                                     url.fileName());
    QPointer<QWidget> alive(window.widget());
    BrowserWindow* target = &window;
    window.selectWhenListed(items, [alive, target, properties] {
        if (!alive) return;
        target->focusFileList();
        if (properties) target->commands().run(QStringLiteral("propertiesAction"));
    });
    window.focusFileList();
}

QList<QUrl> ExternalOpenRequests::fromArguments(int argc, char** argv) {
    QList<QUrl> urls;
    const QString here = workingFolder();
    for (int i = 1; i < argc; ++i) {
        const QByteArray arg(argv[i]);
        if (arg.isEmpty() || arg.startsWith('-')) continue;
        if (arg.startsWith("file:")) {
            const QString path = NativePath::fromEncodedUrl(arg);
            urls << (path.isEmpty() ? QUrl(QString::fromUtf8(arg)) : QUrl::fromLocalFile(path));
        } else if (arg.contains("://")) {
            urls << QUrl(QString::fromUtf8(arg));
        } else {
            const QString path = NativePath::decode(arg);
            urls << QUrl::fromLocalFile(arg.startsWith('/') ? path : here + u'/' + path);
        }
    }
    return urls;
}

} // namespace orvane
