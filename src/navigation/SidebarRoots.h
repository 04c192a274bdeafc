#pragma once

#include "navigation/SidebarTreeSnapshot.h"

namespace orvane {

// The rows of the navigation pane before anything is expanded: Home, "Quick access" with the
// pins, "Locations" with what the caller found.
namespace SidebarRoots {

QList<SidebarPlace> roots(const QString& home, const QList<QUrl>& pins, const QList<SidebarPlace>& locations);

// One row per pin in store order. The standard folders of the home folder keep their usual titles
// and symbols ("Movies" and Videos show as "Videos"); other pins show their name, and pins of one
// name are told apart by their parent folder's.
QList<SidebarPlace> pinPlaces(const QList<QUrl>& pins, const QString& home);

} // namespace SidebarRoots

} // namespace orvane
