#pragma once

#include <optional>

#include "PhoneBackend.h"

#include <functional>

struct LIBMTP_mtpdevice_struct;

namespace orvane {

// The real phone, through libmtp. One session is opened on the first USB device and kept across
// requests; a session that breaks (unplugged, reset, timed out) is dropped and opened anew, and a
// request that reads only is tried once more on the new session.
class LibmtpPhone : public PhoneBackend {
public:
    LibmtpPhone();
    ~LibmtpPhone() override;
    LibmtpPhone(const LibmtpPhone&) = delete;
    LibmtpPhone& operator=(const LibmtpPhone&) = delete;

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
    using Operation = std::function<std::string()>;

    std::string open();
    void close();
    std::string session(const Operation& operation, bool readOnly);
    std::string loadStorages();
    bool broken() const;
    std::string reason() const;
    std::string failure(const std::string& what);
    std::string missing();
    std::string removeTree(uint32_t storage, uint32_t id);
    struct ObjectFacts {
        bool folder;
        uint32_t storage;
        uint64_t size;
    };
    std::optional<ObjectFacts> facts(uint32_t id);

    LIBMTP_mtpdevice_struct* device = nullptr;
};

} // namespace orvane
