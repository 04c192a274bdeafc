#pragma once

#include <QAccessibleWidget>
#include <QHash>

namespace orvane {

class PlacesTable;

// The navigation pane as a tree whose children are its rows, though rows off screen have no widget:
// each row is named by its title, says whether it is selected and open, and goes there when pressed;
// a row that opens holds its disclosure button.
class PlacesTableAccessible : public QAccessibleWidget {
public:
    explicit PlacesTableAccessible(PlacesTable* table);
    ~PlacesTableAccessible() override;
    // Registers the factory once per process.
    static void install();

    int childCount() const override;
    QAccessibleInterface* child(int index) const override;
    int indexOfChild(const QAccessibleInterface* child) const override;
    QAccessibleInterface* childAt(int x, int y) const override;
    QAccessibleInterface* focusChild() const override;
    // The disclosure of a row, kept like the rows by index.
    QAccessibleInterface* disclosure(int row) const;

private:
    PlacesTable* table() const;

    mutable QHash<int, QAccessible::Id> rows;
    mutable QHash<int, QAccessible::Id> disclosures;
};

} // namespace orvane
