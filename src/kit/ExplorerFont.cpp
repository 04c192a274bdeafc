#include "kit/ExplorerFont.h"

#include <QFontDatabase>

namespace orvane {

QFont explorerFont() {
    static const QFont font = [] {
        QFont f = QFontDatabase::systemFont(QFontDatabase::GeneralFont);
        f.setPixelSize(12);
        return f;
    }();
    return font;
}

} // namespace orvane
