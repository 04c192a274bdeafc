#pragma once

#include "platform/ChildProcess.h"

#include <QString>
#include <QStringList>
#include <atomic>

namespace orvane {

// Packs items of one folder into a ZIP beside them with the system's `zip`. The archive is made in a
// hidden staging folder and only then given its name, so nothing half-made is ever seen under it and
// nothing is ever replaced.
class Compression {
public:
    struct Outcome {
        QString archive; // the finished archive; empty on failure or cancel
        QString error;
        bool cancelled = false;
    };

    // Blocks for as long as `zip` runs: call it off the main thread.
    Outcome run(const QStringList& paths);
    // From any thread: stops `zip`; run() then removes what it made and answers cancelled.
    void cancel();

    // "A.txt" for one item, "Archive" for several.
    static QString stem(const QStringList& paths);
    // The n-th name tried: "stem.zip", then "stem (2).zip" and on.
    static QString candidate(const QString& stem, int n);
    static constexpr const char* stagingPrefix = ".Orvane-Compress-";
    static QString errorTitle() { return QStringLiteral("Cannot compress items"); }
    static QString startText(int count);
    static QString doneText(const QString& archive);

private:
    QString pack(const QString& folder, const QStringList& paths, const QString& staged);
    QString place(const QString& staged, const QString& folder, const QString& stem, QString& error);

    ChildProcess zip;
    std::atomic<bool> stopped{false};
};

} // namespace orvane
