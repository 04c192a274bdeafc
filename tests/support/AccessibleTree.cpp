#include "support/AccessibleTree.h"

#include <QAccessible>
#include <QLabel>
#include <QSet>

namespace orvane::test {

namespace {

bool isControl(QAccessible::Role role) {
    static const QSet<QAccessible::Role> controls = {
        QAccessible::PushButton, QAccessible::CheckBox,       QAccessible::RadioButton,
        QAccessible::ComboBox,   QAccessible::EditableText,   QAccessible::Slider,
        QAccessible::SpinBox,    QAccessible::PageTab,        QAccessible::PageTabList,
        QAccessible::ButtonMenu, QAccessible::ButtonDropDown, QAccessible::Link,
        QAccessible::TreeItem,   QAccessible::ListItem,       QAccessible::MenuItem,
        QAccessible::Tree,       QAccessible::List,           QAccessible::Table,
        QAccessible::StatusBar,  QAccessible::ProgressBar,    QAccessible::Dial,
    };
    return controls.contains(role);
}

// An elided text ("Report…f.pdf") is a shortened form of its name, not a hidden one.
bool nameHidesText(const QString& name, const QString& text) {
    if (name.isEmpty() || text.isEmpty()) return false;
    for (const QString& piece : text.split(u'…', Qt::SkipEmptyParts))
        if (!name.contains(piece.trimmed())) return true;
    return false;
}

QString describe(QAccessibleInterface* item) {
    QString what = QString::number(int(item->role()), 16);
    if (item->object())
        what += QStringLiteral(" ") + QString::fromLatin1(item->object()->metaObject()->className());
    return what;
}

void walk(QAccessibleInterface* item, int depth, QStringList& faults) {
    if (!item || !item->isValid() || item->state().invisible || depth > 64) return;
    const QString name = item->text(QAccessible::Name);
    if (isControl(item->role()) && name.trimmed().isEmpty())
        faults << QStringLiteral("unnamed control: ") + describe(item);
    if (auto* label = qobject_cast<QLabel*>(item->object()); label && nameHidesText(name, label->text()))
        faults << QStringLiteral("label \"%1\" is named \"%2\"").arg(label->text(), name);
    for (int i = 0; i < item->childCount(); ++i)
        walk(item->child(i), depth + 1, faults);
}

} // namespace

QStringList accessibilityFaults(QWidget* root) {
    QStringList faults;
    walk(QAccessible::queryAccessibleInterface(root), 0, faults);
    return faults;
}

} // namespace orvane::test
