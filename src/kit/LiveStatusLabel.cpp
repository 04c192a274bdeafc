#include "kit/LiveStatusLabel.h"

#include <QAccessibleWidget>

namespace orvane {

namespace {

class LiveStatusAccessible : public QAccessibleWidget {
public:
    explicit LiveStatusAccessible(QWidget* label) : QAccessibleWidget(label, QAccessible::StatusBar) {}
    QString text(QAccessible::Text kind) const override {
        if (kind == QAccessible::Name) return static_cast<const QLabel*>(widget())->text();
        return QAccessibleWidget::text(kind);
    }
};

QAccessibleInterface* statusFactory(const QString&, QObject* object) {
    if (auto* label = qobject_cast<LiveStatusLabel*>(object)) return new LiveStatusAccessible(label);
    return nullptr;
}

} // namespace

LiveStatusLabel::LiveStatusLabel(const QString& text, QWidget* parent) : QLabel(text, parent) {
    static const bool installed = [] {
        QAccessible::installFactory(statusFactory);
        return true;
    }();
    Q_UNUSED(installed);
}

void LiveStatusLabel::announce(const QString& text) {
    if (text == this->text()) return;
    setText(text);
    QAccessibleEvent changed(this, QAccessible::NameChanged);
    QAccessible::updateAccessibility(&changed);
}

} // namespace orvane
