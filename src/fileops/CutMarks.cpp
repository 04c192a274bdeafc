#include "fileops/CutMarks.h"

#include "core/BrowserWindow.h"
#include "core/Services.h"
#include "fileops/FileClipboard.h"
#include "views/ExplorerIconCanvas.h"
#include "views/ExplorerIconView.h"
#include "views/ExplorerViewModes.h"
#include "views/FileTable.h"

namespace orvane {

CutMarks::CutMarks(BrowserWindow& window, ExplorerViewModes& modes)
    : QObject(window.widget()), w(window), views(modes) {
    const FileClipboard& clip = w.services().clipboard();
    w.table()->isCutRow = [this, &clip](int row) {
        return row >= 0 && size_t(row) < w.entries().size() && clip.isCut(w.entries()[size_t(row)].url());
    };
    views.iconView()->canvas()->isDimmed = [&clip](const Entry& entry) { return clip.isCut(entry.url()); };
    connect(&clip, &FileClipboard::cutChanged, this, &CutMarks::repaint);
}

void CutMarks::repaint() {
    w.table()->viewport()->update();
    views.iconView()->canvas()->update();
}

} // namespace orvane
