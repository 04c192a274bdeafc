#pragma once

#include "core/Entry.h"

#include <QString>
#include <atomic>
#include <chrono>
#include <functional>
#include <memory>
#include <vector>

namespace orvane {

// The recursive search of one folder: every item below it whose name contains the text, ignoring
// case, as entries built on the walking threads. Hidden items are skipped, and never entered, unless
// shown; links are matched but never followed. Several threads share the walk: each one goes deep on
// its own and hands folders over whenever another one runs dry.
class FolderWalk {
public:
    struct Progress {
        qint64 folders = 0;
        qint64 matches = 0;
    };
    // Runs on a walking thread, one call at a time, with what was found since the previous call.
    using Batch = std::function<void(std::vector<Entry>&& found, Progress progress)>;

    FolderWalk(const QString& folder, const QString& text, bool hidden);
    ~FolderWalk();
    FolderWalk(const FolderWalk&) = delete;
    FolderWalk& operator=(const FolderWalk&) = delete;

    // The first match goes out at once, later ones at most once per `interval`, with the counts.
    void setBatch(Batch batch, std::chrono::milliseconds interval);
    void setThreads(int count);

    // Blocks until the walk is done, or until `generation` no longer holds `token`, which is checked
    // at every item. False when it was cancelled.
    bool run(const std::atomic<quint64>& generation, quint64 token);

    std::vector<Entry>& results();
    // A folder (the start or one below) could not be read.
    bool someUnavailable() const;
    Progress progress() const;

private:
    struct Walk;
    std::unique_ptr<Walk> walk;
};

} // namespace orvane
