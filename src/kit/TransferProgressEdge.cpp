#include "kit/TransferProgressEdge.h"

#include <QAccessible>
#include <QAccessibleWidget>
#include <QPainter>
#include <QTimer>
#include <algorithm>

namespace orvane {

namespace {

// Screen readers see a progress bar with a value, not an anonymous strip of colour.
class EdgeAccessible : public QAccessibleWidget, public QAccessibleValueInterface {
public:
    explicit EdgeAccessible(TransferProgressEdge* edge) : QAccessibleWidget(edge, QAccessible::ProgressBar) {}

    QString text(QAccessible::Text t) const override {
        if (t == QAccessible::Value) return QString::number(edge()->percent());
        return QAccessibleWidget::text(t);
    }
    void* interface_cast(QAccessible::InterfaceType type) override {
        if (type == QAccessible::ValueInterface) return static_cast<QAccessibleValueInterface*>(this);
        return QAccessibleWidget::interface_cast(type);
    }
    QVariant currentValue() const override { return edge()->percent(); }
    void setCurrentValue(const QVariant&) override {}
    QVariant maximumValue() const override { return 100; }
    QVariant minimumValue() const override { return 0; }
    QVariant minimumStepSize() const override { return 1; }

private:
    TransferProgressEdge* edge() const { return static_cast<TransferProgressEdge*>(widget()); }
};

QAccessibleInterface* edgeFactory(const QString& className, QObject* object) {
    if (className == QLatin1String("orvane::TransferProgressEdge") && object && object->isWidgetType())
        return new EdgeAccessible(static_cast<TransferProgressEdge*>(object));
    return nullptr;
}

} // namespace

TransferProgressEdge::TransferProgressEdge(QWidget* parent) : QWidget(parent) {
    static const bool installed = (QAccessible::installFactory(edgeFactory), true);
    Q_UNUSED(installed);
    setFixedHeight(3);
    setSizePolicy(QSizePolicy::Expanding, QSizePolicy::Fixed);
    setAccessibleName(QStringLiteral("File transfer progress"));
}

void TransferProgressEdge::begin() {
    run = QUuid::createUuid();
    active = true;
    shown = 0;
    announce();
}

void TransferProgressEdge::update(double value) {
    if (!active) return;
    const double clamped = std::clamp(value, 0.0, 0.99);
    if (clamped <= shown) return;
    shown = clamped;
    announce();
}

void TransferProgressEdge::finish() {
    shown = 1;
    announce();
    const QUuid finished = run;
    // The timer dies with the widget; a begin() in the meantime changes the generation and keeps the bar.
    QTimer::singleShot(250, this, [this, finished] {
        if (run != finished) return;
        active = false;
        shown = 0;
        QWidget::update();
        emit hidden();
    });
}

void TransferProgressEdge::announce() {
    QWidget::update();
    if (QAccessible::isActive()) {
        QAccessibleValueChangeEvent event(this, percent());
        QAccessible::updateAccessibility(&event);
    }
}

void TransferProgressEdge::paintEvent(QPaintEvent*) {
    QPainter painter(this);
    const qreal middle = height() / 2.0;
    painter.fillRect(QRectF(0, middle - 0.25, width(), 0.5), QColor(255, 255, 255, 26));
    if (!active) return;
    const qreal w = std::min<qreal>(width(), std::max<qreal>(2, width() * shown));
    painter.fillRect(QRectF(0, 0, w, height()), QColor(0x0A, 0x84, 0xFF));
}

} // namespace orvane
