#pragma once

#include "core/Entry.h"
#include "search/FolderWalk.h"

#include <QObject>
#include <QPointer>
#include <QTimer>
#include <atomic>
#include <functional>
#include <memory>
#include <vector>

namespace orvane {

class Job;
class Jobs;

// A window's search of its folder and subfolders, or of the whole computer through the file
// index. A run starts 0.3 seconds after the last start, works off the main thread, and reports on
// the main thread only while it is still the current one: every start and cancel moves the
// generation on, and the walk checks it at every item.
class ExplorerSearch : public QObject {
    Q_OBJECT
public:
    // `problem` says why nothing could be searched and what to do about it; empty when the search ran.
    using Completion = std::function<void(std::vector<Entry> results, QString note, QString problem)>;
    // Entries found since the last batch, and the running counts; a folder walk only.
    using Batch = std::function<void(std::vector<Entry> found, FolderWalk::Progress progress)>;

    static constexpr int debounceMs = 300;
    static constexpr int batchIntervalMs = 250;

    explicit ExplorerSearch(QObject* parent = nullptr);
    ~ExplorerSearch() override;

    void start(const QString& text, const QString& folder, bool wholeComputer, bool hidden,
               Completion completion, Batch batch = {});
    void cancel();
    bool running() const { return pending.isActive() || active; }
    // Each run is listed there as a job that leaves `window` free; cancelling the job cancels the run.
    void listIn(Jobs& jobs, QObject* window);

    // The notes a completion carries.
    static QString folderNote(bool someUnavailable);
    static QString computerNote();
    static QString unavailableNote();
    // Why the index could not answer, in plocate's words, and how to build it.
    static QString indexProblem(const QString& reason);

private:
    struct Request {
        QString text;
        QString folder;
        bool wholeComputer = false;
        bool hidden = false;
        Completion completion;
        Batch batch;
    };
    void launch();
    void endJob();
    void walkFolder(Request request, quint64 token);
    void askIndex(Request request, quint64 token);

    // Shared with the workers, which outlive neither their check nor this object's last word.
    std::shared_ptr<std::atomic<quint64>> generation = std::make_shared<std::atomic<quint64>>(0);
    QTimer pending;
    Request request;
    bool active = false;
    Jobs* jobList = nullptr;
    QPointer<QObject> owner;
    QPointer<Job> job;
};

} // namespace orvane
