#pragma once

#include "HandleTable.h"
#include "PhoneBackend.h"

#include <sys/stat.h>
#include <vector>

namespace orvane {

// A phone made of a local folder: each subfolder is one storage, labelled by its name and numbered
// 65537, 131073, ... in name order. The folder is the phone's whole world: every path below it is
// opened one name at a time and links are never followed, nor listed. It answers exactly as a real phone's
// back end does, so the client and the batteries run without hardware. No subfolder at all reads as a locked
// phone. MTP_BRIDGE_LOCKED=1 and MTP_BRIDGE_CHARGING_ONLY=1 make it answer as a locked phone or one set to
// charge only; MTP_BRIDGE_HELD=FILE as a phone that whatever process holds FILE open has taken.
class SimulatedPhone : public PhoneBackend {
public:
    explicit SimulatedPhone(std::string root);

    std::string storages(std::vector<PhoneObject>& out) override;
    std::string list(uint32_t storage, uint32_t parent, std::vector<PhoneObject>& out) override;
    std::string scan() override;
    std::string get(uint32_t id, int target, const std::string& name,
                    const TransferProgress& progress) override;
    std::string put(uint32_t storage, uint32_t parent, const std::string& path,
                    const TransferProgress& progress) override;
    std::string makeFolder(uint32_t storage, uint32_t parent, const std::string& name, uint32_t& id) override;
    std::string remove(uint32_t id) override;
    std::string rename(uint32_t id, const std::string& name) override;
    std::string move(uint32_t id, uint32_t storage, uint32_t parent) override;
    std::string info(uint32_t id, PhoneObjectInfo& out) override;
    std::string thumbnail(uint32_t id, const std::string& path) override;

private:
    struct Storage {
        uint32_t id;
        std::string label;
    };
    // Where an object or folder lives: storage, path below the storage folder, and an open folder:
    // the folder itself for `folder`, the one holding `name` for `object`.
    struct Located {
        Located() = default;
        Located(const Located&) = delete;
        Located& operator=(const Located&) = delete;
        ~Located();
        uint32_t storage = 0;
        std::string path;
        int fd = -1;
        std::string name;
        struct stat status {};
    };

    std::string unreachable() const;
    std::string refreshStorages();
    const Storage* storage(uint32_t id) const;
    std::string folder(uint32_t storage, uint32_t parent, Located& out);
    std::string object(uint32_t id, Located& out);
    std::string relocate(const Located& from, int folder, uint32_t storage, const std::string& path);
    int openFolder(const std::string& label, const std::string& path) const;

    std::string root;
    std::string condition; // "locked", "charging" or "held"
    std::string heldNode;
    std::vector<Storage> known; // every storage ever seen, in order of its number
    HandleTable handles;
};

} // namespace orvane
