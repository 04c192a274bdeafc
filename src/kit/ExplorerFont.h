#pragma once

#include <QFont>

namespace orvane {

// The system font at the size the file views use everywhere: 12 as the Mac counts points, which is
// 12 logical pixels, so rows, header and column fitting measure alike on every platform.
QFont explorerFont();

} // namespace orvane
