#include "SyntheticEntries.h"

#include <QDateTime>
#include <malloc.h>

namespace orvane::bench {

std::vector<Entry> syntheticEntries(int count, bool longNames) {
    const QString kinds[] = {QStringLiteral("Plain text document"), QStringLiteral("JPEG image"),
                             QStringLiteral("Folder"), QStringLiteral("PDF document")};
    const QString suffixes[] = {QStringLiteral(".txt"), QStringLiteral(".jpg"), QString(),
                                QStringLiteral(".pdf")};
    std::vector<Entry> entries(static_cast<size_t>(count));
    const QDateTime base = QDateTime::fromSecsSinceEpoch(1500000000);
    for (int i = 0; i < count; ++i) {
        Entry& e = entries[size_t(i)];
        const QString stem = longNames && i % 3 == 0 ? QStringLiteral("holiday photos from the coast %1")
                                                     : QStringLiteral("item %1");
        e.location = QStringLiteral("/bench/folder/") + stem.arg(i) + suffixes[i % 4];
        e.kind = kinds[i % 4];
        e.directory = i % 4 == 2;
        e.size = e.directory ? 0 : qint64(i) * 137;
        e.modified = base.addSecs(i * 61);
        e.created = base;
    }
    return entries;
}

qint64 liveHeap() {
    malloc_trim(0);
    const struct mallinfo2 info = mallinfo2();
    return qint64(info.uordblks + info.hblkhd);
}

} // namespace orvane::bench
