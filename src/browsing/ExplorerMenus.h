#pragma once

class QMenu;
class QWidget;

namespace orvane {

class Explorer;

// The popup menus of the toolbar and the file area's context menu, made fresh each time they open
// so that ticks and enabled states always follow the window.
namespace ExplorerMenus {
void fillNewMenu(QMenu* menu, Explorer* window);
void fillSortMenu(QMenu* menu, Explorer* window);
void fillViewMenu(QMenu* menu, Explorer* window);
void fillMoreMenu(QMenu* menu, Explorer* window);
void fillContextMenu(QMenu* menu, Explorer* window);
} // namespace ExplorerMenus

} // namespace orvane
