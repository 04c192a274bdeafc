#pragma once

#include <QColor>
#include <QString>

class QApplication;

namespace orvane {

// The process-wide colours every view draws with.
namespace Palette {
inline QColor fromWhite(double white, double alpha = 1.0) {
    return QColor::fromRgbF(float(white), float(white), float(white), float(alpha));
}
inline QColor ink() {
    return fromWhite(0.94);
}
inline QColor muted() {
    return fromWhite(0.74);
}
inline QColor accent() {
    return QColor::fromRgbF(0.65f, 0.63f, 1.0f);
}
inline QColor canvas() {
    return QColor::fromRgbF(0.085f, 0.09f, 0.12f);
}
inline QColor chrome() {
    return QColor::fromRgbF(0.15f, 0.105f, 0.13f);
}
// Selected rows: violet, so a selection never reads as the neutral hover light. Both stay dark
// enough for the muted text of a row to keep its contrast.
inline QColor selection() {
    return QColor(64, 60, 140);
}
// The selection of a list without the keyboard focus, or of a window in the background.
inline QColor selectionInactive() {
    return QColor(62, 60, 92);
}
// The hover light over a row, a wash of white over the canvas.
inline QColor hover() {
    return QColor(255, 255, 255, 15);
}

// A dark palette and style for the whole application, so no default grey look shows through.
void apply(QApplication& app);
QString styleSheet();
} // namespace Palette

} // namespace orvane
