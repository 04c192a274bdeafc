#pragma once

#include "browsing/Palette.h"

#include <QIcon>
#include <QString>

namespace orvane {

// The program's icon for a symbol name such as "trash" or "arrow.left".
QIcon symbolIcon(const QString& symbolName, const QColor& color = Palette::ink());

} // namespace orvane
