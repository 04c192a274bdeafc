#include "HandleTable.h"

#include <vector>

namespace orvane {

uint32_t HandleTable::handleFor(uint32_t storage, const std::string& path) {
    auto [it, inserted] = handles.try_emplace(Key(storage, path), next);
    if (inserted) {
        places.emplace(next, Place{storage, path});
        ++next;
    }
    return it->second;
}

const HandleTable::Place* HandleTable::find(uint32_t handle) const {
    auto it = places.find(handle);
    return it == places.end() ? nullptr : &it->second;
}

// Visits the object itself and every key that lies inside it, in map order.
template <class Visit>
void HandleTable::forEachBelow(uint32_t storage, const std::string& path, Visit visit) {
    std::vector<std::map<Key, uint32_t>::iterator> hits;
    if (auto self = handles.find(Key(storage, path)); self != handles.end()) hits.push_back(self);
    const std::string prefix = path + '/';
    for (auto it = handles.lower_bound(Key(storage, prefix));
         it != handles.end() && it->first.first == storage &&
         it->first.second.compare(0, prefix.size(), prefix) == 0;
         ++it)
        hits.push_back(it);
    for (auto it : hits)
        visit(it);
}

void HandleTable::forget(uint32_t storage, const std::string& path) {
    forEachBelow(storage, path, [this](auto it) {
        places.erase(it->second);
        handles.erase(it);
    });
}

void HandleTable::relocate(uint32_t storage, const std::string& from, uint32_t toStorage,
                           const std::string& to) {
    std::vector<std::pair<uint32_t, std::string>> moved;
    forEachBelow(storage, from, [&](auto it) {
        moved.emplace_back(it->second, to + it->first.second.substr(from.size()));
        handles.erase(it);
    });
    for (auto& [handle, path] : moved) {
        handles[Key(toStorage, path)] = handle;
        places[handle] = Place{toStorage, std::move(path)};
    }
}

} // namespace orvane
