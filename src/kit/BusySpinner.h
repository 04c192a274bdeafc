#pragma once

#include <QTimer>
#include <QWidget>

namespace orvane {

// A small spinning wheel for work of unknown length; hidden while stopped.
class BusySpinner : public QWidget {
    Q_OBJECT
public:
    explicit BusySpinner(QWidget* parent = nullptr);

    void start();
    void stop();
    bool isSpinning() const { return timer.isActive(); }
    QSize sizeHint() const override { return {16, 16}; }

protected:
    void paintEvent(QPaintEvent* event) override;

private:
    QTimer timer;
    int step = 0;
};

} // namespace orvane
