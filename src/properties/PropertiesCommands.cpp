#include "properties/PropertiesCommands.h"

#include "browsing/Explorer.h"
#include "browsing/PhoneKeyTarget.h"
#include "browsing/WindowCommands.h"
#include "properties/PropertiesWindow.h"

namespace orvane {

PropertiesCommands::PropertiesCommands(Explorer& window) : QObject(&window), w(window) {
    w.commands().add(
        QStringLiteral("propertiesAction"), QStringLiteral("Properties"), [this] { propertiesAction(); },
        [this] { return enabled(); });
}

bool PropertiesCommands::enabled() const {
    // A phone tab answers through its browser; until one is there the command has nothing to show.
    return w.current().isLocalFile() || w.activePhone();
}

void PropertiesCommands::propertiesAction() {
    if (PhoneKeyTarget* phone = w.activePhone()) {
        phone->showProperties();
        return;
    }
    if (!w.current().isLocalFile()) return;
    QList<QUrl> urls;
    for (const Entry& entry : w.commandSelection())
        urls.append(entry.url());
    if (urls.isEmpty()) urls.append(w.current());
    open(urls);
}

PropertiesWindow* PropertiesCommands::open(const QList<QUrl>& urls) {
    auto* window = new PropertiesWindow(urls, &w);
    shown.append(window);
    connect(window, &PropertiesWindow::closed, this,
            [this](PropertiesWindow* closed) { shown.removeAll(closed); });
    window->show();
    window->raise();
    window->activateWindow();
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
