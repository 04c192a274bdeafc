#include "navigation/SidebarPinLayout.h"

namespace orvane {

SidebarPinLayout SidebarPinLayout::of(const SidebarTreeSnapshot& tree) {
    SidebarPinLayout layout;
    layout.endRow = tree.count();
    auto isHeader = [&](int row, const QString& title) {
        return tree.depths[row] == 0 && tree.places[row].isSection() && tree.places[row].title == title;
    };
    for (int row = 0; row < tree.count(); ++row) {
        if (layout.headerRow < 0) {
            if (isHeader(row, QStringLiteral("Quick access"))) layout.headerRow = row;
            continue;
        }
        if (isHeader(row, QStringLiteral("Locations"))) {
            layout.endRow = row;
            break;
        }
        if (tree.depths[row] == 0 && !tree.places[row].isSection()) layout.rootRows.append(row);
    }
    return layout;
}

std::optional<SidebarPinLayout::Target> SidebarPinLayout::target(int row) const {
    if (rootRows.isEmpty() || row < headerRow || row > endRow) return std::nullopt;
    for (int slot = 0; slot < rootRows.size(); ++slot)
        if (rootRows[slot] >= row) return Target{slot, rootRows[slot]};
    return Target{int(rootRows.size()), endRow};
}

std::optional<SidebarPinLayout::Target> SidebarPinLayout::drop(int sourceSlot, int row,
                                                               bool lowerHalf) const {
    if (lowerHalf && row != endRow) ++row;
    const std::optional<Target> found = target(row);
    if (!found || found->slot == sourceSlot || found->slot == sourceSlot + 1) return std::nullopt;
    return found;
}

} // namespace orvane
