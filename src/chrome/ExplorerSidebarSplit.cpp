#include "chrome/ExplorerSidebarSplit.h"

namespace orvane {

ExplorerSidebarSplit::ExplorerSidebarSplit(QWidget* parent) : QSplitter(Qt::Horizontal, parent) {
    setChildrenCollapsible(false);
    setHandleWidth(1);
    connect(this, &QSplitter::splitterMoved, this, &ExplorerSidebarSplit::dividerMoved);
}

void ExplorerSidebarSplit::setNavigationPreferred(int width) {
    navigationWidth = qMax(int(navigationMinimum), width);
    relayout();
}

void ExplorerSidebarSplit::resizeEvent(QResizeEvent* event) {
    QSplitter::resizeEvent(event);
    relayout();
}

// The details and preview panes take turns in the one place at the right.
int ExplorerSidebarSplit::sidePane() const {
    for (int i = 2; i < count(); ++i)
        if (!widget(i)->isHidden()) return i;
    return -1;
}

void ExplorerSidebarSplit::relayout() {
    if (count() < 3 || laying) return;
    const int side = sidePane();
    const bool detailsShown = side >= 0;
    int handles = handleWidth();
    if (detailsShown) handles += handleWidth();
    SplitWidths::Needs needs;
    needs.available = width() - handles;
    needs.navigationPreferred = navigationWidth;
    needs.navigationMinimum = navigationMinimum;
    needs.detailsShown = detailsShown;
    needs.detailsPreferred = detailsWidth;
    needs.detailsMinimum = detailsMinimum;
    needs.filesComfortable = filesComfortable ? filesComfortable() : 0;
    const SplitWidths::Widths w = SplitWidths::share(needs);
    QList<int> widths{w.navigation, w.files};
    for (int i = 2; i < count(); ++i)
        widths << (i == side ? w.details : 0);
    laying = true;
    setSizes(widths);
    laying = false;
}

// Only a drag sets what the panes return to; a squeeze by the window never does.
void ExplorerSidebarSplit::dividerMoved() {
    if (laying) return;
    const QList<int> now = sizes();
    navigationWidth = qMax(int(navigationMinimum), now.value(0));
    if (sidePane() >= 0) detailsWidth = qMax(int(detailsMinimum), now.value(sidePane()));
    emit navigationWidthChosen(navigationWidth);
}

} // namespace orvane
