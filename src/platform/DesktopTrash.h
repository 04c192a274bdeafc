#pragma once

#include <QString>

namespace orvane {

// The desktop's own Trash, by the exact bytes of a path.
namespace DesktopTrash {

// Moves the item in, never replacing anything there; `trashed` is its path inside the Trash.
bool moveIn(const QString& path, QString& trashed, QString& error);
// After the item has been moved back out: drops what the Trash kept about it.
void forget(const QString& trashed);

} // namespace DesktopTrash

} // namespace orvane
