#include "views/FolderColorIcons.h"

#include "core/BrowserWindow.h"
#include "core/FolderColors.h"
#include "core/Services.h"
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
    connect(&colors, &FolderColors::changed, this, [this, &icons] {
        icons.canvas()->update();
        w.table()->viewport()->update();
    });
}

QIcon FolderColorIcons::iconFor(const QString& location) {
    const std::optional<QString> hex = colors.hexAt(FolderColors::keyOf(location));
    if (!hex) return FileIcons::shared().folder();
    auto made = tints.find(*hex);
    if (made == tints.end()) made = tints.insert(*hex, FolderTint::icon(FolderColors::color(*hex)));
    return *made;
}

} // namespace orvane
