#pragma once

#include "platform/PhysicalKeys.h"

#include <QString>
#include <vector>

namespace orvane {

// One key of the guide: its place on the keyboard, the modifiers held with it, and the command it
// runs when that is not the row's own.
struct GuideKey {
    PhysicalKey key = PhysicalKey::None;
    bool primary = false;
    bool alt = false;
    bool shift = false;
    const char* command = nullptr;
};

// One line of the shortcut guide; an empty description makes it a section heading.
struct ShortcutRow {
    // As the guide shows them; spelled from `chords` when the row does not write them itself.
    QString keys;
    QString description;
    // The window command the row stands for, when it is one; the guide marks absent ones.
    QString command = {};
    // The keys the window's key handler answers for this row.
    std::vector<GuideKey> chords = {};
    bool isHeading() const { return description.isEmpty(); }
    QString commandOf(const GuideKey& key) const;
};

const std::vector<ShortcutRow>& explorerShortcutRows();
// The note above the rows of the guide.
QString shortcutGuideNote();
// "Alt + ←" as the guide spells a key, "Alt+Left" in a tool tip.
QString keyText(const GuideKey& key, bool inGuide = true);
// "Cut · Ctrl+X": a control's tool tip naming the key of its command with the modifiers the guide
// gives it; the title alone when the guide has no such key.
QString toolTipWithKey(const QString& title, const QString& command, PhysicalKey key);

} // namespace orvane
