#pragma once

#include <QString>
#include <vector>

namespace orvane {

// One line of the shortcut guide; an empty description makes it a section heading.
struct ShortcutRow {
    QString keys;
    QString description;
    // The window command the row stands for, when it is one; the guide marks absent ones.
    QString command = {};
    bool isHeading() const { return description.isEmpty(); }
};

const std::vector<ShortcutRow>& explorerShortcutRows();
// The note above the rows of the guide.
QString shortcutGuideNote();

} // namespace orvane
