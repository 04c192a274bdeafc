#include "BenchCommand.h"

#include "properties/PropertiesSizeScanner.h"

#include <QDir>
#include <QElapsedTimer>
#include <QFile>
#include <QRandomGenerator>
#include <fcntl.h>
#include <sys/resource.h>
#include <sys/stat.h>
#include <unistd.h>

using namespace orvane;

namespace {

constexpr int rounds = 3;

// Processor time, user and system, of this process or of its finished children.
double cpuMs(int who) {
    rusage usage;
    getrusage(who, &usage);
    const auto ms = [](const timeval& t) { return double(t.tv_sec) * 1e3 + double(t.tv_usec) / 1e3; };
    return ms(usage.ru_utime) + ms(usage.ru_stime);
}

double scanMs(const QString& dir, PropertiesSizeSummary& summary) {
    QElapsedTimer timer;
    timer.start();
    summary = PropertiesSizeScanner::scan({QUrl::fromLocalFile(dir)}, [] { return false; });
    return double(timer.nsecsElapsed()) / 1e6;
}

// The scanner over DIR against `du -s` on the same tree, both with the tree in the cache, the
// best of three rounds each. The processor time per round shows the work apart from how much of
// the two cores the machine gives.
int size(const QStringList& args) {
    if (args.size() != 1) return 2;
    const QString dir = QDir(args[0]).absolutePath();
    PropertiesSizeSummary summary;
    scanMs(dir, summary); // fills the cache for both
    double best = 1e18;
    double du = 1e18;
    const QString duCommand = QStringLiteral("du -s '%1' > /dev/null").arg(dir);
    const double selfBefore = cpuMs(RUSAGE_SELF);
    const double childrenBefore = cpuMs(RUSAGE_CHILDREN);
    for (int i = 0; i < rounds; ++i) {
        best = qMin(best, scanMs(dir, summary));
        du = qMin(du, timeShell(duCommand));
    }
    const double scanCpu = (cpuMs(RUSAGE_SELF) - selfBefore) / rounds;
    const double duCpu = (cpuMs(RUSAGE_CHILDREN) - childrenBefore) / rounds;
    benchOut() << "bytes " << summary.logicalBytes << "\nallocated " << summary.allocatedBytes << "\nfiles "
               << summary.files << "\nfolders " << summary.folders << "\nunreadable " << summary.unreadable
               << "\nscan ms " << best << "\ndu -s ms " << du << "\nratio " << (du > 0 ? best / du : 0)
               << "\nscan cpu ms " << scanCpu << "\ndu -s cpu ms " << duCpu << Qt::endl;
    return 0;
}

bool writeFile(const QByteArray& path, qint64 length, const QByteArray& filler) {
    const int fd = open(path.constData(), O_WRONLY | O_CREAT | O_EXCL | O_CLOEXEC, 0644);
    if (fd < 0) return false;
    const bool written = length == 0 || write(fd, filler.constData(), size_t(length)) == length;
    return close(fd) == 0 && written;
}

// FILES files, ten to a folder, in FILES/10 folders two levels deep: small files of random size,
// one in ten hidden, and a few links to folders, to files and to nothing.
int makeSizeTree(const QStringList& args) {
    if (args.size() != 2 || args[1].toInt() < 10) return 2;
    const QByteArray root = QFile::encodeName(QDir(args[0]).absolutePath());
    const int files = args[1].toInt();
    const int folders = files / 10;
    const int top = qMax(1, folders / 1000);
    QRandomGenerator random(17);
    const QByteArray filler(16384, 'x');
    QDir().mkpath(QFile::decodeName(root));
    int made = 0;
    for (int f = 0; f < folders; ++f) {
        const QByteArray parent = root + "/top" + QByteArray::number(f % top);
        const QByteArray folder = f < top ? parent : parent + "/folder" + QByteArray::number(f);
        if (mkdir(folder.constData(), 0755) != 0) return 1;
        for (int i = 0; i < 10 && made < files; ++i, ++made) {
            const QByteArray name = (i == 9 ? ".hidden" : "file") + QByteArray::number(made);
            const QByteArray path = folder + '/' + name;
            if (f % 500 == 7 && i == 3) {
                const char* targets[] = {"..", "file1", "/nowhere/at/all"};
                if (symlink(targets[(f / 500) % 3], path.constData()) != 0) return 1;
            } else if (!writeFile(path, random.bounded(16384), filler)) {
                return 1;
            }
        }
    }
    benchOut() << "made " << made << " files in " << folders << " folders in " << root << Qt::endl;
    return 0;
}

} // namespace

ORVANE_BENCH_COMMAND(size, "size", "DIR", size)
ORVANE_BENCH_COMMAND(makeSizeTree, "make-size-tree", "DIR FILES", makeSizeTree)
