#pragma once

#include "core/Entry.h"
#include "core/EntrySort.h"
#include "phone/PhoneItem.h"

#include <QList>
#include <vector>

namespace orvane {

// One phone folder as the views show it: the items in display order, each with its entry at the
// same index. Sorted by the window's key, order and grouping, but unlike a local folder, folders
// are deliberately not put first: a folder "Zulu" comes after a file "Alpha.txt" by name.
struct PhoneListing {
    QList<PhoneItem> items;
    std::vector<Entry> entries;

    // `base` is the folder's whole listing; a name beginning with "." is left out unless shown.
    // Without a sort the items keep the order of `base`, for a view that sorts them itself.
    static PhoneListing make(const QList<PhoneItem>& base, const std::optional<SortState>& sort,
                             bool showHidden);
    // The whole listing in name order, hidden items included.
    static QList<PhoneItem> byName(QList<PhoneItem> items);

    qsizetype indexOf(quint32 id) const;
};

} // namespace orvane
