#include "views/ExplorerIconScrollView.h"

#include "views/ExplorerIconCanvas.h"
#include "views/ExplorerIconView.h"

#include <QApplication>
#include <QKeyEvent>
#include <QScrollBar>
#include <QWheelEvent>
#include <cmath>

namespace orvane {

namespace {
// Points moved per line of a wheel that counts in notches, as a row of the list is high.
constexpr double lineStep = 18;
} // namespace

ExplorerIconScrollView::ExplorerIconScrollView(ExplorerIconView* owner)
    : QAbstractScrollArea(owner), owner(owner), fileCanvas(new ExplorerIconCanvas(owner)) {
    setFrameShape(QFrame::NoFrame);
    setViewport(fileCanvas);
    fileCanvas->setAutoFillBackground(false);
    // The canvas takes the keys itself, so focus lives there rather than on the scroller.
    fileCanvas->setFocusProxy(nullptr);
    setFocusProxy(fileCanvas);
    setAccessibleName(tr("Files"));
    verticalScrollBar()->setAccessibleName(tr("Scroll up and down"));
    horizontalScrollBar()->setAccessibleName(tr("Scroll sideways"));
    connect(fileCanvas, &ExplorerIconCanvas::gridChanged, this, &ExplorerIconScrollView::updateBars);
}

void ExplorerIconScrollView::updateBars() {
    const IconGridLayout& layout = fileCanvas->gridLayout();
    const QSize view = viewport()->size();
    const bool sideways = layout.runsInColumns();
    setHorizontalScrollBarPolicy(sideways ? Qt::ScrollBarAsNeeded : Qt::ScrollBarAlwaysOff);
    setVerticalScrollBarPolicy(sideways ? Qt::ScrollBarAlwaysOff : Qt::ScrollBarAsNeeded);
    const auto setBar = [](QScrollBar* bar, double extent, int page, int step) {
        bar->setRange(0, std::max(0, int(std::ceil(extent)) - page));
        bar->setPageStep(page);
        bar->setSingleStep(step);
    };
    setBar(horizontalScrollBar(), sideways ? layout.canvas.width() : view.width(), view.width(),
           int(layout.cell.width() + IconGrid::gap));
    setBar(verticalScrollBar(), sideways ? view.height() : layout.canvas.height(), view.height(),
           int(std::min(layout.cell.height() + IconGrid::gap, 60.0)));
    fileCanvas->setContentOffset(QPoint(horizontalScrollBar()->value(), verticalScrollBar()->value()));
}

void ExplorerIconScrollView::ensureVisible(const QRectF& gridRect) {
    const QSize view = viewport()->size();
    const auto scrollTo = [](QScrollBar* bar, double from, double to, int page) {
        const int value = bar->value();
        if (from < value)
            bar->setValue(int(std::floor(from - IconGrid::inset)));
        else if (to > value + page)
            bar->setValue(int(std::ceil(to + IconGrid::inset)) - page);
    };
    scrollTo(horizontalScrollBar(), gridRect.left(), gridRect.right(), view.width());
    scrollTo(verticalScrollBar(), gridRect.top(), gridRect.bottom(), view.height());
}

bool ExplorerIconScrollView::viewportEvent(QEvent* event) {
    // The canvas takes its own paint, mouse, key and drop events; only the wheel is the scroller's.
    if (event->type() == QEvent::Wheel) return QAbstractScrollArea::viewportEvent(event);
    return false;
}

void ExplorerIconScrollView::wheelEvent(QWheelEvent* event) {
    if (owner->onMouseWheel && owner->onMouseWheel(event)) return event->accept();
    const QPoint angle = event->angleDelta();
    if (fileCanvas->gridLayout().runsInColumns() && std::abs(angle.y()) > std::abs(angle.x())) {
        const QPoint pixels = event->pixelDelta();
        const double delta =
            !pixels.isNull() ? pixels.y() : angle.y() / 120.0 * QApplication::wheelScrollLines() * lineStep;
        QScrollBar* bar = horizontalScrollBar();
        bar->setValue(bar->value() - int(std::lround(delta)));
        return event->accept();
    }
    QAbstractScrollArea::wheelEvent(event);
}

void ExplorerIconScrollView::scrollContentsBy(int dx, int dy) {
    fileCanvas->setContentOffset(QPoint(horizontalScrollBar()->value(), verticalScrollBar()->value()));
    fileCanvas->scroll(dx, dy);
}

void ExplorerIconScrollView::keyPressEvent(QKeyEvent* event) {
    // The canvas moves by its own keys; whatever it leaves is the window's, not the scroller's.
    event->ignore();
}

} // namespace orvane
