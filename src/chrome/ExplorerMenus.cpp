#include "chrome/ExplorerMenus.h"
#include "kit/CommandBinding.h"

#include "chrome/ExplorerChrome.h"
#include "core/ActionState.h"
#include "core/BrowserWindow.h"
#include "core/TabContent.h"
#include "core/WindowCommands.h"
#include "core/WindowListing.h"
#include "fileops/OpenWithCommands.h"
#include "platform/Platform.h"
#include "views/FileTable.h"
#include "views/ViewModes.h"

#include <QMenu>

namespace orvane {

namespace {

// Every item is a command by name; one that has not arrived yet stays in the menu, greyed.
QAction* item(QMenu* menu, BrowserWindow* w, const char* name, const QString& title = {},
              const QVariant& arg = {}) {
    return CommandBinding::addTo(w->commands(), menu, QLatin1String(name), arg, title);
}

// The context menu's own rule narrows what the command allows, never widens it: an item that
// could be chosen must also run.
QAction* contextItem(QMenu* menu, BrowserWindow* w, const char* name, bool allowed,
                     const QString& title = {}) {
    QAction* action = item(menu, w, name, title);
    action->setEnabled(allowed && w->commands().isEnabled(QLatin1String(name)));
    return action;
}

} // namespace

void ExplorerMenus::fillNewMenu(QMenu* menu, BrowserWindow* w) {
    menu->clear();
    item(menu, w, "newFolder", QStringLiteral("Folder"));
    item(menu, w, "newTextDocument", QStringLiteral("Text document"));
}

void ExplorerMenus::fillSortMenu(QMenu* menu, BrowserWindow* w) {
    menu->clear();
    const QStringList titles = {QStringLiteral("Name"), QStringLiteral("Date modified"),
                                QStringLiteral("Type"), QStringLiteral("Size"),
                                QStringLiteral("Date created")};
    for (int tag = 0; tag < titles.size(); ++tag)
        item(menu, w, "sortChoice", titles[tag], tag);
    menu->addSeparator();
    item(menu, w, "reverseSort",
         w->listing().sort().ascending ? QStringLiteral("Descending") : QStringLiteral("Ascending"));
    menu->addSeparator();
    QMenu* group = menu->addMenu(QStringLiteral("Group by"));
    item(group, w, "groupChoice", QStringLiteral("None"), false);
    item(group, w, "groupChoice", QStringLiteral("Type"), true);
}

void ExplorerMenus::fillViewMenu(QMenu* menu, BrowserWindow* w) {
    menu->clear();
    // The columns submenu is made afresh with the rest; the last one goes with it.
    for (QMenu* old : menu->findChildren<QMenu*>(QStringLiteral("columnsMenu"), Qt::FindDirectChildrenOnly))
        old->deleteLater();
    for (int mode = ViewModes::first; mode <= ViewModes::last; ++mode) {
        QAction* action = item(menu, w, "setViewMode", ViewModes::name(mode), mode);
        // Shown only: the window's key table answers the keys, by physical key.
        action->setShortcut(QKeySequence(Qt::CTRL | Qt::SHIFT | Qt::Key(Qt::Key_0 + mode)));
        action->setShortcutContext(Qt::WidgetShortcut);
    }
    menu->addSeparator();
    QMenu* columns = w->table()->columnsMenu(menu);
    columns->setObjectName(QStringLiteral("columnsMenu"));
    menu->addMenu(columns);
    menu->addSeparator();
    item(menu, w, "setCompact", QStringLiteral("Standard rows"), false);
    item(menu, w, "setCompact", QStringLiteral("Compact view"), true);
    item(menu, w, "toggleDetails");
    item(menu, w, "togglePreview");
    item(menu, w, "toggleHidden");
}

void ExplorerMenus::fillMoreMenu(QMenu* menu, BrowserWindow* w) {
    menu->clear();
    item(menu, w, "copyPathAction", QStringLiteral("Copy path"));
    item(menu, w, "revealAction", Platform::instance().word(PlatformWord::ShowInFileManager));
    item(menu, w, "helpAction", QStringLiteral("Keyboard shortcuts"));
}

void ExplorerMenus::fillContextMenu(QMenu* menu, BrowserWindow* w) {
    if (TabContent* content = w->contentFor(w->current()); content && content->contextMenu(menu)) return;
    namespace M = ActionState::Menu;
    const SelectionFacts f = w->selectionFacts();
    contextItem(menu, w, "openSelected", M::open(f), QStringLiteral("Open"));
    if (f.count > 0) OpenWithCommands::menuFor(*w, menu);
    if (f.singlePackage) item(menu, w, "showPackageContents", QStringLiteral("Show Package Contents"));
    contextItem(menu, w, "openNewTabSelected", M::openInNewTab(f), QStringLiteral("Open in new tab"));
    item(menu, w, "pinAction");
    item(menu, w, "folderColor", QStringLiteral("Folder color…"));
    menu->addSeparator();
    item(menu, w, "cutAction", QStringLiteral("Cut"));
    item(menu, w, "copyAction", QStringLiteral("Copy"));
    item(menu, w, "pasteAction", QStringLiteral("Paste"));
    item(menu, w, "copyPathAction", QStringLiteral("Copy as path"));
    item(menu, w, "makeAlias", Platform::instance().word(PlatformWord::MakeAlias));
    contextItem(menu, w, "compressAction", M::compress(f), QStringLiteral("Compress"));
    if (w->commands().isEnabled(QStringLiteral("extractHere"))) item(menu, w, "extractHere");
    menu->addSeparator();
    item(menu, w, "renameAction", QStringLiteral("Rename"));
    item(menu, w, "trashAction", QStringLiteral("Move to Trash"));
    item(menu, w, "newFolder", QStringLiteral("New folder"));
    if (f.count == 0) item(menu, w, "openTerminalHere");
    menu->addSeparator();
    item(menu, w, "propertiesAction", QStringLiteral("Properties"));
    item(menu, w, "revealAction", Platform::instance().word(PlatformWord::ShowInFileManager));
}

} // namespace orvane
