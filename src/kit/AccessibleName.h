#pragma once

#include <QString>

class QAbstractButton;

namespace orvane {

// Names for assistive technology. An icon button says what it does in its tool tip, followed by its
// key ("Back · Alt+Left"); its name is the words without the key, and a titled button's is its title
// without the menu mark ("Sort  ⌄").
class AccessibleName {
public:
    static QString fromToolTip(const QString& tip);
    static QString fromTitle(const QString& title);
    // Names a button from its title, or else its tool tip, unless it has a name already.
    static void name(QAbstractButton* button);
};

} // namespace orvane
