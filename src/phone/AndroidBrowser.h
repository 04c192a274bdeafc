#pragma once

#include "phone/PhoneBrowserState.h"

#include <QHash>
#include <QObject>
#include <QPointer>
#include <QUuid>

class QMenu;
class QMimeData;

namespace orvane {

class BrowserWindow;
class Job;

// One phone tab in a window. Its state (place, listing, lock and status) lives in a
// PhoneBrowserState; this side shows it through the window's own listing, table, path bar and
// status row while its tab is the one showing, and runs the tab's transfers with the window held.
// The window's file commands on a phone folder come here (keys, toolbar, menus, the inline editor).
class AndroidBrowser : public QObject {
    Q_OBJECT
public:
    AndroidBrowser(BrowserWindow& window, const QUuid& tab);

    PhoneBrowserState& state() { return phone; }
    const PhoneBrowserState& state() const { return phone; }
    const QUuid& tab() const { return tabID; }
    // The tab shows `chain` now (a navigation, a tab switch or Refresh): it is read again.
    void show(const QList<PhoneItem>& chain);
    bool showing() const;
    bool transferring() const { return moving; }

    // Search hits shown in place of this folder's listing, each with the chain of the folder it was
    // found in by its text key; none ends the search. A hit is then an item like any other here.
    void showFound(const QList<PhoneItem>& items, const QHash<QString, QList<PhoneItem>>& parents);
    // The chain down to `item`, listed here or found by a search.
    QList<PhoneItem> chainTo(const PhoneItem& item) const;

    QList<PhoneItem> selectedItems() const;
    QList<PhoneItem> itemsOf(const std::vector<Entry>& entries) const;
    void open(const std::vector<Entry>& entries);
    bool canSend() const;
    bool canCopyToComputer() const;
    // "Send files…": a dialog for files and folders, then an upload into this folder.
    void sendFiles();
    // "Copy to Mac…" in the platform's words: a dialog for one folder, then a download into it.
    void saveFiles();

    // What the window's commands allow here now.
    PhoneControls controls() const;
    bool canPasteFiles() const;
    void copyFiles();
    void cutFiles();
    void pasteFiles();
    void copyPaths();
    void selectAllItems();
    void createFolder();
    void renameSelection();
    // The inline editor ended on `entry` with `name`.
    void renameTo(const Entry& entry, const QString& name);
    void deleteSelection();
    void showProperties();
    void pinSelection();
    void fillContextMenu(QMenu* menu);

    // A drop on `row` (or on no row): the folder it goes into and the chain down to that folder.
    struct DropTarget {
        PhoneItem folder;
        QList<PhoneItem> parents;
    };
    std::optional<DropTarget> dropTarget(std::optional<int> row) const;
    // Phone items move, local files are sent; anything else is refused.
    Qt::DropAction dropOperation(const QMimeData* data, std::optional<int> row) const;
    bool performDrop(const QMimeData* data, std::optional<int> row);

signals:
    // A transfer ended; the window may let go of a browser whose tab is gone.
    void idle();

private:
    bool shownInWindow() const;
    void publishListing();
    void publishPlace();
    void publishStatus();
    void selectPending();
    void selectNamed(const QString& name);

    BrowserWindow& w;
    QUuid tabID;
    PhoneBrowserState phone;
    mutable QHash<QString, qsizetype> byLocation; // an entry's location to its item's index
    QHash<QString, PhoneItem> found;              // search hits by their entry's location
    QHash<QString, QList<PhoneItem>> foundParents;
    std::optional<quint32> selectAfter; // the folder we came up from
    bool moving = false;
    QPointer<Job> transfer;
};

} // namespace orvane
