#include "views/ExplorerIconView.h"

#include "views/ExplorerIconCanvas.h"
#include "views/ExplorerIconScrollView.h"

#include <QFontMetrics>
#include <QVBoxLayout>

namespace orvane {

ExplorerIconView::ExplorerIconView(QWidget* parent)
    : QWidget(parent), scroller(new ExplorerIconScrollView(this)), fileCanvas(scroller->canvas()) {
    auto* layout = new QVBoxLayout(this);
    layout->setContentsMargins(0, 0, 0, 0);
    layout->addWidget(scroller);
    setFocusProxy(fileCanvas);
    setAccessibleName(tr("File icons"));
}

ExplorerIconView::~ExplorerIconView() = default;

void ExplorerIconView::update(const std::vector<Entry>* entries, QItemSelectionModel* selection, int mode,
                              double extraLargeSize) {
    fileCanvas->setListing(entries, selection, mode, extraLargeSize);
}

void ExplorerIconView::scrollToItem(int index) {
    fileCanvas->scrollToItem(index);
}

void ExplorerIconView::showDropTarget(std::optional<int> index) {
    fileCanvas->showDropTarget(index);
}

QRect ExplorerIconView::renamePlacement(int row) const {
    if (row < 0 || row >= fileCanvas->count()) return {};
    const double lineHeight = QFontMetrics(fileCanvas->font()).height() + 6;
    return orvane::renamePlacement(fileCanvas->gridLayout(), row, lineHeight)
        .translated(-fileCanvas->contentOffset())
        .toAlignedRect();
}

void ExplorerIconView::makeFileListFirstResponder() {
    fileCanvas->setFocus(Qt::OtherFocusReason);
}

} // namespace orvane
