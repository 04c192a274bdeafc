#include "kit/BusySpinner.h"

#include "kit/Palette.h"

#include <QPainter>
#include <QtMath>

namespace orvane {

namespace {
constexpr int spokes = 10;
}

BusySpinner::BusySpinner(QWidget* parent) : QWidget(parent) {
    setFixedSize(sizeHint());
    setAccessibleName(QStringLiteral("In progress"));
    timer.setInterval(90);
    connect(&timer, &QTimer::timeout, this, [this] {
        step = (step + 1) % spokes;
        update();
    });
    hide();
}

void BusySpinner::start() {
    timer.start();
    show();
}

void BusySpinner::stop() {
    timer.stop();
    hide();
}

void BusySpinner::paintEvent(QPaintEvent*) {
    QPainter p(this);
    p.setRenderHint(QPainter::Antialiasing);
    p.translate(width() / 2.0, height() / 2.0);
    const qreal outer = qMin(width(), height()) / 2.0 - 1;
    for (int i = 0; i < spokes; ++i) {
        // The newest spoke is brightest; the others fade behind it.
        const int age = (step - i + spokes) % spokes;
        QColor color = Palette::ink();
        color.setAlphaF(float(1.0 - 0.8 * age / spokes));
        p.setPen(QPen(color, 1.6, Qt::SolidLine, Qt::RoundCap));
        const qreal angle = qDegreesToRadians(360.0 * i / spokes);
        const QPointF dir(qSin(angle), -qCos(angle));
        p.drawLine(dir * outer * 0.45, dir * outer);
    }
}

} // namespace orvane
