#include "window/WindowPlugins.h"

#include "chrome/GlassAppearance.h"
#include "chrome/WindowSnapping.h"
#include "fileops/CutMarks.h"
#include "fileops/FileDrag.h"
#include "fileops/FileDrop.h"
#include "fileops/TrashContent.h"
#include "media/AudioPlayerBar.h"
#include "navigation/NavigationPane.h"
#include "phone/AndroidContent.h"
#include "phone/PhoneConnectionWatch.h"
#include "phone/PhoneDrop.h"
#include "properties/PropertiesCommands.h"
#include "search/WindowSearch.h"
#include "system/FolderAccessPanel.h"
#include "system/StorageOverview.h"
#include "views/ExplorerViewModes.h"
#include "views/MediaButtons.h"
#include "window/Explorer.h"
#include "window/PointerNavigation.h"
#include "window/TabDragging.h"

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
    new FileDrop(window); // before the phone's drop, which stands in front of it
    auto* phones = new AndroidContent(window);
    window.addContent(phones);
    new PhoneDrop(window, *phones);
    new FileDrag(window);
    window.addContent(new TrashContent(window, window.fileOps()));
    new FolderAccessPanel(window);
    new StorageOverview(window);
    new WindowSnapping(window);
    new GlassAppearance(&window);
    new TabDragging(window);
    // The pane shows the phone while the watch finds one.
    QObject::connect(&phones->watch(), &PhoneConnectionWatch::presenceChanged, pane,
                     &NavigationPane::setPhoneConnected);
}

} // namespace orvane
