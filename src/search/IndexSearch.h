#pragma once

#include <QStringList>
#include <atomic>

namespace orvane {

// The whole-computer scope: one question to the system's file index (plocate on Linux) for file
// names that contain a text, ignoring case and diacritics.
namespace IndexSearch {

struct Answer {
    bool available = false; // false when the program or its database is missing, or it failed
    QStringList paths;      // hidden ones included; the caller decides
    QString reason;         // why it is not available, in plocate's own words where it gave any
};

// Blocks; ends early, with an empty answer, once `generation` no longer holds `token`.
Answer run(const QString& text, const std::atomic<quint64>& generation, quint64 token);

// The database to ask: $ORVANE_LOCATE_DB, or empty for plocate's own.
QString database();

// plocate cannot fold diacritics, so it is asked for a wider pattern that every match satisfies
// ("cafe" also admits "café" and "cafe\u0301"), and the names it returns are then tested here.
QString widePattern(const QString& folded);

} // namespace IndexSearch

} // namespace orvane
