#include "phone/PhoneBrowserState.h"

#include "phone/PhoneAddress.h"
#include "phone/PhoneBridge.h"
#include "phone/PhoneProtocol.h"
#include "phone/PhoneTransfer.h"
#include "platform/Platform.h"

#include <QPointer>
#include <QSet>

namespace orvane {

namespace {
const QString phoneTitle = QStringLiteral("Android USB");
}

PhoneBrowserState::PhoneBrowserState(QObject* parent) : QObject(parent) {}

QString PhoneBrowserState::countText(qsizetype count) {
    return QString::number(count) + QStringLiteral(" items • Double-click a folder to open it");
}

// A new place makes any listing still on its way stale, and a reading lock goes with it.
void PhoneBrowserState::setHistory(const QList<PhoneItem>& history) {
    if (history != chain) {
        chain = history;
        pendingFolder.reset();
        base.clear();
        relist();
    }
    ++generation;
    if (reading) {
        reading = false;
        locked = false;
    }
}

void PhoneBrowserState::setSortState(const std::optional<SortState>& state) {
    sort = state;
    relist();
}

void PhoneBrowserState::setShowHidden(bool show) {
    if (show == showHidden) return;
    showHidden = show;
    relist();
}

void PhoneBrowserState::relist() {
    listing = PhoneListing::make(base, sort, showHidden);
    emit listingChanged();
}

void PhoneBrowserState::reload() {
    if (locked) {
        stale = stale || !reading;
        return;
    }
    stale = false;
    lock(QStringLiteral("Reading phone…"));
    reading = true;
    const QStringList request = chain.isEmpty() ? PhoneProtocol::storages()
                                                : PhoneProtocol::list(chain.last().storage, chain.last().id);
    PhoneBridge::run(request, nullptr, [self = QPointer(this), asked = generation](const PhoneReply& reply) {
        if (self && self->generation == asked) self->answered(reply);
    });
}

// A failed listing empties the list and shows the bridge's text; Refresh is how to try again.
void PhoneBrowserState::answered(const PhoneReply& reply) {
    reading = false;
    base = PhoneListing::byName(reply.items.value_or(QList<PhoneItem>()));
    relist();
    const std::optional<QString> created = std::exchange(pendingFolder, std::nullopt);
    unlock(reply.error.value_or(PhoneBridge::takeNotice().value_or(countText(listing.items.size()))));
    emit listed(!reply.error);
    if (created && !reply.error) emit folderListed(*created);
}

void PhoneBrowserState::go(const QList<PhoneItem>& target) {
    if (!locked) emit navigateTo(target);
}

void PhoneBrowserState::back() {
    if (!chain.isEmpty()) go(chain.mid(0, chain.size() - 1));
}

void PhoneBrowserState::openItem(const PhoneItem& item) {
    if (item.folder) go(chainTo(item));
}

QList<PhoneItem> PhoneBrowserState::chainTo(const PhoneItem& folder) const {
    return QList<PhoneItem>(chain) << folder;
}

void PhoneBrowserState::resolveAddress(const QString& text) {
    if (locked) return;
    lock(QStringLiteral("Finding folder…"));
    PhoneAddress::resolve(text, [self = QPointer(this)](const PhoneAddress::Outcome& outcome) {
        if (!self) return;
        self->unlock(outcome.chain ? QStringLiteral("Ready") : outcome.error);
        if (outcome.chain) self->go(*outcome.chain);
    });
}

void PhoneBrowserState::lock(const QString& message) {
    locked = true;
    statusText = message;
    emit busyChanged(true);
    emit statusChanged(statusText);
}

void PhoneBrowserState::unlock(const QString& message) {
    locked = false;
    reading = false;
    statusText = message;
    emit busyChanged(false);
    emit statusChanged(statusText);
    if (stale) reload();
}

QString PhoneBrowserState::heading() const {
    QStringList names{phoneTitle};
    for (const PhoneItem& item : chain)
        names << item.name;
    return names.join(QStringLiteral(" / "));
}

QString PhoneBrowserState::title() const {
    return chain.isEmpty() ? phoneTitle : chain.last().name;
}

QList<PhoneItem> PhoneBrowserState::itemsAt(const QList<int>& rows) const {
    QList<PhoneItem> picked;
    for (int row : rows)
        if (row >= 0 && row < listing.items.size()) picked << listing.items[row];
    return picked;
}

bool PhoneBrowserState::canCopyFiles(const QList<PhoneItem>& selection) const {
    return controls(selection).copyToComputer;
}

PhoneControls PhoneBrowserState::controls(const QList<PhoneItem>& selection, bool canPaste, bool canPin,
                                          bool pinned) const {
    PhoneControlFacts facts;
    facts.busy = locked;
    facts.atTop = chain.isEmpty();
    facts.selected = int(selection.size());
    for (const PhoneItem& item : selection)
        facts.storageSelected = facts.storageSelected || item.id == phoneRootHandle;
    facts.canPaste = canPaste;
    facts.canPin = canPin;
    facts.pinned = pinned;
    return PhoneControls::from(facts);
}

// Hidden items count too: the phone would refuse them just the same.
std::optional<QString> PhoneBrowserState::sendRefusal(const QStringList& names) const {
    if (chain.isEmpty()) return QStringLiteral("Open the phone storage or a folder first.");
    QSet<QString> here;
    for (const PhoneItem& item : base)
        here.insert(item.name);
    for (const QString& name : names)
        if (here.contains(name))
            return QStringLiteral("A file with that name already exists. Rename it before sending.");
    return std::nullopt;
}

void PhoneBrowserState::runUpload(const QList<QByteArray>& paths, const PhoneItem& parent) {
    transfer(QStringLiteral("Sending to phone…"), QStringLiteral("Files sent"), true,
             [paths, parent](const std::shared_ptr<PhoneTransfer>& t, Done done) {
                 t->upload(paths, parent, done);
             },
             {});
}

void PhoneBrowserState::runDownload(const QList<PhoneItem>& items, const QByteArray& folder, Done done) {
    transfer(
        QStringLiteral("Copying from phone…"), Platform::instance().word(PlatformWord::FilesCopiedToComputer),
        false,
        [items, folder](const std::shared_ptr<PhoneTransfer>& t, Done finished) {
            t->download(items, folder, finished);
        },
        std::move(done));
}

// The tab and the window are held for the whole transfer; the progress edge shows the file in hand.
void PhoneBrowserState::transfer(const QString& message, const QString& success, bool reloadAfter,
                                 const Start& start, Done done) {
    if (locked) return;
    lock(message);
    emit transferStarted();
    auto job = std::make_shared<PhoneTransfer>();
    job->progress = [self = QPointer(this)](double fraction) {
        if (self) emit self->transferProgress(fraction);
    };
    start(job, [self = QPointer(this), success, reloadAfter, done](const std::optional<QString>& error) {
        if (!self) return;
        emit self->transferFinished();
        self->unlock(error.value_or(success));
        if (!error && reloadAfter) self->reload();
        if (done) done(error);
    });
}

} // namespace orvane

