#include "navigation/PlacesList.h"

#include "browsing/Entry.h"
#include "browsing/Explorer.h"
#include "browsing/ExplorerEvents.h"
#include "browsing/ExplorerKeyboard.h"
#include "browsing/NotificationCenter.h"
#include "browsing/Preferences.h"
#include "browsing/WindowCommands.h"
#include "navigation/PinnedStore.h"
#include "views/FileIcons.h"

#include <QDir>
#include <QFocusEvent>
#include <QListWidget>
#include <QToolButton>

namespace orvane {

PlacesList::PlacesList(Explorer& window)
    : QObject(&window), w(window), store(std::make_unique<PinnedStore>(Preferences::pins())) {
    QListWidget* list = w.widgets().places;
    list->setAccessibleName(QStringLiteral("Navigation pane"));
    connect(list, &QListWidget::itemActivated, this, [this](QListWidgetItem* item) {
        const QUrl url = item->data(Qt::UserRole).toUrl();
        if (url.isValid()) w.navigate(url);
    });
    connect(list, &QListWidget::itemClicked, list, &QListWidget::itemActivated);
    connect(&NotificationCenter::shared(), &NotificationCenter::posted, this, [this](const QString& name) {
        if (name != QLatin1String(PinnedStore::panePinsChanged)) return;
        store->reload();
        rebuild();
        updatePinCommand();
    });
    connect(&w.events(), &ExplorerEvents::locationChanged, this, &PlacesList::followLocation);
    list->installEventFilter(this);
    connect(&w.events(), &ExplorerEvents::selectionChanged, this, &PlacesList::updatePinCommand);
    connect(&w.events(), &ExplorerEvents::listingChanged, this, &PlacesList::updatePinCommand);
    w.commands().add(
        QStringLiteral("pinAction"), QStringLiteral("Pin to Quick access"), [this] { pinAction(); },
        [this] { return !pinTargets().empty(); });
    w.commands().bind(w.widgets().action("pin"), QStringLiteral("pinAction"));
    w.keyboard().sidebarKey = [this](PhysicalKey k) { return key(int(k)); };
    rebuild();
    updatePinCommand();
}

PlacesList::~PlacesList() = default;

// Arrows walk the list without opening; a walk that ends elsewhere leaves the mark on the place shown.
bool PlacesList::eventFilter(QObject* watched, QEvent* event) {
    if (event->type() == QEvent::FocusOut &&
        static_cast<QFocusEvent*>(event)->reason() != Qt::PopupFocusReason)
        followLocation();
    return QObject::eventFilter(watched, event);
}

void PlacesList::rebuild() {
    QListWidget* list = w.widgets().places;
    list->clear();
    auto add = [list](const QString& title, const QUrl& url) {
        auto* item = new QListWidgetItem(FileIcons::shared().folder(), title, list);
        item->setData(Qt::UserRole, url);
        item->setToolTip(url.isLocalFile() ? url.toLocalFile() : title);
    };
    add(QStringLiteral("Home"), QUrl::fromLocalFile(QDir::homePath()));
    auto* header = new QListWidgetItem(QStringLiteral("Quick access"), list);
    header->setFlags(Qt::NoItemFlags);
    for (const QUrl& url : store->urls())
        add(folderName(url), url);
    followLocation();
}

// The row of the place shown is the selected one, whichever way the window got there.
void PlacesList::followLocation() {
    QListWidget* list = w.widgets().places;
    const QUrl here = PinnedStore::canonical(w.current());
    for (int row = 0; row < list->count(); ++row) {
        const QUrl url = list->item(row)->data(Qt::UserRole).toUrl();
        if (url.isValid() && PinnedStore::canonical(url) == here) {
            list->setCurrentRow(row);
            return;
        }
    }
    list->setCurrentRow(-1);
    list->clearSelection();
}

std::vector<Entry> PlacesList::pinTargets() const {
    std::vector<Entry> targets;
    const std::vector<Entry> chosen = w.commandSelection();
    for (const Entry& e : chosen)
        if (e.isPlainFolder()) targets.push_back(e);
    if (chosen.empty()) targets.push_back(Entry::fromUrl(w.current()));
    return targets;
}

bool PlacesList::allTargetsPinned() const {
    const std::vector<Entry> targets = pinTargets();
    return !targets.empty() && std::all_of(targets.begin(), targets.end(),
                                           [this](const Entry& e) { return store->contains(e.url()); });
}

void PlacesList::pinAction() {
    const std::vector<Entry> targets = pinTargets();
    const bool unpinning = allTargetsPinned();
    for (const Entry& target : targets) {
        if (unpinning)
            store->unpin(target.url());
        else if (!store->contains(target.url()))
            store->pin(target.url());
    }
}

void PlacesList::updatePinCommand() {
    const bool unpin = allTargetsPinned();
    w.commands().setTitle(QStringLiteral("pinAction"), unpin ? QStringLiteral("Unpin from Quick access")
                                                             : QStringLiteral("Pin to Quick access"));
    QToolButton* button = w.widgets().action("pin");
    button->setText(unpin ? QStringLiteral("Unpin") : QStringLiteral("Pin folder"));
    button->setToolTip(w.commands().title(QStringLiteral("pinAction")));
    w.commands().refresh();
}

// Arrows walk the list past its section rows; Return opens.
bool PlacesList::key(int physicalKey) {
    const auto k = PhysicalKey(physicalKey);
    QListWidget* list = w.widgets().places;
    if (k == PhysicalKey::Return || k == PhysicalKey::Enter) {
        const QUrl url = list->currentItem() ? list->currentItem()->data(Qt::UserRole).toUrl() : QUrl();
        if (url.isValid()) w.navigate(url);
        return true;
    }
    if (k != PhysicalKey::Up && k != PhysicalKey::Down) return false;
    const int step = k == PhysicalKey::Up ? -1 : 1;
    for (int row = list->currentRow() + step; row >= 0 && row < list->count(); row += step) {
        if (list->item(row)->flags() & Qt::ItemIsSelectable) {
            list->setCurrentRow(row);
            break;
        }
    }
    return true;
}

} // namespace orvane
