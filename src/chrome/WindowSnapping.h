#pragma once

#include <QObject>
#include <QRect>
#include <optional>

namespace orvane {

class BrowserWindow;

// Where a snap position puts a window inside the screen's available area `v`: 0 left half, 1 right
// half, 2 maximised, 4 to 7 the quarters top left, top right, bottom left, bottom right; anything else
// gives `v`. An odd pixel goes to the right and the top pieces, so the pieces always fill `v`.
QRect paneSnapFrame(int position, const QRect& v);

// Places the window on halves and quarters of its screen, maximises it from the title strip, and
// remembers the frame it had before its first snap so that "Restore size" brings it back.
class WindowSnapping : public QObject {
    Q_OBJECT
public:
    enum Position { LeftHalf, RightHalf, Maximize, Restore, TopLeft, TopRight, BottomLeft, BottomRight };

    explicit WindowSnapping(BrowserWindow& window);
    void snapWindow(int position);
    void toggleTitleBarMaximize();
    // Whether the platform lets a program place its own windows; without it (Wayland) only
    // maximising and restoring are asked of the window manager.
    static bool canPlaceWindows();

    std::optional<QRect> restoreFrame() const { return snapRestoreFrame; }

private:
    QRect available() const;
    void restore();

    BrowserWindow& w;
    std::optional<QRect> snapRestoreFrame;
    std::optional<QRect> lastSnapFrame;
};

} // namespace orvane