namespace orvane {

void PhoneBrowserState::mutate(const QStringList& args, const QString& message,
                               std::function<void(const PhoneReply&)> replied) {
    lock(message);
    PhoneBridge::run(args, nullptr, [self = QPointer(this), replied](const PhoneReply& reply) {
        if (!self) return;
        if (replied) replied(reply);
        self->unlock(reply.error.value_or(QStringLiteral("Done")));
        if (!reply.error) self->reload();
    });
}

std::optional<QString> PhoneBrowserState::renameRefusal(const QList<PhoneItem>& siblings,
                                                        const PhoneItem& item, const QString& name) {
    const QString refusal = QStringLiteral("Choose a valid, unique name.");
    if (!PhoneTransfer::valid(name)) return refusal;
    for (const PhoneItem& other : siblings)
        if (other.id != item.id && other.name == name) return refusal;
    return std::nullopt;
}

void PhoneBrowserState::rename(const PhoneItem& item, const QString& name) {
    if (locked || chain.isEmpty() || name == item.name) return;
    if (const std::optional<QString> refusal = renameRefusal(base, item, name)) return unlock(*refusal);
    mutate(PhoneProtocol::rename(item.id, name), QStringLiteral("Renaming…"));
}

QString PhoneBrowserState::freeFolderName(const QList<PhoneItem>& siblings) {
    QSet<QString> taken;
    for (const PhoneItem& item : siblings)
        taken.insert(item.name);
    QString name = QStringLiteral("New folder");
    for (int n = 2; taken.contains(name); ++n)
        name = QStringLiteral("New folder (%1)").arg(n);
    return name;
}

void PhoneBrowserState::createFolder() {
    if (locked || chain.isEmpty()) return;
    const QString name = freeFolderName(base);
    pendingFolder = name;
    const PhoneItem& here = chain.last();
    mutate(PhoneProtocol::mkdir(here.storage, here.id, name), QStringLiteral("Creating folder…"),
           [self = QPointer(this)](const PhoneReply& reply) {
               if (reply.error) self->pendingFolder.reset();
           });
}

void PhoneBrowserState::deleteItems(const QList<PhoneItem>& items) {
    if (locked || chain.isEmpty() || items.isEmpty()) return;
    deleteNext(items);
}

void PhoneBrowserState::deleteNext(QList<PhoneItem> items) {
    if (items.isEmpty()) {
        unlock(QStringLiteral("Deleted"));
        reload();
        return;
    }
    const PhoneItem item = items.takeFirst();
    lock(QStringLiteral("Deleting ") + item.name + u'…');
    PhoneBridge::remove(item.id, [self = QPointer(this), items](const PhoneReply& reply) {
        if (!self) return;
        if (reply.error) return self->unlock(*reply.error);
        self->deleteNext(items);
    });
}

QString PhoneBrowserState::intoItselfText() {
    return QStringLiteral("A folder cannot be moved into itself or its descendants.");
}

QString PhoneBrowserState::moveClashText() {
    return QStringLiteral("An item with that name already exists. Nothing was moved.");
}

// The chain settles a move into the item itself or below it without asking the phone; the names of
// the target are all checked before the first item moves.
void PhoneBrowserState::moveItems(const QList<PhoneItem>& items, const PhoneItem& target,
                                  const QList<PhoneItem>& parents) {
    if (locked || items.isEmpty()) return;
    for (const PhoneItem& item : items) {
        const bool above = std::any_of(parents.begin(), parents.end(), [&](const PhoneItem& p) {
            return p.id == item.id && p.storage == item.storage;
        });
        if (item.id == target.id || above) return unlock(intoItselfText());
    }
    lock(QStringLiteral("Checking destination…"));
    PhoneBridge::list(target.storage, target.id,
                      [self = QPointer(this), items, target](const PhoneReply& reply) {
                          if (!self) return;
                          if (reply.error) return self->unlock(*reply.error);
                          QSet<QString> there;
                          for (const PhoneItem& item : reply.items.value_or(QList<PhoneItem>()))
                              there.insert(item.name);
                          for (const PhoneItem& item : items)
                              if (there.contains(item.name)) return self->unlock(moveClashText());
                          emit self->transferStarted();
                          self->moveNext(items, target, items.size());
                      });
}

void PhoneBrowserState::moveNext(QList<PhoneItem> items, const PhoneItem& target, qsizetype total) {
    if (items.isEmpty()) {
        emit transferFinished();
        unlock(QStringLiteral("Moved"));
        reload();
        return;
    }
    const PhoneItem item = items.takeFirst();
    lock(QStringLiteral("Moving ") + item.name + u'…');
    PhoneBridge::move(item.id, target.storage, target.id,
                      [self = QPointer(this), items, target, total](const PhoneReply& reply) {
                          if (!self) return;
                          if (reply.error) {
                              emit self->transferFinished();
                              return self->unlock(*reply.error);
                          }
                          emit self->transferProgress(double(total - items.size()) / double(total));
                          self->moveNext(items, target, total);
                      });
}

} // namespace orvane
