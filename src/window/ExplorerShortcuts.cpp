#include "window/ExplorerShortcuts.h"

#include "core/TabContent.h"
#include "core/WindowCommands.h"
#include "kit/EditablePathBox.h"
#include "kit/WindowWidgets.h"
#include "views/FileTable.h"
#include "window/Explorer.h"
#include "window/ExplorerKeyboard.h"

#include <QApplication>
#include <QKeyEvent>
#include <QLineEdit>
#include <array>
#include <cstdint>
#include <cstring>

namespace orvane {

QString shortcutLetter(PhysicalKey key, const QString& text) {
    static const std::pair<PhysicalKey, char> letters[] = {
        {PhysicalKey::A, 'a'}, {PhysicalKey::D, 'd'}, {PhysicalKey::F, 'f'}, {PhysicalKey::H, 'h'},
        {PhysicalKey::Z, 'z'}, {PhysicalKey::X, 'x'}, {PhysicalKey::C, 'c'}, {PhysicalKey::V, 'v'},
        {PhysicalKey::W, 'w'}, {PhysicalKey::E, 'e'}, {PhysicalKey::R, 'r'}, {PhysicalKey::T, 't'},
        {PhysicalKey::P, 'p'}, {PhysicalKey::L, 'l'}, {PhysicalKey::N, 'n'}};
    for (const auto& [physical, letter] : letters)
        if (physical == key) return QString(QLatin1Char(letter));
    // Control characters are what Control makes of a letter, not the letter itself.
    QString printable;
    for (const QChar c : text)
        if (c.isPrint()) printable += c;
    return printable.toLower();
}

int shortcutDigit(PhysicalKey key) {
    static const PhysicalKey digits[] = {PhysicalKey::Digit1, PhysicalKey::Digit2, PhysicalKey::Digit3,
                                         PhysicalKey::Digit4, PhysicalKey::Digit5, PhysicalKey::Digit6,
                                         PhysicalKey::Digit7, PhysicalKey::Digit8, PhysicalKey::Digit9};
    for (int i = 0; i < 9; ++i)
        if (digits[i] == key) return i + 1;
    return 0;
}

KeyChord readKeyChord(const QKeyEvent& event) {
    KeyChord chord;
    chord.key = physicalKey(event);
    chord.letter = shortcutLetter(chord.key, event.text());
    chord.digit = shortcutDigit(chord.key);
    chord.modifiers = keyModifiers(event.modifiers());
    return chord;
}

// ---------------------------------------------------------------- the command tables

namespace {

enum class Need : std::uint8_t { Any, Yes, No };
constexpr Need any = Need::Any;
constexpr Need yes = Need::Yes;
constexpr Need no = Need::No;

bool meets(Need need, bool on) {
    return need == Need::Any || (need == Need::Yes) == on;
}

// The keys of a row: letters (any of them), up to three physical keys, any digit or any key.
struct Keys {
    const char* letters = nullptr;
    std::array<PhysicalKey, 3> physical{PhysicalKey::None, PhysicalKey::None, PhysicalKey::None};
    bool digit = false;
    bool every = false;

    bool matches(const KeyChord& chord) const {
        if (every) return true;
        if (digit) return chord.digit > 0;
        if (letters)
            return chord.letter.size() == 1 && chord.letter[0].unicode() < 128 &&
                   std::strchr(letters, chord.letter[0].toLatin1()) != nullptr;
        for (PhysicalKey key : physical)
            if (key != PhysicalKey::None && key == chord.key) return true;
        return false;
    }
};

Keys letter(const char* letters) {
    Keys keys;
    keys.letters = letters;
    return keys;
}

Keys key(PhysicalKey a, PhysicalKey b = PhysicalKey::None, PhysicalKey c = PhysicalKey::None) {
    Keys keys;
    keys.physical = {a, b, c};
    return keys;
}

Keys digit() {
    Keys keys;
    keys.digit = true;
    return keys;
}

Keys anyKey() {
    Keys keys;
    keys.every = true;
    return keys;
}

struct Context {
    Explorer& window;
    const KeyChord& chord;
};

// A row of a table: modifiers Primary, Alt, Shift; the keys; an optional further condition; the
// action, which answers whether the key is used up (a few rows let the search go on).
struct Rule {
    Need primary;
    Need alt;
    Need shift;
    Keys keys;
    bool (*when)(const Context&);
    bool (*run)(Context&);

