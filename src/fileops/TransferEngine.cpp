#include "fileops/TransferEngine.h"

#include "core/EntryText.h"
#include "fileops/FileData.h"
#include "fileops/FileNames.h"
#include "fileops/FileTree.h"
#include "fileops/TransferProgressSnapshot.h"
#include "platform/NativePath.h"

#include <QDir>
#include <QSet>
#include <chrono>
#include <condition_variable>
#include <mutex>
#include <optional>
#include <sys/stat.h>

namespace orvane {

namespace {

// Links resolved, so that going up from it passes the folders it really lies in.
QString resolved(const QString& path) {
    const QString real = NativePath::canonical(path);
    return real.isEmpty() ? QDir::cleanPath(path) : real;
}

QString parentOf(const QString& path) {
    const qsizetype slash = path.lastIndexOf(u'/');
    return slash <= 0 ? QStringLiteral("/") : path.left(slash);
}

// By device and inode, as cp decides it: a bind mount shows one folder under two paths.
bool inside(const QString& target, const QString& source) {
    struct stat folder;
    if (stat(NativePath::encode(source).constData(), &folder) != 0 || !S_ISDIR(folder.st_mode)) return false;
    for (QString at = target;; at = parentOf(at)) {
        struct stat st;
        if (stat(NativePath::encode(at).constData(), &st) == 0 && st.st_dev == folder.st_dev &&
            st.st_ino == folder.st_ino)
            return true;
        if (at == QLatin1String("/")) return false;
    }
}

// Reads the destinations on its own thread, at once and then every 250 ms, until stopped.
class ProgressTicker {
public:
    ProgressTicker(const TransferProgressSnapshot& snapshot, const std::function<void(double)>& tick)
        : thread([this, &snapshot, tick] { loop(snapshot, tick); }) {}
    ~ProgressTicker() {
        {
            std::lock_guard lock(mutex);
            stopping = true;
        }
        wake.notify_one();
        thread.join(); // no measurement is still under way once this returns
    }

private:
    // Measures at least once, even when the jobs end before this thread is first scheduled.
    void loop(const TransferProgressSnapshot& snapshot, const std::function<void(double)>& tick) {
        for (;;) {
            tick(snapshot.fraction());
            std::unique_lock lock(mutex);
            if (wake.wait_for(lock, std::chrono::milliseconds(250), [this] { return stopping; })) return;
        }
    }

    std::mutex mutex;
    std::condition_variable wake;
    bool stopping = false;
    std::thread thread;
};

} // namespace

TransferEngine::TransferEngine(QObject* parent) : QObject(parent) {
    qRegisterMetaType<orvane::TransferResult>();
}

TransferEngine::~TransferEngine() {
    if (worker.joinable()) worker.join();
}

TransferPlan TransferEngine::plan(const QStringList& sources, bool moving, const QString& target) {
    TransferPlan plan;
    const QString folder = QDir::cleanPath(target);
    const QString realTarget = resolved(folder);
    QSet<QString> taken;
    for (const QString& given : sources) {
        const QString source = QDir::cleanPath(given);
        if (moving && parentOf(source) == folder) continue;
        if (inside(realTarget, source)) {
            plan.jobs.clear();
            plan.refusedSource = given;
            return plan;
        }
        // Two sources of one name from different folders must not be given the same free place.
        const QString destination = FileNames::destination(source, folder, taken);
        taken.insert(destination);
        plan.jobs.push_back({source, destination});
    }
    return plan;
}

QString TransferEngine::startText(bool moving) {
    return moving ? QStringLiteral("Moving items…") : QStringLiteral("Copying items…");
}

TransferResult TransferEngine::run(const TransferJobs& jobs, bool moving,
                                   const std::function<void(double)>& tick, const std::atomic<bool>* stop,
                                   std::atomic<int>* items, std::atomic<qint64>* total) {
    TransferResult result;
    result.moving = moving;
    const TransferProgressSnapshot snapshot(jobs);
    if (total) *total = snapshot.total();
    const FileData::StopWhen stopping(stop);
    {
        std::optional<ProgressTicker> ticker;
        if (tick) ticker.emplace(snapshot, tick);
        for (const TransferJob& job : jobs) {
            if (FileData::stopped()) break;
            const FileTree::Outcome outcome = moving ? FileTree::moveItem(job.source, job.destination)
                                                     : FileTree::copyItem(job.source, job.destination);
            if (items) ++*items;
            // What arrived in part is finished too, so its undo step covers it.
            if (outcome.arrived) {
                result.finished.push_back(job);
                result.arrivedAt.push_back(TransferResult::modifiedAt(job.destination));
            }
            // A cancel's own problems are no failure to report.
            if (FileData::stopped()) break;
            result.failures << outcome.lines(NativePath::display(job.source.section(u'/', -1)));
        }
    }
    result.cancelled = FileData::stopped();
    return result;
}

TransferEngine::Measure TransferEngine::measure() const {
    const qint64 total = bytesExpected;
    return {itemsTried, itemCount, qint64(double(total) * lastFraction), total};
}

QString TransferEngine::progressText(bool moving, const Measure& m, std::optional<qint64> secondsLeft) {
    QString text = (moving ? QStringLiteral("Moving ") : QStringLiteral("Copying ")) +
                   QString::number(qMin(m.items + 1, m.itemCount)) + QStringLiteral(" of ") +
                   QString::number(m.itemCount) + QStringLiteral(" items · ") + byteCountText(m.bytes) +
                   QStringLiteral(" of ") + byteCountText(m.total);
    if (!secondsLeft) return text;
    const qint64 s = qMax<qint64>(*secondsLeft, 1);
    const auto about = [](qint64 n, const char* unit) {
        return QStringLiteral("About %1 %2%3 left").arg(n).arg(QLatin1String(unit), n == 1 ? "" : "s");
    };
    return text + QStringLiteral(" · ") +
           (s < 60     ? about(s, "second")
            : s < 5400 ? about((s + 30) / 60, "minute")
                       : about((s + 1800) / 3600, "hour"));
}

bool TransferEngine::start(TransferJobs jobs, bool moving) {
    if (active || jobs.empty()) return false;
    if (worker.joinable()) worker.join();
    active = true;
    stopping = false;
    itemsTried = 0;
    bytesExpected = 0;
    itemCount = int(jobs.size());
    lastFraction = 0;
    worker = std::thread([this, jobs = std::move(jobs), moving] {
        const auto tick = [this](double fraction) {
            QMetaObject::invokeMethod(
                this,
                [this, fraction] {
                    if (!active) return;
                    lastFraction = fraction;
                    emit progress(fraction);
                },
                Qt::QueuedConnection);
        };
        const TransferResult result = run(jobs, moving, tick, &stopping, &itemsTried, &bytesExpected);
        QMetaObject::invokeMethod(
            this, [this, result] { deliver(result); }, Qt::QueuedConnection);
    });
    return true;
}

void TransferEngine::deliver(const TransferResult& result) {
    worker.join();
    active = false;
    emit finished(result);
}

} // namespace orvane
