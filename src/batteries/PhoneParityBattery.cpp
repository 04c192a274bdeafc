#include "batteries/PhoneParityBattery.h"

#include "phone/PhoneBridge.h"
#include "phone/PhoneBrowserState.h"
#include "phone/PhoneProtocol.h"

#include <QDir>
#include <QDirIterator>
#include <QEventLoop>
#include <QFile>
#include <QRandomGenerator>
#include <QUuid>

namespace orvane {

namespace {

// Every item below `root`, hidden ones too, with the bytes of each file.
QMap<QString, QByteArray> localTree(const QString& root) {
    QMap<QString, QByteArray> found;
    QDirIterator it(root, QDir::AllEntries | QDir::Hidden | QDir::NoDotAndDotDot,
                    QDirIterator::Subdirectories);
    while (it.hasNext()) {
        const QString path = it.next();
        QFile file(path);
        const bool folder = it.fileInfo().isDir();
        found.insert(path.mid(root.size() + 1),
                     folder ? QByteArray("<folder>")
                            : (file.open(QIODevice::ReadOnly) ? file.readAll() : "?"));
    }
    return found;
}

// Waits until the tab is free again, through any reload that follows a command.
void settle(PhoneBrowserState& state) {
    while (state.busy()) {
        QEventLoop loop;
        QObject::connect(&state, &PhoneBrowserState::busyChanged, &loop, [&](bool busy) {
            if (!busy) loop.quit();
        });
        loop.exec();
    }
}

QByteArray randomBytes(qsizetype size) {
    QByteArray data(size, Qt::Uninitialized);
    QRandomGenerator::global()->fillRange(reinterpret_cast<quint32*>(data.data()), size / 4);
    return data;
}
} // namespace

PhoneParityBattery::PhoneParityBattery() : out(stdout) {}

bool PhoneParityBattery::check(const QString& label, bool ok, const QString& detail) {
    out << (ok ? "PASS: " : "FAIL: ") << label;
    if (!ok && !detail.isEmpty()) out << " (" << detail << ')';
    out << Qt::endl;
    failures += ok ? 0 : 1;
    return ok;
}

PhoneReply PhoneParityBattery::request(const QStringList& args, QList<double>* progress) {
    PhoneReply reply;
    bool finished = false;
    QEventLoop loop;
    PhoneBridge::run(
        args,
        [progress](double fraction) {
            if (progress) progress->append(fraction);
        },
        [&](const PhoneReply& answer) {
            reply = answer;
            finished = true;
            loop.quit();
        });
    if (!finished) loop.exec();
    return reply;
}

std::optional<PhoneItem> PhoneParityBattery::find(quint32 parent, const QString& name, QString* error) {
    const PhoneReply listing = request(PhoneProtocol::list(storage, parent));
    if (error) *error = listing.error.value_or(QString());
    for (const PhoneItem& item : listing.items.value_or(QList<PhoneItem>()))
        if (item.name == name) return item;
    return std::nullopt;
}

std::optional<quint32> PhoneParityBattery::makeFolder(quint32 parent, const QString& name) {
    const PhoneReply reply = request(PhoneProtocol::mkdir(storage, parent, name));
    if (reply.error || !reply.id) {
        check(QStringLiteral("mkdir of \"%1\" answers an id").arg(name), false,
              reply.error.value_or(QString()));
        return std::nullopt;
    }
    return reply.id;
}

int PhoneParityBattery::run() {
    const PhoneReply storages = request({});
    const QList<PhoneItem> roots = storages.items.value_or(QList<PhoneItem>());
    if (!check(QStringLiteral("the phone lists its storages as roots"),
               !storages.error && !roots.isEmpty() && roots.first().id == phoneRootHandle &&
                   roots.first().folder,
               storages.error.value_or(QString())))
        return 1;
    storage = roots.first().storage;
    check(QStringLiteral("scan finds the phone"), !request(PhoneProtocol::scan()).error);
    const QString name =
        QStringLiteral("Orvane-parity-") + QUuid::createUuid().toString(QUuid::WithoutBraces);
    const std::optional<quint32> made = makeFolder(phoneRootHandle, name);
    if (!check(QStringLiteral("mkdir answers the new folder's id"), made.has_value())) return 1;
    scratch = *made;
    scratchItem = find(phoneRootHandle, name).value_or(PhoneItem());
    roundTrip(QStringLiteral("a 1 MiB file makes the round trip byte for byte"),
              QStringLiteral("parity-1MiB.bin"), randomBytes(1 << 20));
    roundTrip(QStringLiteral("a file with an Arabic name makes the round trip"),
              QStringLiteral("ملف التجربة.txt"), QStringLiteral("مرحبا بالعالم\n").toUtf8());
    folders();
    thumbnail();
    browsing();
    transfers();
    fileOperations();
    removeScratch();
    out << (failures == 0 ? "Phone parity battery passed" : "Phone parity battery failed") << Qt::endl;
    return failures == 0 ? 0 : 1;
}

void PhoneParityBattery::roundTrip(const QString& label, const QString& name, const QByteArray& content) {
    const QString source =
        local.filePath(QStringLiteral("out-") + QUuid::createUuid().toString(QUuid::Id128));
    const QString sent = source + u'/' + name;
    QFile file(sent);
    if (!local.isValid() || !QDir().mkpath(source) || !file.open(QIODevice::WriteOnly) ||
        file.write(content) != content.size()) {
        check(label, false, QStringLiteral("cannot write a local file"));
        return;
    }
    file.close();
    QList<double> progress;
    const PhoneReply put = request(PhoneProtocol::put(storage, scratch, {sent}), &progress);
    QString error = put.error.value_or(QString());
    const std::optional<PhoneItem> item = put.error ? std::nullopt : find(scratch, name, &error);
    const QString back = local.filePath(QStringLiteral("back-") + QUuid::createUuid().toString(QUuid::Id128));
    const PhoneReply get = item ? request(PhoneProtocol::get({{item->id, back}})) : PhoneReply();
    if (get.error) error = *get.error;
    QFile copy(back);
    const bool same = item && !get.error && item->size == quint64(content.size()) &&
                      copy.open(QIODevice::ReadOnly) && copy.readAll() == content;
    check(label, same, error.isEmpty() ? QStringLiteral("bytes or size differ") : error);
    (content.size() >= (1 << 20) ? bigFile : arabicFile) = item;
}

void PhoneParityBattery::folders() {
    const std::optional<quint32> empty = makeFolder(scratch, QStringLiteral("Empty folder"));
    if (!empty) return;
    const std::optional<PhoneItem> listed = find(scratch, QStringLiteral("Empty folder"));
    const PhoneReply inside = request(PhoneProtocol::list(storage, *empty));
    check(QStringLiteral("an empty folder survives and lists as empty"),
          listed && listed->folder && listed->id == *empty && !inside.error && inside.items &&
              inside.items->isEmpty(),
          inside.error.value_or(QString()));
    const PhoneReply renamed = request(PhoneProtocol::rename(*empty, QStringLiteral("Renamed folder")));
    const std::optional<PhoneItem> after = find(scratch, QStringLiteral("Renamed folder"));
    check(QStringLiteral("rename keeps the handle"), !renamed.error && after && after->id == *empty,
          renamed.error.value_or(QString()));
    if (bigFile) {
        const quint32 id = bigFile->id;
        const PhoneReply moved = request(PhoneProtocol::move(id, storage, *empty));
        const PhoneReply named = request(PhoneProtocol::rename(id, QStringLiteral("moved.bin")));
        const std::optional<PhoneItem> there = find(*empty, QStringLiteral("moved.bin"));
        check(QStringLiteral("move keeps the handle for a rename after it"),
              !moved.error && !named.error && there && there->id == bigFile->id &&
                  there->size == bigFile->size,
              moved.error.value_or(named.error.value_or(QString())));
    }
    const PhoneReply removed = request(PhoneProtocol::remove(*empty));
    QString error;
    const bool gone = !find(scratch, QStringLiteral("Renamed folder"), &error) && error.isEmpty();
    check(QStringLiteral("delete takes a folder with its contents"), !removed.error && gone,
          removed.error.value_or(error));
}

void PhoneParityBattery::thumbnail() {
    if (!arabicFile) return;
    const QString target =
        local.filePath(QUuid::createUuid().toString(QUuid::Id128) + QStringLiteral(".jpg"));
    const PhoneReply reply = request(PhoneProtocol::thumb(arabicFile->id, target));
    check(QStringLiteral("a file without a thumbnail gives the exact literal"),
          reply.error == std::optional<QString>(QStringLiteral("No thumbnail available from phone.")),
          reply.error.value_or(QStringLiteral("no error")));
}

QString PhoneParityBattery::makeLocal(const QString& relative, const QByteArray& content) {
    const QString path = local.filePath(relative);
    QDir().mkpath(QFileInfo(path).absolutePath());
    QFile file(path);
    if (file.open(QIODevice::WriteOnly)) file.write(content);
    return path;
}

std::optional<QString> PhoneParityBattery::transfer(
    const std::function<void(PhoneTransfer&, std::function<void(std::optional<QString>)>)>& start) {
    std::optional<QString> error;
    bool finished = false;
    QEventLoop loop;
    auto job = std::make_shared<PhoneTransfer>();
    start(*job, [&](const std::optional<QString>& outcome) {
        error = outcome;
        finished = true;
        loop.quit();
    });
    if (!finished) loop.exec();
    return error;
}

// A folder "Zulu" sorts after a file "Alpha.txt" by name: folders don't go first on a phone.
void PhoneParityBattery::browsing() {
    makeFolder(scratch, QStringLiteral("Zulu"));
    const QString alpha = makeLocal(QStringLiteral("browse/Alpha.txt"), "alpha");
    request(PhoneProtocol::put(storage, scratch, {alpha}));
    PhoneBrowserState state;
    state.setHistory({scratchItem});
    QEventLoop loop;
    QObject::connect(&state, &PhoneBrowserState::busyChanged, &loop, [&](bool busy) {
        if (!busy) loop.quit();
    });
    state.reload();
    loop.exec();
    QStringList names;
    for (const PhoneItem& item : state.items())
        names << item.name;
    const qsizetype alphaAt = names.indexOf(QStringLiteral("Alpha.txt"));
    const qsizetype zuluAt = names.indexOf(QStringLiteral("Zulu"));
    check(QStringLiteral("a phone folder lists in name order with folders and files mixed"),
          alphaAt >= 0 && zuluAt > alphaAt, names.join(QStringLiteral(", ")));
    check(QStringLiteral("the status line counts the listing"),
          state.status() == PhoneBrowserState::countText(names.size()), state.status());
}

void PhoneParityBattery::transfers() {
    makeLocal(QStringLiteral("trip/Trip/Empty/.keep"));
    QFile::remove(local.filePath(QStringLiteral("trip/Trip/Empty/.keep")));
    makeLocal(QStringLiteral("trip/Trip/big.bin"), randomBytes(1 << 20));
    makeLocal(QStringLiteral("trip/Trip/مستند.txt"), QStringLiteral("نص\n").toUtf8());
    const QByteArray trip = QFile::encodeName(local.filePath(QStringLiteral("trip/Trip")));
    const std::optional<QString> sent =
        transfer([&](PhoneTransfer& t, auto done) { t.upload({trip}, scratchItem, done); });
    const std::optional<PhoneItem> onPhone = find(scratch, QStringLiteral("Trip"));
    const QString back = local.filePath(QStringLiteral("back"));
    QDir().mkpath(back);
    const std::optional<QString> got = onPhone ? transfer([&](PhoneTransfer& t, auto done) {
        t.download({*onPhone}, QFile::encodeName(back), done);
    })
                                               : QStringLiteral("not on the phone");
    check(QStringLiteral("a folder with an empty folder, 1 MiB and an Arabic name makes the round trip"),
          !sent && !got && localTree(back + QStringLiteral("/Trip")) == localTree(QFile::decodeName(trip)),
          sent.value_or(got.value_or(QStringLiteral("trees differ"))));

    const PhoneReply before = request(PhoneProtocol::list(storage, scratch));
    const std::optional<QString> again =
        transfer([&](PhoneTransfer& t, auto done) { t.upload({trip}, scratchItem, done); });
    const QString link = local.filePath(QStringLiteral("linked/Linked"));
    QDir().mkpath(link);
    QFile::link(QStringLiteral("/"), link + QStringLiteral("/root"));
    const std::optional<QString> linked = transfer(
        [&](PhoneTransfer& t, auto done) { t.upload({QFile::encodeName(link)}, scratchItem, done); });
    const PhoneReply after = request(PhoneProtocol::list(storage, scratch));
    check(QStringLiteral("refused sends leave the phone as it was"),
          again == PhoneTransfer::existsText() &&
              linked == QStringLiteral("Unsupported or inaccessible source: root") &&
              before.items == after.items,
          again.value_or(QStringLiteral("sent twice")));

    const QMap<QString, QByteArray> mine = localTree(back);
    PhoneItem gone = onPhone.value_or(PhoneItem());
    gone.id = 0xFFFFFFF0u;
    gone.folder = false;
    gone.name = QStringLiteral("gone.bin");
    const std::optional<QString> failed =
        transfer([&](PhoneTransfer& t, auto done) { t.download({gone}, QFile::encodeName(back), done); });
    check(QStringLiteral("a failed get leaves no file behind, staged or final"),
          failed.has_value() && localTree(back) == mine, failed.value_or(QStringLiteral("no error")));
}

// Rename, move and delete as the window's commands run them: refusals before anything is sent,
// handles that follow the object, and nothing moved when one name clashes.
void PhoneParityBattery::fileOperations() {
    const std::optional<quint32> into = makeFolder(scratch, QStringLiteral("Ops target"));
    if (!into) return;
    request(PhoneProtocol::put(storage, scratch, {makeLocal(QStringLiteral("ops/ops.txt"), "ops")}));
    request(PhoneProtocol::put(storage, *into, {makeLocal(QStringLiteral("ops/Zulu"), "z")}));
    PhoneBrowserState state;
    state.setHistory({scratchItem});
    state.reload();
    settle(state);
    const auto item = [&](const QString& name) {
        for (const PhoneItem& i : state.baseItems())
            if (i.name == name) return i;
        return PhoneItem();
    };
    const PhoneItem ops = item(QStringLiteral("ops.txt"));
    const PhoneItem target = item(QStringLiteral("Ops target"));
    const QList<PhoneItem> inside = state.chainTo(target);
    state.rename(ops, QStringLiteral("Zulu"));
    check(QStringLiteral("a rename to a sibling's name is refused before anything is sent"),
          state.status() == QStringLiteral("Choose a valid, unique name.") && find(scratch, ops.name),
          state.status());
    state.rename(ops, QStringLiteral("ops renamed.txt"));
    settle(state);
    const std::optional<PhoneItem> renamed = find(scratch, QStringLiteral("ops renamed.txt"));
    check(QStringLiteral("the rename command keeps the handle"), renamed && renamed->id == ops.id,
          state.status());
    state.moveItems({target}, target, inside);
    const QString itself = state.status();
    state.moveItems({item(QStringLiteral("ops renamed.txt")), item(QStringLiteral("Zulu"))}, target, inside);
    settle(state);
    check(QStringLiteral("a move into itself or onto a clashing name moves nothing"),
          itself == PhoneBrowserState::intoItselfText() &&
              state.status() == PhoneBrowserState::moveClashText() &&
              find(scratch, QStringLiteral("ops renamed.txt")) && find(scratch, QStringLiteral("Zulu")),
          itself + u'/' + state.status());
    state.moveItems({item(QStringLiteral("ops renamed.txt"))}, target, inside);
    settle(state);
    const std::optional<PhoneItem> moved = find(*into, QStringLiteral("ops renamed.txt"));
    check(QStringLiteral("the move command keeps the handle and leaves the old parent"),
          moved && moved->id == ops.id && !find(scratch, QStringLiteral("ops renamed.txt")), state.status());
    state.deleteItems({item(QStringLiteral("Ops target")), item(QStringLiteral("Zulu"))});
    settle(state);
    check(QStringLiteral("the delete command takes each item, a folder with its contents"),
          !find(scratch, QStringLiteral("Ops target")) && !find(scratch, QStringLiteral("Zulu")) &&
              state.status().endsWith(QStringLiteral("Double-click a folder to open it")),
          state.status());
}

void PhoneParityBattery::removeScratch() {
    const PhoneReply removed = request(PhoneProtocol::remove(scratch));
    const PhoneReply listing = request(PhoneProtocol::list(storage, phoneRootHandle));
    bool gone = !listing.error;
    for (const PhoneItem& item : listing.items.value_or(QList<PhoneItem>()))
        gone = gone && item.id != scratch;
    check(QStringLiteral("the scratch folder is removed"), !removed.error && gone,
          removed.error.value_or(listing.error.value_or(QString())));
}

} // namespace orvane
