#include "navigation/SidebarTree.h"

#include "navigation/SidebarTreeBuilder.h"
#include "platform/NativePath.h"

#include <QDir>
#include <QFileInfo>

namespace orvane {

void SidebarTree::setRoots(const QList<SidebarPlace>& roots) {
    rootPlaces = roots;
    rebuild();
}

void SidebarTree::setShowHidden(bool on) {
    if (on == hiddenShown) return;
    hiddenShown = on;
    rebuild();
}

void SidebarTree::rebuild() {
    rebuildSelecting({selectedIdentity});
}

// The first of `wanted` that still has a row is selected, else the row of the window's folder.
void SidebarTree::rebuildSelecting(const QList<QStringList>& wanted) {
    tree = SidebarTreeBuilder::build(rootPlaces, expanded, hiddenShown);
    const int before = selected;
    const QStringList identityBefore = selectedIdentity;
    selected = -1;
    for (const QStringList& identity : wanted)
        if (selected < 0) selected = sidebarRow(tree, identity);
    if (selected < 0) selected = firstRowOf(followed);
    selectedIdentity = sidebarIdentity(tree, selected);
    emit rebuilt();
    if (selected != before || selectedIdentity != identityBefore) emit selectionChanged();
}

// A scan costs less than keeping an index up to date at every rebuild.
int SidebarTree::firstRowOf(const QString& key) const {
    if (key.isEmpty()) return -1;
    for (int row = 0; row < tree.count(); ++row)
        if (!tree.places[row].isSection() && tree.places[row].key() == key) return row;
    return -1;
}

void SidebarTree::setSelected(int row) {
    const QStringList identity = sidebarIdentity(tree, row);
    if (row == selected && identity == selectedIdentity) return;
    selected = identity.isEmpty() ? -1 : row;
    selectedIdentity = identity;
    emit selectionChanged();
}

bool SidebarTree::select(int row) {
    if (!tree.inRange(row) || tree.places[row].isSection()) return false;
    setSelected(row);
    return true;
}

void SidebarTree::clearSelection() {
    setSelected(-1);
}

void SidebarTree::follow(const QUrl& url) {
    followed = placeKey(url);
    if (tree.inRange(selected) && tree.places[selected].key() == followed) return;
    setSelected(firstRowOf(followed));
}

bool SidebarTree::canExpand(int row) const {
    return tree.inRange(row) && !tree.places[row].isSection() && tree.depths[row] >= 0 &&
           tree.depths[row] < SidebarTreeBuilder::maximumDepth &&
           SidebarTreeBuilder::isExpandable(tree.places[row]);
}

bool SidebarTree::isExpanded(int row) const {
    return tree.inRange(row) && expanded.contains(tree.places[row].location);
}

void SidebarTree::setExpanded(int row, bool on) {
    if (!canExpand(row)) return;
    const QStringList collapsed = sidebarIdentity(tree, row);
    if (on)
        expanded.insert(tree.places[row].location);
    else
        expanded.remove(tree.places[row].location);
    if (selectedIdentity.isEmpty())
        rebuild();
    else
        rebuildSelecting({selectedIdentity, collapsed});
}

SidebarTree::KeyAction SidebarTree::keyAction(SidebarKey key) const {
    const int row = selected;
    if (!tree.inRange(row) || tree.places[row].isSection()) return {};
    const bool open = canExpand(row) && isExpanded(row);
    if (key == SidebarKey::Right || key == SidebarKey::Plus) {
        if (canExpand(row) && !open) return {KeyAction::Expand, row};
        const int next = row + 1;
        if (key == SidebarKey::Right && open && tree.inRange(next) && tree.parents[next] == row &&
            !tree.places[next].isSection())
            return {KeyAction::Go, next};
        return {};
    }
    if (open) return {KeyAction::Collapse, row};
    if (key == SidebarKey::Left && tree.parents[row] >= 0) return {KeyAction::Go, tree.parents[row]};
    return {};
}

SidebarTree::KeyAction SidebarTree::applyKey(SidebarKey key) {
    const KeyAction action = keyAction(key);
    if (action.kind == KeyAction::Expand || action.kind == KeyAction::Collapse)
        setExpanded(action.row, action.kind == KeyAction::Expand);
    return action;
}

int SidebarTree::expandTo(const QString& path) {
    const QString real = NativePath::canonical(path);
    const QString target = QDir::cleanPath(real.isEmpty() ? path : real);
    QSet<QString> walked;
    QString at = target;
    for (int step = 0; step < 48 && !walked.contains(at); ++step) {
        walked.insert(at);
        expanded.insert(at);
        if (at == QLatin1String("/")) break;
        at = QFileInfo(at).path();
    }
    rebuild();
    int found = -1;
    for (int row = 0; row < tree.count(); ++row) {
        if (tree.places[row].isSection() || tree.places[row].location != target) continue;
        const int root = tree.rootOf(row);
        if (root >= 0 && tree.places[root].location == QLatin1String("/")) return select(row), row;
        if (found < 0) found = row;
    }
    if (found >= 0) select(found);
    return found;
}

} // namespace orvane
