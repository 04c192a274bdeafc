#include "browsing/WindowPlugins.h"

#include "browsing/Explorer.h"
#include "navigation/PlacesList.h"
#include "phone/PhonePlaceholder.h"
#include "search/WindowSearch.h"
#include "views/ExplorerViewModes.h"
#include "properties/PropertiesCommands.h"

namespace orvane {

void WindowPlugins::attach(Explorer& window) {
    new PlacesList(window);
    new ExplorerViewModes(window);
    new PropertiesCommands(window);
    new WindowSearch(window);
    window.addContent(new PhonePlaceholder(window));
}

} // namespace orvane
