#pragma once

#include "fileops/TransferJob.h"

#include <QString>
#include <vector>

namespace orvane {

// What a transfer is expected to make, weighed before the first byte moves; progress is then what stands
// at the destinations. Immutable once built, so the progress thread reads it without a lock.
class TransferProgressSnapshot {
public:
    struct Item {
        QString destination;
        qint64 weight = 1; // bytes of a regular file, at least 1; 1 for anything else
        bool regular = false;
    };

    // Walks every source without following links; slow for big trees, so never on the main thread.
    explicit TransferProgressSnapshot(const TransferJobs& jobs);

    // Share of the expected weight present at the destinations, at most 0.99: a file can have its full
    // size before its copy has returned, so only the end of the run may show 100 percent.
    double fraction() const;

    const std::vector<Item>& items() const { return list; }
    qint64 total() const { return sum; }

private:
    void add(bool regular, qint64 size, const QString& destination);
    void addTree(int top, const QString& destination);

    std::vector<Item> list;
    std::vector<QByteArray> native; // the destinations as the system takes them, encoded once
    qint64 sum = 1;
};

} // namespace orvane
