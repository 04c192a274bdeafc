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

void ExplorerSidebarSplit::relayout() {
    if (count() < 3 || laying) return;
    const bool detailsShown = !widget(2)->isHidden();
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
    laying = true;
    setSizes({w.navigation, w.files, w.details});
    laying = false;
}

// Only a drag sets what the panes return to; a squeeze by the window never does.
void ExplorerSidebarSplit::dividerMoved() {
    if (laying) return;
    const QList<int> now = sizes();
    navigationWidth = qMax(int(navigationMinimum), now.value(0));
    if (!widget(2)->isHidden()) detailsWidth = qMax(int(detailsMinimum), now.value(2));
    emit navigationWidthChosen(navigationWidth);
}

} // namespace orvane
