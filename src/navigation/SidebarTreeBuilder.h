#pragma once

#include "navigation/SidebarTreeSnapshot.h"

#include <QSet>

namespace orvane {

// Turns the roots of the navigation pane into the tree the user opened, from the disk.
namespace SidebarTreeBuilder {

constexpr int maximumDepth = 48;

// A local folder that can open in place: a real directory, not a link or a package.
bool isExpandable(const SidebarPlace& place);

// A pure function of its arguments and the file system. Every folder whose path is in `expanded`
// shows its subfolders, wherever it stands; each path is listed once per build however often
// it appears. Hidden subfolders show with `showHidden`, or when they are expanded themselves.
SidebarTreeSnapshot build(const QList<SidebarPlace>& roots, const QSet<QString>& expanded, bool showHidden);

} // namespace SidebarTreeBuilder

} // namespace orvane
