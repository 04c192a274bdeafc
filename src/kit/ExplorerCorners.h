#pragma once

namespace orvane {

// The radii of the rounded look: the window, the panels on it, and an item's highlight.
struct ExplorerCorners {
    static constexpr int window = 16;
    static constexpr int surface = 10;
    static constexpr int item = 6;
};

} // namespace orvane
