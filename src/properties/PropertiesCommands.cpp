#include "properties/PropertiesCommands.h"

#include "core/BrowserWindow.h"
#include "core/Jobs.h"
#include "core/TabContent.h"
#include "core/WindowCommands.h"
#include "properties/PropertiesReader.h"
#include "properties/PropertiesWindow.h"

namespace orvane {

PropertiesCommands::PropertiesCommands(BrowserWindow& window) : QObject(window.widget()), w(window) {
    w.commands().add(
        QStringLiteral("propertiesAction"), QStringLiteral("Properties"), [this] { propertiesAction(); },
        [this] { return enabled(); });
}

bool PropertiesCommands::enabled() const {
    // A phone tab answers through its browser (the tab's own route); until one is there the command
    // has nothing to show.
    const TabContent* content = w.contentFor(w.current());
    return w.current().isLocalFile() || (content && content->takesFileKeys());
}

void PropertiesCommands::propertiesAction() {
    if (!w.current().isLocalFile()) return;
    QList<QUrl> urls;
    for (const Entry& entry : w.selected())
        urls.append(entry.url());
    if (urls.isEmpty()) urls.append(w.current());
    open(urls);
}

PropertiesWindow* PropertiesCommands::open(const QList<QUrl>& urls) {
    auto* window = new PropertiesWindow(urls, w.widget());
    shown.append(window);
    connect(window, &PropertiesWindow::closed, this,
            [this](PropertiesWindow* closed) { shown.removeAll(closed); });
    window->show();
    window->raise();
    window->activateWindow();
    window->reader().runAs(*w.jobs().start(QStringLiteral("Properties"), w.widget(), false));
    window->beginReading();
    return window;
}

QList<PropertiesWindow*> PropertiesCommands::windows() const {
    QList<PropertiesWindow*> list;
    for (const QPointer<PropertiesWindow>& window : shown)
        if (window) list.append(window);
    return list;
}

} // namespace orvane
