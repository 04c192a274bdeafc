#include "phone/PhoneTransfer.h"

#include "phone/PhoneBridge.h"
#include "platform/NoReplaceRename.h"

#include <QCoreApplication>
#include <QFile>
#include <QSet>
#include <QThreadPool>
#include <QUuid>
#include <cerrno>
#include <cstring>
#include <sys/stat.h>
#include <unistd.h>

namespace orvane {

namespace {
QString systemText(const QString& what, int code) {
    return what + QStringLiteral(": ") + QString::fromLocal8Bit(std::strerror(code));
}

QString alreadyThere(const QString& name) {
    return name + QStringLiteral(" already exists. Nothing was overwritten.");
}

bool present(const QByteArray& path) {
    struct stat status;
    return ::lstat(path.constData(), &status) == 0;
}

// Files that go in one request: a round trip each would cost small files more than their bytes.
// Bounded well below the bridge's longest request line.
constexpr qsizetype batchFiles = 64;
constexpr qsizetype batchPathBytes = 64 * 1024;

// Reads the local side off the main thread: a large tree takes a moment to walk.
void readPlan(const QList<QByteArray>& paths, std::function<void(UploadPlan)> then) {
    QThreadPool::globalInstance()->start([paths, then = std::move(then)] {
        auto plan = std::make_shared<UploadPlan>(UploadPlan::read(paths));
        QMetaObject::invokeMethod(
            QCoreApplication::instance(), [plan, then] { then(std::move(*plan)); }, Qt::QueuedConnection);
    });
}
} // namespace

bool PhoneTransfer::valid(const QString& name) {
    return !name.isEmpty() && name != QLatin1String(".") && name != QLatin1String("..") &&
           !name.contains(u'/') && !name.contains(QChar(0));
}

QString PhoneTransfer::existsText() {
    return QStringLiteral("An item with that name already exists. Nothing was overwritten.");
}

QByteArray PhoneTransfer::stagingPrefix() {
    return QByteArrayLiteral(".Belcove-");
}

std::function<void(double)> PhoneTransfer::forwarder() const {
    return [self = shared_from_this()](double fraction) {
        if (self->progress) self->progress(fraction);
    };
}

void PhoneTransfer::upload(const QList<QByteArray>& paths, const PhoneItem& parent, Done done) {
    if (paths.isEmpty()) {
        done(std::nullopt);
        return;
    }
    readPlan(paths, [self = shared_from_this(), parent, done](UploadPlan read) {
        if (read.error) return done(read.error);
        self->plan = std::make_shared<const UploadPlan>(std::move(read));
        self->sendLevel(&self->plan->roots, parent, done);
    });
}

// Every folder level is listed once, and all its names checked, before any of it is sent.
void PhoneTransfer::sendLevel(const Nodes* nodes, const PhoneItem& parent, Done done) {
    if (nodes->isEmpty()) return done(std::nullopt);
    PhoneBridge::list(parent.storage, parent.id,
                      [self = shared_from_this(), nodes, parent, done](const PhoneReply& reply) {
                          if (reply.error) return done(reply.error);
                          QSet<QString> taken;
                          for (const PhoneItem& item : reply.items.value_or(QList<PhoneItem>()))
                              taken.insert(item.name);
                          for (const UploadNode& node : *nodes) {
                              // Two sources of one name would collide on the phone half-way through.
                              if (taken.contains(node.name)) return done(existsText());
                              taken.insert(node.name);
                          }
                          self->sendNext(nodes, 0, parent, done);
                      });
}

void PhoneTransfer::sendNext(const Nodes* nodes, qsizetype index, const PhoneItem& parent, Done done) {
    if (index == nodes->size()) return done(std::nullopt);
    const UploadNode& node = nodes->at(index);
    if (!node.folder) return sendFiles(nodes, index, parent, std::move(done));
    sendFolder(node, parent,
               [self = shared_from_this(), nodes, index, parent, done](const std::optional<QString>& error) {
                   if (error) return done(error);
                   self->sendNext(nodes, index + 1, parent, done);
               });
}

void PhoneTransfer::sendFolder(const UploadNode& node, const PhoneItem& parent, Done next) {
    PhoneBridge::mkdir(
        parent.storage, parent.id, node.name,
        [self = shared_from_this(), node = &node, storage = parent.storage, next](const PhoneReply& reply) {
            if (reply.error) return next(reply.error);
            if (!reply.id) return next(QStringLiteral("Folder creation failed"));
            PhoneItem made;
            made.id = *reply.id;
            made.storage = storage;
            made.name = node->name;
            made.folder = true;
            self->sendLevel(&node->children, made, next);
        });
}

// The files that follow one another at `index` go in one "put", which stops at the first error.
void PhoneTransfer::sendFiles(const Nodes* nodes, qsizetype index, const PhoneItem& parent, Done done) {
    QStringList paths;
    qsizetype end = index, bytes = 0;
    for (; end < nodes->size() && !nodes->at(end).folder && end - index < batchFiles; ++end) {
        bytes += nodes->at(end).path.size();
        if (end > index && bytes > batchPathBytes) break;
        paths << QString::fromUtf8(nodes->at(end).path);
    }
    if (progress) progress(0);
    PhoneBridge::put(parent.storage, parent.id, paths, forwarder(),
                     [self = shared_from_this(), nodes, end, parent, done](const PhoneReply& reply) {
                         if (reply.error) return done(reply.error);
                         self->sendNext(nodes, end, parent, done);
                     });
}

void PhoneTransfer::download(const QList<PhoneItem>& items, const QByteArray& folder, Done done) {
    fetchNext(std::make_shared<const QList<PhoneItem>>(items), 0, folder, std::move(done));
}

// A phone's names are never trusted as path components: "../x" must not leave the chosen folder.
void PhoneTransfer::fetchNext(std::shared_ptr<const QList<PhoneItem>> items, qsizetype index,
                              const QByteArray& folder, Done done) {
    if (index == items->size()) return done(std::nullopt);
    const PhoneItem& item = items->at(index);
    if (!valid(item.name)) return done(QStringLiteral("Invalid phone filename"));
    const QByteArray destination = folder + '/' + QFile::encodeName(item.name);
    if (present(destination)) return done(alreadyThere(item.name));
    if (!item.folder) return fetchFiles(std::move(items), index, folder, std::move(done));
    fetchFolder(item, destination,
                [self = shared_from_this(), items, index, folder, done](const std::optional<QString>& error) {
                    if (error) return done(error);
                    self->fetchNext(items, index + 1, folder, done);
                });
}

void PhoneTransfer::fetchFolder(const PhoneItem& item, const QByteArray& destination, Done next) {
    PhoneBridge::list(
        item.storage, item.id,
        [self = shared_from_this(), name = item.name, destination, next](const PhoneReply& reply) {
            if (reply.error) return next(reply.error);
            if (::mkdir(destination.constData(), 0777) != 0) {
                const int code = errno;
                return next(code == EEXIST ? alreadyThere(name)
                                           : systemText(QStringLiteral("Cannot create ") + name, code));
            }
            self->download(reply.items.value_or(QList<PhoneItem>()), destination, next);
        });
}

// Each file arrives under a hidden name beside its destination and is renamed into place only when
// whole; the rename refuses to replace whatever may have appeared there meanwhile. The files that
// follow one another at `index`, and pass the same checks as the first, go in one "get".
void PhoneTransfer::fetchFiles(std::shared_ptr<const QList<PhoneItem>> items, qsizetype index,
                               const QByteArray& folder, Done done) {
    const QByteArray prefix = folder + '/' + stagingPrefix();
    const std::optional<QString> prefixText = exactText(prefix);
    if (!prefixText)
        return done(QStringLiteral("Cannot copy ") + items->at(index).name +
                    QStringLiteral(" into a folder whose path isn't valid UTF-8 text."));
    auto staged = std::make_shared<QList<Staged>>();
    QList<std::pair<quint32, QString>> files;
    for (qsizetype i = index; i < items->size() && staged->size() < batchFiles; ++i) {
        const PhoneItem& item = items->at(i);
        const QByteArray destination = folder + '/' + QFile::encodeName(item.name);
        if (item.folder || !valid(item.name) || (i > index && present(destination))) break;
        const QString unique = QUuid::createUuid().toString(QUuid::WithoutBraces);
        staged->append({item.name, prefix + unique.toLatin1(), destination});
        files.append({item.id, *prefixText + unique});
    }
    if (progress) progress(0);
    PhoneBridge::get(
        files, forwarder(),
        [self = shared_from_this(), items, index, folder, done, staged](const PhoneReply& reply) {
            if (const std::optional<QString> error = settle(*staged, reply.error)) return done(error);
            self->fetchNext(items, index + staged->size(), folder, done);
        });
}

// Renames what arrived into place in order, up to the first file that failed; removes every staging
// file after it. Answers the first error.
std::optional<QString> PhoneTransfer::settle(const QList<Staged>& staged,
                                             const std::optional<QString>& failed) {
    std::optional<QString> error;
    for (const Staged& file : staged) {
        if (error) {
            ::unlink(file.staging.constData());
            continue;
        }
        const int code = renameNoReplace(file.staging.constData(), file.destination.constData());
        if (code == 0) continue;
        ::unlink(file.staging.constData());
        if (code == ENOENT && failed)
            error = failed; // where the bridge stopped
        else
            error = code == EEXIST ? alreadyThere(file.name)
                                   : systemText(QStringLiteral("Cannot copy ") + file.name, code);
    }
    return error ? error : failed;
}

} // namespace orvane
