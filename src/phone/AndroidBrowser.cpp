#include "phone/AndroidBrowser.h"

#include "browsing/EditablePathBox.h"
#include "browsing/Explorer.h"
#include "browsing/ExplorerEvents.h"
#include "browsing/WindowCommands.h"
#include "browsing/WindowListing.h"
#include "chrome/TransferProgressEdge.h"
#include "phone/PhoneLocation.h"
#include "phone/SendFilesDialog.h"
#include "platform/Platform.h"
#include "views/FileTable.h"

#include <QFile>
#include <QFileDialog>
#include <QLabel>
#include <QLineEdit>
#include <QPointer>

namespace orvane {

AndroidBrowser::AndroidBrowser(Explorer& window, const QUuid& tab)
    : QObject(&window), w(window), tabID(tab), phone(this) {
    phone.setSortState(std::nullopt); // the window sorts what it shows
    connect(&phone, &PhoneBrowserState::listingChanged, this, [this] {
        if (showing()) publishListing();
    });
    connect(&phone, &PhoneBrowserState::listed, this, [this] {
        if (showing()) selectPending();
    });
    connect(&phone, &PhoneBrowserState::statusChanged, this, [this] {
        if (showing()) publishStatus();
    });
    connect(&phone, &PhoneBrowserState::busyChanged, this, [this] {
        if (showing()) w.commands().refresh();
    });
    connect(&phone, &PhoneBrowserState::navigateTo, this, [this](const QList<PhoneItem>& chain) {
        if (showing()) w.navigate(PhoneLocation::url(chain));
    });
    // The window is held while files move, and its edge shows the file in hand.
    TransferProgressEdge* edge = w.widgets().transferProgress;
    connect(&phone, &PhoneBrowserState::transferStarted, this, [this, edge] {
        moving = true;
        w.setBusy(true);
        edge->begin();
    });
    connect(&phone, &PhoneBrowserState::transferProgress, edge,
            [edge](double fraction) { fraction == 0 ? edge->begin() : edge->update(fraction); });
    connect(&phone, &PhoneBrowserState::transferFinished, this, [this, edge] {
        moving = false;
        edge->finish();
        w.setBusy(false);
        emit idle();
    });
}

bool AndroidBrowser::showing() const {
    return w.current().scheme() == QLatin1String("android") && w.tabs.current().id == tabID;
}

void AndroidBrowser::show(const QList<PhoneItem>& chain) {
    const QList<PhoneItem>& before = phone.history();
    selectAfter.reset();
    if (chain.size() < before.size() && before.mid(0, chain.size()) == chain)
        selectAfter = before[chain.size()].id;
    // A new place shows nothing of the old one; a Refresh keeps the rows until the answer.
    phone.setHistory(chain);
    phone.setShowHidden(w.listing().showHidden());
    if (!shownInWindow()) publishListing();
    w.widgets().emptyLabel->hide();
    publishPlace();
    publishStatus();
    phone.reload();
}

// The window's listing still holds this tab's rows, as after a Refresh; a tab switch replaced them.
bool AndroidBrowser::shownInWindow() const {
    const std::vector<Entry>& ours = phone.entries();
    const std::vector<Entry>& theirs = w.listing().entries();
    if (!w.listing().query().isEmpty()) return false;
    return ours.size() == theirs.size() &&
           (ours.empty() || std::any_of(theirs.begin(), theirs.end(),
                                        [&](const Entry& e) { return e.location == ours.front().location; }));
}

void AndroidBrowser::publishListing() {
    byLocation.clear();
    w.listing().setSource(phone.entries());
    emit w.events().listingChanged();
    w.commands().refresh();
}

// "Android USB" and each folder of the chain, each leading to its own place.
void AndroidBrowser::publishPlace() {
    QStringList names{QStringLiteral("Android USB")};
    QList<QUrl> places{PhoneLocation::url({})};
    for (qsizetype i = 0; i < phone.history().size(); ++i) {
        names << phone.history()[i].name;
        places << PhoneLocation::url(phone.history().mid(0, i + 1));
    }
    EditablePathBox* box = w.widgets().pathBox;
    box->setElements(names, places);
    box->addressField()->setText(names.join(u'/'));
    w.widgets().searchField->setPlaceholderText(QStringLiteral("Search phone"));
}

void AndroidBrowser::publishStatus() {
    w.widgets().status->setText(phone.status());
}

void AndroidBrowser::selectPending() {
    if (!selectAfter) return;
    const std::vector<Entry>& rows = w.entries();
    for (size_t row = 0; row < rows.size(); ++row) {
        const QList<PhoneItem> item = itemsOf({rows[row]});
        if (item.isEmpty() || item.front().id != *selectAfter) continue;
        const QModelIndex index = w.table()->model()->index(int(row), 0);
        w.table()->selectionModel()->setCurrentIndex(index, QItemSelectionModel::ClearAndSelect |
                                                                QItemSelectionModel::Rows);
        w.table()->scrollTo(index);
        break;
    }
    selectAfter.reset();
}

// Made when first asked: most listings are shown long before anything in them is chosen.
QList<PhoneItem> AndroidBrowser::itemsOf(const std::vector<Entry>& entries) const {
    if (byLocation.isEmpty() && !entries.empty()) {
        byLocation.reserve(qsizetype(phone.entries().size()));
        for (size_t i = 0; i < phone.entries().size(); ++i)
            byLocation.insert(phone.entries()[i].location, qsizetype(i));
    }
    QList<PhoneItem> items;
    for (const Entry& e : entries)
        if (const auto it = byLocation.constFind(e.location); it != byLocation.cend())
            items << phone.items()[*it];
    return items;
}

QList<PhoneItem> AndroidBrowser::selectedItems() const {
    return showing() ? itemsOf(w.selected()) : QList<PhoneItem>();
}

// A double click or Return opens the one folder chosen; files open with the media issue's viewer.
void AndroidBrowser::open(const std::vector<Entry>& entries) {
    const QList<PhoneItem> items = itemsOf(entries);
    if (items.size() == 1) phone.openItem(items.front());
}

bool AndroidBrowser::canSend() const {
    return phone.controls({}).send;
}

bool AndroidBrowser::canCopyToComputer() const {
    return phone.controls(selectedItems()).copyToComputer;
}

void AndroidBrowser::sendFiles() {
    if (phone.busy()) return;
    if (const std::optional<QString> refusal = phone.sendRefusal({})) return phone.unlock(*refusal);
    auto* dialog = new SendFilesDialog(&w);
    const PhoneItem into = phone.history().last();
    connect(dialog, &SendFilesDialog::chosen, this,
            [self = QPointer(this), into](const QList<QByteArray>& paths, const QStringList& names) {
                if (!self || self->phone.busy()) return;
                if (const std::optional<QString> refusal = self->phone.sendRefusal(names))
                    return self->phone.unlock(*refusal);
                self->phone.runUpload(paths, into);
            });
    dialog->open();
}

void AndroidBrowser::saveFiles() {
    const QList<PhoneItem> items = selectedItems();
    if (phone.busy() || items.isEmpty() || !phone.canCopyFiles(items)) return;
    auto* dialog = new QFileDialog(&w, Platform::instance().word(PlatformWord::CopyToComputer));
    dialog->setAttribute(Qt::WA_DeleteOnClose);
    dialog->setFileMode(QFileDialog::Directory);
    dialog->setOption(QFileDialog::ShowDirsOnly);
    dialog->setLabelText(QFileDialog::Accept, QStringLiteral("Copy here"));
    dialog->setAccessibleName(QStringLiteral("Choose a folder to copy into"));
    connect(dialog, &QFileDialog::fileSelected, this, [self = QPointer(this), items](const QString& folder) {
        if (self) self->phone.runDownload(items, QFile::encodeName(folder));
    });
    dialog->open();
}

} // namespace orvane
