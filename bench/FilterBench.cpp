#include "BenchCommand.h"
#include "views/FileTable.h"

#include "core/ExplorerEvents.h"
#include "core/FolderListing.h"
#include "core/NaturalOrder.h"
#include "core/WindowListing.h"
#include "platform/Platform.h"
#include "views/EntryTableModel.h"
#include "window/AppDelegate.h"
#include "window/Explorer.h"

#include <QCoreApplication>
#include <QElapsedTimer>
#include <QEventLoop>
#include <QFile>
#include <QTimer>
#include <algorithm>

using namespace orvane;

namespace {

double msSince(const QElapsedTimer& timer) {
    return double(timer.nsecsElapsed()) / 1e6;
}

// One full listing, then ten keystrokes of a text that grows and shrinks, each timed from the
// changed text to the updated model.
int filter(const QStringList& args) {
    if (args.size() != 1) return 2;
    Platform::typeDescription(QStringLiteral("warm.txt"), false, false);
    NaturalOrder::shared().compare(QStringLiteral("a"), QStringLiteral("b"));
    EntryTableModel rows;
    WindowListing listing(rows);
    QElapsedTimer timer;
    timer.start();
    std::vector<Entry> read;
    QString error;
    if (!FolderListing::read(args[0], false, {}, read, error)) {
        benchOut() << "cannot read " << args[0] << ": " << error << Qt::endl;
        return 1;
    }
    listing.setSource(std::move(read));
    const double list = msSince(timer);
    const QStringList texts = {QStringLiteral("f"),     QStringLiteral("fi"),
                               QStringLiteral("fil"),   QStringLiteral("file"),
                               QStringLiteral("file1"), QStringLiteral("file12"),
                               QStringLiteral("file1"), QStringLiteral("file"),
                               QStringLiteral("fi"),    QString()};
    std::vector<double> times;
    for (const QString& text : texts) {
        timer.restart();
        listing.setQuery(text);
        times.push_back(msSince(timer));
    }
    std::sort(times.begin(), times.end());
    benchOut() << "list ms " << list << "\nkeystroke ms " << (times[4] + times[5]) / 2 << Qt::endl;
    return 0;
}

// One file appears in a large folder shown by a window: the time until the model has it, and how
// the model said so.
int refreshOne(const QStringList& args) {
    if (args.size() != 1) return 2;
    AppDelegate app;
    Explorer* window = app.newWindow(QUrl::fromLocalFile(args[0]));
    QElapsedTimer timer;
    timer.start();
    while (window->entries().empty() && timer.elapsed() < 30000)
        QCoreApplication::processEvents(QEventLoop::AllEvents, 50);
    QAbstractItemModel* model = window->table()->model();
    int rows = 0;
    int resets = 0;
    QObject::connect(model, &QAbstractItemModel::rowsInserted, model,
                     [&rows](const QModelIndex&, int first, int last) { rows += last - first + 1; });
    QObject::connect(model, &QAbstractItemModel::modelReset, model, [&resets] { ++resets; });
    const size_t before = window->entries().size();
    const QString path = args[0] + QStringLiteral("/refresh-one-probe.txt");
    QFile::remove(path);
    timer.restart();
    QFile probe(path);
    if (!probe.open(QIODevice::NewOnly)) return 1;
    probe.close();
    // Waits without spinning, so the reading thread has the cores to itself.
    QEventLoop wait;
    QObject::connect(&window->events(), &ExplorerEvents::listingChanged, &wait, [&] {
        if (window->entries().size() != before) wait.quit();
    });
    QTimer::singleShot(30000, &wait, &QEventLoop::quit);
    wait.exec();
    const double update = msSince(timer);
    QFile::remove(path);
    benchOut() << "update ms " << update << "\nrows inserted " << rows << "\nmodel resets " << resets
               << Qt::endl;
    return 0;
}

} // namespace

ORVANE_BENCH_COMMAND(filter, "filter", "DIR  (a listing, then ten filter keystrokes)", filter)
ORVANE_BENCH_COMMAND(refreshOne, "refresh-one", "DIR  (one new file reaching a window's model)", refreshOne)
