#include "chrome/Symbols.h"

namespace orvane {

QIcon symbolIcon(const QString& symbolName, const QColor&) {
    return QIcon::fromTheme(symbolName);
}

} // namespace orvane
