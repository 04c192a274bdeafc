#include "BenchCommand.h"

#include "phone/PhoneBridge.h"
#include "phone/PhoneProtocol.h"

#include <QDir>
#include <QElapsedTimer>
#include <QEventLoop>
#include <QFile>
#include <QRandomGenerator>
#include <QTemporaryDir>

using namespace orvane;

namespace {

PhoneReply wait(const QStringList& args) {
    PhoneReply reply;
    bool finished = false;
    QEventLoop loop;
    PhoneBridge::run(args, nullptr, [&](const PhoneReply& answer) {
        reply = answer;
        finished = true;
        loop.quit();
    });
    if (!finished) loop.exec();
    return reply;
}

// Each request waits for the one before: the latency of a whole round through both processes.
double sequentialRate(const QStringList& request, int count) {
    QElapsedTimer timer;
    timer.start();
    for (int i = 0; i < count; ++i)
        if (wait(request).error) return -1;
    return count / (double(timer.nsecsElapsed()) / 1e9);
}

// All requests queued at once, as many windows and thumbnails do.
double queuedRate(const QStringList& request, int count) {
    int done = 0;
    bool failed = false;
    QEventLoop loop;
    QElapsedTimer timer;
    timer.start();
    for (int i = 0; i < count; ++i)
        PhoneBridge::run(request, nullptr, [&](const PhoneReply& reply) {
            failed = failed || reply.error.has_value();
            if (++done == count) loop.quit();
        });
    loop.exec();
    return failed ? -1 : count / (double(timer.nsecsElapsed()) / 1e9);
}

bool writeRandom(const QString& path, qint64 size) {
    QFile file(path);
    if (!file.open(QIODevice::WriteOnly)) return false;
    QByteArray block(8 << 20, Qt::Uninitialized);
    for (qint64 done = 0; done < size; done += block.size()) {
        QRandomGenerator::global()->fillRange(reinterpret_cast<quint32*>(block.data()), block.size() / 4);
        if (file.write(block.constData(), std::min<qint64>(block.size(), size - done)) < 0) return false;
    }
    return true;
}

double timed(const QStringList& request) {
    QElapsedTimer timer;
    timer.start();
    const PhoneReply reply = wait(request);
    if (reply.error) {
        benchOut() << "failed: " << *reply.error << Qt::endl;
        return -1;
    }
    return double(timer.nsecsElapsed()) / 1e6;
}

// The best of three runs of each, so the page cache and a passing hiccup weigh on none.
int transfers(const QTemporaryDir& dir, qint64 size) {
    const QString source = dir.filePath(QStringLiteral("local/big.bin"));
    QDir().mkpath(dir.filePath(QStringLiteral("local")));
    if (!writeRandom(source, size)) return 1;
    double copy = 1e18, put = 1e18, get = 1e18;
    for (int round = 0; round < 3; ++round) {
        const QString copied = dir.filePath(QStringLiteral("copy-%1.bin").arg(round));
        copy = std::min(copy, timeShell(QStringLiteral("cp '%1' '%2'").arg(source, copied)));
        QFile::remove(copied);
        put = std::min(put, timed(PhoneProtocol::put(65537, PhoneProtocol::rootHandle, {source})));
        const PhoneReply listing = wait(PhoneProtocol::list(65537, PhoneProtocol::rootHandle));
        quint32 id = 0;
        for (const PhoneItem& item : listing.items.value_or(QList<PhoneItem>()))
            id = item.name == QLatin1String("big.bin") ? item.id : id;
        const QString back = dir.filePath(QStringLiteral("back-%1.bin").arg(round));
        get = std::min(get, timed(PhoneProtocol::get({{id, back}})));
        QFile::remove(back);
        if (wait(PhoneProtocol::remove(id)).error || put < 0 || get < 0 || copy < 0) return 1;
    }
    const double mib = double(size) / double(1 << 20);
    benchOut() << "file MiB " << mib << "\nplain copy MB/s " << mib / (copy / 1000) << "\nput MB/s "
               << mib / (put / 1000) << "  (" << put / copy << "x the copy time)\nget MB/s "
               << mib / (get / 1000) << "  (" << get / copy << "x the copy time)" << Qt::endl;
    return 0;
}

int bridge(const QStringList& args) {
    QTemporaryDir dir;
    const int count = args.value(0, QStringLiteral("20000")).toInt();
    const qint64 size = args.value(1, QStringLiteral("256")).toLongLong() << 20;
    QDir().mkpath(dir.filePath(QStringLiteral("phone/Internal storage/small")));
    for (int i = 0; i < 5; ++i) {
        QFile f(dir.filePath(QStringLiteral("phone/Internal storage/small/file%1.txt").arg(i)));
        if (!f.open(QIODevice::WriteOnly) || f.write("x") != 1) return 1;
    }
    qputenv("MTP_BRIDGE_SIMULATE", QFile::encodeName(dir.filePath(QStringLiteral("phone"))));
    const PhoneReply top = wait({QStringLiteral("65537"), QStringLiteral("4294967295")});
    if (top.error || !top.items || top.items->isEmpty()) {
        benchOut() << "no simulated phone: " << top.error.value_or(QStringLiteral("empty")) << Qt::endl;
        return 1;
    }
    const QStringList listing{QStringLiteral("65537"), QString::number(top.items->first().id)};
    benchOut() << qint64(sequentialRate(listing, count))
               << " requests/s (small listings, one after another)\n"
               << qint64(queuedRate(listing, count)) << " requests/s (small listings, all queued at once)"
               << Qt::endl;
    return transfers(dir, size);
}

} // namespace

ORVANE_BENCH_COMMAND(bridge, "bridge", "[requests=20000] [file MiB=256]", bridge)
