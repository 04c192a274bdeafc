#include "chrome/SplitWidths.h"

#include <QtGlobal>

namespace orvane {

SplitWidths::Widths SplitWidths::share(const Needs& n) {
    Widths w;
    w.navigation = qMax(n.navigationMinimum, n.navigationPreferred);
    w.details = n.detailsShown ? qMax(n.detailsMinimum, n.detailsPreferred) : 0;
    w.files = n.available - w.navigation - w.details;
    // Each pane gives up only what the file area still lacks, and never more than it has to spare.
    auto yield = [&w, &n](int& pane, int minimum) {
        const int cut = qBound(0, n.filesComfortable - w.files, qMax(0, pane - minimum));
        pane -= cut;
        w.files += cut;
    };
    yield(w.navigation, n.navigationMinimum);
    if (n.detailsShown) yield(w.details, n.detailsMinimum);
    w.files = qMax(0, w.files);
    return w;
}

} // namespace orvane
