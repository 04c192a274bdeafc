#pragma once

namespace orvane {

class Explorer;

// The one place where subsystems join a new window: each adds its own object, parented to the
// window, which registers its commands and follows the window's events.
namespace WindowPlugins {
void attach(Explorer& window);
}

} // namespace orvane
