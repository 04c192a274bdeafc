#pragma once

#include <QObject>
#include <QStringList>
#include <functional>

namespace orvane {

// Removal that bypasses the Trash. The confirmation belongs to the window; this is only the work.
class PermanentDelete {
public:
    struct Result {
        int deleted = 0;
        QStringList failures; // "<name>: <system text>"

        QString statusText() const { return QStringLiteral("%1 items permanently deleted").arg(deleted); }
        static QString failureTitle() { return QStringLiteral("Some items could not be deleted"); }
        QString failureDetail() const { return failures.join(u'\n'); }
    };

    // Blocks; every path is tried.
    static Result run(const QStringList& paths);
    // Runs on a pool thread and calls `done` on the main thread, unless `context` is gone by then.
    static void start(const QStringList& paths, QObject* context, std::function<void(const Result&)> done);
};

} // namespace orvane