    bool matches(const Context& c) const {
        return meets(primary, c.chord.primary()) && meets(alt, c.chord.alt()) &&
               meets(shift, c.chord.shift()) && keys.matches(c.chord) && (!when || when(c));
    }
};

bool runRules(const std::vector<Rule>& rules, Context& context) {
    for (const Rule& rule : rules)
        if (rule.matches(context) && rule.run(context)) return true;
    return false;
}

// Commands that other parts of the program provide; a key for one that is not there yet is used up
// all the same, as a refused command is.
bool call(Explorer& window, const char* name, const QVariant& arg = {}) {
    window.commands().run(QLatin1String(name), arg);
    return true;
}

bool inDetailsTable(const Context& c) {
    return c.window.keyboard().tableFocusedInDetails();
}

using P = PhysicalKey;

// A tab with items of its own (a phone) takes the file keys through its content's route.
bool route(Context& c, const char* name) {
    TabContent* content = c.window.contentFor(c.window.current());
    if (content) content->run(QLatin1String(name));
    return true;
}

const std::vector<Rule>& ownItemRules() {
    static const std::vector<Rule> rules = {
        {yes, no, no, letter("c"), nullptr, [](Context& c) { return route(c, "copyAction"); }},
        {yes, no, no, letter("v"), nullptr, [](Context& c) { return route(c, "pasteAction"); }},
        {yes, no, no, letter("a"), nullptr, [](Context& c) { return route(c, "selectAll"); }},
        {yes, no, yes, letter("n"), nullptr, [](Context& c) { return route(c, "newFolder"); }},
        {yes, no, any, letter("x"), nullptr, [](Context& c) { return route(c, "cutAction"); }},
        {no, no, no, key(P::Return, P::Enter, P::F2), nullptr,
         [](Context& c) { return route(c, "renameAction"); }},
        {no, no, no, key(P::Backspace, P::ForwardDelete), nullptr,
         [](Context& c) { return route(c, "trashAction"); }},
        {no, yes, any, key(P::Return), nullptr, [](Context& c) { return route(c, "propertiesAction"); }},
    };
    return rules;
}

const std::vector<Rule>& commonRules() {
    static const std::vector<Rule> rules = {
        {yes, no, no, letter("l"), nullptr, [](Context& c) { return call(c.window, "focusAddress"); }},
        {no, yes, no, letter("d"), nullptr, [](Context& c) { return call(c.window, "focusAddress"); }},
        {yes, no, no, letter("fe"), nullptr, [](Context& c) { return call(c.window, "focusSearch"); }},
        {no, no, any, key(P::F3), nullptr, [](Context& c) { return call(c.window, "focusSearch"); }},
        {no, no, any, key(P::F4), nullptr, [](Context& c) { return call(c.window, "focusAddress"); }},
        {no, no, any, key(P::F6), nullptr,
         [](Context& c) { return call(c.window, "cycleFocus", c.chord.shift()); }},
        {no, no, no, key(P::F11), nullptr, [](Context& c) { return call(c.window, "zoomWindow"); }},
        {no, no, no, key(P::F1), nullptr, [](Context& c) { return call(c.window, "helpAction"); }},
        {no, yes, no, key(P::F4), nullptr, [](Context& c) { return call(c.window, "closeWindow"); }},
        {yes, no, yes, letter("e"), nullptr,
         [](Context& c) { return call(c.window, "expandToCurrentFolder"); }},
        {yes, no, yes, digit(), [](const Context& c) { return c.chord.digit <= 8; },
         [](Context& c) { return call(c.window, "setViewMode", c.chord.digit); }},
        {yes, no, no, digit(), nullptr,
         [](Context& c) { return call(c.window, "activateTab", c.chord.digit - 1); }},
        {yes, no, any, key(P::Tab), nullptr,
         [](Context& c) {
             const int count = c.window.tabs().count();
             const int step = c.chord.shift() ? count - 1 : 1;
             return call(c.window, "activateTab", (c.window.tabs().active() + step) % count);
         }},
        {yes, no, no, letter("t"), nullptr, [](Context& c) { return call(c.window, "newTab"); }},
        {yes, no, no, letter("w"), nullptr, [](Context& c) { return call(c.window, "closeTab"); }},
        {yes, no, no, letter("r"), nullptr, [](Context& c) { return call(c.window, "refreshAction"); }},
        {yes, no, yes, letter("n"), nullptr, [](Context& c) { return call(c.window, "newFolder"); }},
        {yes, no, no, letter("n"), nullptr, [](Context& c) { return call(c.window, "newWindowAction"); }},
    };
    return rules;
}

const std::vector<Rule>& fileRules() {
    static const std::vector<Rule> rules = {
        {no, yes, any, letter("p"), nullptr,
         [](Context& c) { return call(c.window, c.chord.shift() ? "toggleDetails" : "togglePreview"); }},
        {no, yes, no, key(P::Left), nullptr, [](Context& c) { return call(c.window, "back"); }},
        {no, yes, no, key(P::Right), nullptr, [](Context& c) { return call(c.window, "forward"); }},
        {no, yes, no, key(P::Up), nullptr, [](Context& c) { return call(c.window, "up"); }},
        {no, yes, no, key(P::Return, P::Enter), nullptr,
         [](Context& c) { return call(c.window, "propertiesAction"); }},
        {yes, no, any, key(P::Down, P::Right), inDetailsTable,
         [](Context& c) { return c.window.keyboard().moveKeyboardFocus(1, c.chord.shift()), true; }},
        {yes, no, any, key(P::Up, P::Left), inDetailsTable,
         [](Context& c) { return c.window.keyboard().moveKeyboardFocus(-1, c.chord.shift()), true; }},
        {yes, no, any, key(P::Space), inDetailsTable,
         [](Context& c) { return c.window.keyboard().toggleKeyboardFocusSelection(), true; }},
        {yes, no, any, key(P::KeypadPlus), nullptr,
         [](Context& c) { return call(c.window, "autosizeColumns"); }},
        {yes, no, any, key(P::Help), nullptr, [](Context& c) { return call(c.window, "copyAction"); }},
        {yes, no, no, letter("a"), nullptr, [](Context& c) { return call(c.window, "selectAll"); }},
        {yes, no, any, letter("c"), nullptr,
         [](Context& c) { return call(c.window, c.chord.shift() ? "copyPathAction" : "copyAction"); }},
        {yes, no, no, letter("x"), nullptr, [](Context& c) { return call(c.window, "cutAction"); }},
        {yes, no, no, letter("v"), nullptr, [](Context& c) { return call(c.window, "pasteAction"); }},
        {yes, no, no, letter("d"), nullptr, [](Context& c) { return call(c.window, "trashAction"); }},
        {yes, no, no, letter("z"), nullptr, [](Context& c) { return call(c.window, "undoAction"); }},
        {yes, no, yes, letter("h"), nullptr, [](Context& c) { return call(c.window, "toggleHidden"); }},
        {no, no, any, anyKey(),
         [](const Context& c) {
             return c.window.keyboard().focusIsInside(c.window.widgets().navigationPane);
         },
         [](Context& c) { return c.window.keyboard().handleSidebarKey(c.chord.key); }},
        {any, any, yes, key(P::F10), nullptr,
         [](Context& c) { return call(c.window, "showKeyboardContextMenu"); }},
        {no, no, no, key(P::Menu), nullptr,
         [](Context& c) { return call(c.window, "showKeyboardContextMenu"); }},
        {any, any, yes, key(P::Help), nullptr, [](Context& c) { return call(c.window, "pasteAction"); }},
        {any, any, any, key(P::ForwardDelete), nullptr,
         [](Context& c) {
             return call(c.window, c.chord.shift() ? "permanentlyDeleteAction" : "trashAction");
         }},
        {any, any, any, key(P::Home), inDetailsTable,
         [](Context& c) { return c.window.keyboard().selectBoundary(false, c.chord.shift()), true; }},
        {any, any, any, key(P::End), inDetailsTable,
         [](Context& c) { return c.window.keyboard().selectBoundary(true, c.chord.shift()), true; }},
        {any, any, any, key(P::Space),
         [](const Context& c) {
             return inDetailsTable(c) && c.window.table()->keyboardFocusRow().has_value();
         },
         [](Context& c) { return c.window.keyboard().toggleKeyboardFocusSelection(), true; }},
        {no, no, no, key(P::F2), nullptr, [](Context& c) { return call(c.window, "renameAction"); }},
        {no, no, no, key(P::F5), nullptr, [](Context& c) { return call(c.window, "refreshAction"); }},
        {no, no, no, key(P::Return, P::Enter), nullptr,
         [](Context& c) { return call(c.window, "renameAction"); }},
        {no, no, no, key(P::Backspace), nullptr, [](Context& c) { return call(c.window, "back"); }},
        {no, no, no, key(P::Space), [](const Context& c) { return c.window.keyboard().fileListFocused(); },
         [](Context& c) { return call(c.window, "quickLook"); }},
        {no, no, no, key(P::Escape), nullptr, [](Context& c) { return call(c.window, "escapeFileArea"); }},
    };
    return rules;
}

// Control with Option on an arrow places the window: halves, maximised, restored.
bool arrangeWindow(Explorer& window, const KeyChord& chord) {
    const KeyModifiers& m = chord.modifiers;
    if (!m.control || !m.alt || m.command) return false;
    static const PhysicalKey arrows[] = {P::Left, P::Right, P::Up, P::Down};
    for (int tag = 0; tag < 4; ++tag) {
        if (arrows[tag] != chord.key) continue;
        return call(window, "arrangeWindow", tag);
    }
    return false;
}

// The small layer a focused text field gets; what it leaves reaches the field as typing.
bool handleEditorKey(Explorer& window, QLineEdit* editor, QKeyEvent* event, const KeyChord& chord) {
    if (handleWindowsTextKey(editor, event)) return true;
    if (chord.key == P::Escape && !chord.primary() && !chord.alt()) {
        window.keyboard().escapeTextEditing(editor);
        return true;
    }
    const bool help = chord.key == P::Help;
    if (chord.primary() && !chord.alt()) {
        if (help) return editor->copy(), true;
        const QString& l = chord.letter;
        if (l == QLatin1String("z")) return chord.shift() ? editor->redo() : editor->undo(), true;
        if (chord.shift()) return false;
        if (l == QLatin1String("a")) return editor->selectAll(), true;
        if (l == QLatin1String("c")) return editor->copy(), true;
        if (l == QLatin1String("x")) return editor->cut(), true;
        if (l == QLatin1String("v")) return editor->paste(), true;
        return false;
    }
    if (chord.shift() && !chord.primary() && !chord.alt() && help) return editor->paste(), true;
    return false;
}

} // namespace

bool handleExplorerShortcut(Explorer& window, QKeyEvent* event) {
    const QWidget* modal = QApplication::activeModalWidget();
    if (modal && modal != &window) return false;
    const KeyChord chord = readKeyChord(*event);
    if (arrangeWindow(window, chord)) return true;
    // While a long job holds the window, Escape is for stopping it.
    if (chord.key == P::Escape && !chord.primary() && !chord.alt() && window.busy())
        return window.commands().run(QStringLiteral("cancelJob")), true;
    Context context{window, chord};
    auto* editor = qobject_cast<QLineEdit*>(window.focusWidget());
    const bool plain = !chord.primary() && !chord.alt() && !chord.shift();
    if (editor && editor == window.widgets().pathBox->addressField() && chord.key == P::Tab && plain &&
        window.current().isLocalFile() &&
        window.widgets().pathBox->completeFolder(window.current().toLocalFile()))
        return true;
    const TabContent* content = window.contentFor(window.current());
    if (!editor && content && content->takesFileKeys() && runRules(ownItemRules(), context)) return true;
    if (runRules(commonRules(), context)) return true;
    if (editor) return handleEditorKey(window, editor, event, chord);
    return runRules(fileRules(), context);
}

// ---------------------------------------------------------------- text fields

namespace {

void deleteWord(QLineEdit* editor, bool backward) {
    if (editor->isReadOnly()) return;
    if (!editor->hasSelectedText()) {
        if (backward)
            editor->cursorWordBackward(true);
        else
            editor->cursorWordForward(true);
    }
    if (editor->hasSelectedText()) editor->del();
}

} // namespace

bool handleWindowsTextKey(QLineEdit* editor, QKeyEvent* event) {
    const KeyModifiers m = keyModifiers(event->modifiers());
    if (!editor || !m.control || m.command || m.alt) return false;
    switch (physicalKey(*event)) {
    case PhysicalKey::Left:
        editor->cursorWordBackward(m.shift);
        return true;
    case PhysicalKey::Right:
        editor->cursorWordForward(m.shift);
        return true;
    case PhysicalKey::Home:
        editor->home(m.shift);
        return true;
    case PhysicalKey::End:
        editor->end(m.shift);
        return true;
    case PhysicalKey::Backspace:
    case PhysicalKey::ForwardDelete:
        if (m.shift) return false;
        deleteWord(editor, physicalKey(*event) == PhysicalKey::Backspace);
        return true;
    default:
        return false;
    }
}

} // namespace orvane
