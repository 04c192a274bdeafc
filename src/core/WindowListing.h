#pragma once

#include "core/Entry.h"
#include "core/EntrySort.h"

#include <QObject>
#include <vector>

namespace orvane {

class ListingRows;

// The listing a window shows: everything its content read, narrowed by the search text and put in
// the window's order. Sorting and filtering work on what was read; only the content reads the disk.
class WindowListing : public QObject {
    Q_OBJECT
public:
    explicit WindowListing(ListingRows& rows, QObject* parent = nullptr);

    ListingRows& rows() const { return shownRows; }
    const std::vector<Entry>& entries() const;
    const SortState& sort() const { return sortState; }
    bool showHidden() const { return hiddenShown; }
    const QString& query() const { return filterText; }

    // What the content read, in any order, hidden items already dropped unless shown.
    void setSource(std::vector<Entry> all);
    void clear();
    void setSort(const SortState& state);
    void setShowHidden(bool shown) { hiddenShown = shown; }
    void setQuery(const QString& text);

signals:
    // The shown rows changed: a new read, a new order or a new filter.
    void changed();

private:
    void apply();
    std::vector<Entry> reorderLikeBefore(std::vector<Entry> all) const;

    ListingRows& shownRows;
    std::vector<Entry> source;
    SortState sortState;
    bool hiddenShown = false;
    QString filterText;
};

} // namespace orvane
