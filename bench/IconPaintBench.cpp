#include "BenchCommand.h"
#include "SyntheticEntries.h"

#include "views/EntryTableModel.h"
#include "views/ExplorerIconCanvas.h"
#include "views/ExplorerIconScrollView.h"
#include "views/ExplorerIconView.h"

#include <QApplication>
#include <QElapsedTimer>
#include <QItemSelectionModel>
#include <QListView>
#include <QScrollBar>
#include <algorithm>

using namespace orvane;

namespace {

constexpr int repaints = 50;
const QSize viewSize(1280, 800);

// Median milliseconds of full repaints of `surface`.
double medianRepaint(QWidget* surface) {
    for (int i = 0; i < 5; ++i)
        surface->repaint(); // icons and glyphs are made once, up front
    std::vector<double> times;
    QElapsedTimer timer;
    for (int i = 0; i < repaints; ++i) {
        timer.start();
        surface->repaint();
        times.push_back(double(timer.nsecsElapsed()) / 1e6);
    }
    std::nth_element(times.begin(), times.begin() + repaints / 2, times.end());
    return times[repaints / 2];
}

void selectAround(QItemSelectionModel& selection, int middle) {
    const QAbstractItemModel* model = selection.model();
    for (int row = middle; row < middle + 40; row += 3)
        selection.select(model->index(row, 0), QItemSelectionModel::Select | QItemSelectionModel::Rows);
}

double canvasPaint(const std::vector<Entry>& entries, EntryTableModel& model, qint64& heapGrowth) {
    QItemSelectionModel selection(&model);
    ExplorerIconView view;
    view.resize(viewSize);
    view.show();
    view.canvas()->repaint();
    QApplication::processEvents();
    // The window and its backing store are there before the listing is.
    const qint64 before = bench::liveHeap();
    view.update(&entries, &selection, 3, 160);
    QApplication::processEvents();
    QScrollBar* bar = view.scrollView()->verticalScrollBar();
    bar->setValue(bar->maximum() / 2);
    const int middle = view.canvas()->itemAt(QPoint(20, 20)).value_or(0);
    selectAround(selection, middle);
    view.canvas()->repaint();
    heapGrowth = bench::liveHeap() - before;
    return medianRepaint(view.canvas());
}

double listViewPaint(EntryTableModel& model) {
    QListView view;
    view.setViewMode(QListView::IconMode);
    view.setUniformItemSizes(true); // the stock view at its quickest
    view.setGridSize(QSize(102, 102));
    view.setIconSize(QSize(48, 48));
    view.setWordWrap(true);
    view.setModel(&model);
    view.resize(viewSize);
    view.show();
    QApplication::processEvents();
    view.verticalScrollBar()->setValue(view.verticalScrollBar()->maximum() / 2);
    selectAround(*view.selectionModel(), view.indexAt(QPoint(20, 20)).row());
    QApplication::processEvents();
    return medianRepaint(view.viewport());
}

int iconPaint(const QStringList& args) {
    if (!qobject_cast<QApplication*>(QCoreApplication::instance())) {
        benchOut() << "icon-paint needs orvane-bench to run with a QApplication" << Qt::endl;
        return 1;
    }
    const int count = args.isEmpty() ? 100000 : args[0].toInt();
    EntryTableModel model;
    model.setEntries(bench::syntheticEntries(count, true));
    const std::vector<Entry>& entries = model.entries();
    qint64 growth = 0;
    {
        // Fonts, glyphs and icons load once per process; a small listing pays for them first.
        EntryTableModel fewModel;
        fewModel.setEntries(bench::syntheticEntries(1000, true));
        canvasPaint(fewModel.entries(), fewModel, growth);
    }
    const double canvas = canvasPaint(entries, model, growth);
    const double listView = listViewPaint(model);
    benchOut() << "entries " << count << "\ncanvas paint ms " << canvas << "\nlistview paint ms " << listView
               << "\ncanvas share of listview " << canvas / listView << "\nheap bytes per entry "
               << double(growth) / count << Qt::endl;
    return 0;
}

} // namespace

ORVANE_BENCH_COMMAND(iconPaint, "icon-paint", "[ENTRIES]", iconPaint)
