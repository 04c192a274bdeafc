#pragma once

#include <QWidget>

namespace orvane {

// A secondary window of the program: frameless and dark over the window it belongs to, a title row
// that drags it with a close button, closed by Escape, gone when closed.
class AuxiliaryWindow : public QWidget {
    Q_OBJECT
public:
    AuxiliaryWindow(QWidget* owner, const QString& title, const QString& name);

protected:
    // The row with the heading and the close button, for the top of the window's layout.
    QWidget* titleRow(const QString& heading);
    void keyPressEvent(QKeyEvent* event) override;
    void paintEvent(QPaintEvent* event) override;
};

} // namespace orvane
