#pragma once

#include <QObject>

class QLabel;
class QMouseEvent;
class QSlider;
class QWheelEvent;

namespace orvane {

class BrowserWindow;
class ExplorerIconView;

// The eight ways a window shows its files, and the icon view behind seven of them. The mode belongs
// to the window (every tab shows it; a new window starts in Details) and is reached by the
// "setViewMode" command with the mode as its argument: from the view menu, Primary+Shift+digit, the
// size slider of the status row, and Control with the wheel over the file list.
//
// A phone browser with a file list of its own follows `modeChanged` and shows its items in an
// ExplorerIconView of its own (phone entries draw from the listing's facts, with `remoteThumbnail`
// and `remoteDragData` on that view); one that fills the window's listing needs nothing more.
class ExplorerViewModes : public QObject {
    Q_OBJECT
public:
    explicit ExplorerViewModes(BrowserWindow& window);

    int mode() const;
    double extraLargeSize() const { return extraLarge; }
    ExplorerIconView* iconView() const { return icons; }

    // A mode outside 1 to 8 is ignored; `focus` puts the keyboard in the file list.
    void setViewMode(int mode, bool focus);
    // The slider's action: a step of its table, keeping the slider's own focus.
    void changeViewSize(int position);
    // Control with the wheel walks the four icon sizes; true when the wheel was taken.
    bool handleViewSizeWheel(QWheelEvent* event);

signals:
    void modeChanged(int mode, double extraLargeSize);

protected:
    bool eventFilter(QObject* watched, QEvent* event) override;

private:
    void buildIconView();
    void buildSlider();
    void registerCommands();
    void syncIconView();
    void updateViewSizeSlider();
    void showContextMenu(const QPoint& globalPos);
    bool clickSlider(QObject* watched, QMouseEvent* event);

    BrowserWindow& w;
    ExplorerIconView* icons;
    QSlider* slider = nullptr;
    QLabel* fewest = nullptr;  // the Details icon before the slider
    QLabel* largest = nullptr; // the largest icons' after it
    QObject* viewport = nullptr;
    double extraLarge;
};

} // namespace orvane
