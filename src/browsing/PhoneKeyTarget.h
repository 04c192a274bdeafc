#pragma once

namespace orvane {

// The commands that keys reach in the phone browser of a phone tab. The browser implements it; the
// window asks for the active tab's through `Explorer::activePhone`.
class PhoneKeyTarget {
public:
    virtual ~PhoneKeyTarget() = default;
    virtual void copyFiles() = 0;
    virtual void pasteFiles() = 0;
    virtual void selectAllItems() = 0;
    virtual void createFolder() = 0;
    virtual void cutFiles() = 0;
    virtual void renameSelection() = 0;
    virtual void deleteSelection() = 0;
    virtual void showProperties() = 0;
};

} // namespace orvane
