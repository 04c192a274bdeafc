#pragma once

#include "kit/Palette.h"

#include <QColor>
#include <QIcon>
#include <QStringList>

namespace orvane {

// The program's line icons, drawn from paths at whatever size and pixel ratio they are shown, so they
// stay sharp on any screen. The disabled mode draws the same lines fainter.
//
// Answers a null icon for a name it does not know. "folder" ignores `color`: it is always the
// program's blue-violet folder; use tintedFolderIcon for a coloured one.
QIcon symbolIcon(const QString& symbolName, const QColor& color = Palette::ink());

// The filled folder in a colour of the caller's choice, for folder colours.
QIcon tintedFolderIcon(const QColor& tint);

// The blue-violet of the program's folders.
QColor symbolFolderColor();

// Every name symbolIcon knows, in a stable order.
QStringList symbolNames();

} // namespace orvane
