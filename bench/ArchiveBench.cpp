#include "BenchCommand.h"

#include "fileops/Compression.h"
#include "fileops/Extraction.h"
#include "fileops/FileTree.h"

#include <QDir>
#include <QElapsedTimer>
#include <QFile>
#include <QFileInfo>
#include <QRandomGenerator>
#include <QTemporaryDir>
#include <algorithm>

using namespace orvane;

namespace {
constexpr int rounds = 3;

QString quoted(const QString& path) {
    QString text = path;
    return u'\'' + text.replace(u'\'', QStringLiteral("'\\''")) + u'\'';
}

// 2,000 small files in 20 folders and one 256 MiB file of incompressible bytes, made once.
bool makeTree(const QString& root) {
    if (QFileInfo::exists(root + "/big.bin")) return true;
    QRandomGenerator random(26);
    for (int i = 0; i < 2000; ++i) {
        const QString folder = root + QStringLiteral("/d%1").arg(i / 100);
        QDir().mkpath(folder);
        QFile small(folder + QStringLiteral("/f%1.txt").arg(i));
        if (!small.open(QIODevice::WriteOnly)) return false;
        small.write(QByteArray("line of text ").repeated(20 + i % 300));
    }
    QFile big(root + "/big.bin");
    if (!big.open(QIODevice::WriteOnly)) return false;
    QByteArray chunk(1 << 20, '\0');
    for (int mb = 0; mb < 256; ++mb) {
        random.fillRange(reinterpret_cast<quint32*>(chunk.data()), chunk.size() / 4);
        big.write(chunk);
    }
    return true;
}

int compressBench(const QStringList& args) {
    const QString dir = QFileInfo(args.value(0)).absoluteFilePath();
    const QString tree = dir + "/tree";
    if (args.isEmpty() || !makeTree(tree)) return 2;
    double ours = 1e18, peer = 1e18;
    for (int round = 0; round < rounds; ++round) {
        QString error;
        FileTree::remove(dir + "/tree.zip", error);
        QElapsedTimer timer;
        timer.start();
        const Compression::Outcome out = Compression().run({tree});
        ours = std::min(ours, double(timer.nsecsElapsed()) / 1e6);
        if (!out.error.isEmpty()) {
            benchOut() << "compress failed: " << out.error << Qt::endl;
            return 1;
        }
        QFile::remove(dir + "/peer.zip");
        peer = std::min(peer, timeShell("cd " + quoted(dir) + " && zip -r -q peer.zip tree"));
    }
    QFile::remove(dir + "/peer.zip");
    benchOut() << "compress ms " << qRound(ours) << Qt::endl << "zip ms " << qRound(peer) << Qt::endl;
    return 0;
}

int extractBench(const QStringList& args) {
    const QString archive = QFileInfo(args.value(0)).absoluteFilePath();
    if (args.isEmpty() || !QFileInfo::exists(archive)) return 2;
    const bool zip = archive.endsWith(".zip", Qt::CaseInsensitive);
    double ours = 1e18, peer = 1e18;
    for (int round = 0; round < rounds; ++round) {
        QTemporaryDir into(QFileInfo(archive).path() + "/.bench-XXXXXX");
        QDir().mkpath(into.path() + "/ours");
        QDir().mkpath(into.path() + "/peer");
        QElapsedTimer timer;
        timer.start();
        const Extraction::Outcome out = Extraction().run(archive, into.path() + "/ours");
        ours = std::min(ours, double(timer.nsecsElapsed()) / 1e6);
        if (!out.error.isEmpty()) {
            benchOut() << "extract failed: " << out.error << Qt::endl;
            return 1;
        }
        const QString where = quoted(into.path() + "/peer");
        peer = std::min(peer, timeShell(zip ? "unzip -q " + quoted(archive) + " -d " + where
                                            : "bsdtar -xf " + quoted(archive) + " -C " + where));
    }
    benchOut() << "extract ms " << qRound(ours) << Qt::endl << "peer ms " << qRound(peer) << Qt::endl;
    return 0;
}
} // namespace

ORVANE_BENCH_COMMAND(compress, "compress", "DIR", compressBench)
ORVANE_BENCH_COMMAND(extract, "extract", "ARCHIVE", extractBench)
