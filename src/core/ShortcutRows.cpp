#include "core/ShortcutRows.h"

namespace orvane {

const std::vector<ShortcutRow>& explorerShortcutRows() {
    static const std::vector<ShortcutRow> rows = {
        {QStringLiteral("BROWSING"), {}},
        {QStringLiteral("Alt + Enter"), QStringLiteral("Properties for the selection"),
         QStringLiteral("propertiesAction")},
        {QStringLiteral("Alt + ← / →"), QStringLiteral("Previous / next folder")},
        {QStringLiteral("Alt + ↑"), QStringLiteral("Parent folder")},
        {QStringLiteral("Backspace"), QStringLiteral("Previous folder")},
        {QStringLiteral("Enter · F2"), QStringLiteral("Rename selection inline"),
         QStringLiteral("renameAction")},
        {QStringLiteral("Ctrl + L · Alt + D · F4"), QStringLiteral("Edit the folder path")},
        {QStringLiteral("Ctrl + F / E · F3"), QStringLiteral("Focus search")},
        {QStringLiteral("F5 · Ctrl + R"), QStringLiteral("Refresh folder"), QStringLiteral("refreshAction")},
        {QStringLiteral("WINDOW ARRANGEMENT"), {}},
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
        {QStringLiteral("TABS & FOCUS"), {}},
        {QStringLiteral("Ctrl + T / W"), QStringLiteral("New tab / close current tab")},
        {QStringLiteral("Ctrl + Tab / Ctrl + Shift + Tab"), QStringLiteral("Next / previous tab")},
        {QStringLiteral("Ctrl + 1…9"), QStringLiteral("Select numbered tab")},
        {QStringLiteral("Ctrl + N"), QStringLiteral("Another window")},
        {QStringLiteral("Alt + F4"), QStringLiteral("Close this window")},
        {QStringLiteral("F11"), QStringLiteral("Maximize / restore")},
        {QStringLiteral("F6 / Shift + F6"), QStringLiteral("Move focus between regions")},
        {QStringLiteral("FILES & SELECTION"), {}},
        {QStringLiteral("Ctrl + C / X / V"), QStringLiteral("Copy / cut / paste")},
        {QStringLiteral("Ctrl + Insert / Shift + Insert"), QStringLiteral("Copy / paste")},
        {QStringLiteral("Ctrl + Shift + C"), QStringLiteral("Copy quoted paths"),
         QStringLiteral("copyPathAction")},
        {QStringLiteral("Ctrl + Shift + N"), QStringLiteral("Create folder"), QStringLiteral("newFolder")},
        {QStringLiteral("F2"), QStringLiteral("Rename; keep the extension unselected"),
         QStringLiteral("renameAction")},
        {QStringLiteral("Ctrl + A"), QStringLiteral("Select all")},
        {QStringLiteral("Ctrl + arrows, then Space"), QStringLiteral("Choose individual items")},
        {QStringLiteral("Shift + arrows / click"), QStringLiteral("Select a range")},
        {QStringLiteral("Ctrl + click"), QStringLiteral("Toggle an item in the selection")},
        {QStringLiteral("Home / End"), QStringLiteral("First / last item")},
        {QStringLiteral("Shift + F10 · Menu key"), QStringLiteral("Selection context menu, Open first"),
         QStringLiteral("showKeyboardContextMenu")},
        {QStringLiteral("Delete · Ctrl + D"), QStringLiteral("Move selection to Trash"),
         QStringLiteral("trashAction")},
        {QStringLiteral("Shift + Delete"), QStringLiteral("Permanent deletion, after confirmation"),
         QStringLiteral("permanentlyDeleteAction")},
        {QStringLiteral("Ctrl + Z"), QStringLiteral("Undo the last file operation"),
         QStringLiteral("undoAction")},
        {QStringLiteral("Shift + drag / Ctrl + drag"), QStringLiteral("Move / copy dropped files"),
         QStringLiteral("dropFiles")},
        {QStringLiteral("Alt + drag"), QStringLiteral("Create a macOS alias shortcut"),
         QStringLiteral("makeAlias")},
        {QStringLiteral("VIEWS & PANES"), {}},
        {QStringLiteral("Alt + P"), QStringLiteral("Toggle Preview"), QStringLiteral("togglePreview")},
        {QStringLiteral("Alt + Shift + P"), QStringLiteral("Toggle Details pane"),
         QStringLiteral("toggleDetails")},
        {QStringLiteral("Ctrl + Shift + 1…8"), QStringLiteral("Icon sizes, List, Details, Tiles, Content"),
         QStringLiteral("setViewMode")},
        {QStringLiteral("Ctrl + wheel"), QStringLiteral("Adjust icon size"), QStringLiteral("setViewMode")},
        {QStringLiteral("Ctrl + keypad +"), QStringLiteral("Fit Details columns to text"),
         QStringLiteral("autosizeColumns")},
        {QStringLiteral("Ctrl + Shift + E"), QStringLiteral("Reveal current folder in the navigation tree"),
         QStringLiteral("expandToCurrentFolder")},
        {QStringLiteral("← / → · keypad − / +"), QStringLiteral("Collapse / expand a navigation folder"),
         QStringLiteral("expandToCurrentFolder")},
        {QStringLiteral("Space"), QStringLiteral("Quick Look (unless choosing individual items)"),
         QStringLiteral("quickLook")},
        {QStringLiteral("Ctrl + Shift + H"), QStringLiteral("Toggle hidden items"),
         QStringLiteral("toggleHidden")},
        {QStringLiteral("Escape"), QStringLiteral("Cancel path editing, clear filter or dismiss Quick Look")},
        {QStringLiteral("F1"), QStringLiteral("This guide"), QStringLiteral("helpAction")},
    };
    return rows;
}

QString shortcutGuideNote() {
    return QStringLiteral("On Mac: Alt = Option (⌥). Command also works for Ctrl.\n"
                          "F-keys may require Fn. Shortcuts act inside Orvane.");
}

// ---------------------------------------------------------------- reading the key

} // namespace orvane
