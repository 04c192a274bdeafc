#include "BenchCommand.h"

#include "core/EntrySort.h"
#include "core/FolderListing.h"
#include "core/NaturalOrder.h"
#include "platform/Platform.h"

#include <QDir>
#include <QElapsedTimer>
#include <QFile>
#include <QRandomGenerator>
#include <malloc.h>
#include <sys/stat.h>
#include <utime.h>

using namespace orvane;

namespace {

// Bytes the program holds on the heap now, whether in the main arena or in mapped blocks.
qint64 liveHeapBytes() {
    const struct mallinfo2 info = mallinfo2();
    return qint64(info.uordblks + info.hblkhd);
}

double perEntry(qint64 bytes, size_t count) {
    return count == 0 ? 0.0 : double(bytes) / double(count);
}

// Exactly the disk side of a refresh: list with attributes, build entries, filter, sort by name.
int listFolder(const QStringList& args) {
    if (args.size() != 1) return 2;
    // The type index and the collator are built once per process; they are not the listing's cost.
    Platform::typeDescription(QStringLiteral("warm.txt"), false, false);
    NaturalOrder::shared().compare(QStringLiteral("a"), QStringLiteral("b"));
    const qint64 before = residentBytes();
    const qint64 heapBefore = liveHeapBytes();
    QElapsedTimer timer;
    timer.start();
    std::vector<Entry> entries;
    QString error;
    if (!FolderListing::read(args[0], false, QString(), entries, error)) {
        benchOut() << "cannot read " << args[0] << ": " << error << Qt::endl;
        return 1;
    }
    sortEntries(entries, SortState());
    const double ms = double(timer.nsecsElapsed()) / 1e6;
    qint64 nameBytes = 0;
    for (const Entry& e : entries)
        nameBytes += e.location.size() * 2;
    malloc_trim(0); // count what the listing keeps, not what sorting used and gave back
    const qint64 grown = residentBytes() - before;
    const qint64 held = liveHeapBytes() - heapBefore;
    const double ls = timeShell(QStringLiteral("ls -l '%1' > /dev/null").arg(args[0]));
    benchOut() << "entries " << entries.size() << "\nlist ms " << ms << "\nls -l ms " << ls << "\nratio "
               << (ls > 0 ? ms / ls : 0) << "\nheap bytes per entry beyond path characters "
               << perEntry(held - nameBytes, entries.size())
               << "\nresident bytes per entry beyond path characters "
               << perEntry(grown - nameBytes, entries.size()) << Qt::endl;
    return 0;
}

const char* const stems[] = {"report", "IMG_", "Notes ", "track", "data-", "مستند", "Résumé", "file"};
const char* const suffixes[] = {".txt", ".jpg", ".pdf", ".mp3", ".tar.gz", "", ".md", ".cpp"};

int makeFolder(const QStringList& args) {
    if (args.size() != 2) return 2;
    const QString dir = args[0];
    const int count = args[1].toInt();
    QDir().mkpath(dir);
    QRandomGenerator random(42);
    const QByteArray filler(4096, 'x');
    for (int i = 0; i < count; ++i) {
        const QString name =
            QString::fromUtf8(stems[i % 8]) + QString::number(i) + QLatin1String(suffixes[(i / 8) % 8]);
        const QString path = dir + u'/' + name;
        QFile f(path);
        if (!f.open(QIODevice::WriteOnly)) return 1;
        f.write(filler.constData(), random.bounded(4096));
        f.close();
        const time_t when = time_t(1500000000 + random.bounded(200000000));
        utimbuf times{when, when};
        utime(QFile::encodeName(path).constData(), &times);
    }
    benchOut() << "made " << count << " files in " << dir << Qt::endl;
    return 0;
}

} // namespace

ORVANE_BENCH_COMMAND(list, "list", "DIR", listFolder)
ORVANE_BENCH_COMMAND(makeFolder, "make-folder", "DIR N", makeFolder)
