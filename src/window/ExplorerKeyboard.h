#pragma once

#include "core/KeyHooks.h"

#include <QObject>
#include <functional>

class QLineEdit;
class QWidget;

namespace orvane {

class Explorer;
class ExplorerKeyMonitor;

// The keyboard side of a window: the focus ring that moves apart from the selection, the focus
// regions, Escape, and the key hooks that the navigation pane and Quick Look fill in.
class ExplorerKeyboard : public QObject {
    Q_OBJECT
public:
    explicit ExplorerKeyboard(Explorer& window);

    // The ring moves apart from the selection; only `extending` changes the selection.
    void moveKeyboardFocus(int delta, bool extending);
    void toggleKeyboardFocusSelection();
    void selectBoundary(bool last, bool extending);

    // Regions in order: 0 address, 1 search, 2 navigation pane, 3 file list.
    int focusRegion() const;
    void cycleFocus(bool backward);
    void focusSearch();
    void focusAddress();
    bool focusIsInside(const QWidget* view) const;
    // The widget that shows the files: the table in Details, the icon view in the other modes.
    QWidget* fileList() const;
    bool fileListFocused() const;
    bool tableFocusedInDetails() const;
    void showKeyboardContextMenu();

    // Escape in the file area, and in a text field of the window.
    void escapeFileArea();
    void escapeTextEditing(QLineEdit* editor);
    bool handleSidebarKey(PhysicalKey key);

    // Filled in by the parts that answer keys themselves.
    KeyHooks hooks;

private:
    int selectedRow() const;
    void selectRows(int from, int to);

    Explorer& w;
    ExplorerKeyMonitor* monitor;
};

} // namespace orvane
