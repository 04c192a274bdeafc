#pragma once

#include <QAccessibleWidget>

namespace orvane {

// A tab of the strip as assistive technology sees it: a page tab named by its folder, selected when
// active, which a press activates; the strip's row of tabs is the page tab list.
class TabAccessibility : public QAccessibleWidget {
public:
    explicit TabAccessibility(QWidget* tab);

    QAccessible::State state() const override;
    QStringList actionNames() const override;
    void doAction(const QString& action) override;

    // Makes tabs and their list known to the accessibility framework; once is enough.
    static void install();
};

} // namespace orvane
