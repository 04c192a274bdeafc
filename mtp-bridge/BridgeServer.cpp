#include "BridgeServer.h"

#include "Download.h"
#include "ProgressThrottle.h"
#include "phone/PhoneProtocol.h"

#include <QJsonArray>
#include <QJsonDocument>
#include <cerrno>
#include <thread>
#include <unistd.h>

namespace orvane {

namespace {
namespace Verb = PhoneProtocol::Verb;
namespace F = PhoneProtocol::Field;

ReplyLine failure(const std::string& text) {
    return ReplyLine().add(F::error, text);
}

ReplyLine outcome(const std::string& error) {
    return error.empty() ? ReplyLine() : failure(error);
}

const std::string badRequest = PhoneProtocol::Error::badRequest;

// Handles and storage numbers travel as decimal strings.
bool number(const QString& text, uint32_t& out) {
    if (text.isEmpty() || text.size() > 10) return false;
    uint64_t value = 0;
    for (QChar c : text) {
        if (c < u'0' || c > u'9') return false;
        value = value * 10 + uint64_t(c.unicode() - u'0');
    }
    if (value > 0xFFFFFFFFull) return false;
    out = uint32_t(value);
    return true;
}

std::string utf8(const QString& text) {
    return text.toStdString();
}

bool parseRequest(const QByteArray& line, QStringList& args) {
    QJsonParseError error;
    const QJsonDocument document = QJsonDocument::fromJson(line, &error);
    if (error.error != QJsonParseError::NoError || !document.isArray()) return false;
    for (const QJsonValue& value : document.array()) {
        if (!value.isString()) return false;
        args << value.toString();
    }
    return true;
}

// The word a fault plan names a request by.
QString verbOf(const QStringList& args) {
    if (args.isEmpty()) return QLatin1String(Verb::storages);
    uint32_t ignored;
    return number(args[0], ignored) ? QLatin1String(Verb::list) : args[0];
}

ReplyLine itemsReply(const std::string& error, const std::vector<PhoneObject>& objects, bool twice) {
    if (!error.empty()) return failure(error);
    std::string items = "[";
    for (size_t i = 0; i < objects.size() * (twice ? 2 : 1); ++i) {
        const PhoneObject& o = objects[i % objects.size()];
        ReplyLine item;
        item.add(F::id, uint64_t(o.id)).add(F::storage, uint64_t(o.storage)).add(F::name, o.name);
        item.add(F::folder, o.folder).add(F::size, o.size);
        if (o.modified) item.add(F::modified, *o.modified);
        if (items.size() > 1) items += ',';
        items += item.text();
    }
    items += ']';
    return ReplyLine().addRaw(F::items, items);
}
} // namespace

BridgeServer::BridgeServer(PhoneBackend& phone, FaultPlan faults, int input, int output)
    : phone(phone), faults(std::move(faults)), input(input), output(output) {}

int BridgeServer::serve() {
    QByteArray pending;
    bool overlong = false; // the line under way passed the limit: its bytes are dropped as they come
    char chunk[65536];
    for (;;) {
        qsizetype end;
        while ((end = pending.indexOf('\n')) < 0) {
            if (pending.size() > maxRequestLine) {
                overlong = true;
                pending.clear();
            }
            const ssize_t n = ::read(input, chunk, sizeof chunk);
            if (n < 0 && errno == EINTR && !stopRequested) continue;
            if (n <= 0) return 0;
            pending.append(chunk, n);
        }
        const QByteArray line = pending.left(end);
        pending.remove(0, end + 1);
        if (std::exchange(overlong, false)) {
            ++served;
            if (!writeLine(failure(badRequest).text())) return 1;
            continue;
        }
        if (!handleLine(line) || stopRequested) return broken ? 1 : 0;
    }
}

bool BridgeServer::handleLine(const QByteArray& line) {
    if (line.trimmed().isEmpty()) return true;
    ++served;
    if (faults.delayMs > 0) std::this_thread::sleep_for(std::chrono::milliseconds(faults.delayMs));
    QStringList args;
    const bool valid = parseRequest(line, args);
    if (valid && !faults.hangOn.empty() && verbOf(args) == QString::fromStdString(faults.hangOn)) hang();
    if (served == faults.cutAfterProgress) {
        for (double fraction : {0.25, 0.5, 0.75})
            writeProgress(fraction);
        return false;
    }
    ReplyLine reply = !valid                       ? failure(badRequest)
                      : served == faults.failReply ? failure("The phone did not answer this request.")
                                                   : answer(args);
    decorate(reply, line);
    std::string text = reply.text();
    if (served == faults.garble)
        text = "{\"items\": [{\"id\": 7, \"name\": \"trunc";
    else if (served == faults.emptyReply)
        text.clear();
    if (!writeLine(text)) return false;
    return faults.exitAfter <= 0 || served < faults.exitAfter;
}

ReplyLine BridgeServer::answer(const QStringList& args) {
    std::vector<PhoneObject> objects;
    if (args.isEmpty()) return itemsReply(phone.storages(objects), objects, faults.repeatItems);
    uint32_t storage, parent;
    if (args.size() == 2 && number(args[0], storage)) {
        if (!number(args[1], parent)) return failure(badRequest);
        return itemsReply(phone.list(storage, parent, objects), objects, faults.repeatItems);
    }
    const QString& verb = args[0];
    if (verb == QLatin1String(Verb::scan) && args.size() == 1) return outcome(phone.scan());
    if (verb == QLatin1String(Verb::get) || verb == QLatin1String(Verb::put)) return transfer(args);
    if (verb == QLatin1String(Verb::info) || verb == QLatin1String(Verb::thumb)) return inspect(args);
    return edit(args);
}

// False once nobody listens or the bridge is told to end; the faults act here, after the first bytes.
bool BridgeServer::transferGoesOn() {
    if (faults.dieMidTransfer) ::_exit(3);
    while (faults.stallMidTransfer && !stopRequested)
        ::pause();
    return !broken && !stopRequested;
}

// "get" takes one or more pairs of handle and path, "put" one or more paths after its folder. The files
// go one after another and the first error ends the request, as separate requests would, without a
// round trip each; a malformed request moves nothing.
ReplyLine BridgeServer::transfer(const QStringList& args) {
    const bool get = args[0] == QLatin1String(Verb::get);
    const qsizetype first = get ? 1 : 3, step = get ? 2 : 1;
    uint32_t storage = 0, parent = 0, id;
    if (args.size() < first + step || (args.size() - first) % step != 0) return failure(badRequest);
    if (!get && (!number(args[1], storage) || !number(args[2], parent))) return failure(badRequest);
    for (qsizetype i = first; get && i < args.size(); i += step)
        if (!number(args[i], id)) return failure(badRequest);
    for (qsizetype i = first; i < args.size(); i += step) {
        if (i > first) writeProgress(0); // each file reports from 0 anew
        const std::string error = get ? getOne(args[i], args[i + 1]) : putOne(storage, parent, args[i]);
        if (!error.empty()) return failure(error);
    }
    return {};
}

std::string BridgeServer::getOne(const QString& handle, const QString& path) {
    ProgressThrottle throttle([this](double fraction) { writeProgress(fraction); });
    uint32_t id = 0;
    number(handle, id);
    Download download(utf8(path));
    std::string error = download.open();
    if (error.empty())
        error = phone.get(id, download.fd(), utf8(path.section(u'/', -1)), progressTo(throttle));
    if (error.empty()) error = download.commit();
    if (error.empty()) throttle.finish();
    return error;
}

std::string BridgeServer::putOne(uint32_t storage, uint32_t parent, const QString& path) {
    ProgressThrottle throttle([this](double fraction) { writeProgress(fraction); });
    const std::string error = phone.put(storage, parent, utf8(path), progressTo(throttle));
    if (error.empty()) throttle.finish();
    return error;
}

TransferProgress BridgeServer::progressTo(ProgressThrottle& throttle) {
    return [this, &throttle](uint64_t done, uint64_t total) {
        throttle.report(done, total);
        return transferGoesOn();
    };
}

ReplyLine BridgeServer::edit(const QStringList& args) {
    const QString& verb = args[0];
    uint32_t id, storage, parent;
    if (verb == QLatin1String(Verb::mkdir) && args.size() == 4 && number(args[1], storage) &&
        number(args[2], parent)) {
        uint32_t created = 0;
        const std::string error = phone.makeFolder(storage, parent, utf8(args[3]), created);
        return error.empty() ? ReplyLine().add(F::id, uint64_t(created)) : failure(error);
    }
    if (verb == QLatin1String(Verb::remove) && args.size() == 2 && number(args[1], id))
        return outcome(phone.remove(id));
    if (verb == QLatin1String(Verb::rename) && args.size() == 3 && number(args[1], id))
        return outcome(phone.rename(id, utf8(args[2])));
    if (verb == QLatin1String(Verb::move) && args.size() == 4 && number(args[1], id) &&
        number(args[2], storage) && number(args[3], parent))
        return outcome(phone.move(id, storage, parent));
    return failure(badRequest);
}

ReplyLine BridgeServer::inspect(const QStringList& args) {
    uint32_t id;
    if (args.size() == 3 && args[0] == QLatin1String(Verb::thumb) && number(args[1], id))
        return outcome(phone.thumbnail(id, utf8(args[2])));
    if (args.size() != 2 || args[0] != QLatin1String(Verb::info) || !number(args[1], id))
        return failure(badRequest);
    PhoneObjectInfo info;
    const std::string error = phone.info(id, info);
    if (!error.empty()) return failure(error);
    ReplyLine reply;
    if (info.width) reply.add(F::width, uint64_t(*info.width));
    if (info.height) reply.add(F::height, uint64_t(*info.height));
    if (info.created) reply.add(F::created, *info.created);
    return reply;
}

void BridgeServer::decorate(ReplyLine& reply, const QByteArray& line) const {
    if (faults.extraKeys)
        reply.addRaw("bridge", R"({"simulated":true,"answers":[1,"two",null]})")
            .add("sequence", uint64_t(served));
    if (faults.nullProgress) reply.addNull(F::progress);
    if (faults.echo) reply.add(F::name, std::string_view(line.constData(), size_t(line.size())));
}

bool BridgeServer::writeLine(std::string line) {
    line += '\n';
    const char* p = line.data();
    size_t left = line.size();
    while (left > 0) {
        const ssize_t n = ::write(output, p, left);
        if (n < 0 && errno == EINTR) continue;
        if (n <= 0) {
            broken = true;
            return false;
        }
        p += n;
        left -= size_t(n);
    }
    return true;
}

void BridgeServer::writeProgress(double fraction) {
    writeLine(ReplyLine().add(F::progress, fraction).text());
}

// Never answers; being told to stop still ends it at once.
void BridgeServer::hang() {
    while (!stopRequested)
        ::pause();
    ::_exit(1);
}

} // namespace orvane
