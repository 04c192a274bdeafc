#include "BenchCommand.h"

#include "navigation/SidebarRoots.h"
#include "navigation/SidebarTree.h"
#include "navigation/SidebarTreeBuilder.h"

#include <QDir>
#include <QElapsedTimer>
#include <QTemporaryDir>
#include <algorithm>
#include <ctime>
#include <vector>

using namespace orvane;

namespace {

constexpr int folders = 30;

// Processor time of this thread: on a shared machine the wall clock also counts other people's work.
double cpuMs() {
    timespec t{};
    clock_gettime(CLOCK_THREAD_CPUTIME_ID, &t);
    return double(t.tv_sec) * 1e3 + double(t.tv_nsec) / 1e6;
}
constexpr int subfolders = 1000;

bool makeTree(const QString& root) {
    QDir dir(root);
    for (int f = 0; f < folders; ++f) {
        const QString name = QStringLiteral("Folder %1").arg(f + 1);
        for (int s = 0; s < subfolders; ++s)
            if (!dir.mkpath(name + QStringLiteral("/sub %1").arg(s + 1))) return false;
    }
    return true;
}

// The pane of a window with 30 pins, each expanded into its 1,000 subfolders: the median of
// seven whole builds, then the rebuild that follows a click on a disclosure button.
int sidebar(const QStringList& args) {
    QTemporaryDir scratch;
    const QString root = args.isEmpty() ? scratch.path() : args[0];
    if (args.isEmpty() && !makeTree(root)) {
        benchOut() << "cannot create folders in " << root << Qt::endl;
        return 1;
    }
    QList<QUrl> pins;
    QSet<QString> expanded;
    for (int f = 0; f < folders; ++f) {
        const QString path = QDir::cleanPath(root + QStringLiteral("/Folder %1").arg(f + 1));
        pins.append(QUrl::fromLocalFile(path));
        expanded.insert(path);
    }
    const QList<SidebarPlace> roots = SidebarRoots::roots(QDir::homePath(), pins, {});
    std::vector<double> times, cpu;
    int rows = 0;
    for (int run = 0; run < 7; ++run) {
        QElapsedTimer timer;
        timer.start();
        const double cpuStart = cpuMs();
        rows = SidebarTreeBuilder::build(roots, expanded, false).count();
        times.push_back(double(timer.nsecsElapsed()) / 1e6);
        cpu.push_back(cpuMs() - cpuStart);
    }
    std::sort(times.begin(), times.end());
    std::sort(cpu.begin(), cpu.end());
    SidebarTree tree;
    tree.setRoots(roots);
    for (int row = 0; row < tree.snapshot().count(); ++row)
        if (tree.snapshot().depths[row] == 0 && tree.canExpand(row)) tree.setExpanded(row, true);
    int last = tree.snapshot().count() - 1;
    while (last > 0 && !tree.isExpanded(last))
        --last;
    const double toggleStart = cpuMs();
    tree.setExpanded(last, false);
    const double toggle = cpuMs() - toggleStart;
    benchOut() << "rows " << rows << "\nbuild ms " << times[times.size() / 2] << "\nbuild cpu ms "
               << cpu[cpu.size() / 2] << "\ntoggle cpu ms " << toggle << Qt::endl;
    return 0;
}

} // namespace

ORVANE_BENCH_COMMAND(sidebar, "sidebar", "[DIR]  (30 expanded folders of 1,000 subfolders each)", sidebar)
