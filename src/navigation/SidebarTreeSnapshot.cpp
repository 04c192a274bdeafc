#include "navigation/SidebarTreeSnapshot.h"

#include <QDir>

namespace orvane {

const QString& SidebarPlace::sectionSymbol() {
    static const QString symbol = QStringLiteral("#section");
    return symbol;
}

SidebarPlace SidebarPlace::section(const QString& title, const QString& location) {
    return {title, location, sectionSymbol()};
}

QUrl SidebarPlace::url() const {
    if (location.isEmpty()) return {};
    return isLocal() ? QUrl::fromLocalFile(location) : QUrl(location, QUrl::StrictMode);
}

QString SidebarPlace::key() const {
    return isLocal() || location.isEmpty() ? location : placeKey(url());
}

QString placeKey(const QUrl& url) {
    if (url.isLocalFile()) return QDir::cleanPath(url.toLocalFile());
    return url.adjusted(QUrl::RemoveQuery | QUrl::RemoveFragment | QUrl::StripTrailingSlash).toString();
}

int SidebarTreeSnapshot::append(SidebarPlace place, int depth, int parent) {
    places.append(std::move(place));
    depths.append(depth);
    parents.append(parent);
    return count() - 1;
}

// Indices must fall strictly on the way up, so a damaged array cannot send the walk in circles.
int SidebarTreeSnapshot::rootOf(int row) const {
    if (!inRange(row) || parents.size() != places.size()) return -1;
    while (parents[row] >= 0) {
        if (parents[row] >= row) return -1;
        row = parents[row];
    }
    return row;
}

QStringList sidebarIdentity(const SidebarTreeSnapshot& tree, int row) {
    if (!tree.inRange(row) || tree.places[row].isSection() || tree.parents.size() != tree.places.size())
        return {};
    QStringList below;
    int at = row;
    while (tree.parents[at] >= 0) {
        if (tree.parents[at] >= at) return {};
        below.prepend(tree.places[at].key());
        at = tree.parents[at];
    }
    return QStringList{tree.places[at].title, tree.places[at].key()} + below;
}

int sidebarRow(const SidebarTreeSnapshot& tree, const QStringList& identity) {
    if (identity.size() < 2) return -1;
    const QString& last = identity.last();
    for (int row = 0; row < tree.count(); ++row) {
        // Only rows showing the same place can match; the walk up is for those alone.
        if (tree.places[row].key() != last || tree.places[row].isSection()) continue;
        if (tree.depths[row] + 2 == identity.size() && sidebarIdentity(tree, row) == identity) return row;
    }
    return -1;
}

} // namespace orvane
