#pragma once

#include "browsing/ActionState.h"
#include "browsing/Entry.h"
#include "browsing/EntrySort.h"
#include "browsing/ExplorerWidgets.h"
#include "browsing/TabList.h"
#include "platform/PhysicalKeys.h"

#include <QFileSystemWatcher>
#include <QHash>
#include <QMainWindow>
#include <QPointer>
#include <functional>
#include <memory>
#include <optional>
#include <vector>

class QKeyEvent;
class QLineEdit;
class QMessageBox;

namespace orvane {

class AppDelegate;
class EntryTableModel;
class ExplorerFileOps;
class ExplorerKeyMonitor;
class FileTable;
class PhoneKeyTarget;
class PinnedStore;
class ShortcutGuideWindow;

// One browser window: its tabs, its listing and everything shown around it.
class Explorer : public QMainWindow {
    Q_OBJECT
public:
    explicit Explorer(AppDelegate* app, const std::optional<QUrl>& initialURL = std::nullopt);
    ~Explorer() override;

    // The folder a window starts in: the given one, else "lastFolder", else home, if it exists.
    static QUrl startURL(const std::optional<QUrl>& initialURL);

    // --- state ---
    TabList tabs;
    std::vector<Entry> entries;
    SortState sort;
    bool showHidden = false;
    bool busy = false;
    int viewMode = 6;
    int searchScope = 0;
    bool compact = false;
    bool detailsVisible = false;
    bool previewVisible = false;
    QPointer<QWidget> renameEditor;
    bool pendingRenameRefresh = false;
    QString blockedFolder;

    QUrl current() const { return tabs.current().url; }
    std::vector<Entry> selected() const;
    std::vector<Entry> commandSelection() const;
    FileTable* table() const { return ui.table; }
    const ExplorerWidgets& widgets() const { return ui; }
    EntryTableModel* model() const { return tableModel; }
    QPointer<QMessageBox> lastAlert() const { return alert; }

    // --- listing ---
    void refresh();
    void watchDirectory();
    void sortChoice(int tag);
    void reverseSort();
    void setSort(const QString& key, bool ascending);
    void groupChoice(bool group);
    void toggleHidden();
    void refreshAction();
    void setSearchText(const QString& text);
    void clearSearch();

    // --- tabs and navigation ---
    bool navigate(const QUrl& url, bool history = true);
    void visitHistory(int index);
    void back();
    void forward();
    void up();
    void addressGo();
    void pathClicked(int index, const QUrl& url);
    void focusAddress();
    void activateTab(int index);
    void activateTabID(const QUuid& id);
    void closeTabID(const QUuid& id);
    void newTab();
    void closeTab(std::optional<int> index = std::nullopt);
    void openSelected();
    void openNewTabSelected();
    void showPackageContents();
    void selectURL(const QUrl& url);
    void focusFileList();
    void rebuildTabs();

    void showError(const QString& title, const QString& detail);
    void setStatus(const QString& text);
    ExplorerFileOps* fileOps() const { return fileCommands; }

    // --- window state and chrome ---
    SelectionFacts selectionFacts() const;
    void updateActionState();
    void updateSelectionStatus();
    void updateDetails();
    void toggleDetails();
    void togglePreview();
    void setCompact(bool on);
    // Copies the quoted paths of the command selection, or of the current folder, one per line.
    void copyPathAction();
    int sidebarWidth() const;

    // Operations by name, so menus and keys reach commands that other parts of the program add.
    using Operation = std::function<void()>;
    void registerOperation(const QString& name, Operation run) { operations.insert(name, std::move(run)); }
    Operation operation(const QString& name) const { return operations.value(name); }
    // --- Quick access ---
    std::unique_ptr<PinnedStore> pins;
    bool isPinned(const QUrl& url) const;
    std::vector<Entry> pinTargets() const;
    QString pinActionTitle() const;
    void pinAction();
    void setupPlaces();

    // --- keyboard ---
    // Every key press of the window ends here; true when the key was used.
    bool handleExplorerShortcut(QKeyEvent* event);
    // The phone browser of the active tab when it is a phone tab, else null.
    PhoneKeyTarget* activePhone() const;
    void setPhoneKeyTarget(const QUuid& tabID, PhoneKeyTarget* target);
    // The ring moves apart from the selection; only `extending` changes the selection.
    void moveKeyboardFocus(int delta, bool extending);
    void toggleKeyboardFocusSelection();
    void selectBoundary(bool last, bool extending);
    void updateKeyboardFocus();
    // Regions in order: 0 address, 1 search, 2 navigation pane, 3 file list.
    int focusRegion() const;
    void cycleFocus(bool backward);
    void focusSearch();
    bool focusIsInside(const QWidget* view) const;
    bool fileListFocused() const;
    bool tableFocusedInDetails() const;
    void showKeyboardContextMenu();
    // Escape in the file area, and in a text field of the window.
    void escapeFileArea();
    void escapeTextEditing(QLineEdit* editor);
    bool handleSidebarKey(PhysicalKey key);
    void showShortcutGuide();
    void zoomWindow();
    void newWindowAction();
    QPointer<ShortcutGuideWindow> shortcutsWindow;
    // Filled in by the navigation tree: answers whether it used the key.
    std::function<bool(PhysicalKey key)> sidebarTreeKey;
    // Filled in by Quick Look: closes a visible panel and answers whether there was one.
    std::function<bool()> dismissQuickLook;

signals:
    void closing(Explorer* window);

protected:
    void closeEvent(QCloseEvent* event) override;

private:
    void buildUI();
    void connectUI();
    void refreshPhone();
    bool listLocal(const QString& path);
    void restoreSelection(const QSet<QString>& paths);
    void updateLocalChrome(const QString& path);
    void onDirectoryChanged();
    void connectChrome();

    AppDelegate* app;
    ExplorerWidgets ui;
    EntryTableModel* tableModel = nullptr;
    QFileSystemWatcher watcher;
    QPointer<QMessageBox> alert;
    QHash<QString, Operation> operations;
    ExplorerFileOps* fileCommands = nullptr;
    QString statusReport; // the last report of a file operation in this folder

    // --- keyboard ---
    void installKeyboardHandling();
    int selectedRow() const;
    void selectRows(int from, int to);
    ExplorerKeyMonitor* keyMonitor = nullptr;
    QHash<QUuid, PhoneKeyTarget*> phoneKeyTargets;
};

} // namespace orvane
