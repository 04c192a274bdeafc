#include "browsing/ExplorerMenus.h"

#include "browsing/ActionState.h"
#include "browsing/Explorer.h"
#include "platform/Platform.h"

#include <QActionGroup>
#include <QMenu>

namespace orvane {

namespace {

// An item whose operation has not arrived yet stays in the menu, greyed.
QAction* item(QMenu* menu, const QString& title, bool enabled, std::function<void()> run = {}) {
    QAction* action = menu->addAction(title);
    action->setEnabled(enabled && bool(run));
    if (run) QObject::connect(action, &QAction::triggered, menu, std::move(run));
    return action;
}

QAction* tick(QMenu* menu, const QString& title, bool on, std::function<void()> run) {
    QAction* action = item(menu, title, true, std::move(run));
    action->setCheckable(true);
    action->setChecked(on);
    return action;
}

} // namespace

void ExplorerMenus::fillNewMenu(QMenu* menu, Explorer* w) {
    menu->clear();
    const bool allowed = ActionState::create(w->selectionFacts());
    item(menu, QStringLiteral("Folder"), allowed, w->operation(QStringLiteral("newFolder")));
    item(menu, QStringLiteral("Text document"), allowed, w->operation(QStringLiteral("newTextDocument")));
}

void ExplorerMenus::fillSortMenu(QMenu* menu, Explorer* w) {
    menu->clear();
    const QStringList titles = {QStringLiteral("Name"), QStringLiteral("Date modified"),
                                QStringLiteral("Type"), QStringLiteral("Size"),
                                QStringLiteral("Date created")};
    for (int tag = 0; tag < titles.size(); ++tag)
        tick(menu, titles[tag], w->sort.key == sortKeys()[tag], [w, tag] { w->sortChoice(tag); });
    menu->addSeparator();
    item(menu, w->sort.ascending ? QStringLiteral("Descending") : QStringLiteral("Ascending"), true,
         [w] { w->reverseSort(); });
    menu->addSeparator();
    QMenu* group = menu->addMenu(QStringLiteral("Group by"));
    tick(group, QStringLiteral("None"), !w->sort.groupByType, [w] { w->groupChoice(false); });
    tick(group, QStringLiteral("Type"), w->sort.groupByType, [w] { w->groupChoice(true); });
}

void ExplorerMenus::fillViewMenu(QMenu* menu, Explorer* w) {
    menu->clear();
    tick(menu, QStringLiteral("Standard rows"), !w->compact, [w] { w->setCompact(false); });
    tick(menu, QStringLiteral("Compact view"), w->compact, [w] { w->setCompact(!w->compact); });
    tick(menu, QStringLiteral("Details pane"), w->detailsVisible, [w] { w->toggleDetails(); });
    tick(menu, QStringLiteral("Preview pane"), w->previewVisible, [w] { w->togglePreview(); });
    tick(menu, QStringLiteral("Hidden items"), w->showHidden, [w] { w->toggleHidden(); });
}

void ExplorerMenus::fillMoreMenu(QMenu* menu, Explorer* w) {
    menu->clear();
    item(menu, QStringLiteral("Copy path"), true, w->operation(QStringLiteral("copyPathAction")));
    item(menu, Platform::instance().word(PlatformWord::ShowInFileManager), true,
         w->operation(QStringLiteral("revealAction")));
    item(menu, QStringLiteral("Keyboard shortcuts"), true, w->operation(QStringLiteral("helpAction")));
}

void ExplorerMenus::fillContextMenu(QMenu* menu, Explorer* w) {
    namespace M = ActionState::Menu;
    const SelectionFacts f = w->selectionFacts();
    item(menu, QStringLiteral("Open"), M::open(f), [w] { w->openSelected(); });
    if (f.singlePackage)
        item(menu, QStringLiteral("Show Package Contents"), true, [w] { w->showPackageContents(); });
    item(menu, QStringLiteral("Open in new tab"), M::openInNewTab(f), [w] { w->openNewTabSelected(); });
    item(menu, ActionState::pinTitle(f), ActionState::pin(f), w->operation(QStringLiteral("pinAction")));
    menu->addSeparator();
    item(menu, QStringLiteral("Cut"), M::cut(f), w->operation(QStringLiteral("cutAction")));
    item(menu, QStringLiteral("Copy"), M::copy(f), w->operation(QStringLiteral("copyAction")));
    item(menu, QStringLiteral("Paste"), ActionState::paste(f), w->operation(QStringLiteral("pasteAction")));
    item(menu, QStringLiteral("Copy as path"), true, w->operation(QStringLiteral("copyPathAction")));
    item(menu, QStringLiteral("Compress"), M::compress(f), w->operation(QStringLiteral("compressAction")));
    menu->addSeparator();
    item(menu, QStringLiteral("Rename"), M::rename(f), w->operation(QStringLiteral("renameAction")));
    item(menu, QStringLiteral("Move to Trash"), M::trash(f), w->operation(QStringLiteral("trashAction")));
    item(menu, QStringLiteral("New folder"), true, w->operation(QStringLiteral("newFolder")));
    menu->addSeparator();
    item(menu, QStringLiteral("Properties"), true, w->operation(QStringLiteral("propertiesAction")));
    item(menu, Platform::instance().word(PlatformWord::ShowInFileManager), true,
         w->operation(QStringLiteral("revealAction")));
}

} // namespace orvane
