#pragma once

#include "properties/PropertiesFileFacts.h"
#include "properties/PropertiesSizeScanner.h"

#include <QList>
#include <QObject>
#include <QPointer>
#include <QUrl>
#include <atomic>
#include <memory>
#include <mutex>
#include <vector>

class QThreadPool;

namespace orvane {

class Job;

// The reading behind one Properties window, on a queue of its own that runs one job: the facts
// of every item, the desktop's default application, then the size scan. Results arrive as
// signals on the main thread; once cancelled, nothing more arrives, however late the job ends.
class PropertiesReader : public QObject {
    Q_OBJECT
public:
    explicit PropertiesReader(const QList<QUrl>& urls, QObject* parent = nullptr);
    // Cancels, then waits for the job, which stops at its next item.
    ~PropertiesReader() override;

    void start();
    void cancel();
    // Listed as a job until the scan ends, the reader is cancelled or goes; cancelling the job cancels it.
    void runAs(Job& job);
    bool isCancelled() const { return cancelled->load(); }
    // True from start until the job has returned, whether it finished or was cancelled.
    bool isRunning() const { return running.load(); }
    // What the job's scan returned last, cancelled or not.
    PropertiesSizeSummary lastSummary() const;
    void setReportInterval(int ms) { reportMs = ms; }

signals:
    // `application` names the default application of a single file, empty otherwise.
    void factsRead(const std::vector<orvane::PropertiesFileFacts>& facts, const QString& application);
    void sizeRead(const orvane::PropertiesSizeSummary& summary, bool finished);

private:
    void run(int token);
    // Hands `deliver` to the main thread, where it runs only if this reading is still the current one.
    template <typename F> void post(int token, F deliver);

    QList<QUrl> urls;
    std::unique_ptr<QThreadPool> queue;
    QPointer<Job> job;
    std::shared_ptr<std::atomic<bool>> cancelled = std::make_shared<std::atomic<bool>>(false);
    std::atomic<bool> running{false};
    std::atomic<bool> partialWaiting{false}; // a partial is on its way; later ones are skipped meanwhile
    int generation = 0;
    int reportMs = PropertiesSizeScanner::reportEveryMs;
    mutable std::mutex resultLock;
    PropertiesSizeSummary result;
};

} // namespace orvane
