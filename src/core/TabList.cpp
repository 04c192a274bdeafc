#include "core/TabList.h"

namespace orvane {

int TabList::indexOf(const QUuid& id) const {
    for (int i = 0; i < list.size(); ++i)
        if (list[i].id == id) return i;
    return -1;
}

int TabList::append(const TabState& tab) {
    list.append(tab);
    return int(list.size()) - 1;
}

int TabList::insert(int slot, const TabState& tab) {
    const int at = qBound(0, slot, int(list.size()));
    list.insert(at, tab);
    if (at <= activeIndex && list.size() > 1) ++activeIndex;
    return at;
}

int TabList::move(int index, int slot) {
    if (!contains(index)) return index;
    const QUuid active = list[activeIndex].id;
    const int to = qBound(0, slot > index ? slot - 1 : slot, int(list.size()) - 1);
    list.move(index, to);
    activeIndex = indexOf(active);
    return to;
}

void TabList::setActive(int index) {
    if (contains(index)) activeIndex = index;
}

int TabList::remove(int index) {
    if (!contains(index) || list.size() < 2) return activeIndex;
    list.removeAt(index);
    if (index < activeIndex) --activeIndex;
    activeIndex = qMin(activeIndex, int(list.size()) - 1);
    return activeIndex;
}

} // namespace orvane
