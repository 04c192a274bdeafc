#include "kit/AccessibleName.h"

#include <QAbstractButton>

namespace orvane {

QString AccessibleName::fromToolTip(const QString& tip) {
    const qsizetype key = tip.indexOf(QStringLiteral(" · "));
    return (key < 0 ? tip : tip.left(key)).trimmed();
}

QString AccessibleName::fromTitle(const QString& title) {
    QString name = title;
    name.remove(u'⌄');
    return name.trimmed();
}

void AccessibleName::name(QAbstractButton* button) {
    if (!button->accessibleName().isEmpty()) return;
    const QString title = fromTitle(button->text());
    button->setAccessibleName(title.isEmpty() ? fromToolTip(button->toolTip()) : title);
}

} // namespace orvane
