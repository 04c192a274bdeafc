#pragma once

#include <cstdint>
#include <map>
#include <string>
#include <unordered_map>
#include <utility>

namespace orvane {

// Object handles of the simulated phone: a handle is given to a path the first time it is seen and
// follows the object through renames and moves for the life of the process, as a phone's would.
class HandleTable {
public:
    struct Place {
        uint32_t storage = 0;
        std::string path; // below the storage's folder, never empty
    };

    uint32_t handleFor(uint32_t storage, const std::string& path);
    const Place* find(uint32_t handle) const;
    // Drops the object and everything below it.
    void forget(uint32_t storage, const std::string& path);
    // The object and everything below it keep their handles at the new place.
    void relocate(uint32_t storage, const std::string& from, uint32_t toStorage, const std::string& to);

private:
    using Key = std::pair<uint32_t, std::string>;
    template <class Visit> void forEachBelow(uint32_t storage, const std::string& path, Visit visit);

    std::unordered_map<uint32_t, Place> places;
    std::map<Key, uint32_t> handles;
    uint32_t next = 1;
};

} // namespace orvane
