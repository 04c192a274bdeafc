#include "window/WindowPlugins.h"

#include "fileops/CutMarks.h"
#include "fileops/FileDrag.h"
#include "media/AudioPlayerBar.h"
#include "navigation/NavigationPane.h"
#include "phone/AndroidContent.h"
#include "phone/PhoneConnectionWatch.h"
#include "phone/PhoneDrop.h"
#include "properties/PropertiesCommands.h"
#include "search/WindowSearch.h"
#include "views/ExplorerViewModes.h"
#include "views/MediaButtons.h"
#include "window/Explorer.h"
#include "window/PointerNavigation.h"

namespace orvane {

void WindowPlugins::attach(Explorer& window) {
    auto* pane = new NavigationPane(window);
    auto* modes = new ExplorerViewModes(window);
    new CutMarks(window, *modes);
    new MediaButtons(window, *modes);
    new AudioPlayerBar(window);
    new PropertiesCommands(window);
    new PointerNavigation(window);
    new WindowSearch(window);
    auto* phones = new AndroidContent(window);
    window.addContent(phones);
    new PhoneDrop(window, *phones);
    new FileDrag(window);
    // The pane shows the phone while the watch finds one.
    QObject::connect(&phones->watch(), &PhoneConnectionWatch::presenceChanged, pane,
                     &NavigationPane::setPhoneConnected);
}

} // namespace orvane
