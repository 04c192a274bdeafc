#pragma once

#include "navigation/SidebarTreeSnapshot.h"

#include <optional>

namespace orvane {

// Where the pins stand in the tree, for reordering by drag: the "Quick access" header, the pin
// rows (roots, not their expanded children) and the row that ends the section.
struct SidebarPinLayout {
    int headerRow = -1;
    QList<int> rootRows;
    int endRow = 0;

    static SidebarPinLayout of(const SidebarTreeSnapshot& tree);

    struct Target {
        int slot;    // insertion slot in the pin list: 0 before the first pin, count after the last
        int dropRow; // the row the drop line is drawn above
        bool operator==(const Target&) const = default;
    };
    // A drop above `row`, moved onto the next pin boundary; none outside the section.
    std::optional<Target> target(int row) const;

    // The pin at `sourceSlot` dropped with the pointer over `row`: above it, or above the next row
    // from the lower half on, but anywhere on the header that ends the section means last. None
    // where the order would not change.
    std::optional<Target> drop(int sourceSlot, int row, bool lowerHalf) const;
};

} // namespace orvane
