#pragma once

#include <QObject>

class QWidget;

namespace orvane {

// Puts a browser window on glass where a compositor can show it: translucent, rounded and with the
// blur-behind hint. Without a compositor (Xvfb, a plain X server) the window keeps the same colours
// opaque, so its text keeps its contrast either way.
class GlassAppearance : public QObject {
    Q_OBJECT
public:
    // Before the window is first shown: translucency cannot be added to a window that exists.
    explicit GlassAppearance(QWidget* window);
    static bool compositorRuns();
    bool translucent() const { return glass; }

protected:
    bool eventFilter(QObject* watched, QEvent* event) override;

private:
    void askForBlur();
    QWidget* window;
    bool glass = false;
};

} // namespace orvane
