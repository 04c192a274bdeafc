#pragma once

#include "navigation/SidebarTreeSnapshot.h"

#include <QObject>
#include <QSet>

namespace orvane {

enum class SidebarKey { Left, Right, Plus, Minus };

// The navigation tree of one window without its widget: the roots, what is expanded, the built
// rows and the selected row, which is kept by identity through every rebuild.
class SidebarTree : public QObject {
    Q_OBJECT
public:
    using QObject::QObject;

    const SidebarTreeSnapshot& snapshot() const { return tree; }
    const QList<SidebarPlace>& roots() const { return rootPlaces; }
    const QSet<QString>& expandedPaths() const { return expanded; }
    bool showHidden() const { return hiddenShown; }

    // Each rebuilds the rows from the disk.
    void setRoots(const QList<SidebarPlace>& roots);
    void setShowHidden(bool on);
    void rebuild();

    int selectedRow() const { return selected; }
    // Sections and notes cannot be selected; false for them.
    bool select(int row);
    void clearSelection();
    // The window shows `url`: its first row is selected, unless the selected row already shows it.
    void follow(const QUrl& url);

    bool canExpand(int row) const;
    bool isExpanded(int row) const;
    // Expands or collapses the folder wherever it stands. A selection hidden by the collapse
    // moves to the collapsed row; the window's folder stays where it is.
    void setExpanded(int row, bool on);

    struct KeyAction {
        enum Kind { None, Expand, Collapse, Go } kind = None;
        int row = -1;
        bool operator==(const KeyAction&) const = default;
    };
    // What a key does to the selected row: right or plus opens it, and right again steps into its
    // first child; left or minus closes it, and left again steps out to its parent.
    KeyAction keyAction(SidebarKey key) const;
    // Expands or collapses as the key says; a step to another row is left to the caller, who
    // navigates there. Answers the action.
    KeyAction applyKey(SidebarKey key);

    // Opens the tree down to `path` through each of its ancestors and selects its row, preferring
    // the one under the root file system to a pin. Answers the row, or -1 when it shows nowhere.
    int expandTo(const QString& path);

signals:
    void rebuilt();
    void selectionChanged();

private:
    void setSelected(int row);
    void rebuildSelecting(const QList<QStringList>& wanted);
    int firstRowOf(const QString& key) const;

    QList<SidebarPlace> rootPlaces;
    QSet<QString> expanded;
    bool hiddenShown = false;
    SidebarTreeSnapshot tree;
    int selected = -1;
    QStringList selectedIdentity;
    QString followed; // the key of the place the window shows
};

} // namespace orvane
