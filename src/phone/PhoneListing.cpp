#include "phone/PhoneListing.h"

#include "browsing/NaturalOrder.h"
#include "phone/PhoneEntry.h"

#include <QHash>
#include <algorithm>
#include <limits>
#include <numeric>

namespace orvane {

namespace {
// An absent date counts as the distant past.
qint64 stamp(const QDateTime& date) {
    return date.isValid() ? date.toMSecsSinceEpoch() : std::numeric_limits<qint64>::min();
}

template <typename T> int threeWay(const T& a, const T& b) {
    return a < b ? -1 : (b < a ? 1 : 0);
}

// Distinct kinds ranked in natural order; kinds that compare equal share a rank.
std::vector<int> kindRanks(const std::vector<Entry>& entries) {
    QHash<QString, int> rankOf;
    for (const Entry& e : entries)
        rankOf.insert(e.kind, 0);
    QStringList kinds = rankOf.keys();
    const NaturalOrder& order = NaturalOrder::shared();
    std::sort(kinds.begin(), kinds.end(),
              [&](const QString& a, const QString& b) { return order.compare(a, b) < 0; });
    for (qsizetype i = 0, rank = 0; i < kinds.size(); ++i) {
        if (i > 0 && order.compare(kinds[i - 1], kinds[i]) != 0) ++rank;
        rankOf[kinds[i]] = int(rank);
    }
    std::vector<int> ranks;
    ranks.reserve(entries.size());
    for (const Entry& e : entries)
        ranks.push_back(rankOf.value(e.kind));
    return ranks;
}

// The window's order, with keys made once per item from the item's own name rather than
// parsed back out of each entry's address.
std::vector<size_t> displayOrder(const QList<PhoneItem>& items, const std::vector<Entry>& entries,
                                 const SortState& sort) {
    const NaturalOrder& order = NaturalOrder::shared();
    std::vector<QCollatorSortKey> names;
    names.reserve(entries.size());
    for (const PhoneItem& item : items)
        names.push_back(order.key(item.name));
    const bool byKind = sort.key == QLatin1String("kind");
    const std::vector<int> kinds = sort.groupByType || byKind ? kindRanks(entries) : std::vector<int>();
    std::vector<qint64> values;
    if (sort.key == QLatin1String("size") || sort.key == QLatin1String("modified") ||
        sort.key == QLatin1String("created"))
        for (const Entry& e : entries)
            values.push_back(sort.key == QLatin1String("size")       ? e.size
                             : sort.key == QLatin1String("modified") ? stamp(e.modified)
                                                                     : stamp(e.created));
    std::vector<size_t> at(entries.size());
    std::iota(at.begin(), at.end(), 0);
    std::sort(at.begin(), at.end(), [&](size_t a, size_t b) {
        if (sort.groupByType && kinds[a] != kinds[b]) return kinds[a] < kinds[b];
        int v = byKind ? threeWay(kinds[a], kinds[b]) : values.empty() ? 0 : threeWay(values[a], values[b]);
        if (v == 0) v = names[a].compare(names[b]);
        if (v == 0) v = threeWay(items[qsizetype(a)].id, items[qsizetype(b)].id);
        return sort.ascending ? v < 0 : v > 0;
    });
    return at;
}
} // namespace

PhoneListing PhoneListing::make(const QList<PhoneItem>& base, const std::optional<SortState>& sort,
                                bool showHidden) {
    QList<PhoneItem> shown;
    shown.reserve(base.size());
    for (const PhoneItem& item : base)
        if (showHidden || !item.name.startsWith(u'.')) shown.append(item);
    std::vector<Entry> entries;
    entries.reserve(size_t(shown.size()));
    for (const PhoneItem& item : shown)
        entries.push_back(phoneEntry(item));
    PhoneListing listing;
    if (!sort) {
        listing.items = std::move(shown);
        listing.entries = std::move(entries);
        return listing;
    }
    listing.items.reserve(shown.size());
    listing.entries.reserve(entries.size());
    for (size_t i : displayOrder(shown, entries, *sort)) {
        listing.items.append(std::move(shown[qsizetype(i)]));
        listing.entries.push_back(std::move(entries[i]));
    }
    return listing;
}

QList<PhoneItem> PhoneListing::byName(QList<PhoneItem> items) {
    const NaturalOrder& order = NaturalOrder::shared();
    std::vector<QCollatorSortKey> keys;
    keys.reserve(size_t(items.size()));
    for (const PhoneItem& item : items)
        keys.push_back(order.key(item.name));
    std::vector<qsizetype> at(size_t(items.size()));
    std::iota(at.begin(), at.end(), 0);
    std::stable_sort(at.begin(), at.end(),
                     [&](qsizetype a, qsizetype b) { return keys[a].compare(keys[b]) < 0; });
    QList<PhoneItem> sorted;
    sorted.reserve(items.size());
    for (qsizetype i : at)
        sorted.append(std::move(items[i]));
    return sorted;
}

qsizetype PhoneListing::indexOf(quint32 id) const {
    for (qsizetype i = 0; i < items.size(); ++i)
        if (items[i].id == id) return i;
    return -1;
}

} // namespace orvane
