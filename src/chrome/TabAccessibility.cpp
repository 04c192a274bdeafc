#include "chrome/TabAccessibility.h"

#include "chrome/ExplorerTabView.h"

namespace orvane {

namespace {

QAccessibleInterface* factory(const QString&, QObject* object) {
    auto* widget = qobject_cast<QWidget*>(object);
    if (!widget) return nullptr;
    if (qobject_cast<ExplorerTabView*>(widget)) return new TabAccessibility(widget);
    if (widget->objectName() == QLatin1String("tabBar"))
        return new QAccessibleWidget(widget, QAccessible::PageTabList);
    return nullptr;
}

} // namespace

TabAccessibility::TabAccessibility(QWidget* tab) : QAccessibleWidget(tab, QAccessible::PageTab) {}

QAccessible::State TabAccessibility::state() const {
    QAccessible::State state = QAccessibleWidget::state();
    state.selectable = true;
    state.selected = static_cast<ExplorerTabView*>(widget())->activeTab();
    return state;
}

QStringList TabAccessibility::actionNames() const {
    return {pressAction()};
}

void TabAccessibility::doAction(const QString& action) {
    auto* tab = static_cast<ExplorerTabView*>(widget());
    if (action == pressAction()) emit tab->activateRequested(tab->tabID());
}

void TabAccessibility::install() {
    static const bool installed = [] {
        QAccessible::installFactory(factory);
        return true;
    }();
    Q_UNUSED(installed);
}

} // namespace orvane
