#pragma once

#include <QHeaderView>

namespace orvane {

// The details table's header: 34 high over a dark gradient, each title in a faint cell with a thin
// separator, and the sort mark only on the column the listing is sorted by. The sort state is kept
// here rather than in Qt's sort indicator, which flips itself on every click.
class ExplorerHeaderView : public QHeaderView {
    Q_OBJECT
public:
    static constexpr int headerHeight = 34;

    explicit ExplorerHeaderView(QWidget* parent = nullptr);

    QSize sizeHint() const override;

    // The column the listing is sorted by (-1 for none) and its direction; only drawn, never acted on.
    void setSortColumn(int logicalIndex, bool ascending);
    int sortColumn() const { return sortSection; }
    bool sortAscending() const { return ascending; }

signals:
    // A right click anywhere on the header: the columns menu belongs there.
    void columnsMenuRequested(const QPoint& globalPos);

protected:
    void paintEvent(QPaintEvent* event) override;
    void paintSection(QPainter* painter, const QRect& rect, int logicalIndex) const override;
    void contextMenuEvent(QContextMenuEvent* event) override;

private:
    void paintSortMark(QPainter* painter, const QRect& rect) const;

    int sortSection = -1;
    bool ascending = true;
};

} // namespace orvane
