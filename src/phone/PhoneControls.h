#pragma once

#include <QString>

namespace orvane {

// What the enabling of a phone tab's controls depends on.
struct PhoneControlFacts {
    bool busy = false;
    bool atTop = true;            // the storages are showing, where nothing can be made or changed
    int selected = 0;             // selected items
    bool storageSelected = false; // a storage root is among them; it can't be copied
    bool canPaste = false;        // the clipboard holds what this folder can take
    bool canPin = false;          // there is a folder to pin
    bool pinned = false;
};

// Which controls of a phone tab are usable, from the facts alone.
struct PhoneControls {
    bool send = false;
    bool copyToComputer = false; // also "copy" and "cut"
    bool paste = false;
    bool rename = false;
    bool remove = false;
    bool newFolder = false;
    bool pin = false;
    QString pinTitle;

    static PhoneControls from(const PhoneControlFacts& facts);
    bool operator==(const PhoneControls&) const = default;
};

} // namespace orvane
