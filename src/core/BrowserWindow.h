#pragma once

#include "core/ActionState.h"
#include "core/Entry.h"
#include "core/ViewMode.h"

#include <QList>
#include <QPointer>
#include <QUrl>
#include <functional>
#include <optional>
#include <vector>

class QKeyEvent;
class QMessageBox;
class QWidget;

namespace orvane {

class ExplorerEvents;
class FileTable;
class InlineRename;
class Jobs;
class Services;
class TabContent;
class TabList;
class WindowCommands;
class WindowListing;
struct KeyHooks;
struct WindowWidgets;

// One browser window as its parts hold it. The window implements it; a part never needs more.
class BrowserWindow {
public:
    virtual ~BrowserWindow() = default;

    // The window itself: the parent of a part's objects, dialogs and alerts.
    virtual QWidget* widget() const = 0;

    // --- what it shows ---
    virtual TabList& tabs() = 0;
    virtual QUrl current() const = 0;
    virtual const std::vector<Entry>& entries() const = 0;
    virtual std::vector<Entry> selected() const = 0;
    // What the enabled rules of the file commands read.
    virtual SelectionFacts selectionFacts() const = 0;
    virtual ViewMode viewMode() const = 0;
    // The view modes tell the window which view shows the files now.
    virtual void recordViewMode(ViewMode mode) = 0;
    // A long job of this window runs: the window holds still.
    virtual bool busy() const = 0;

    // --- its parts ---
    virtual const WindowWidgets& widgets() const = 0;
    virtual FileTable* table() const = 0;
    virtual WindowCommands& commands() const = 0;
    virtual ExplorerEvents& events() const = 0;
    virtual WindowListing& listing() const = 0;
    virtual KeyHooks& keyHooks() = 0;
    virtual InlineRename* inlineRename() const = 0;
    virtual Services& services() const = 0;
    virtual Jobs& jobs() const = 0;
    // What a tab shows: later additions are asked first, the local folder last.
    virtual void addContent(TabContent* content) = 0;
    virtual TabContent* contentFor(const QUrl& url) const = 0;

    // --- navigation ---
    virtual void refresh() = 0;
    virtual bool navigate(const QUrl& url, bool history = true) = 0;
    virtual void back() = 0;
    virtual void forward() = 0;
    virtual void newTab() = 0;
    virtual void activateTab(int index) = 0;
    virtual void closeTab(std::optional<int> index = std::nullopt) = 0;
    virtual void selectURL(const QUrl& url) = 0;
    // Selects these items, the first one current, once the listing holds them; then runs `then`.
    virtual void selectWhenListed(const QList<QUrl>& urls, std::function<void()> then = {}) = 0;
    virtual void focusFileList() = 0;
    virtual bool focusIsInside(const QWidget* view) const = 0;

    // --- reports and keys ---
    virtual void showError(const QString& title, const QString& detail) = 0;
    virtual QPointer<QMessageBox> lastAlert() const = 0;
    virtual void setStatus(const QString& text) = 0;
    // Every key press of the window ends here; true when the key was used.
    virtual bool handleExplorerShortcut(QKeyEvent* event) = 0;
};

} // namespace orvane
