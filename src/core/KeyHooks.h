#pragma once

#include "platform/PhysicalKeys.h"

#include <functional>

class QWidget;

namespace orvane {

// Keys that parts of a window answer themselves; the window's keyboard asks each hook that is set.
struct KeyHooks {
    // The navigation pane: answers whether it used the key.
    std::function<bool(PhysicalKey key)> sidebarKey;
    // The view modes: the file list shown in place of the table, or null in Details.
    std::function<QWidget*()> iconFileList;
};

} // namespace orvane
