#pragma once

#include "core/WindowCommands.h"

class QAction;
class QMenu;
class QAbstractButton;

namespace orvane {

// Menu items and buttons that run a window's commands by name and follow their states.
namespace CommandBinding {
// A menu item bound to the command; `title` overrides the command's own.
QAction* addTo(WindowCommands& commands, QMenu* menu, const QString& name, const QVariant& arg = {},
               const QString& title = {});
// A button that runs the command and follows its enabled state.
void bind(WindowCommands& commands, QAbstractButton* button, const QString& name, const QVariant& arg = {});
} // namespace CommandBinding

} // namespace orvane
