#include "phone/PhoneListing.h"

#include "browsing/NaturalOrder.h"
#include "phone/PhoneEntry.h"

#include <QHash>
#include <algorithm>
#include <numeric>

namespace orvane {

PhoneListing PhoneListing::make(const QList<PhoneItem>& base, const SortState& sort, bool showHidden) {
    PhoneListing listing;
    std::vector<Entry> entries;
    entries.reserve(size_t(base.size()));
    QHash<QString, qsizetype> itemAt;
    itemAt.reserve(base.size());
    for (qsizetype i = 0; i < base.size(); ++i) {
        if (!showHidden && base[i].name.startsWith(u'.')) continue;
        entries.push_back(phoneEntry(base[i]));
        itemAt.insert(entries.back().location, i);
    }
    // The shared sort mixes folders and files; ties fall to the location, unique per object.
    sortEntries(entries, sort);
    listing.items.reserve(qsizetype(entries.size()));
    for (const Entry& entry : entries)
        listing.items.append(base[itemAt.value(entry.location)]);
    listing.entries = std::move(entries);
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
