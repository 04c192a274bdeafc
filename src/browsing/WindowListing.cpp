#include "browsing/WindowListing.h"

#include "browsing/FolderListing.h"
#include "views/EntryTableModel.h"

namespace orvane {

WindowListing::WindowListing(QObject* parent) : QObject(parent), tableModel(new EntryTableModel(this)) {}

const std::vector<Entry>& WindowListing::entries() const {
    return tableModel->entries();
}

void WindowListing::setSource(std::vector<Entry> all) {
    source = std::move(all);
    source.shrink_to_fit();
    sortEntries(source, sortState);
    apply();
}

void WindowListing::clear() {
    source.clear();
    apply();
}

void WindowListing::setSort(const SortState& state) {
    sortState = state;
    sortEntries(source, sortState);
    apply();
}

void WindowListing::setQuery(const QString& text) {
    if (text == filterText) return;
    filterText = text;
    apply();
}

namespace {

// The name as a view into the path, so a keystroke over a large folder allocates nothing per item.
bool nameMatches(const Entry& e, const QString& text) {
    if (e.isPhone()) return FolderListing::matches(e.name(), text);
    const QStringView name = QStringView(e.location).mid(e.location.lastIndexOf(u'/') + 1);
    return name.contains(text, Qt::CaseInsensitive);
}

} // namespace

// The source is kept in order, so a filter only picks.
void WindowListing::apply() {
    std::vector<Entry> shown;
    if (filterText.isEmpty()) {
        shown = source;
    } else {
        for (const Entry& e : source)
            if (nameMatches(e, filterText)) shown.push_back(e);
    }
    tableModel->setEntries(std::move(shown));
    emit changed();
}

} // namespace orvane
