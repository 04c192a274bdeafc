#pragma once

#include "fileops/TransferJob.h"
#include "fileops/TransferResult.h"

#include <QObject>
#include <QStringList>
#include <atomic>
#include <optional>
#include <thread>

namespace orvane {

// Which jobs a transfer request makes, decided on the main thread before anything moves.
struct TransferPlan {
    TransferJobs jobs;
    // Set when a source would land in itself or below itself; then the whole request is refused.
    QString refusedSource;

    bool refused() const { return !refusedSource.isEmpty(); }
    static QString refusalTitle() { return QStringLiteral("Cannot copy a folder into itself"); }
};

// The one road for local copies and moves. A run goes through its jobs one by one on a thread of its
// own while a second thread measures progress every 250 ms; both report on the thread that owns the
// engine. There is at most one run per engine; a cancelled run stops inside the file in hand, removes
// that part, and reports what had arrived whole.
class TransferEngine : public QObject {
    Q_OBJECT
public:
    explicit TransferEngine(QObject* parent = nullptr);
    // Waits for a run under way: its jobs are not abandoned half way.
    ~TransferEngine() override;

    // Moving an item to the folder it is in is skipped; any item into itself refuses the whole request.
    // Every job gets a free destination, also for moves, and no two jobs share one.
    static TransferPlan plan(const QStringList& sources, bool moving, const QString& target);
    static QString startText(bool moving);

    // False, with nothing started, while a run is under way or when there are no jobs.
    bool start(TransferJobs jobs, bool moving);
    bool running() const { return active; }
    // Asks the run under way to stop; `finished` still comes, with `cancelled` set.
    void cancel() { stopping = true; }
    // How far the run has come: items tried of all, bytes at the destinations of all expected.
    struct Measure {
        int items = 0;
        int itemCount = 0;
        qint64 bytes = 0;
        qint64 total = 0;
    };
    Measure measure() const;
    // "Copying 3 of 10 items · 45 MB of 120 MB · About 2 minutes left"; the time once it can be told.
    static QString progressText(bool moving, const Measure& m, std::optional<qint64> secondsLeft);

    // The run's body, for callers that already are on a worker: blocks until every job has been tried.
    // `tick` is called on a thread of its own; without one nothing is measured.
    // `stop`, when given, is read between jobs and inside files; `items` counts the jobs tried.
    static TransferResult run(const TransferJobs& jobs, bool moving, const std::function<void(double)>& tick,
                              const std::atomic<bool>* stop = nullptr, std::atomic<int>* items = nullptr,
                              std::atomic<qint64>* total = nullptr);

signals:
    // 0 to 0.99, first at once and then every 250 ms; never after `finished`.
    void progress(double fraction);
    void finished(const orvane::TransferResult& result);

private:
    void deliver(const TransferResult& result);

    std::thread worker;
    bool active = false;
    std::atomic<bool> stopping{false};
    std::atomic<int> itemsTried{0};
    std::atomic<qint64> bytesExpected{0};
    int itemCount = 0;
    double lastFraction = 0;
};

} // namespace orvane
