#pragma once

#include <QUuid>
#include <QWidget>

namespace orvane {

// The 3 pixel progress line at a window's edge. It never moves back during a run, shows a short stub at
// 0 so a started transfer is visible at once, and hides a quarter second after the end.
class TransferProgressEdge : public QWidget {
    Q_OBJECT
public:
    explicit TransferProgressEdge(QWidget* parent = nullptr);

    using QWidget::update;

    void begin();
    // Ignored unless running; clamped to 0 to 0.99 and never below the fraction already shown.
    void update(double value);
    void finish();

    double fraction() const { return shown; }
    bool running() const { return active; }
    QUuid generation() const { return run; }
    // The whole percentage, as accessibility tools read it.
    int percent() const { return int(shown * 100); }

    QSize sizeHint() const override { return {100, 3}; }

signals:
    // The bar has gone back to idle after a finish.
    void hidden();

protected:
    void paintEvent(QPaintEvent* event) override;

private:
    void announce();

    double shown = 0;
    bool active = false;
    QUuid run = QUuid::createUuid();
};

} // namespace orvane
