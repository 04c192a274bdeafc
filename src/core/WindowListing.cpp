#include "core/WindowListing.h"

#include "core/FolderListing.h"
#include "core/ListingRows.h"

#include <QHash>

namespace orvane {

WindowListing::WindowListing(ListingRows& rows, QObject* parent) : QObject(parent), shownRows(rows) {}

const std::vector<Entry>& WindowListing::entries() const {
    return shownRows.entries();
}

void WindowListing::setSource(std::vector<Entry> all) {
    source = reorderLikeBefore(std::move(all));
    source.shrink_to_fit();
    apply();
}

// A re-read of a large folder mostly finds what it had: those items keep their known order and only
// the new or changed ones are sorted and placed, so a refresh does not pay for a full sort.
std::vector<Entry> WindowListing::reorderLikeBefore(std::vector<Entry> all) const {
    QHash<QString, int> known;
    known.reserve(qsizetype(source.size()));
    for (size_t i = 0; i < source.size(); ++i)
        known.insert(source[i].location, int(i));
    std::vector<int> slot(source.size(), -1);
    std::vector<Entry> fresh;
    for (size_t i = 0; i < all.size(); ++i) {
        const auto it = known.constFind(all[i].location);
        if (it != known.cend() && sameShown(source[size_t(*it)], all[i]))
            slot[size_t(*it)] = int(i);
        else
            fresh.push_back(std::move(all[i]));
    }
    std::vector<Entry> kept;
    kept.reserve(all.size());
    for (int i : slot)
        if (i >= 0) kept.push_back(std::move(all[size_t(i)]));
    if (fresh.size() > kept.size() / 8) {
        for (Entry& e : kept)
            fresh.push_back(std::move(e));
        sortEntries(fresh, sortState);
        return fresh;
    }
    sortEntries(fresh, sortState);
    std::vector<Entry> merged;
    merged.reserve(kept.size() + fresh.size());
    auto from = kept.begin();
    for (Entry& e : fresh) {
        const auto at = std::upper_bound(from, kept.end(), e, [this](const Entry& a, const Entry& b) {
            return entryBefore(a, b, sortState);
        });
        std::move(from, at, std::back_inserter(merged));
        merged.push_back(std::move(e));
        from = at;
    }
    std::move(from, kept.end(), std::back_inserter(merged));
    return merged;
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
    shownRows.setEntries(std::move(shown));
    emit changed();
}

} // namespace orvane
