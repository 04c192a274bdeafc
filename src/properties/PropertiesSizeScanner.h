#pragma once

#include "properties/PropertiesSizeSummary.h"

#include <QByteArray>
#include <QList>
#include <QUrl>
#include <functional>

namespace orvane {

// Adds up what a selection holds. Each path counts once, so a file selected together with its
// folder counts once, and each file and folder counts once by device and inode, as du counts, so two
// hard links to one file count once. Links are counted by their own size and never entered; what
// cannot be read is counted, never fatal.
class PropertiesSizeScanner {
public:
    using Progress = std::function<void(const PropertiesSizeSummary& soFar)>;

    static constexpr int reportEveryMs = 250;

    // Runs on the calling thread, with one helper thread, until done or cancelled. `isCancelled` is
    // asked before every item by the thread that counts it, so it must be safe to call from both;
    // `progress` is told at most every `reportMs`, on the calling thread only. There is no last
    // progress call: the result is the last word, cancelled or not.
    static PropertiesSizeSummary scan(const QList<QUrl>& urls, const std::function<bool()>& isCancelled,
                                      const Progress& progress = {}, int reportMs = reportEveryMs);

    // The path an item is counted under: its parent folder with links resolved, then its own name,
    // so a selected link stays a link while two ways to one place become one path.
    static QByteArray canonicalPath(const QUrl& url);
};

} // namespace orvane
