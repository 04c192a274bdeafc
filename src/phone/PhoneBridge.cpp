#include "phone/PhoneBridge.h"

#include "phone/BridgeProcess.h"
#include "phone/PhoneProtocol.h"
#include "phone/UnfinishedPuts.h"

#include <QCoreApplication>
#include <QJsonArray>
#include <QJsonDocument>
#include <condition_variable>
#include <deque>
#include <mutex>
#include <pthread.h>
#include <thread>

namespace orvane {

namespace {
struct Request {
    QStringList args;
    PhoneBridge::Progress progress;
    PhoneBridge::Done done;
    QString executable;
    std::chrono::milliseconds limit{0};
    std::chrono::milliseconds stall{0};
    bool restart = false;
};

// How long a transfer may go without progress before it counts as hung. Tests shorten it.
std::chrono::milliseconds stallLimit() {
    bool set = false;
    const int ms = qEnvironmentVariableIntValue("ORVANE_TRANSFER_STALL_MS", &set);
    return std::chrono::milliseconds(set && ms > 0 ? ms : 60000);
}

void onMainThread(std::function<void()> call) {
    if (QCoreApplication* app = QCoreApplication::instance())
        QMetaObject::invokeMethod(app, std::move(call), Qt::QueuedConnection);
}

// The serial queue and the bridge it owns. Only the worker thread touches `process`.
class BridgeQueue {
public:
    void submit(Request request);
    void setExecutable(const QString& path);
    void setLimit(std::chrono::milliseconds value);
    QString takeNotice();

private:
    void work();
    PhoneReply serve(const Request& request);
    bool exchange(const Request& request, PhoneReply& reply);
    void clearUp(const Request& request);

    std::mutex mutex;
    std::condition_variable wake;
    std::deque<Request> pending;
    QString executable;
    std::chrono::milliseconds limit{60000};
    bool started = false;

