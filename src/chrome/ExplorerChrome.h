#pragma once

#include "kit/FolderDropTarget.h"

#include "core/ActionState.h"

#include <QObject>
#include <QPointer>

class QMenu;

namespace orvane {

class BrowserWindow;
class QuickLookPanel;
class ShortcutGuideWindow;

// What a window shows around its files: title, path box, navigation and action buttons, the status
// row, the details and preview panes, the floating preview and the toolbar menus. It follows the window's
// events and owns the view commands (panes, rows, paths, the guide).
class ExplorerChrome : public QObject {
    Q_OBJECT
public:
    explicit ExplorerChrome(BrowserWindow& window);

    bool detailsVisible = false;
    bool previewVisible = false;
    bool compact = false;

    void updateActionState();
    void updateSelectionStatus();
    void toggleDetails();
    void togglePreview();
    // The floating preview of the selection, or away with it when it shows.
    void quickLook();
    QPointer<QuickLookPanel> quickLookPanel() const { return panel; }
    void setCompact(bool on);
    // Copies the quoted paths of the command selection, or of the current folder, one per line.
    void copyPathAction();
    void showShortcutGuide();
    QPointer<ShortcutGuideWindow> shortcutGuide() const { return guide; }
    int sidebarWidth() const;
    // A narrow window keeps every button of the action row whole: titled buttons drop their titles,
    // the least needed first, until the row fits.
    void fitActionRow();
    // The address chevron's menu: the places this window went to, latest first, then "Edit address".
    // The caller owns it.
    QMenu* recentPlacesMenu();

protected:
    bool eventFilter(QObject* watched, QEvent* event) override;

private:
    void acceptTabDrops();
    void connectButtons();
    void followJobs();
    void connectMenus();
    void registerCommands();
    void updateLocation();
    void updateDetails();

    BrowserWindow& w;
    FolderDropTarget tabFiles;
    QPointer<ShortcutGuideWindow> guide;
    QPointer<QuickLookPanel> panel;
    QList<QUrl> recent;
};

} // namespace orvane
