#include "browsing/WindowPlugins.h"

#include "browsing/Explorer.h"
#include "browsing/PointerNavigation.h"
#include "navigation/PlacesList.h"
#include "phone/AndroidContent.h"
#include "phone/PhoneDrop.h"
#include "properties/PropertiesCommands.h"
#include "views/ExplorerViewModes.h"

namespace orvane {

void WindowPlugins::attach(Explorer& window) {
    new PlacesList(window);
    new ExplorerViewModes(window);
    new PropertiesCommands(window);
    new PointerNavigation(window);
    auto* phones = new AndroidContent(window);
    window.addContent(phones);
    new PhoneDrop(window, *phones);
}

} // namespace orvane
