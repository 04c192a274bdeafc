#include "navigation/NavigationPane.h"
#include "kit/CommandBinding.h"
#include "kit/WindowWidgets.h"

#include "core/BrowserWindow.h"
#include "core/Entry.h"
#include "core/ExplorerEvents.h"
#include "core/KeyHooks.h"
#include "core/PinnedStore.h"
#include "core/Services.h"
#include "core/Settings.h"
#include "core/WindowCommands.h"
#include "core/WindowListing.h"
#include "navigation/PlacesTable.h"

#include <QBoxLayout>
#include <QToolButton>

namespace orvane {

NavigationPane::NavigationPane(BrowserWindow& window)
    : QObject(window.widget()), w(window), store(window.services().pins()), files(window) {
    QWidget* pane = w.widgets().navigationPane;
    places = new PlacesTable(store, pane);
    auto* column = static_cast<QBoxLayout*>(pane->layout());
    if (QLayoutItem* gap = column->itemAt(0); gap && gap->spacerItem()) delete column->takeAt(0);
    column->insertWidget(0, places, 1);
    pane->setFocusProxy(places);
    places->setShowHidden(w.listing().showHidden());
    connect(places, &PlacesTable::openRequested, this, &NavigationPane::open);
    places->emptyTrash = [this] { w.commands().run(QStringLiteral("emptyTrash")); };
    connect(places, &PlacesTable::openInNewTabRequested, this, [this](const QUrl& url) {
        w.newTab();
        w.navigate(url);
    });
    connect(places, &PlacesTable::statusMessage, this, [this](const QString& text) { w.setStatus(text); });
    connect(&store.settings(), &Settings::pinsChanged, this, &NavigationPane::updatePinCommand);
    connect(&w.events(), &ExplorerEvents::locationChanged, places, &PlacesTable::syncSelection);
    connect(&w.events(), &ExplorerEvents::selectionChanged, this, &NavigationPane::updatePinCommand);
    connect(&w.events(), &ExplorerEvents::listingChanged, this, [this] {
        places->setShowHidden(w.listing().showHidden());
        updatePinCommand();
    });
    connect(&w.commands(), &WindowCommands::requested, this, [this](const QString& name) {
        if (name == QLatin1String("refreshAction")) places->setupPlaces();
    });
    // The Storage button shares the pane; its keys stay its own.
    w.keyHooks().sidebarKey = [this](PhysicalKey key) {
        return places->hasFocus() && places->handleKey(key);
    };
    places->fileDropOperation = [this](const QDropEvent& event, const QUrl& place) {
        return files.hover(event, place);
    };
    places->performFileDrop = [this](QDropEvent& event, const QUrl& place) {
        return files.drop(event, place);
    };
    places->fileDropExit = [this] { files.leave(); };
    registerCommands();
    places->syncSelection(w.current());
    updatePinCommand();
}

NavigationPane::~NavigationPane() = default;

void NavigationPane::registerCommands() {
    WindowCommands& c = w.commands();
    c.add(
        QStringLiteral("pinAction"), QStringLiteral("Pin to Quick access"), [this] { pinAction(); },
        [this] { return !pinTargets().empty(); });
    CommandBinding::bind(c, w.widgets().action("pin"), QStringLiteral("pinAction"));
    c.add(QStringLiteral("expandToCurrentFolder"),
          QStringLiteral("Reveal current folder in the navigation tree"),
          [this] { expandToCurrentFolder(); });
    c.add(QStringLiteral("showSidebarContextMenu"), QStringLiteral("Show the navigation pane's menu"),
          [this] { showContextMenu(); });
}

// A click in the pane keeps the keyboard in the pane, though navigating hands it to the file list.
void NavigationPane::open(const QUrl& url) {
    const bool inside = w.focusIsInside(w.widgets().navigationPane);
    if (!w.navigate(url)) {
        places->syncSelection(w.current());
        return;
    }
    if (inside) places->setFocus(Qt::OtherFocusReason);
}

void NavigationPane::expandToCurrentFolder() {
    if (!places->expandToCurrentFolder(w.current()))
        w.setStatus(QStringLiteral("The current folder is not shown in the navigation tree"));
}

void NavigationPane::showContextMenu() {
    const int row = places->tree().selectedRow();
    const QRect r = places->rowRect(row);
    if (r.isNull()) return;
    places->popupMenu(row, places->viewport()->mapToGlobal(QPoint(r.left() + 30, r.bottom())));
}

void NavigationPane::setPhoneConnected(bool on, const QString& state) {
    places->setPhoneConnected(on, state);
}

std::vector<Entry> NavigationPane::pinTargets() const {
    std::vector<Entry> targets;
    const std::vector<Entry> chosen = w.selected();
    for (const Entry& e : chosen)
        if (e.isPlainFolder()) targets.push_back(e);
    if (chosen.empty()) targets.push_back(Entry::fromUrl(w.current()));
    return targets;
}

bool NavigationPane::allTargetsPinned() const {
    const std::vector<Entry> targets = pinTargets();
    return !targets.empty() && std::all_of(targets.begin(), targets.end(),
                                           [this](const Entry& e) { return store.contains(e.url()); });
}

void NavigationPane::pinAction() {
    const std::vector<Entry> targets = pinTargets();
    if (targets.empty()) return;
    const bool unpinning = allTargetsPinned();
    for (const Entry& target : targets) {
        if (unpinning)
            store.unpin(target.url());
        else if (!store.contains(target.url()))
            store.pin(target.url());
    }
    w.setStatus(unpinning ? QStringLiteral("Removed from Quick access")
                          : QStringLiteral("Pinned to Quick access — saved"));
    updatePinCommand();
}

void NavigationPane::updatePinCommand() {
    const bool unpin = allTargetsPinned();
    w.commands().setTitle(QStringLiteral("pinAction"), unpin ? QStringLiteral("Unpin from Quick access")
                                                             : QStringLiteral("Pin to Quick access"));
    QToolButton* button = w.widgets().action("pin");
    button->setText(unpin ? QStringLiteral("Unpin") : QStringLiteral("Pin folder"));
    button->setToolTip(w.commands().title(QStringLiteral("pinAction")));
    w.commands().refresh();
}

} // namespace orvane
