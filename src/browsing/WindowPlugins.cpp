#include "browsing/WindowPlugins.h"

#include "browsing/Explorer.h"
#include "browsing/PointerNavigation.h"
#include "navigation/NavigationPane.h"
#include "phone/PhonePlaceholder.h"
#include "properties/PropertiesCommands.h"
#include "search/WindowSearch.h"
#include "views/ExplorerViewModes.h"

namespace orvane {

void WindowPlugins::attach(Explorer& window) {
    new NavigationPane(window);
    new ExplorerViewModes(window);
    new PropertiesCommands(window);
    new PointerNavigation(window);
    new WindowSearch(window);
    window.addContent(new PhonePlaceholder(window));
}

} // namespace orvane
