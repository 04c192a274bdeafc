#include "phone/AndroidBrowser.h"
#include "core/Job.h"
#include "core/Jobs.h"
#include "core/TabList.h"
#include "kit/CommandBinding.h"
#include "kit/WindowWidgets.h"

#include "core/BrowserWindow.h"
#include "core/EntryText.h"
#include "core/ExplorerEvents.h"
#include "core/InlineRename.h"
#include "core/PinnedStore.h"
#include "core/Services.h"
#include "core/UriList.h"
#include "core/WindowCommands.h"
#include "core/WindowListing.h"
#include "fileops/FileClipboard.h"
#include "kit/EditablePathBox.h"
#include "kit/ExplorerAlert.h"
#include "kit/TransferProgressEdge.h"
#include "phone/ClipboardFolders.h"
#include "phone/PhoneClipboard.h"
#include "phone/PhoneEntry.h"
#include "phone/PhoneLocation.h"
#include "phone/SendFilesDialog.h"
#include "platform/NativePath.h"
#include "platform/Platform.h"
#include "views/FileTable.h"

#include <QClipboard>
#include <QDir>
#include <QFile>
#include <QFileDialog>
#include <QGuiApplication>
#include <QLabel>
#include <QLineEdit>
#include <QMenu>
#include <QMimeData>
#include <QPointer>
#include <QUuid>
#include <cerrno>
#include <cstring>
#include <sys/stat.h>

