#include "window/ListingCommands.h"

#include "core/ExplorerEvents.h"
#include "core/Services.h"
#include "core/Settings.h"
#include "core/WindowCommands.h"
#include "core/WindowListing.h"
#include "views/FileTable.h"
#include "window/Explorer.h"

#include <QLineEdit>
#include <QToolButton>

namespace orvane {

ListingCommands::ListingCommands(Explorer& window) : QObject(&window), w(window) {
    SortState sort = w.listing().sort();
    sort.groupByType = w.services().settings().groupByType();
    w.listing().setSort(sort);
    w.table()->setSortIndicator(sort.key, sort.ascending);
    connect(w.table(), &FileTable::sortRequested, this, &ListingCommands::setSort);
    connect(w.widgets().searchField, &QLineEdit::textEdited, this, &ListingCommands::setSearchText);
    connect(w.widgets().clearSearchButton, &QToolButton::clicked, this, [this] {
        setSearchText(QString());
        w.widgets().searchField->setFocus();
    });
    // A tab keeps its own search text; the field shows the active tab's.
    connect(&w.events(), &ExplorerEvents::locationChanged, this, [this] {
        const QString& query = w.tabs().current().query;
        if (w.widgets().searchField->text() != query) w.widgets().searchField->setText(query);
        w.widgets().clearSearchButton->setVisible(!query.isEmpty());
    });
    registerCommands();
}

void ListingCommands::registerCommands() {
    WindowCommands& c = w.commands();
    c.add(Command{
        QStringLiteral("sortChoice"),
        QStringLiteral("Sort by"),
        [this](const QVariant& tag) {
            if (tag.toInt() >= 0 && tag.toInt() < sortKeys().size())
                setSort(sortKeys()[tag.toInt()], w.listing().sort().ascending);
        },
        {},
        [this](const QVariant& tag) { return w.listing().sort().key == sortKeys().value(tag.toInt()); }});
    c.add(QStringLiteral("reverseSort"), QStringLiteral("Reverse order"),
          [this] { setSort(w.listing().sort().key, !w.listing().sort().ascending); });
    c.add(
        Command{QStringLiteral("groupChoice"),
                QStringLiteral("Group by"),
                [this](const QVariant& group) { groupChoice(group.toBool()); },
                {},
                [this](const QVariant& group) { return w.listing().sort().groupByType == group.toBool(); }});
    c.add(Command{QStringLiteral("toggleHidden"),
                  QStringLiteral("Hidden items"),
                  [this](const QVariant&) { toggleHidden(); },
                  {},
                  [this](const QVariant&) { return w.listing().showHidden(); }});
    c.add(Command{QStringLiteral("setSearchText"),
                  QStringLiteral("Filter this folder"),
                  [this](const QVariant& text) { setSearchText(text.toString()); },
                  {},
                  {}});
    c.add(QStringLiteral("clearSearch"), QStringLiteral("Clear search"),
          [this] { setSearchText(QString()); });
}

void ListingCommands::setSort(const QString& key, bool ascending) {
    SortState sort = w.listing().sort();
    sort.key = key;
    sort.ascending = ascending;
    w.table()->setSortIndicator(key, ascending);
    w.listing().setSort(sort);
    emit w.events().listingChanged();
}

void ListingCommands::groupChoice(bool group) {
    SortState sort = w.listing().sort();
    sort.groupByType = group;
    w.services().settings().setGroupByType(group);
    w.listing().setSort(sort);
    emit w.events().listingChanged();
}

void ListingCommands::toggleHidden() {
    w.listing().setShowHidden(!w.listing().showHidden());
    w.refresh();
}

void ListingCommands::setSearchText(const QString& text) {
    w.tabs().current().query = text;
    QLineEdit* field = w.widgets().searchField;
    if (field->text() != text) field->setText(text);
    w.widgets().clearSearchButton->setVisible(!text.isEmpty());
    // A search that reaches past the listing (subfolders, the computer, a phone) takes over.
    if (w.commands().run(QStringLiteral("searchChanged"))) return;
    w.listing().setQuery(text);
    w.showListingStatus();
    emit w.events().listingChanged();
}

} // namespace orvane
