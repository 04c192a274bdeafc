#pragma once

#include <QWidget>

namespace orvane {

// The top row of a frameless window: dragging its free space moves the window, a double click zooms.
class TitleRow : public QWidget {
    Q_OBJECT
public:
    explicit TitleRow(QWidget* parent = nullptr);

signals:
    void zoomRequested();

protected:
    void mousePressEvent(QMouseEvent* event) override;
    void mouseDoubleClickEvent(QMouseEvent* event) override;
    void paintEvent(QPaintEvent* event) override;
};

} // namespace orvane
