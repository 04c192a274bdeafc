#pragma once

#include "core/ShortcutRows.h"
#include "platform/PhysicalKeys.h"

#include <QString>
#include <vector>

class QKeyEvent;
class QLineEdit;

namespace orvane {

class Explorer;

// One key press as the command tables read it, once for all of them.
struct KeyChord {
    PhysicalKey key = PhysicalKey::None;
    // From the key's place for the letters that have commands, else the event's text.
    QString letter;
    // 1 to 9 from the digit row, 0 for any other key.
    int digit = 0;
    KeyModifiers modifiers;

    bool primary() const { return modifiers.primary(); }
    bool alt() const { return modifiers.alt; }
    bool shift() const { return modifiers.shift; }
};

KeyChord readKeyChord(const QKeyEvent& event);
QString shortcutLetter(PhysicalKey key, const QString& text);
int shortcutDigit(PhysicalKey key);

// Every key press of a browser window ends here; true when the key was used. Keys work by their
// place on the keyboard, so the commands hold under any input source.
bool handleExplorerShortcut(Explorer& window, QKeyEvent* event);

// The Control keys that move and delete by word or jump to the ends in a text field; true when
// the key was used.
bool handleWindowsTextKey(QLineEdit* editor, QKeyEvent* event);

} // namespace orvane
