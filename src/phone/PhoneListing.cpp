#include "phone/PhoneListing.h"

#include "core/NaturalOrder.h"
#include "phone/PhoneEntry.h"

#include <QHash>
#include <algorithm>
#include <numeric>

namespace orvane {

// The window's own sort, which mixes folders and files; ties fall to the location, unique per object.
PhoneListing PhoneListing::make(const QList<PhoneItem>& base, const std::optional<SortState>& sort,
                                bool showHidden) {
    PhoneListing listing;
    QHash<QString, qsizetype> itemAt;
    for (qsizetype i = 0; i < base.size(); ++i) {
        if (!showHidden && base[i].name.startsWith(u'.')) continue;
        listing.entries.push_back(phoneEntry(base[i]));
        listing.items.append(base[i]);
        if (sort) itemAt.insert(listing.entries.back().location, i);
    }
    if (!sort) return listing;
    sortEntries(listing.entries, *sort);
    listing.items.clear();
    for (const Entry& entry : listing.entries)
        listing.items.append(base[itemAt.value(entry.location)]);
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
