#pragma once

#include "core/BrowserWindow.h"
#include "core/Entry.h"
#include "core/TabList.h"
#include "window/ExplorerWidgets.h"

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
class Settings;
class ExplorerChrome;
class ExplorerFileOps;
class ExplorerKeyboard;
class TabContent;

// One browser window: its tabs and navigation. Everything else plugs in through `BrowserWindow`:
// the listing, the file commands, the chrome, the keyboard and later subsystems.
class Explorer : public QMainWindow, public BrowserWindow {
    Q_OBJECT
public:
    explicit Explorer(AppDelegate* app, const std::optional<QUrl>& initialURL = std::nullopt);
    ~Explorer() override;

    // The folder a window starts in: the given one, else "lastFolder", else home, if it exists.
    static QUrl startURL(const Settings& settings, const std::optional<QUrl>& initialURL);

    QWidget* widget() const override { return const_cast<Explorer*>(this); }
    TabList& tabs() override { return tabList; }
    const TabList& tabs() const { return tabList; }
    QUrl current() const override { return tabList.current().url; }
    const std::vector<Entry>& entries() const override;
    std::vector<Entry> selected() const override;
    SelectionFacts selectionFacts() const override;
    ViewMode viewMode() const override { return mode; }
    void recordViewMode(ViewMode next) override { mode = next; }
    bool busy() const override;

    // --- the parts of the window ---
    const WindowWidgets& widgets() const override { return ui; }
    FileTable* table() const override { return ui.table; }
    WindowCommands& commands() const override { return *commandSet; }
    ExplorerEvents& events() const override { return *eventHub; }
    WindowListing& listing() const override { return *listed; }
    KeyHooks& keyHooks() override;
    InlineRename* inlineRename() const override;
    ExplorerFileOps& fileOps() const { return *fileCommands; }
    Services& services() const override;
    Jobs& jobs() const override;
    ExplorerKeyboard& keyboard() const { return *keys; }
    AppDelegate* application() const { return app; }
    void addContent(TabContent* content) override;
    TabContent* contentFor(const QUrl& url) const override;

    // --- navigation ---
    void refresh() override;
    bool navigate(const QUrl& url, bool history = true) override;
    void back() override;
    void forward() override;
    void up();
    void activateTab(int index) override;
    void newTab() override;
    void closeTab(std::optional<int> index = std::nullopt) override;
    void openSelected();
    void selectURL(const QUrl& url) override;
    void selectWhenListed(const QList<QUrl>& urls, std::function<void()> then = {}) override;
    void focusFileList() override;
    bool focusIsInside(const QWidget* view) const override;
    // Goes to what the address field holds: a path, ~, or a name inside the current folder.
    void addressGo();

    // --- reports ---
    void showError(const QString& title, const QString& detail) override;
    QPointer<QMessageBox> lastAlert() const override { return alert; }
    // A file operation's report, kept while the disk catches up with it.
    void setStatus(const QString& text) override;
    void showListingStatus();
    bool handleExplorerShortcut(QKeyEvent* event) override;

signals:
    void closing(Explorer* window);

protected:
    void closeEvent(QCloseEvent* event) override;

private:
    void openFile(const Entry& item);
    void registerCommands();
    void visitHistory(int index);
    // Selects the rows of these items; true when every one of them was found.
    bool selectURLs(const QList<QUrl>& urls, bool resolveLinks);
    void applyPendingSelection();
    void showLocation(bool history);

    TabList tabList;
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
    QString statusReport;
    QList<QUrl> pendingSelection;
    std::function<void()> afterPendingSelection;
    ViewMode mode = ViewMode::Details;
};

} // namespace orvane
