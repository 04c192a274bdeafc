#pragma once

namespace orvane {

// How a window's width is shared between the navigation pane, the file area and the details pane.
// The file area comes first: when the window narrows, the navigation pane gives way down to its
// minimum, then the details pane down to its own, and only then the file area. When it widens again
// each pane returns to the width the person chose.
class SplitWidths {
public:
    struct Needs {
        int available = 0; // the split's width less its handles
        int navigationPreferred = 240;
        int navigationMinimum = 150;
        bool detailsShown = false;
        int detailsPreferred = 260;
        int detailsMinimum = 260;
        // Below this the file area starts to lose columns.
        int filesComfortable = 0;
    };
    struct Widths {
        int navigation = 0;
        int files = 0;
        int details = 0;
    };

    static Widths share(const Needs& needs);
};

} // namespace orvane
