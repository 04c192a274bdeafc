#pragma once

#include "browsing/Entry.h"
#include "browsing/ExplorerWidgets.h"
#include "browsing/TabList.h"

#include <QMainWindow>
#include <QPointer>
#include <functional>
#include <memory>
#include <optional>
#include <vector>

class QKeyEvent;
class QMessageBox;

namespace orvane {

class AppDelegate;
class ExplorerChrome;
class ExplorerEvents;
class ExplorerFileOps;
class ExplorerKeyboard;
class FileTable;
class PhoneKeyTarget;
class TabContent;
class WindowCommands;
class WindowListing;

// One browser window: its tabs and navigation. Everything else plugs in: the listing, the file
// commands, the chrome, the keyboard and later subsystems, each its own object reached from here.
class Explorer : public QMainWindow {
    Q_OBJECT
public:
    explicit Explorer(AppDelegate* app, const std::optional<QUrl>& initialURL = std::nullopt);
    ~Explorer() override;

    // The folder a window starts in: the given one, else "lastFolder", else home, if it exists.
    static QUrl startURL(const std::optional<QUrl>& initialURL);

    TabList tabs;
    QUrl current() const { return tabs.current().url; }
    const std::vector<Entry>& entries() const;
    std::vector<Entry> selected() const;
    std::vector<Entry> commandSelection() const;
    bool busy() const { return busyNow; }
    void setBusy(bool on);

    // --- the parts of the window ---
    const ExplorerWidgets& widgets() const { return ui; }
    FileTable* table() const { return ui.table; }
    WindowCommands& commands() const { return *commandSet; }
    ExplorerEvents& events() const { return *eventHub; }
    WindowListing& listing() const { return *listed; }
    ExplorerChrome& chrome() const { return *chromeParts; }
    ExplorerKeyboard& keyboard() const { return *keys; }
    ExplorerFileOps* fileOps() const { return fileCommands; }
    AppDelegate* application() const { return app; }

    // What a tab shows: later additions are asked first, the local folder last.
    void addContent(TabContent* content);
    TabContent* contentFor(const QUrl& url) const;

    // --- navigation ---
    void refresh();
    bool navigate(const QUrl& url, bool history = true);
    void back();
    void forward();
    void up();
    void activateTab(int index);
    void newTab();
    void closeTab(std::optional<int> index = std::nullopt);
    void openSelected();
    void selectURL(const QUrl& url);
    // Selects these items, the first one current. Items of a listing still being read are selected
    // when it arrives; `then` runs once they are.
    void selectWhenListed(const QList<QUrl>& urls, std::function<void()> then = {});
    void focusFileList();
    // Goes to what the address field holds: a path, ~, or a name inside the current folder.
    void addressGo();

    // --- reports ---
    void showError(const QString& title, const QString& detail);
    QPointer<QMessageBox> lastAlert() const { return alert; }
    // A file operation's report, kept while the disk catches up with it.
    void setStatus(const QString& text);
    void showListingStatus();

    // Every key press of the window ends here; true when the key was used.
    bool handleExplorerShortcut(QKeyEvent* event);
    // The phone browser of the active tab when it is a phone tab, else null.
    PhoneKeyTarget* activePhone() const;
    void setPhoneKeyTarget(const QUuid& tabID, PhoneKeyTarget* target);

signals:
    void closing(Explorer* window);

protected:
    void closeEvent(QCloseEvent* event) override;

private:
    void registerCommands();
    void visitHistory(int index);
    // Selects the rows of these items; true when every one of them was found.
    bool selectURLs(const QList<QUrl>& urls, bool resolveLinks);
    void applyPendingSelection();
    void showLocation(bool history);

    AppDelegate* app;
    ExplorerWidgets ui;
    std::unique_ptr<WindowCommands> commandSet;
    std::unique_ptr<ExplorerEvents> eventHub;
    WindowListing* listed;
    ExplorerChrome* chromeParts = nullptr;
    ExplorerKeyboard* keys = nullptr;
    ExplorerFileOps* fileCommands = nullptr;
    std::vector<TabContent*> contents;
    TabContent* shown = nullptr;
    QPointer<QMessageBox> alert;
    QHash<QUuid, PhoneKeyTarget*> phoneKeyTargets;
    QString statusReport;
    QList<QUrl> pendingSelection;
    std::function<void()> afterPendingSelection;
    bool busyNow = false;
};

} // namespace orvane
