#pragma once

#include "core/TabState.h"

namespace orvane {

// The tabs of one window in strip order and which one is live. There is always at least one.
class TabList {
public:
    explicit TabList(const QUrl& first) : list{TabState::at(first)} {}

    int count() const { return int(list.size()); }
    int active() const { return activeIndex; }
    bool contains(int index) const { return index >= 0 && index < list.size(); }
    const QList<TabState>& all() const { return list; }
    TabState& current() { return list[activeIndex]; }
    const TabState& current() const { return list[activeIndex]; }
    TabState& at(int index) { return list[index]; }
    int indexOf(const QUuid& id) const;

    int append(const TabState& tab);
    // Puts the tab before `slot` (clamped), the active tab staying active; answers where it went.
    int insert(int slot, const TabState& tab);
    // Takes the tab out and puts it back before `slot`, a slot counted with the tab still in place;
    // the active tab stays the same tab. Answers the tab's new index.
    int move(int index, int slot);
    void setActive(int index);
    // Removes a tab that is not the only one; answers the index that should become active.
    int remove(int index);

private:
    QList<TabState> list;
    int activeIndex = 0;
};

} // namespace orvane
