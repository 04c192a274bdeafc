#pragma once

class QPainter;
class QRect;
class QString;
class QWidget;

namespace orvane {

// The look every secondary window shares with the browser windows: frameless and dark, a thin rim,
// dark buttons with the default one in the accent, placed over the window it belongs to.
class AuxiliaryStyle {
public:
    // Call before the window is shown; it keeps its own flags beyond the frame.
    static void apply(QWidget* window);
    // Centred on `owner`'s window, or on the screen when there is none, and kept on that screen.
    static void centreOn(QWidget* window, const QWidget* owner);
    // The rim of a frameless window, for windows that paint their own background.
    static void paintRim(QPainter& painter, const QRect& rect);
    static QString styleSheet();
};

} // namespace orvane