    std::unique_ptr<BridgeProcess> process;
    QString launchedFrom;
    UnfinishedPuts unfinished;
    QString notice; // guarded by `mutex`
};

// Lives as long as the process: the worker may still be blocked in a read when statics go away.
BridgeQueue& bridgeQueue() {
    static BridgeQueue* queue = new BridgeQueue;
    return *queue;
}

// Settings are taken on the caller's thread, as they stand at the call.
void BridgeQueue::submit(Request request) {
    std::lock_guard lock(mutex);
    request.executable = executable.isEmpty() ? PhoneBridge::defaultExecutable() : executable;
    request.limit = limit;
    request.stall = stallLimit();
    pending.push_back(std::move(request));
    if (!started) {
        started = true;
        std::thread([this] { work(); }).detach();
    }
    wake.notify_one();
}

void BridgeQueue::setExecutable(const QString& path) {
    std::lock_guard lock(mutex);
    executable = path;
}

void BridgeQueue::setLimit(std::chrono::milliseconds value) {
    std::lock_guard lock(mutex);
    limit = value;
}

QString BridgeQueue::takeNotice() {
    std::lock_guard lock(mutex);
    return std::exchange(notice, QString());
}

void BridgeQueue::work() {
#ifdef __APPLE__
    pthread_setname_np("Belcove.MTP");
#else
    pthread_setname_np(pthread_self(), "Belcove.MTP");
#endif
    for (;;) {
        Request request;
        {
            std::unique_lock lock(mutex);
            wake.wait(lock, [this] { return !pending.empty(); });
            request = std::move(pending.front());
            pending.pop_front();
        }
        if (request.restart) {
            process.reset();
            continue;
        }
        PhoneReply reply = serve(request);
        onMainThread([done = std::move(request.done), reply = std::move(reply)] {
            if (done) done(reply);
        });
    }
}

// A bridge that ended by itself between two requests is replaced silently.
PhoneReply BridgeQueue::serve(const Request& request) {
    if (!process || !process->running() || launchedFrom != request.executable) {
        process.reset();
        process = BridgeProcess::launch(request.executable);
        launchedFrom = request.executable;
        if (process && !unfinished.empty()) clearUp(request);
    }
    PhoneReply reply = PhoneReply::failure(PhoneBridge::unavailableText());
    if (!process) return reply;
    const bool put = request.args.value(0) == QLatin1String(PhoneProtocol::Verb::put);
    if (put) unfinished.sending(request.args);
    if (!exchange(request, reply))
        process.reset(); // terminates the child
    else if (put)
        unfinished.answered();
    return reply;
}

void BridgeQueue::clearUp(const Request& request) {
    const QStringList removed = unfinished.clearUp([&](const QStringList& args, PhoneReply& reply) {
        Request asked;
        asked.args = args;
        asked.limit = request.limit;
        if (exchange(asked, reply)) return true;
        process.reset();
        return false;
    });
    if (removed.isEmpty()) return;
    std::lock_guard lock(mutex);
    notice = UnfinishedPuts::notice(removed);
}

// The watchdog is one limit for the whole request. Transfers run as long as they take while they move;
// one that sends no progress for the stall limit is hung, and ending the bridge ends it.
bool BridgeQueue::exchange(const Request& request, PhoneReply& reply) {
    const bool transfer = PhoneProtocol::isTransfer(request.args);
    BridgeProcess::Deadline deadline =
        std::chrono::steady_clock::now() + (transfer ? request.stall : request.limit);
    QByteArray line = QJsonDocument(QJsonArray::fromStringList(request.args)).toJson(QJsonDocument::Compact);
    line.append('\n');
    if (!process->write(line)) return false;
    for (;;) {
        QByteArray text;
        if (!process->readLine(text, deadline)) return false;
        std::optional<PhoneReply> decoded = PhoneReply::decode(text);
        if (!decoded) return false;
        if (!decoded->progress) {
            reply = std::move(*decoded);
            return true;
        }
        if (transfer) deadline = std::chrono::steady_clock::now() + request.stall;
        if (request.progress)
            onMainThread(
                [progress = request.progress, fraction = *decoded->progress] { progress(fraction); });
    }
}
} // namespace

void PhoneBridge::run(const QStringList& args, Progress progress, Done done) {
    Request request;
    request.args = args;
    request.progress = std::move(progress);
    request.done = std::move(done);
    bridgeQueue().submit(std::move(request));
}

void PhoneBridge::scan(Done done) {
    run(PhoneProtocol::scan(), nullptr, std::move(done));
}

void PhoneBridge::list(quint32 storage, quint32 parent, Done done) {
    run(PhoneProtocol::list(storage, parent), nullptr, std::move(done));
}

void PhoneBridge::get(const QList<std::pair<quint32, QString>>& files, Progress progress, Done done) {
    run(PhoneProtocol::get(files), std::move(progress), std::move(done));
}

void PhoneBridge::put(quint32 storage, quint32 parent, const QStringList& paths, Progress progress,
                      Done done) {
    run(PhoneProtocol::put(storage, parent, paths), std::move(progress), std::move(done));
}

void PhoneBridge::mkdir(quint32 storage, quint32 parent, const QString& name, Done done) {
    run(PhoneProtocol::mkdir(storage, parent, name), nullptr, std::move(done));
}

void PhoneBridge::rename(quint32 id, const QString& name, Done done) {
    run(PhoneProtocol::rename(id, name), nullptr, std::move(done));
}

void PhoneBridge::move(quint32 id, quint32 storage, quint32 parent, Done done) {
    run(PhoneProtocol::move(id, storage, parent), nullptr, std::move(done));
}

void PhoneBridge::remove(quint32 id, Done done) {
    run(PhoneProtocol::remove(id), nullptr, std::move(done));
}

void PhoneBridge::info(quint32 id, Done done) {
    run(PhoneProtocol::info(id), nullptr, std::move(done));
}

void PhoneBridge::restart() {
    Request request;
    request.restart = true;
    bridgeQueue().submit(std::move(request));
}

std::optional<QString> PhoneBridge::takeNotice() {
    const QString notice = bridgeQueue().takeNotice();
    return notice.isEmpty() ? std::nullopt : std::optional<QString>(notice);
}

QString PhoneBridge::unavailableText() {
    return QStringLiteral("Android connection unavailable. Click Refresh to reconnect.");
}

// Inside an application bundle the helper lives in Contents/Helpers; a plain build keeps it beside
// the executable, where the tests find it too.
QString PhoneBridge::defaultExecutable() {
    const QString folder = QCoreApplication::applicationDirPath();
    if (folder.endsWith(QLatin1String(".app/Contents/MacOS")))
        return folder + QStringLiteral("/../Helpers/mtp-bridge");
    return folder + QStringLiteral("/mtp-bridge");
}

void PhoneBridge::setExecutable(const QString& path) {
    bridgeQueue().setExecutable(path);
}

void PhoneBridge::setWatchdogLimit(std::chrono::milliseconds limit) {
    bridgeQueue().setLimit(limit);
}

} // namespace orvane
