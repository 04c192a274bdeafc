#include "navigation/PlacesTableAccessible.h"

#include "navigation/PlacesTable.h"

#include <QAccessibleActionInterface>
#include <QPointer>
#include <QWindow>

namespace orvane {

namespace {

class PlacesRowAccessible : public QAccessibleInterface, public QAccessibleActionInterface {
public:
    PlacesRowAccessible(PlacesTable* table, int row) : table(table), row(row) {}

    bool isValid() const override { return table && table->tree().snapshot().inRange(row); }
    QObject* object() const override { return nullptr; }
    QWindow* window() const override { return table ? table->window()->windowHandle() : nullptr; }
    QAccessibleInterface* parent() const override {
        return table ? QAccessible::queryAccessibleInterface(table.data()) : nullptr;
    }
    // A row that opens has one child: its disclosure.
    QAccessibleInterface* child(int index) const override {
        return index == 0 && childCount() == 1 ? pane()->disclosure(row) : nullptr;
    }
    int childCount() const override { return isValid() && table->tree().canExpand(row) ? 1 : 0; }
    int indexOfChild(const QAccessibleInterface* item) const override {
        return item && childCount() == 1 && item == pane()->disclosure(row) ? 0 : -1;
    }
    QAccessibleInterface* childAt(int x, int y) const override {
        QAccessibleInterface* button = child(0);
        return button && button->rect().contains(x, y) ? button : nullptr;
    }
    void setText(QAccessible::Text, const QString&) override {}
    QStringList keyBindingsForAction(const QString&) const override { return {}; }
    int index() const { return row; }

    QString text(QAccessible::Text kind) const override {
        if (!isValid()) return {};
        const SidebarPlace& place = table->tree().snapshot().places[row];
        if (kind == QAccessible::Name) return place.title;
        if (kind == QAccessible::Description && place.isLocal()) return place.location;
        return {};
    }
    QRect rect() const override {
        if (!isValid()) return {};
        const QRect frame = table->rowRect(row);
        return QRect(table->viewport()->mapToGlobal(frame.topLeft()), frame.size());
    }
    QAccessible::Role role() const override {
        return isValid() && table->tree().snapshot().places[row].isSection() ? QAccessible::StaticText
                                                                             : QAccessible::TreeItem;
    }
    QAccessible::State state() const override {
        QAccessible::State state;
        if (!isValid()) {
            state.invalid = true;
            return state;
        }
        const SidebarTree& tree = table->tree();
        state.selectable = !tree.snapshot().places[row].isSection();
        state.selected = tree.selectedRow() == row;
        state.focused = state.selected && table->hasFocus();
        state.expandable = tree.canExpand(row);
        state.expanded = state.expandable && tree.isExpanded(row);
        state.collapsed = state.expandable && !state.expanded;
        state.offscreen = !table->viewport()->rect().intersects(table->rowRect(row));
        return state;
    }
    void* interface_cast(QAccessible::InterfaceType type) override {
        return type == QAccessible::ActionInterface ? static_cast<QAccessibleActionInterface*>(this)
                                                    : nullptr;
    }
    QStringList actionNames() const override {
        if (!isValid() || table->tree().snapshot().places[row].isSection()) return {};
        QStringList names{pressAction()};
        if (table->tree().canExpand(row)) names << toggleAction();
        return names;
    }
    void doAction(const QString& name) override {
        if (!isValid()) return;
        if (name == pressAction())
            table->openRow(row);
        else if (name == toggleAction() && table->tree().canExpand(row))
            table->tree().setExpanded(row, !table->tree().isExpanded(row));
    }

private:
    PlacesTableAccessible* pane() const {
        return static_cast<PlacesTableAccessible*>(QAccessible::queryAccessibleInterface(table.data()));
    }

    QPointer<PlacesTable> table;
    int row;
};

// The chevron before a row that opens, as a button of its own: "Expand A", pressed to open or close.
class PlacesDisclosureAccessible : public QAccessibleInterface, public QAccessibleActionInterface {
public:
    PlacesDisclosureAccessible(PlacesTable* table, int row) : table(table), row(row) {}

