#pragma once

#include <QString>

namespace orvane {

// What the enabled state of the window's commands depends on, gathered in one value.
struct SelectionFacts {
    int count = 0;
    bool busy = false;
    bool canPaste = false;
    bool singlePlainFolder = false; // exactly one item, a directory that isn't a package
    bool singlePackage = false;     // exactly one item, a package
    int pinTargets = 0;
    bool allTargetsPinned = false;
};

// The enabled rules of the toolbar and the file area's context menu.
namespace ActionState {
inline bool cut(const SelectionFacts& f) {
    return f.count > 0 && !f.busy;
}
inline bool copy(const SelectionFacts& f) {
    return f.count > 0 && !f.busy;
}
inline bool trash(const SelectionFacts& f) {
    return f.count > 0 && !f.busy;
}
inline bool rename(const SelectionFacts& f) {
    return f.count == 1 && !f.busy;
}
inline bool paste(const SelectionFacts& f) {
    return f.canPaste && !f.busy;
}
inline bool create(const SelectionFacts& f) {
    return !f.busy;
}
inline bool pin(const SelectionFacts& f) {
    return f.pinTargets > 0;
}
inline QString pinTitle(const SelectionFacts& f) {
    return f.pinTargets > 0 && f.allTargetsPinned ? QStringLiteral("Unpin from Quick access")
                                                  : QStringLiteral("Pin to Quick access");
}
inline QString pinButtonTitle(const SelectionFacts& f) {
    return pinTitle(f).startsWith(QLatin1String("Unpin")) ? QStringLiteral("Unpin")
                                                          : QStringLiteral("Pin folder");
}

// Where the context menu asks more than the command's own rule.
namespace Menu {
inline bool open(const SelectionFacts& f) {
    return f.count > 0;
}
inline bool openInNewTab(const SelectionFacts& f) {
    return f.singlePlainFolder;
}
inline bool compress(const SelectionFacts& f) {
    return f.count > 0 && !f.busy;
}
} // namespace Menu
} // namespace ActionState

} // namespace orvane
