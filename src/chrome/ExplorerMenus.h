#pragma once

class QMenu;
class QWidget;

namespace orvane {

class BrowserWindow;

// The popup menus of the toolbar and the file area's context menu, made fresh each time they open
// so that ticks and enabled states always follow the window.
namespace ExplorerMenus {
void fillNewMenu(QMenu* menu, BrowserWindow* window);
void fillSortMenu(QMenu* menu, BrowserWindow* window);
void fillViewMenu(QMenu* menu, BrowserWindow* window);
void fillMoreMenu(QMenu* menu, BrowserWindow* window);
void fillContextMenu(QMenu* menu, BrowserWindow* window);
} // namespace ExplorerMenus

} // namespace orvane
