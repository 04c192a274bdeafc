#pragma once

#include <QList>
#include <QString>
#include <QStringList>
#include <QUrl>

namespace orvane {

// One row of the navigation tree. A section row is a header or a note inside the tree, never a folder.
struct SidebarPlace {
    QString title;
    QString location; // a local path, a phone address, or empty for a header
    QString symbol;   // a symbol name, or sectionSymbol()

    static const QString& sectionSymbol();
    static SidebarPlace section(const QString& title, const QString& location = {});
    bool isSection() const { return symbol == sectionSymbol(); }
    bool isLocal() const { return location.startsWith(u'/'); }
    QUrl url() const;
    // What rows compare: a local folder's path, a phone address without its metadata.
    QString key() const;
    bool operator==(const SidebarPlace&) const = default;
};

// A URL as rows compare it; see SidebarPlace::key.
QString placeKey(const QUrl& url);

// The tree as three parallel arrays, rebuilt whole at every change.
struct SidebarTreeSnapshot {
    QList<SidebarPlace> places;
    QList<int> depths;  // 0 for a root
    QList<int> parents; // -1 for a root

    int count() const { return int(places.size()); }
    bool inRange(int row) const { return row >= 0 && row < count(); }
    int append(SidebarPlace place, int depth, int parent);
    // The root row above `row`, following parents only upwards.
    int rootOf(int row) const;
};

// How a row is found again after a rebuild, since one folder may stand in several places: the
// root's title and path, then each path from below the root down to the row. Empty for a
// section or a row out of range.
QStringList sidebarIdentity(const SidebarTreeSnapshot& tree, int row);
// The first row with that identity, or -1.
int sidebarRow(const SidebarTreeSnapshot& tree, const QStringList& identity);

} // namespace orvane