    bool isValid() const override { return table && table->tree().canExpand(row); }
    QObject* object() const override { return nullptr; }
    QWindow* window() const override { return table ? table->window()->windowHandle() : nullptr; }
    QAccessibleInterface* parent() const override {
        QAccessibleInterface* pane = table ? QAccessible::queryAccessibleInterface(table.data()) : nullptr;
        return pane ? pane->child(row) : nullptr;
    }
    QAccessibleInterface* child(int) const override { return nullptr; }
    int childCount() const override { return 0; }
    int indexOfChild(const QAccessibleInterface*) const override { return -1; }
    QAccessibleInterface* childAt(int, int) const override { return nullptr; }
    void setText(QAccessible::Text, const QString&) override {}
    QStringList keyBindingsForAction(const QString&) const override { return {}; }
    QAccessible::Role role() const override { return QAccessible::PushButton; }

    QString text(QAccessible::Text kind) const override {
        if (!isValid() || (kind != QAccessible::Name && kind != QAccessible::Description)) return {};
        return table->disclosureText(row);
    }
    QRect rect() const override {
        if (!isValid()) return {};
        const QRect frame = table->disclosureRect(row);
        return QRect(table->viewport()->mapToGlobal(frame.topLeft()), frame.size());
    }
    QAccessible::State state() const override {
        QAccessible::State state;
        state.invalid = !isValid();
        if (state.invalid) return state;
        state.expandable = true;
        state.expanded = table->tree().isExpanded(row);
        state.collapsed = !state.expanded;
        state.offscreen = !table->viewport()->rect().intersects(table->rowRect(row));
        return state;
    }
    void* interface_cast(QAccessible::InterfaceType type) override {
        return type == QAccessible::ActionInterface ? static_cast<QAccessibleActionInterface*>(this)
                                                    : nullptr;
    }
    QStringList actionNames() const override {
        return isValid() ? QStringList{pressAction()} : QStringList();
    }
    void doAction(const QString& name) override {
        if (isValid() && name == pressAction())
            table->tree().setExpanded(row, !table->tree().isExpanded(row));
    }

private:
    QPointer<PlacesTable> table;
    int row;
};

QAccessibleInterface* tableFactory(const QString&, QObject* object) {
    if (auto* table = qobject_cast<PlacesTable*>(object)) return new PlacesTableAccessible(table);
    return nullptr;
}

} // namespace

// A row stands for its index, not its place, so one kept across a rebuild stays valid and is never
// deleted under a tool that holds it.
PlacesTableAccessible::PlacesTableAccessible(PlacesTable* table)
    : QAccessibleWidget(table, QAccessible::Tree) {}

PlacesTableAccessible::~PlacesTableAccessible() {
    for (const QAccessible::Id id : std::as_const(rows))
        QAccessible::deleteAccessibleInterface(id);
    for (const QAccessible::Id id : std::as_const(disclosures))
        QAccessible::deleteAccessibleInterface(id);
}

void PlacesTableAccessible::install() {
    static const bool installed = [] {
        QAccessible::installFactory(tableFactory);
        return true;
    }();
    Q_UNUSED(installed);
}

PlacesTable* PlacesTableAccessible::table() const {
    return static_cast<PlacesTable*>(widget());
}

int PlacesTableAccessible::childCount() const {
    return table()->tree().snapshot().count();
}

QAccessibleInterface* PlacesTableAccessible::child(int index) const {
    if (!table()->tree().snapshot().inRange(index)) return nullptr;
    const auto found = rows.constFind(index);
    if (found != rows.constEnd()) return QAccessible::accessibleInterface(*found);
    auto* row = new PlacesRowAccessible(table(), index);
    rows.insert(index, QAccessible::registerAccessibleInterface(row));
    return row;
}

QAccessibleInterface* PlacesTableAccessible::disclosure(int row) const {
    const auto found = disclosures.constFind(row);
    if (found != disclosures.constEnd()) return QAccessible::accessibleInterface(*found);
    auto* button = new PlacesDisclosureAccessible(table(), row);
    disclosures.insert(row, QAccessible::registerAccessibleInterface(button));
    return button;
}

int PlacesTableAccessible::indexOfChild(const QAccessibleInterface* child) const {
    const auto* row = dynamic_cast<const PlacesRowAccessible*>(child);
    return row && row->isValid() ? row->index() : -1;
}

QAccessibleInterface* PlacesTableAccessible::childAt(int x, int y) const {
    const int row = table()->rowAt(table()->viewport()->mapFromGlobal(QPoint(x, y)));
    return row >= 0 ? child(row) : nullptr;
}

QAccessibleInterface* PlacesTableAccessible::focusChild() const {
    return table()->hasFocus() ? child(table()->tree().selectedRow()) : nullptr;
}

} // namespace orvane
