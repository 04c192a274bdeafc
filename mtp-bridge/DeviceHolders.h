#pragma once

#include <string>
#include <vector>

namespace orvane {

// A process that has a device node open.
struct DeviceHolder {
    int pid = 0;
    std::string program;
};

// Other processes that hold `node` open, found through /proc/*/fd. Only processes this user may
// look into are seen, which covers a desktop's own phone service.
std::vector<DeviceHolder> deviceHolders(const std::string& node);

// What to tell a person whose phone another program holds: that program by name when it is known.
std::string heldText(const std::vector<DeviceHolder>& holders);

} // namespace orvane
