#include "views/FolderColorIcons.h"

#include "core/BrowserWindow.h"
#include "core/FolderColors.h"
#include "core/Services.h"
#include "core/WindowCommands.h"
#include "kit/FolderColorPicker.h"
#include "kit/FolderTint.h"
#include "views/EntryTableModel.h"
#include "views/ExplorerIconCanvas.h"
#include "views/ExplorerIconView.h"
#include "views/FileIcons.h"
#include "views/FileTable.h"

namespace orvane {

FolderColorIcons::FolderColorIcons(BrowserWindow& window, ExplorerIconView& icons)
    : QObject(window.widget()), w(window), colors(window.services().folderColors()) {
    const auto folderIcon = [this](const Entry& entry) { return iconFor(entry.location); };
    ExplorerIconPainter& cells = icons.canvas()->cellPainter();
    cells.folderIcon = folderIcon;
    if (auto* model = qobject_cast<EntryTableModel*>(w.table()->model())) model->folderIcon = folderIcon;
    w.commands().add(
        QStringLiteral("folderColor"), QStringLiteral("Folder color…"), [this] { choose(); },
        [this] { return !chosenFolders().isEmpty(); });
    connect(&colors, &FolderColors::changed, this, [this, &icons] {
        icons.canvas()->update();
        w.table()->viewport()->update();
    });
}

QStringList FolderColorIcons::chosenFolders() const {
    QStringList folders;
    for (const Entry& entry : w.selected())
        if (entry.isPlainFolder() || (entry.directory && entry.isPhone())) folders << entry.location;
    return folders;
}

void FolderColorIcons::choose() {
    const QStringList folders = chosenFolders();
    if (folders.isEmpty()) return;
    FolderColorPicker picker(colors.hexAt(FolderColors::keyOf(folders.front())), w.widget());
    if (picker.pick()) colors.setAt(picker.selectedHex(), folders);
}

QIcon FolderColorIcons::iconFor(const QString& location) {
    const std::optional<QString> hex = colors.hexAt(FolderColors::keyOf(location));
    if (!hex) return FileIcons::shared().folder();
    auto made = tints.find(*hex);
    if (made == tints.end()) made = tints.insert(*hex, FolderTint::icon(FolderColors::color(*hex)));
    return *made;
}

} // namespace orvane
