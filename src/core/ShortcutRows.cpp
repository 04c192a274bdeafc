#include "core/ShortcutRows.h"

#include "platform/Platform.h"
#include <QStringList>

namespace orvane {

namespace {
QString word(PlatformWord which) {
    return Platform::instance().word(which);
}

using P = PhysicalKey;

GuideKey ctrl(P key, const char* command = nullptr) {
    return {key, true, false, false, command};
}
GuideKey alt(P key, const char* command = nullptr) {
    return {key, false, true, false, command};
}
GuideKey shift(P key, const char* command = nullptr) {
    return {key, false, false, true, command};
}
GuideKey plain(P key, const char* command = nullptr) {
    return {key, false, false, false, command};
}

QString heading(const char* title) {
    return QLatin1String(title);
}

// A row whose keys are spelled from its chords.
ShortcutRow spelled(const char* description, const char* command, std::vector<GuideKey> chords) {
    QStringList texts;
    for (const GuideKey& key : chords)
        texts << keyText(key);
    return {texts.join(QStringLiteral(" · ")), QLatin1String(description), QLatin1String(command),
            std::move(chords)};
}

QString keyName(PhysicalKey key, bool inGuide) {
    static const std::pair<PhysicalKey, const char*> words[] = {
        {P::Left, "Left"}, {P::Right, "Right"}, {P::Up, "Up"}, {P::Down, "Down"}};
    for (const auto& [physical, word] : words)
        if (!inGuide && physical == key) return QLatin1String(word);
    static const std::pair<PhysicalKey, const char*> names[] = {
        {P::Return, "Enter"},
        {P::ForwardDelete, "Delete"},
        {P::Backspace, "Backspace"},
        {P::Escape, "Escape"},
        {P::Space, "Space"},
        {P::Tab, "Tab"},
        {P::Help, "Insert"},
        {P::KeypadPlus, "keypad +"},
        {P::Left, "←"},
        {P::Right, "→"},
        {P::Up, "↑"},
        {P::Down, "↓"},
        {P::F1, "F1"},
        {P::F2, "F2"},
        {P::F3, "F3"},
        {P::F4, "F4"},
        {P::F5, "F5"},
        {P::F6, "F6"},
        {P::F10, "F10"},
        {P::F11, "F11"},
    };
    for (const auto& [physical, name] : names)
        if (physical == key) return QString::fromUtf8(name);
    static const std::pair<PhysicalKey, char> letters[] = {
        {P::A, 'A'}, {P::C, 'C'}, {P::D, 'D'}, {P::E, 'E'},     {P::H, 'H'}, {P::L, 'L'},
        {P::N, 'N'}, {P::P, 'P'}, {P::R, 'R'}, {P::T, 'T'},     {P::W, 'W'}, {P::X, 'X'},
        {P::Z, 'Z'}, {P::V, 'V'}, {P::F, 'F'}, {P::Digit1, '1'}};
    for (const auto& [physical, letter] : letters)
        if (physical == key) return QString(QLatin1Char(letter));
    return {};
}

} // namespace

QString ShortcutRow::commandOf(const GuideKey& key) const {
    return key.command ? QLatin1String(key.command) : command;
}

QString keyText(const GuideKey& key, bool inGuide) {
    QStringList parts;
    if (key.primary) parts << QStringLiteral("Ctrl");
    if (key.alt) parts << QStringLiteral("Alt");
    if (key.shift) parts << QStringLiteral("Shift");
    parts << keyName(key.key, inGuide);
    return parts.join(inGuide ? QStringLiteral(" + ") : QStringLiteral("+"));
}

QString toolTipWithKey(const QString& title, const QString& command, PhysicalKey key) {
    for (const ShortcutRow& row : explorerShortcutRows())
        for (const GuideKey& chord : row.chords)
            if (chord.key == key && row.commandOf(chord) == command)
                return title + QStringLiteral(" · ") + keyText(chord, false);
    return title;
}

const std::vector<ShortcutRow>& explorerShortcutRows() {
    static const std::vector<ShortcutRow> rows = {
        {heading("BROWSING"), {}},
        spelled("Properties for the selection", "propertiesAction", {alt(P::Return)}),
        {QStringLiteral("Alt + ← / →"),
         QStringLiteral("Previous / next folder"),
         {},
         {alt(P::Left, "back"), alt(P::Right, "forward")}},
        spelled("Parent folder", "", {alt(P::Up, "up")}),
        spelled("Previous folder", "", {plain(P::Backspace, "back")}),
        spelled("Rename selection inline", "renameAction", {plain(P::Return), plain(P::F2)}),
        spelled("Edit the folder path", "",
                {ctrl(P::L, "focusAddress"), alt(P::D, "focusAddress"), plain(P::F4, "focusAddress")}),
        {QStringLiteral("Ctrl + F / E · F3"),
         QStringLiteral("Focus search"),
         {},
         {ctrl(P::F, "focusSearch"), ctrl(P::E, "focusSearch"), plain(P::F3, "focusSearch")}},
        spelled("Refresh folder", "refreshAction", {plain(P::F5), ctrl(P::R)}),
        {heading("WINDOW ARRANGEMENT"), {}},
        {QStringLiteral("Ctrl + Alt + ← / →"), QStringLiteral("Left / right half"),
         QStringLiteral("arrangeWindow")},
        {QStringLiteral("Ctrl + Alt + ↑ / ↓"), QStringLiteral("Maximize / restore size"),
         QStringLiteral("arrangeWindow")},
        {QStringLiteral("Drag a tab"),
         QStringLiteral("Reorder, detach, or drop onto another window tab strip"),
         QStringLiteral("moveTabToNewWindow")},
        {QStringLiteral("Right-click a tab"), QStringLiteral("Move tab to new window"),
         QStringLiteral("moveTabToNewWindow")},
        {QStringLiteral("Window menu"), QStringLiteral("Half-screen and quarter-screen layouts"),
         QStringLiteral("arrangeWindow")},
        {heading("TABS & FOCUS"), {}},
        {QStringLiteral("Ctrl + T / W"),
         QStringLiteral("New tab / close current tab"),
         {},
         {ctrl(P::T, "newTab"), ctrl(P::W, "closeTab")}},
        {QStringLiteral("Ctrl + Tab / Ctrl + Shift + Tab"),
         QStringLiteral("Next / previous tab"),
         {},
         {ctrl(P::Tab, "activateTab"), {P::Tab, true, false, true, "activateTab"}}},
        {QStringLiteral("Ctrl + 1…9"),
         QStringLiteral("Select numbered tab"),
         {},
         {ctrl(P::Digit1, "activateTab")}},
        spelled("Another window", "", {ctrl(P::N, "newWindowAction")}),
        spelled("Close this window", "", {alt(P::F4, "closeWindow")}),
        spelled("Maximize / restore", "", {plain(P::F11, "zoomWindow")}),
        {QStringLiteral("F6 / Shift + F6"),
         QStringLiteral("Move focus between regions"),
         {},
         {plain(P::F6, "cycleFocus"), shift(P::F6, "cycleFocus")}},
        {heading("FILES & SELECTION"), {}},
        {QStringLiteral("Ctrl + C / X / V"),
         QStringLiteral("Copy / cut / paste"),
         {},
         {ctrl(P::C, "copyAction"), ctrl(P::X, "cutAction"), ctrl(P::V, "pasteAction")}},
        {QStringLiteral("Ctrl + Insert / Shift + Insert"),
         QStringLiteral("Copy / paste"),
         {},
         {ctrl(P::Help, "copyAction"), shift(P::Help, "pasteAction")}},
        spelled("Copy quoted paths", "copyPathAction", {{P::C, true, false, true}}),
        spelled("Create folder", "newFolder", {{P::N, true, false, true}}),
        spelled("Rename; keep the extension unselected", "renameAction", {plain(P::F2)}),
        spelled("Select all", "", {ctrl(P::A, "selectAll")}),
        {QStringLiteral("Ctrl + arrows, then Space"), QStringLiteral("Choose individual items")},
        {QStringLiteral("Shift + arrows / click"), QStringLiteral("Select a range")},
        {QStringLiteral("Ctrl + click"), QStringLiteral("Toggle an item in the selection")},
        {QStringLiteral("Home / End"), QStringLiteral("First / last item")},
        {QStringLiteral("Shift + F10 · Menu key"),
         QStringLiteral("Selection context menu, Open first"),
         QStringLiteral("showKeyboardContextMenu"),
         {shift(P::F10), plain(P::Menu)}},
        spelled("Move selection to Trash", "trashAction", {plain(P::ForwardDelete), ctrl(P::D)}),
        spelled("Permanent deletion, after confirmation", "permanentlyDeleteAction",
                {shift(P::ForwardDelete)}),
        spelled("Undo the last file operation", "undoAction", {ctrl(P::Z)}),
        {QStringLiteral("Shift + drag / Ctrl + drag"), QStringLiteral("Move / copy dropped files"),
         QStringLiteral("dropFiles")},
        {QStringLiteral("Alt + drag"), word(PlatformWord::MakeAlias), QStringLiteral("makeAlias")},
        {heading("VIEWS & PANES"), {}},
        spelled("Toggle Preview", "togglePreview", {alt(P::P)}),
        spelled("Toggle Details pane", "toggleDetails", {{P::P, false, true, true}}),
        {QStringLiteral("Ctrl + Shift + 1…8"),
         QStringLiteral("Icon sizes, List, Details, Tiles, Content"),
         QStringLiteral("setViewMode"),
         {{P::Digit1, true, false, true}}},
        {QStringLiteral("Ctrl + wheel"), QStringLiteral("Adjust icon size"), QStringLiteral("setViewMode")},
        spelled("Fit Details columns to text", "autosizeColumns", {ctrl(P::KeypadPlus)}),
        spelled("Reveal current folder in the navigation tree", "expandToCurrentFolder",
                {{P::E, true, false, true}}),
        {QStringLiteral("← / → · keypad − / +"), QStringLiteral("Collapse / expand a navigation folder"),
         QStringLiteral("expandToCurrentFolder")},
        {QStringLiteral("Space"),
         word(PlatformWord::QuickLook) + QStringLiteral(" (unless choosing individual items)"),
         QStringLiteral("quickLook")},
        spelled("Toggle hidden items", "toggleHidden", {{P::H, true, false, true}}),
        {QStringLiteral("Escape"),
         QStringLiteral("Cancel path editing, clear filter or dismiss ") + word(PlatformWord::QuickLook)},
        spelled("This guide", "helpAction", {plain(P::F1)}),
    };
    return rows;
}

QString shortcutGuideNote() {
    const QString modifiers = word(PlatformWord::ModifierNote);
    const QString rest = QStringLiteral("F-keys may require Fn. Shortcuts act inside Orvane.");
    return modifiers.isEmpty() ? rest : modifiers + u'\n' + rest;
}

} // namespace orvane
