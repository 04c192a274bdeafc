#include "BenchCommand.h"

#include "media/MediaDimensions.h"
#include "media/MediaThumbnails.h"
#include "platform/NativePath.h"
#include "views/EntryTableModel.h"
#include "views/ExplorerIconCanvas.h"
#include "views/ExplorerIconView.h"

#include <QApplication>
#include <QDir>
#include <QElapsedTimer>
#include <QImage>
#include <QItemSelectionModel>
#include <QProcess>
#include <QStandardPaths>
#include <QTemporaryDir>
#include <QThreadPool>
#include <QTimer>

using namespace orvane;

namespace {

constexpr int videoCount = 20;

// The type database and the image plugins load once per process, long before a folder is shown.
void warmUp(const std::vector<Entry>& entries) {
    if (!entries.empty()) ThumbnailMaker::typeOf(entries.front().location);
    ThumbnailMaker::isImage(QStringLiteral("image/png"));
}

std::vector<Entry> entriesOf(const QString& folder) {
    std::vector<Entry> entries;
    for (const QString& name : QDir(folder).entryList(QDir::Files, QDir::Name))
        entries.push_back(Entry::fromPath(folder + u'/' + name));
    return entries;
}

// Photos of 4000 × 3000 with a little detail each, so no two compress alike.
void makePhotos(const QString& folder, int count) {
    QImage photo(4000, 3000, QImage::Format_RGB32);
    for (int y = 0; y < photo.height(); ++y) {
        auto* line = reinterpret_cast<QRgb*>(photo.scanLine(y));
        for (int x = 0; x < photo.width(); ++x)
            line[x] = qRgb(x / 16, y / 12, (x ^ y) & 255);
    }
    QList<int> missing;
    for (int i = 0; i < count; ++i)
        if (!QFile::exists(QStringLiteral("%1/photo%2.jpg").arg(folder).arg(i, 4, 10, QChar(u'0'))))
            missing << i;
    for (const int i : missing)
        QThreadPool::globalInstance()->start([&photo, folder, i] {
            QImage own = photo.copy();
            own.setPixel(i % 4000, 0, qRgb(255, 255, 255));
            own.save(QStringLiteral("%1/photo%2.jpg").arg(folder).arg(i, 4, 10, QChar(u'0')), "jpg", 85);
        });
    QThreadPool::globalInstance()->waitForDone();
}

void makeVideos(const QString& folder) {
    QDir().mkpath(folder);
    const QString ffmpeg = QStandardPaths::findExecutable(QStringLiteral("ffmpeg"));
    for (int i = 0; ffmpeg.size() && i < videoCount; ++i) {
        const QString path = QStringLiteral("%1/clip%2.mp4").arg(folder).arg(i, 2, 10, QChar(u'0'));
        if (QFile::exists(path)) continue;
        QProcess::execute(ffmpeg, {QStringLiteral("-nostdin"), QStringLiteral("-v"), QStringLiteral("quiet"),
                                   QStringLiteral("-f"), QStringLiteral("lavfi"), QStringLiteral("-i"),
                                   QStringLiteral("testsrc=s=640x360:d=2:r=%1").arg(10 + i), path});
    }
}

// Asks for a picture of every entry while a large icon view of the folder shows them as they
// arrive; prints the time until the last callback and the longest main-thread stall.
int thumbnailsPass(const QStringList& args) {
    EntryTableModel model;
    model.setEntries(entriesOf(args.value(0)));
    QItemSelectionModel selection(&model);
    warmUp(model.entries());
    MediaThumbnails media;
    ExplorerIconView view;
    ExplorerIconPainter& cells = view.canvas()->cellPainter();
    cells.thumbnail = [&media](const Entry& entry) { return media.cached(entry).value_or(QImage()); };
    QObject::connect(&media, &MediaThumbnails::arrived, &view, [&](const QString& location) {
        cells.forgetEntry(location);
        view.canvas()->update();
    });
    view.resize(1280, 800);
    view.show();
    view.update(&model.entries(), &selection, 2, 256);
    QApplication::processEvents();
    size_t done = 0;
    double stall = 0;
    QElapsedTimer clock, tick;
    QTimer beat;
    beat.setInterval(4);
    QObject::connect(&beat, &QTimer::timeout, [&] {
        stall = std::max(stall, double(tick.nsecsElapsed()) / 1e6 - 4);
        tick.start();
    });
    clock.start();
    tick.start();
    beat.start();
    for (const Entry& entry : model.entries())
        media.request(entry, [&done](const QImage&) { ++done; });
    while (done < model.entries().size())
        QApplication::processEvents(QEventLoop::WaitForMoreEvents);
    benchOut() << "ms " << double(clock.nsecsElapsed()) / 1e6 << "\nstall ms " << stall << Qt::endl;
    return 0;
}

int dimensionsPass(const QStringList& args) {
    const std::vector<Entry> entries = entriesOf(args.value(0));
    warmUp(entries);
    MediaDimensions dimensions;
    size_t done = 0;
    QElapsedTimer clock;
    clock.start();
    for (const Entry& entry : entries)
        dimensions.request(entry, [&done](const QString&) { ++done; });
    while (done < entries.size())
        QCoreApplication::processEvents(QEventLoop::WaitForMoreEvents);
    benchOut() << "ms " << double(clock.nsecsElapsed()) / 1e6 << Qt::endl;
    return 0;
}

// One pass in a fresh process over `cache`; its "ms" line is printed under `label`.
void childPass(const QString& pass, const QString& folder, const QString& cache, const QString& label) {
    QProcess child;
    QProcessEnvironment env = QProcessEnvironment::systemEnvironment();
    env.insert(QStringLiteral("XDG_CACHE_HOME"), cache);
    child.setProcessEnvironment(env);
    child.start(QCoreApplication::applicationFilePath(), {pass, folder});
    child.waitForFinished(-1);
    for (const QByteArray& line : child.readAllStandardOutput().split('\n'))
        if (line.startsWith("ms "))
            benchOut() << label << " " << line.mid(3) << Qt::endl;
        else if (!line.isEmpty())
            benchOut() << line << Qt::endl;
}

int thumbnails(const QStringList& args) {
    if (args.isEmpty()) {
        benchOut() << "usage: thumbnails DIR [PHOTOS]" << Qt::endl;
        return 2;
    }
    const QString folder = QDir(args[0]).absolutePath();
    QDir().mkpath(folder);
    makePhotos(folder, args.value(1, QStringLiteral("1000")).toInt());
    makeVideos(folder + QLatin1String("/videos"));
    QTemporaryDir cache;
    childPass(QStringLiteral("thumbnails-pass"), folder, cache.path(), QStringLiteral("thumbnails ms"));
    childPass(QStringLiteral("thumbnails-pass"), folder, cache.path(), QStringLiteral("cached ms"));
    childPass(QStringLiteral("dimensions-pass"), folder, cache.path(), QStringLiteral("dimensions ms"));
    const QString videos = folder + QLatin1String("/videos");
    childPass(QStringLiteral("thumbnails-pass"), videos, cache.path(), QStringLiteral("video thumbnails ms"));
    childPass(QStringLiteral("dimensions-pass"), videos, cache.path(), QStringLiteral("video dimensions ms"));
    QTemporaryDir out;
    benchOut() << "vipsthumbnail ms "
               << timeShell(QStringLiteral("vipsthumbnail --size 256 -o '%1/%s.png' '%2'/*.jpg")
                                .arg(out.path(), folder))
               << Qt::endl;
    return 0;
}

} // namespace

ORVANE_BENCH_COMMAND(thumbnails, "thumbnails", "DIR [PHOTOS]", thumbnails)
ORVANE_BENCH_COMMAND(thumbnailsPass, "thumbnails-pass", "DIR", thumbnailsPass)
ORVANE_BENCH_COMMAND(dimensionsPass, "dimensions-pass", "DIR", dimensionsPass)
