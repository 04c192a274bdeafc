#pragma once

namespace orvane {

// The eight ways a window shows its listing, numbered as the view menu lists them.
enum class ViewMode {
    ExtraLargeIcons = 1,
    LargeIcons,
    MediumIcons,
    SmallIcons,
    List,
    Details,
    Tiles,
    Content
};

} // namespace orvane