namespace orvane {

AndroidBrowser::AndroidBrowser(BrowserWindow& window, const QUuid& tab)
    : QObject(window.widget()), w(window), tabID(tab), phone(this) {
    phone.setSortState(std::nullopt); // the window sorts what it shows
    // While hits show, a change made to one (a rename, a delete) searches again rather than
    // putting the folder's listing in their place.
    connect(&phone, &PhoneBrowserState::listingChanged, this, [this] {
        if (!showing()) return;
        if (found.isEmpty()) return publishListing();
        w.commands().run(QStringLiteral("searchChanged"));
    });
    // A phone that can't be read says why where its items would be, not only in the status line.
    connect(&phone, &PhoneBrowserState::listed, this, [this](bool ok) {
        if (!showing()) return;
        selectPending();
        if (ok || !w.entries().empty()) return;
        w.widgets().emptyLabel->setText(phone.status());
        w.widgets().emptyLabel->show();
    });
    // A new folder is chosen and put into rename as soon as it is listed.
    connect(&phone, &PhoneBrowserState::folderListed, this, [this](const QString& name) {
        if (!showing()) return;
        selectNamed(name);
        if (w.inlineRename()) w.inlineRename()->beginInlineRename();
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
    connect(&phone, &PhoneBrowserState::transferStarted, this, [this] {
        moving = true;
        transfer = w.jobs().start(QStringLiteral("Transferring items…"), w.widget());
    });
    connect(&phone, &PhoneBrowserState::transferProgress, this, [this](double fraction) {
        if (transfer) transfer->setProgress(fraction);
    });
    connect(&phone, &PhoneBrowserState::transferFinished, this, [this] {
        moving = false;
        if (transfer) transfer->finish();
        emit idle();
    });
}

bool AndroidBrowser::showing() const {
    return w.current().scheme() == QLatin1String("android") && w.tabs().current().id == tabID;
}

void AndroidBrowser::show(const QList<PhoneItem>& chain) {
    const QList<PhoneItem>& before = phone.history();
    selectAfter.reset();
    if (chain.size() < before.size() && before.mid(0, chain.size()) == chain)
        selectAfter = before[chain.size()].id;
    // A new place shows nothing of the old one; a Refresh keeps the rows until the answer.
    found.clear();
    foundParents.clear();
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

void AndroidBrowser::selectNamed(const QString& name) {
    const std::vector<Entry>& rows = w.entries();
    for (size_t row = 0; row < rows.size(); ++row) {
        if (rows[row].name() != name) continue;
        const QModelIndex index = w.table()->model()->index(int(row), 0);
        w.table()->selectionModel()->setCurrentIndex(index, QItemSelectionModel::ClearAndSelect |
                                                                QItemSelectionModel::Rows);
        return;
    }
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
        else if (const auto hit = found.constFind(e.location); hit != found.cend())
            items << *hit;
    return items;
}

void AndroidBrowser::showFound(const QList<PhoneItem>& items,
                               const QHash<QString, QList<PhoneItem>>& parents) {
    found.clear();
    for (const PhoneItem& item : items)
        found.insert(phoneEntry(item).location, item);
    foundParents = parents;
    w.commands().refresh();
}

QList<PhoneItem> AndroidBrowser::chainTo(const PhoneItem& item) const {
    const auto parents = foundParents.constFind(item.textKey());
    if (parents == foundParents.cend()) return phone.chainTo(item);
    return QList<PhoneItem>(*parents) << item;
}

QList<PhoneItem> AndroidBrowser::selectedItems() const {
    return showing() ? itemsOf(w.selected()) : QList<PhoneItem>();
}

// A double click or Return opens the one folder chosen; files open with the media issue's viewer.
void AndroidBrowser::open(const std::vector<Entry>& entries) {
    const QList<PhoneItem> items = itemsOf(entries);
    if (items.size() == 1 && items.front().folder && !phone.busy()) phone.go(chainTo(items.front()));
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
    auto* dialog = new SendFilesDialog(w.widget());
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
    auto* dialog = new QFileDialog(w.widget(), Platform::instance().word(PlatformWord::CopyToComputer));
    dialog->setAttribute(Qt::WA_DeleteOnClose);
    dialog->setFileMode(QFileDialog::Directory);
    dialog->setOption(QFileDialog::ShowDirsOnly);
    dialog->setLabelText(QFileDialog::Accept, QStringLiteral("Copy here"));
    dialog->setAccessibleName(QStringLiteral("Choose a folder to copy into"));
    connect(dialog, &QFileDialog::fileSelected, this, [self = QPointer(this), items](const QString& folder) {
        if (self) self->phone.runDownload(items, NativePath::encode(folder));
    });
    dialog->open();
}

// ---------------------------------------------------------------- file commands

namespace {
QString phoneWord() {
    return QStringLiteral("Android USB");
}

bool isSymbolicLink(const QString& path) {
    struct stat status {};
    return ::lstat(NativePath::encode(path).constData(), &status) != 0 || S_ISLNK(status.st_mode);
}
} // namespace

PhoneControls AndroidBrowser::controls() const {
    return phone.controls(selectedItems(), canPasteFiles());
}

// Phone items to move, or local files (none of them a link) to send.
bool AndroidBrowser::canPasteFiles() const {
    if (phone.busy() || phone.history().isEmpty()) return false;
    if (!PhoneClipboard::read(QGuiApplication::clipboard()->mimeData()).isEmpty()) return true;
    const QList<QUrl> urls = w.services().clipboard().fileUrls();
    return !urls.isEmpty() && std::none_of(urls.begin(), urls.end(),
                                           [](const QUrl& url) { return isSymbolicLink(url.toLocalFile()); });
}

// Real files on the clipboard, usable by any program: it changes only once they are all here.
void AndroidBrowser::copyFiles() {
    const QList<PhoneItem> items = selectedItems();
    if (!phone.canCopyFiles(items)) return;
    QString error;
    const QString folder = ClipboardFolders::shared().make(error);
    if (folder.isEmpty()) return phone.unlock(error);
    FileClipboard* clipboard = &w.services().clipboard(); // outlives the window
    phone.runDownload(items, NativePath::encode(folder),
                      [folder, items, clipboard](const std::optional<QString>& error) {
                          if (error) return ClipboardFolders::shared().discard(folder);
                          QList<QUrl> urls;
                          for (const PhoneItem& item : items)
                              urls << QUrl::fromLocalFile(folder + u'/' + item.name);
                          ClipboardFolders::shared().hold(folder);
                          clipboard->setClipboard(urls, false);
                      });
}

// Only a note of handles: nothing moves until a paste in a phone folder.
void AndroidBrowser::cutFiles() {
    const QList<PhoneItem> items = selectedItems();
    if (!phone.canCopyFiles(items)) return;
    auto* data = new QMimeData;
    PhoneClipboard::write(items, *data);
    QGuiApplication::clipboard()->setMimeData(data);
}

void AndroidBrowser::pasteFiles() {
    if (!canPasteFiles()) return;
    const PhoneItem target = phone.history().last();
    const QList<PhoneItem> noted = PhoneClipboard::read(QGuiApplication::clipboard()->mimeData());
    if (!noted.isEmpty()) return phone.moveItems(noted, target, phone.history());
    QList<QByteArray> paths;
    QStringList names;
    for (const QUrl& url : w.services().clipboard().fileUrls()) {
        paths << NativePath::encode(url.toLocalFile());
        names << url.toLocalFile().section(u'/', -1);
    }
    for (const PhoneItem& item : phone.baseItems())
        if (names.contains(item.name))
            return phone.unlock(
                QStringLiteral("A file with that name already exists. Rename it before pasting."));
    phone.runUpload(paths, target);
}

// "Android USB/Internal storage/DCIM/IMG_1.jpg", one line per item.
void AndroidBrowser::copyPaths() {
    QStringList chain{phoneWord()};
    for (const PhoneItem& folder : phone.history())
        chain << folder.name;
    QStringList lines;
    for (const PhoneItem& item : selectedItems())
        lines << (QStringList(chain) << item.name).join(u'/');
    if (!lines.isEmpty()) QGuiApplication::clipboard()->setText(lines.join(u'\n'));
}

void AndroidBrowser::selectAllItems() {
    if (!phone.busy() && !phone.items().isEmpty()) w.table()->selectAll();
}

void AndroidBrowser::createFolder() {
    if (!controls().newFolder) return;
    w.commands().run(QStringLiteral("clearSearch"));
    phone.createFolder();
}

// The window's own inline editor, over the name cell; its text comes back through renameTo.
void AndroidBrowser::renameSelection() {
    if (controls().rename && w.inlineRename()) w.inlineRename()->beginInlineRename();
}

void AndroidBrowser::renameTo(const Entry& entry, const QString& name) {
    const QList<PhoneItem> items = itemsOf({entry});
    if (items.isEmpty()) return;
    selectAfter = items.front().id;
    phone.rename(items.front(), name);
}

// The phone has no Trash: the confirmation is never skipped, whichever way the command came.
void AndroidBrowser::deleteSelection() {
    const QList<PhoneItem> items = selectedItems();
    if (!controls().remove) return;
    const bool sure = ExplorerAlert::confirm(
        w.widget(), ExplorerAlert::Kind::Destructive,
        QStringLiteral("Delete ") + QString::number(items.size()) +
            QStringLiteral(" item(s) from the phone?"),
        QStringLiteral("This permanently deletes the selected items, including folder contents. Android USB "
                       "has no Trash and this cannot be undone."),
        QStringLiteral("Delete permanently"), QStringLiteral("trash"));
    if (sure) phone.deleteItems(items);
}

void AndroidBrowser::showProperties() {
    const QList<PhoneItem> items = selectedItems();
    if (items.isEmpty()) return;
    QStringList lines;
    for (const PhoneItem& item : items)
        lines << item.name + QStringLiteral(" — ") +
                     (item.folder ? QStringLiteral("Folder") : byteCountText(qint64(item.size)));
    const QString title =
        items.size() == 1 ? items.front().name : QString::number(items.size()) + QStringLiteral(" items");
    w.showError(title, lines.join(u'\n'));
}

void AndroidBrowser::pinSelection() {
    const QList<PhoneItem> items = selectedItems();
    if (phone.busy() || items.size() != 1 || !items.front().folder) return;
    w.services().pins().pin(PhoneLocation::url(chainTo(items.front())));
    phone.unlock(QStringLiteral("Pinned to Quick access — saved"));
    w.commands().refresh();
}

// With a selection, what can be done to it; on the background (which has cleared the selection
// first, so a stale one can't leak in), what can be done here, and never a delete.
void AndroidBrowser::fillContextMenu(QMenu* menu) {
    const QList<PhoneItem> chosen = selectedItems();
    const PhoneControls c = controls();
    const bool free = !phone.busy();
    auto add = [this, menu](const char* name, const QString& title, bool allowed) {
        QAction* action = CommandBinding::addTo(w.commands(), menu, QLatin1String(name), {}, title);
        action->setEnabled(allowed && w.commands().isEnabled(QLatin1String(name)));
    };
    if (chosen.isEmpty()) {
        add("pasteAction", QStringLiteral("Paste"), canPasteFiles());
        add("sendToAndroid", QStringLiteral("Send files…"), c.send);
        add("newFolder", QStringLiteral("New folder"), c.newFolder);
        add("selectAll", QStringLiteral("Select all"), free && !phone.items().isEmpty());
        add("refreshAction", QStringLiteral("Refresh"), true);
        return;
    }
    const bool oneFolder = chosen.size() == 1 && chosen.front().folder;
    add("openSelected", QStringLiteral("Open"), free && chosen.size() == 1);
    menu->addSeparator();
    add("openNewTabSelected", QStringLiteral("Open in new tab"), oneFolder);
    add("pinAction", QStringLiteral("Pin to Quick access"), oneFolder);
    add("compressAction", QStringLiteral("Compress"), c.copyToComputer && !phone.history().isEmpty());
    add("cutAction", QStringLiteral("Cut"), c.copyToComputer);
    add("copyAction", QStringLiteral("Copy"), c.copyToComputer);
    add("saveFromAndroid", Platform::instance().word(PlatformWord::CopyToComputer) + u'…', c.copyToComputer);
    add("copyPathAction", QStringLiteral("Copy as path"), true);
    menu->addSeparator();
    add("renameAction", QStringLiteral("Rename"), c.rename);
    add("trashAction", QStringLiteral("Delete from phone…"), free && !phone.history().isEmpty());
    add("propertiesAction", QStringLiteral("Properties"), true);
}

// ---------------------------------------------------------------- drops

std::optional<AndroidBrowser::DropTarget> AndroidBrowser::dropTarget(std::optional<int> row) const {
    if (phone.busy() || w.busy() || phone.history().isEmpty()) return std::nullopt;
    if (row && size_t(*row) < w.entries().size()) {
        const QList<PhoneItem> under = itemsOf({w.entries()[size_t(*row)]});
        if (!under.isEmpty() && under.front().folder)
            return DropTarget{under.front(), chainTo(under.front())};
    }
    return DropTarget{phone.history().last(), phone.history()};
}

Qt::DropAction AndroidBrowser::dropOperation(const QMimeData* data, std::optional<int> row) const {
    if (!data || !dropTarget(row)) return Qt::IgnoreAction;
    if (!PhoneClipboard::read(data).isEmpty()) return Qt::MoveAction;
    // Asking for the URLs themselves could make another program fetch its files; that waits for the drop.
    return data->hasUrls() ? Qt::CopyAction : Qt::IgnoreAction;
}

bool AndroidBrowser::performDrop(const QMimeData* data, std::optional<int> row) {
    const Qt::DropAction action = dropOperation(data, row);
    const std::optional<DropTarget> target = dropTarget(row);
    if (action == Qt::IgnoreAction || !target) return false;
    if (action == Qt::MoveAction) {
        phone.moveItems(PhoneClipboard::read(data), target->folder, target->parents);
        return true;
    }
    // Read as bytes, so a dropped name that is not UTF-8 is the file sent, and not another one.
    const QList<QUrl> urls = UriList::read(*data);
    const bool local = !urls.isEmpty() && data->urls().size() == urls.size() &&
                       std::all_of(urls.begin(), urls.end(), [](const QUrl& url) {
                           return url.isLocalFile() && NativePath::exists(url.toLocalFile());
                       });
    if (!local) return false;
    QList<QByteArray> paths;
    for (const QUrl& url : urls)
        paths << NativePath::encode(url.toLocalFile());
    phone.runUpload(paths, target->folder);
    return true;
}

} // namespace orvane
