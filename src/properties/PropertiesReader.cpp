#include "properties/PropertiesReader.h"

#include "core/Job.h"
#include "platform/DefaultApplications.h"

#include <QThreadPool>

namespace orvane {

namespace {

QString defaultApplication(const std::vector<PropertiesFileFacts>& facts) {
    if (facts.size() != 1) return {};
    const PropertiesFileFacts& item = facts.front();
    if (item.error || item.isDirectory || item.typeName.isEmpty()) return {};
    return DefaultApplications::nameFor(item.url.toLocalFile(), item.typeName);
}

} // namespace

PropertiesReader::PropertiesReader(const QList<QUrl>& urls, QObject* parent)
    : QObject(parent), urls(urls), queue(std::make_unique<QThreadPool>()) {
    queue->setObjectName(QStringLiteral("Orvane.Properties"));
    queue->setMaxThreadCount(1);
    queue->setThreadPriority(QThread::LowPriority);
}

PropertiesReader::~PropertiesReader() {
    cancel();
    // The job posts to this object; it must be done before the object goes.
    queue->waitForDone();
}

void PropertiesReader::start() {
    if (running || isCancelled()) return;
    running = true;
    const int token = ++generation;
    queue->start([this, token] { run(token); });
}

void PropertiesReader::cancel() {
    cancelled->store(true);
    ++generation;
    if (Job* ended = std::exchange(job, nullptr)) ended->finish();
}

void PropertiesReader::runAs(Job& listed) {
    job = &listed;
    listed.setCanceller([this] { cancel(); });
    connect(this, &PropertiesReader::sizeRead, &listed, [this](const PropertiesSizeSummary&, bool finished) {
        if (!finished) return;
        if (Job* ended = std::exchange(job, nullptr)) ended->finish();
    });
}

PropertiesSizeSummary PropertiesReader::lastSummary() const {
    std::lock_guard guard(resultLock);
    return result;
}

template <typename F> void PropertiesReader::post(int token, F deliver) {
    QMetaObject::invokeMethod(
        this,
        [this, token, deliver = std::move(deliver)]() mutable {
            if (token == generation && !isCancelled()) deliver();
        },
        Qt::QueuedConnection);
}

void PropertiesReader::run(int token) {
    const std::shared_ptr<std::atomic<bool>> stop = cancelled;
    auto isStopped = [stop] { return stop->load(); };
    std::vector<PropertiesFileFacts> facts;
    for (const QUrl& url : urls) {
        if (isStopped()) break;
        facts.push_back(PropertiesFileFacts::read(url));
    }
    if (!isStopped()) {
        const QString application = defaultApplication(facts);
        post(token, [this, facts = std::move(facts), application] { emit factsRead(facts, application); });
    }
    PropertiesSizeSummary summary;
    if (!isStopped()) {
        auto progress = [this, token](const PropertiesSizeSummary& soFar) {
            if (partialWaiting.exchange(true)) return;
            post(token, [this, soFar] {
                partialWaiting = false;
                emit sizeRead(soFar, false);
            });
        };
        summary = PropertiesSizeScanner::scan(urls, isStopped, progress, reportMs);
        if (!summary.cancelled && !isStopped())
            post(token, [this, summary] { emit sizeRead(summary, true); });
    } else {
        summary.cancelled = true;
    }
    {
        std::lock_guard guard(resultLock);
        result = summary;
    }
    running = false;
}

} // namespace orvane
