#pragma once

#include "phone/PhoneProtocol.h"

#include <cstdint>
#include <functional>
#include <optional>
#include <string>
#include <vector>

namespace orvane {

// The handle MTP uses for the root of a storage.
constexpr uint32_t rootHandle = PhoneProtocol::rootHandle;

// One object of a listing, as the bridge reports it.
struct PhoneObject {
    uint32_t id = 0;
    uint32_t storage = 0;
    std::string name; // UTF-8
    bool folder = false;
    uint64_t size = 0;
    std::optional<double> modified; // seconds since 1970
};

// What "info" reads of one object; each field only when the phone knows it.
struct PhoneObjectInfo {
    std::optional<uint32_t> width;
    std::optional<uint32_t> height;
    std::optional<std::string> created; // the phone's own text, e.g. "20240314T090512.0"
};

// Bytes done and bytes in all, called as a transfer goes; answers false when nobody listens any more
// and the transfer should stop.
using TransferProgress = std::function<bool(uint64_t done, uint64_t total)>;

// A phone as the protocol server sees it. Every operation answers an empty text on success, or the
// error to show the user as it stands.
class PhoneBackend {
public:
    virtual ~PhoneBackend() = default;

    virtual std::string storages(std::vector<PhoneObject>& out) = 0;
    virtual std::string list(uint32_t storage, uint32_t parent, std::vector<PhoneObject>& out) = 0;
    virtual std::string scan() = 0;
    // Writes the object's bytes to `target`, an open file; `name` is what errors call it.
    virtual std::string get(uint32_t id, int target, const std::string& name,
                            const TransferProgress& progress) = 0;
    virtual std::string put(uint32_t storage, uint32_t parent, const std::string& path,
                            const TransferProgress& progress) = 0;
    virtual std::string makeFolder(uint32_t storage, uint32_t parent, const std::string& name,
                                   uint32_t& id) = 0;
    virtual std::string remove(uint32_t id) = 0;
    virtual std::string rename(uint32_t id, const std::string& name) = 0;
    virtual std::string move(uint32_t id, uint32_t storage, uint32_t parent) = 0;
    virtual std::string info(uint32_t id, PhoneObjectInfo& out) = 0;
    virtual std::string thumbnail(uint32_t id, const std::string& path) = 0;
};

// The exact text the client recognises to fetch a small picture whole instead.
inline const char* const noThumbnailText = "No thumbnail available from phone.";
inline const char* const noPhoneText =
    "No Android phone found. Connect it with a USB cable and choose File transfer on the phone.";
inline const char* const lockedText = "The phone is locked. Unlock the phone and choose File transfer in "
                                      "its USB settings, then click Refresh.";
inline const char* const chargingOnlyText =
    "The phone is connected for charging only. Unlock the phone and choose File transfer in its USB "
    "settings, then click Refresh.";
inline const char* const cancelledText = "The transfer was cancelled.";

} // namespace orvane
