#pragma once

#include <QString>

namespace orvane {

// What a size scan has counted so far, and the texts the Properties window makes of it.
struct PropertiesSizeSummary {
    qint64 logicalBytes = 0;
    qint64 allocatedBytes = 0;
    qint64 files = 0;   // everything that is not a real folder, links included
    qint64 folders = 0; // real folders below the selection; a selected folder is not one of them
    qint64 unreadable = 0;
    qint64 unavailableAllocation = 0;
    bool cancelled = false;

    PropertiesSizeSummary& operator+=(const PropertiesSizeSummary& other);

    QString sizeText() const;
    QString allocatedText() const;
    QString containsText() const;
    // The line beside the spinner: a running count while scanning, the outcome when finished.
    QString statusText(bool finished) const;
};

// A byte count in the file browser's short form with the exact count beside it, "1.2 MB (1,234,567
// bytes)", or the exact count alone when the two read alike ("512 bytes").
QString bytes(qint64 value);

} // namespace orvane
