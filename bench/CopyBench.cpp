#include "BenchCommand.h"

#include "fileops/FileTree.h"
#include "fileops/TransferEngine.h"
#include "fileops/TransferProgressSnapshot.h"
#include "platform/NativePath.h"

#include <QDir>
#include <QElapsedTimer>
#include <QEventLoop>
#include <QFile>
#include <QRandomGenerator>
#include <dirent.h>
#include <optional>
#include <sys/resource.h>
#include <sys/stat.h>
#include <unistd.h>

using namespace orvane;

namespace {

// CPU time in ms of this process (all threads) or of its finished children; steadier than wall time on a
// busy machine.
double cpuMs(int who) {
    rusage use{};
    getrusage(who, &use);
    const auto ms = [](const timeval& t) { return double(t.tv_sec) * 1e3 + double(t.tv_usec) / 1e3; };
    return ms(use.ru_utime) + ms(use.ru_stime);
}

struct Tally {
    qint64 bytes = 0;
    qint64 files = 0;
};

// What arrived: regular files and their bytes, links not followed, read by the exact bytes of each name.
void tallyAt(const QByteArray& path, Tally& t) {
    struct stat st;
    if (lstat(path.constData(), &st) != 0) return;
    if (S_ISREG(st.st_mode)) {
        t.bytes += st.st_size;
        ++t.files;
    }
    if (!S_ISDIR(st.st_mode)) return;
    DIR* dir = opendir(path.constData());
    if (!dir) return;
    while (dirent* d = readdir(dir))
        if (qstrcmp(d->d_name, ".") != 0 && qstrcmp(d->d_name, "..") != 0) tallyAt(path + '/' + d->d_name, t);
    closedir(dir);
}

Tally tally(const QString& path) {
    Tally t;
    tallyAt(NativePath::encode(path), t);
    return t;
}

QString absolute(const QString& path) {
    if (path.startsWith(u'/')) return path;
    char* here = getcwd(nullptr, 0);
    const QString folder = here ? NativePath::decode(here) : QString();
    free(here);
    return QDir::cleanPath(folder + u'/' + path);
}

struct Run {
    double ms = -1;
    int ticks = 0;
    QString destination;
    QStringList failures;
};

// A paste without a window: plan on this thread, engine on its worker, the report back through the loop.
Run paste(const QString& source, const QString& folder) {
    Run run;
    const TransferPlan plan = TransferEngine::plan({source}, false, folder);
    if (plan.refused() || plan.jobs.empty()) return run;
    run.destination = plan.jobs.front().destination;
    TransferEngine engine;
    QEventLoop loop;
    QObject::connect(&engine, &TransferEngine::progress, [&run] { ++run.ticks; });
    QObject::connect(&engine, &TransferEngine::finished, [&](const TransferResult& result) {
        run.failures = result.failures;
        loop.quit();
    });
    QElapsedTimer timer;
    timer.start();
    engine.start(plan.jobs, false);
    loop.exec();
    run.ms = double(timer.nsecsElapsed()) / 1e6;
    return run;
}

// The same jobs with no progress thread at all, to price the polling.
double pasteUnmeasured(const QString& source, const QString& folder, QString& destination) {
    const TransferPlan plan = TransferEngine::plan({source}, false, folder);
    destination = plan.jobs.front().destination;
    QElapsedTimer timer;
    timer.start();
    TransferEngine::run(plan.jobs, false, {});
    return double(timer.nsecsElapsed()) / 1e6;
}

int copyCommand(const QStringList& args) {
    if (args.size() != 2 || !NativePath::isDir(args[1])) return 2;
    const Run run = paste(absolute(args[0]), absolute(args[1]));
    if (run.ms < 0) {
        benchOut() << "nothing to copy" << Qt::endl;
        return 1;
    }
    const Tally t = tally(run.destination);
    benchOut() << "bytes " << t.bytes << "\nfiles " << t.files << "\nms " << run.ms << "\nprogress reports "
               << run.ticks << Qt::endl;
    for (const QString& line : run.failures)
        benchOut() << "failed " << line << Qt::endl;
    return run.failures.isEmpty() ? 0 : 1;
}

bool makeTree(const QString& root, int smallFiles, qint64 bigBytes) {
    QRandomGenerator random(7);
    QByteArray block(1 << 20, '\0');
    for (int i = 0; i < block.size(); ++i)
        block[i] = char(random.bounded(256));
    for (int i = 0; i < smallFiles; ++i) {
        const QString dir = root + QStringLiteral("/d%1").arg(i / 100);
        QDir().mkpath(dir);
        QFile f(dir + QStringLiteral("/f%1.txt").arg(i));
        if (!f.open(QIODevice::WriteOnly) || f.write(block.constData(), random.bounded(16384)) < 0)
            return false;
    }
    QFile big(root + QStringLiteral("/big.bin"));
    if (!big.open(QIODevice::WriteOnly)) return false;
    for (qint64 left = bigBytes; left > 0; left -= block.size())
        if (big.write(block.constData(), qMin<qint64>(left, block.size())) < 0) return false;
    return QFile::link(QStringLiteral("big.bin"), root + QStringLiteral("/link"));
}

void discard(const QString& path) {
    QString ignored;
    FileTree::remove(path, ignored);
    sync(); // each copy starts with no writeback of the one before
}

struct PollCost {
    double snapshotMs = 0;
    double fractionMs = 0;
};

// The measuring work itself, timed alone: the walk before the run, and one reading of a finished copy,
// where every destination is there to be read.
PollCost pollCost(const QString& source, const QString& folder) {
    PollCost cost;
    const QString copy = folder + QStringLiteral("/measured");
    QElapsedTimer timer;
    timer.start();
    const TransferProgressSnapshot snapshot({{source, copy}});
    cost.snapshotMs = double(timer.nsecsElapsed()) / 1e6;
    QString error;
    FileTree::copy(source, copy, error);
    timer.restart();
    double sum = 0;
    for (int i = 0; i < 10; ++i)
        sum += snapshot.fraction();
    cost.fractionMs = double(timer.nsecsElapsed()) / 1e7; // the mean of ten
    if (sum < 9) benchOut() << "the measured copy is incomplete: " << error << Qt::endl;
    discard(copy);
    return cost;
}

double median(QList<double> values) {
    std::sort(values.begin(), values.end());
    return values.isEmpty() ? -1 : values[values.size() / 2];
}

// Builds the tree under DIR (default /tmp), copies it with cp -a and with the engine, alternating, and
// removes everything afterwards.
int compareCommand(const QStringList& args) {
    const QString base = args.value(0, QStringLiteral("/tmp"));
    const int small = args.value(1, QStringLiteral("2000")).toInt();
    const qint64 big = args.value(2, QStringLiteral("1024")).toLongLong() << 20;
    const QString work = base + QStringLiteral("/orvane-copybench-%1").arg(getpid());
    const QString source = work + QStringLiteral("/tree");
    const QString out = work + QStringLiteral("/out");
    if (!QDir().mkpath(out) || !makeTree(source, small, big)) {
        benchOut() << "cannot build the tree in " << base << Qt::endl;
        discard(work);
        return 1;
    }
    sync();
    timeShell(QStringLiteral("cat '%1/big.bin' > /dev/null").arg(source)); // both start from a warm cache
    const Tally t = tally(source);
    QList<double> cp, engine, bare, cpCpu, engineCpu;
    int ticks = 0;
    const int rounds = qEnvironmentVariableIsSet("ORVANE_COPY_ROUNDS")
                           ? qMax(1, qEnvironmentVariableIntValue("ORVANE_COPY_ROUNDS"))
                           : 3;
    for (int round = 0; round < rounds; ++round) {
        const auto runCp = [&] {
            const double before = cpuMs(RUSAGE_CHILDREN);
            cp << timeShell(QStringLiteral("cp -a '%1' '%2/cp'").arg(source, out));
            cpCpu << cpuMs(RUSAGE_CHILDREN) - before;
            discard(out + QStringLiteral("/cp"));
        };
        if (round % 2 == 0) runCp();
        const auto runEngine = [&] {
            const double before = cpuMs(RUSAGE_SELF);
            const Run run = paste(source, out);
            engineCpu << cpuMs(RUSAGE_SELF) - before;
            engine << run.ms;
            ticks += run.ticks;
            discard(run.destination);
        };
        const auto runBare = [&] {
            QString destination;
            bare << pasteUnmeasured(source, out, destination);
            discard(destination);
        };
        if (round % 2 == 0) {
            runEngine();
            runBare();
        } else {
            runBare();
            runEngine();
        }
        if (round % 2 == 1) runCp();
    }
    for (int i = 0; i < engine.size(); ++i)
        benchOut() << "round " << i << ": cp -a " << cp.value(i) << " engine " << engine[i]
                   << " without progress " << bare[i] << Qt::endl;
    const PollCost poll = pollCost(source, out);
    discard(work);
    const double e = median(engine), c = median(cp), b = median(bare);
    benchOut() << "tree files " << t.files << " bytes " << t.bytes << "\ncp -a ms (median) " << c
               << "\nengine ms (median) " << e << "\nengine without progress ms " << b << "\nengine / cp -a "
               << (c > 0 ? e / c : 0) << "\ncp -a cpu ms (median) " << median(cpCpu)
               << "\nengine cpu ms (median) " << median(engineCpu) << "\nprogress cost % "
               << (b > 0 ? (e - b) / b * 100 : 0) << "\nprogress reports " << ticks << "\nsnapshot ms "
               << poll.snapshotMs << "\none measurement ms " << poll.fractionMs
               << "\nmeasuring work % of the copy "
               << (e > 0 ? (poll.snapshotMs + (ticks / double(engine.size())) * poll.fractionMs) / e * 100
                         : 0)
               << Qt::endl;
    return 0;
}

} // namespace

ORVANE_BENCH_COMMAND(copy, "copy", "SRC DIR", copyCommand)
ORVANE_BENCH_COMMAND(copyCompare, "copy-compare", "[DIR [SMALL_FILES [BIG_MIB]]]", compareCommand)
