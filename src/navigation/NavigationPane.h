#pragma once

#include "kit/FolderDropTarget.h"

#include <QObject>
#include <QUrl>
#include <memory>
#include <vector>

namespace orvane {

class BrowserWindow;
class PinnedStore;
class PlacesTable;
struct Entry;

// The navigation pane of one window: the tree of places in the pane, the window's pins and the
// commands that act on both. It follows the window's location and asks the window to navigate.
class NavigationPane : public QObject {
    Q_OBJECT
public:
    explicit NavigationPane(BrowserWindow& window);
    ~NavigationPane() override;

    PinnedStore& pins() { return store; }
    PlacesTable& table() { return *places; }
    // Selected plain folders, or the current folder when nothing is selected.
    std::vector<Entry> pinTargets() const;
    bool allTargetsPinned() const;
    // Unpins when every target is pinned, otherwise pins the ones that are not.
    void pinAction();
    void expandToCurrentFolder();
    void showContextMenu();
    // The phone browser's connection watch says whether a phone is there.
    void setPhoneConnected(bool on, const QString& state = {});

private:
    void registerCommands();
    void open(const QUrl& url);
    void updatePinCommand();

    BrowserWindow& w;
    PinnedStore& store;
    PlacesTable* places;
    FolderDropTarget files;
};

} // namespace orvane
