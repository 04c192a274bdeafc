#include "BenchCommand.h"
#include "SyntheticEntries.h"
#include "core/Settings.h"

#include "views/EntryTableModel.h"
#include "views/ExplorerRowDelegate.h"
#include "views/FileTable.h"

#include <QApplication>
#include <QElapsedTimer>
#include <QPainter>
#include <QScrollBar>
#include <QTemporaryDir>
#include <atomic>
#include <malloc.h>

using namespace orvane;

// Every allocation of the process passes through here while a count is running, so the figures
// include Qt's own allocations as well as ours.
#if !defined(__SANITIZE_ADDRESS__)
extern "C" {
void* __libc_malloc(size_t size);
void* __libc_calloc(size_t count, size_t size);
void* __libc_realloc(void* pointer, size_t size);
}

namespace {
std::atomic<bool> counting{false};
std::atomic<qint64> allocations{0};
} // namespace

extern "C" void* malloc(size_t size) {
    if (counting.load(std::memory_order_relaxed)) allocations.fetch_add(1, std::memory_order_relaxed);
    return __libc_malloc(size);
}
extern "C" void* calloc(size_t count, size_t size) {
    if (counting.load(std::memory_order_relaxed)) allocations.fetch_add(1, std::memory_order_relaxed);
    return __libc_calloc(count, size);
}
extern "C" void* realloc(void* pointer, size_t size) {
    if (counting.load(std::memory_order_relaxed)) allocations.fetch_add(1, std::memory_order_relaxed);
    return __libc_realloc(pointer, size);
}
#else
namespace {
std::atomic<bool> counting{false};
std::atomic<qint64> allocations{0};
} // namespace
#endif

namespace {

// Allocations made by `work`.
template <typename Fn> qint64 countAllocations(Fn work) {
    allocations = 0;
    counting = true;
    work();
    counting = false;
    return allocations.load();
}

// Every cell's text of the rows on show, as the delegate asks for them.
qint64 modelAllocations(const EntryTableModel& model, int first, int rows) {
    return countAllocations([&] {
        for (int row = first; row < first + rows; ++row)
            for (int column = 0; column < model.columnCount(); ++column) {
                const QModelIndex index = model.index(row, column);
                index.data(Qt::DisplayRole);
                index.data(Qt::DecorationRole);
                index.data(Qt::TextAlignmentRole);
            }
    });
}

int tableScroll(const QStringList& args) {
    if (!qobject_cast<QApplication*>(QCoreApplication::instance())) {
        benchOut() << "table-scroll needs orvane-bench to run with a QApplication" << Qt::endl;
        return 1;
    }
    const int count = args.isEmpty() ? 100000 : args[0].toInt();
    std::vector<Entry> entries = bench::syntheticEntries(count);
    EntryTableModel model;
    model.setEntries(std::move(entries));
    QTemporaryDir scratch;
    Settings settings(scratch.filePath(QStringLiteral("bench.ini")));
    FileTable table(settings);
    table.setModel(&model);
    table.resize(1100, 800);
    table.show();
    QApplication::processEvents();
    QScrollBar* bar = table.verticalScrollBar();
    const int visibleRows = table.viewport()->height() / table.rowHeight(0) + 1;
    const int step = visibleRows * table.rowHeight(0); // a fresh page of rows every frame
    auto frame = [&](int value) {
        bar->setValue(value);
        table.viewport()->repaint();
    };
    for (int v = 0; v < step * 20; v += step)
        frame(v); // icons, glyphs and pixmaps are made once, up front
    table.selectionModel()->select(model.index(3, 0),
                                   QItemSelectionModel::Select | QItemSelectionModel::Rows);
    const qint64 heapBefore = bench::liveHeap();
    int frames = 0;
    QElapsedTimer timer;
    timer.start();
    const qint64 total = countAllocations([&] {
        for (int v = 0; v <= bar->maximum(); v += step, ++frames)
            frame(v);
    });
    const double ms = double(timer.nsecsElapsed()) / 1e6;
    const qint64 grown = bench::liveHeap() - heapBefore;
    const qint64 rowsPainted = qint64(frames) * visibleRows;
    const int columns = model.columnCount() - 1; // "created" is hidden
    const qint64 fromModel = modelAllocations(model, count / 2, visibleRows);
    QImage canvas(1100, 40, QImage::Format_ARGB32_Premultiplied);
    QPainter painter(&canvas);
    ExplorerRowDelegate::RowState state;
    state.selected = state.hovering = state.keyboardFocused = true;
    const qint64 rowMarks = countAllocations([&] {
        for (int i = 0; i < 1000; ++i)
            ExplorerRowDelegate::paintRow(&painter, QRect(0, 4, 1100, 32), state);
    });
    painter.setFont(table.font());
    QStyleOptionViewItem option;
    option.rect = QRect(0, 4, 300, 32);
    const int first = count / 2;
    const qint64 cells = countAllocations([&] {
        for (int row = first; row < first + visibleRows; ++row)
            for (int column = 0; column < columns; ++column)
                table.rowDelegate()->paint(&painter, option, model.index(row, column));
    });
    benchOut() << "rows " << count << "\nframes " << frames << " (" << visibleRows << " rows each)"
               << "\nms per frame " << ms / frames << "\nallocations per painted row "
               << double(total) / double(rowsPainted) << "\n  of which the model's texts and icons "
               << double(fromModel) / visibleRows << "\n  of which the row marks " << double(rowMarks) / 1000
               << "\n  of which the cells' drawing, texts and icons included " << double(cells) / visibleRows
               << "\nallocations per painted cell " << double(total) / double(rowsPainted * columns)
               << "\nheap grown after scrolling all rows, bytes " << grown << Qt::endl;
    return 0;
}

} // namespace

ORVANE_BENCH_COMMAND(tableScroll, "table-scroll", "[ROWS]", tableScroll)
