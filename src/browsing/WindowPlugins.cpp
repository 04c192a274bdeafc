#include "browsing/WindowPlugins.h"

#include "browsing/Explorer.h"
#include "browsing/PointerNavigation.h"
#include "navigation/PlacesList.h"
#include "phone/PhonePlaceholder.h"

namespace orvane {

void WindowPlugins::attach(Explorer& window) {
    new PlacesList(window);
    new PointerNavigation(window);
    window.addContent(new PhonePlaceholder(window));
}

} // namespace orvane
