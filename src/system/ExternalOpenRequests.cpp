#include "system/ExternalOpenRequests.h"

#include "browsing/AppDelegate.h"
#include "browsing/Explorer.h"
#include "browsing/Preferences.h"
#include "browsing/WindowCommands.h"
#include "browsing/WindowListing.h"
#include "platform/NativePath.h"

#include <QApplication>
#include <QDir>
#include <QPointer>
#include <QStringList>
#include <unistd.h>

namespace orvane {

namespace {
bool candidate(const Explorer* window) {
    return window && !window->busy();
}

int tabShowing(const Explorer& window, const QString& identity) {
    const QList<TabState>& tabs = window.tabs.all();
    for (int i = 0; i < tabs.size(); ++i)
        if (tabs[i].url.isLocalFile() && ExternalOpenPlan::identity(tabs[i].url) == identity) return i;
    return -1;
}

QString workingFolder() {
    char buffer[4096];
    return ::getcwd(buffer, sizeof buffer) ? NativePath::decode(buffer) : QDir::currentPath();
}
} // namespace

ExternalOpenRequests::ExternalOpenRequests(AppDelegate& app) : QObject(&app), app(app) {
    retry.setSingleShot(true);
    retry.setInterval(250);
    connect(&retry, &QTimer::timeout, this, &ExternalOpenRequests::drain);
}

void ExternalOpenRequests::receive(const QList<QUrl>& urls, bool reveal) {
    pending.append({urls, reveal});
    if (app.didFinishLaunching) drain();
}

// A modal dialog holds the requests back, however long it stays; they keep their order.
void ExternalOpenRequests::drain() {
    if (!app.didFinishLaunching || pending.isEmpty()) return;
    if (QApplication::activeModalWidget()) {
        if (!retry.isActive()) retry.start();
        return;
    }
    for (const auto& [urls, reveal] : std::exchange(pending, {}))
        open(ExternalOpenPlan(urls, reveal), true);
}

void ExternalOpenRequests::open(const ExternalOpenPlan& plan, bool activate) {
    Explorer* preferred = preferredWindow();
    Explorer* last = nullptr;
    for (const ExternalFolderRequest& request : plan.folders) {
        last = show(request, preferred);
        applyExternalSelection(*last, request.selection);
        if (activate) {
            if (last->isMinimized()) last->showNormal();
            last->show();
            last->raise();
            last->activateWindow();
        }
        if (!Preferences::selfTest())
            Preferences::standard()->setValue(QStringLiteral("lastFolder"), last->current().toLocalFile());
    }
    report(plan, last, !plan.folders.isEmpty());
}

Explorer* ExternalOpenRequests::preferredWindow() const {
    auto* active = qobject_cast<Explorer*>(QApplication::activeWindow());
    for (const auto& window : app.windows)
        if (window.get() == active && candidate(active)) return active;
    for (const auto& window : app.windows)
        if (candidate(window.get())) return window.get();
    return nullptr;
}

// A tab already showing the folder, in any window that is free; else a new tab of the preferred
// window; else a new window, which is preferred from then on.
Explorer* ExternalOpenRequests::show(const ExternalFolderRequest& request, Explorer*& preferred) {
    const QString identity = ExternalOpenPlan::identity(request.folder);
    for (const auto& window : app.windows) {
        if (!candidate(window.get())) continue;
        if (const int tab = tabShowing(*window, identity); tab >= 0) {
            window->activateTab(tab);
            return window.get();
        }
    }
    if (preferred) {
        preferred->activateTab(preferred->tabs.append(TabState::at(request.folder)));
        return preferred;
    }
    preferred = app.newWindow(request.folder);
    return preferred;
}

// With nothing to show at all, the answer is an alert, so it is seen even without a window.
void ExternalOpenRequests::report(const ExternalOpenPlan& plan, Explorer* last, bool openedAny) {
    if (plan.unavailable.isEmpty()) return;
    if (last)
        last->setStatus(QStringLiteral("Could not find %1 requested item(s)").arg(plan.unavailable.size()));
    if (openedAny) return;
    if (app.windows.empty()) app.newWindow();
    QStringList paths;
    for (const QUrl& url : plan.unavailable)
        paths << (url.isLocalFile() ? NativePath::display(url.toLocalFile()) : url.toDisplayString());
    app.windows.back()->showError(QStringLiteral("Requested item is unavailable"), paths.join(u'\n'));
}

void ExternalOpenRequests::applyExternalSelection(Explorer& window, const QList<QUrl>& urls) {
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
    QPointer<Explorer> alive(&window);
    window.selectWhenListed(items, [alive] {
        if (alive) alive->focusFileList();
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
