#pragma once

#include "chrome/SplitWidths.h"

#include <QSplitter>
#include <functional>

namespace orvane {

// The split of navigation pane, file area and details or preview pane. It shares its width by SplitWidths on
// every resize, remembers the widths the person dragged the panes to, and reports the end of a drag.
class ExplorerSidebarSplit : public QSplitter {
    Q_OBJECT
public:
    static constexpr int navigationMinimum = 150;
    static constexpr int detailsMinimum = 260;

    explicit ExplorerSidebarSplit(QWidget* parent = nullptr);

    // The width the file area needs before it leaves columns out; asked at every layout.
    std::function<int()> filesComfortable;
    void setNavigationPreferred(int width);
    int navigationPreferred() const { return navigationWidth; }
    // Shares the width again, as after a resize; for when a pane came or went.
    void relayout();

signals:
    // The person moved a divider; the navigation pane's width is the one to keep.
    void navigationWidthChosen(int width);

protected:
    void resizeEvent(QResizeEvent* event) override;

private:
    void dividerMoved();
    int sidePane() const;

    int navigationWidth = 240;
    int detailsWidth = detailsMinimum;
    bool laying = false;
};

} // namespace orvane
