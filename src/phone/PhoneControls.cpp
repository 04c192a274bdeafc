#include "phone/PhoneControls.h"

namespace orvane {

// A busy browser offers nothing: phone operations run strictly one at a time.
PhoneControls PhoneControls::from(const PhoneControlFacts& facts) {
    PhoneControls c;
    const bool free = !facts.busy;
    const bool inFolder = free && !facts.atTop;
    c.send = inFolder;
    c.copyToComputer = free && facts.selected > 0 && !facts.storageSelected;
    c.paste = free && facts.canPaste;
    c.rename = inFolder && facts.selected == 1;
    c.remove = inFolder && facts.selected > 0;
    c.newFolder = inFolder;
    c.pin = free && facts.canPin;
    c.pinTitle = facts.pinned ? QStringLiteral("Unpin") : QStringLiteral("Pin folder");
    return c;
}

} // namespace orvane
