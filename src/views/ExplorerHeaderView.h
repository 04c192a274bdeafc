#pragma once

#include <QHeaderView>

namespace orvane {

// The details table's header: 34 high over a dark gradient, each title in a faint cell with a thin
// separator, and the sort mark only on the column the listing is sorted by. The sort state is the
// header's own sort indicator; Qt's built-in indicator stays off so clicks never flip it by themselves.
class ExplorerHeaderView : public QHeaderView {
    Q_OBJECT
public:
    static constexpr int headerHeight = 34;

    explicit ExplorerHeaderView(QWidget* parent = nullptr);

    QSize sizeHint() const override;

signals:
    // A right click anywhere on the header: the columns menu belongs there.
    void columnsMenuRequested(const QPoint& globalPos);

protected:
    void paintEvent(QPaintEvent* event) override;
    void paintSection(QPainter* painter, const QRect& rect, int logicalIndex) const override;
    void contextMenuEvent(QContextMenuEvent* event) override;

private:
    void paintSortMark(QPainter* painter, const QRect& rect) const;
};

} // namespace orvane
