#include "views/IconGrid.h"
#include "support/TestEnvironment.h"

using namespace orvane;

Q_DECLARE_METATYPE(orvane::GridKey)

class IconGridTest : public QObject {
    Q_OBJECT

private slots:
    void gridColumns_data() {
        QTest::addColumn<double>("available");
        QTest::addColumn<double>("preferred");
        QTest::addColumn<bool>("flexible");
        QTest::addColumn<int>("count");
        QTest::addColumn<double>("width");
        QTest::newRow("third large icon by shrinking") << 1000.0 << 344.0 << true << 3 << 330.67;
        QTest::newRow("rigid cells keep their size") << 1000.0 << 344.0 << false << 2 << 498.0;
        QTest::newRow("narrow pane") << 170.0 << 344.0 << true << 1 << 170.0;
        QTest::newRow("medium icons") << 1260.0 << 102.0 << true << 13 << 93.23;
        QTest::newRow("exact fit") << 412.0 << 100.0 << false << 4 << 100.0;
        QTest::newRow("nothing available") << 0.0 << 100.0 << true << 1 << 1.0;
    }
    void gridColumns() {
        QFETCH(double, available);
        QFETCH(double, preferred);
        QFETCH(bool, flexible);
        QFETCH(int, count);
        QFETCH(double, width);
        const GridColumns grid = explorerGridColumns(available, preferred, IconGrid::gap, flexible);
        QCOMPARE(grid.count, count);
        QVERIFY2(std::abs(grid.width - width) < 0.01, qPrintable(QString::number(grid.width)));
        QVERIFY(grid.width <= std::max(1.0, available));
        // The leftover is always shared out.
        if (available > 0)
            QVERIFY(std::abs(grid.count * grid.width + (grid.count - 1) * IconGrid::gap - available) < 0.01);
    }

    void cellSizes_data() {
        QTest::addColumn<int>("mode");
        QTest::addColumn<double>("extraLarge");
        QTest::addColumn<int>("columns");
        QTest::addColumn<QSizeF>("cell");
        QTest::addColumn<double>("iconSide");
        // A 1000 wide viewport leaves 980 of content.
        QTest::newRow("extra large") << 1 << 160.0 << 5 << QSizeF(192.8, 216) << 160.0;
        QTest::newRow("extra large 320, icon yields to the cell")
            << 1 << 320.0 << 3 << QSizeF(324, 364) << 308.0;
        QTest::newRow("large") << 2 << 160.0 << 8 << QSizeF(119, 118) << 64.0;
        QTest::newRow("medium") << 3 << 160.0 << 10 << QSizeF(94.4, 102) << 48.0;
        QTest::newRow("small") << 4 << 160.0 << 4 << QSizeF(242, 44) << 32.0;
        QTest::newRow("tiles") << 7 << 160.0 << 3 << QSizeF(324, 82) << 48.0;
        QTest::newRow("content") << 8 << 160.0 << 1 << QSizeF(980, 76) << 40.0;
    }
    void cellSizes() {
        QFETCH(int, mode);
        QFETCH(double, extraLarge);
        QFETCH(int, columns);
        QFETCH(QSizeF, cell);
        QFETCH(double, iconSide);
        const IconGridLayout layout = layoutIconGrid(mode, 50, QSizeF(1000, 600), extraLarge);
        QCOMPARE(layout.columns, columns);
        QVERIFY2(std::abs(layout.cell.width() - cell.width()) < 0.01,
                 qPrintable(QString::number(layout.cell.width())));
        QCOMPARE(layout.cell.height(), cell.height());
        QCOMPARE(layout.iconSide(), iconSide);
        QCOMPARE(layout.rowsPerColumn, int(std::ceil(50.0 / columns)));
        QCOMPARE(layout.canvas.width(), 1000.0);
    }

    void extraLargeShrinksInANarrowPane() {
        // 200 of content: the cell yields to it, and the icon to the cell.
        const IconGridLayout layout = layoutIconGrid(1, 3, QSizeF(220, 600), 320);
        QCOMPARE(layout.columns, 1);
        QCOMPARE(layout.cell.width(), 200.0);
        QCOMPARE(layout.iconSide(), 184.0);
        QCOMPARE(layout.cell.height(), 184.0 + 56);
    }

    void emptyListing() {
        for (const int mode : {1, 2, 3, 4, 5, 7, 8}) {
            const IconGridLayout layout = layoutIconGrid(mode, 0, QSizeF(800, 500), 160);
            if (mode != 5) QCOMPARE(layout.rowsPerColumn, 1);
            QCOMPARE(layout.canvas, QSizeF(800, 500));
            QCOMPARE(layout.itemAt(QPointF(20, 20)), std::nullopt);
        }
    }

    void listRunsInColumns() {
        // 500 high: (480 + 4) / 32 gives 15 rows in each column.
        IconGridLayout layout = layoutIconGrid(5, 40, QSizeF(600, 500), 160);
        QCOMPARE(layout.rowsPerColumn, 15);
        QCOMPARE(layout.columns, 3);
        QCOMPARE(layout.frame(0).topLeft(), QPointF(10, 10));
        QCOMPARE(layout.frame(14).topLeft(), QPointF(10, 10 + 14 * 32));
        QCOMPARE(layout.frame(15).topLeft(), QPointF(10 + 242, 10));
        QCOMPARE(layout.canvas, QSizeF(20 + 3 * 242 - 4, 500));
        // Sideways once the columns outgrow the viewport.
        layout = layoutIconGrid(5, 100, QSizeF(600, 500), 160);
        QCOMPARE(layout.columns, 7);
        QCOMPARE(layout.canvas.width(), 20 + 7 * 242.0 - 4);
        // One row higher re-flows: 16 rows, and item 15 moves to the first column's foot.
        layout = layoutIconGrid(5, 40, QSizeF(600, 532), 160);
        QCOMPARE(layout.rowsPerColumn, 16);
        QCOMPARE(layout.frame(15).topLeft(), QPointF(10, 10 + 15 * 32));
    }

    void rowModesGrowDownwards() {
        const IconGridLayout layout = layoutIconGrid(3, 25, QSizeF(540, 300), 160);
        // 520 of content fits 5 cells of 100.8.
        QCOMPARE(layout.columns, 5);
        QCOMPARE(layout.rowsPerColumn, 5);
        QCOMPARE(layout.canvas.height(), 20 + 5 * 106.0 - 4);
        QCOMPARE(layout.frame(6).topLeft(), QPointF(10 + 104.8, 10 + 106));
    }

    void hitTesting_data() {
        QTest::addColumn<int>("mode");
        QTest::addColumn<QPointF>("point");
        QTest::addColumn<int>("item"); // -1 for none
        // Medium icons, 540 wide: cells of 100.8 by 102 from (10, 10), 4 apart.
        QTest::newRow("first cell") << 3 << QPointF(11, 11) << 0;
        QTest::newRow("margin") << 3 << QPointF(5, 50) << -1;
        QTest::newRow("gap between columns") << 3 << QPointF(112, 50) << -1;
        QTest::newRow("gap between rows") << 3 << QPointF(50, 113.5) << -1;
        QTest::newRow("second row") << 3 << QPointF(50, 120) << 5;
        QTest::newRow("past the last item") << 3 << QPointF(374, 10 + 4 * 106 + 50) << -1;
        QTest::newRow("right of the last column") << 3 << QPointF(535, 50) << -1;
        // List, 500 high: 15 rows per column, columns 242 apart.
        QTest::newRow("list second column") << 5 << QPointF(260, 12) << 15;
        QTest::newRow("list gap") << 5 << QPointF(250, 12) << -1;
        QTest::newRow("list below the last row") << 5 << QPointF(20, 490) << -1;
    }
    void hitTesting() {
        QFETCH(int, mode);
        QFETCH(QPointF, point);
        QFETCH(int, item);
        const IconGridLayout layout = layoutIconGrid(mode, 22, QSizeF(540, 500), 160);
        const std::optional<int> hit = layout.itemAt(point);
        QCOMPARE(hit.value_or(-1), item);
    }

    void onlyCellsMeetingARectAreVisited() {
        const IconGridLayout layout = layoutIconGrid(3, 100000, QSizeF(1280, 800), 160);
        QList<int> visited;
        const QRectF rect(0, 1000 * 106, 1280, 800);
        layout.forEachIndexIn(rect, [&](int index) { visited << index; });
        QVERIFY(!visited.isEmpty());
        QVERIFY(visited.size() <= 9 * layout.columns);
        QVERIFY(std::is_sorted(visited.begin(), visited.end()));
        for (const int index : visited)
            QVERIFY(layout.frame(index).intersects(rect));
        // A rectangle inside a gap meets nothing.
        visited.clear();
        layout.forEachIndexIn(QRectF(layout.frame(0).right() + 1, 20, 2, 20),
                              [&](int index) { visited << index; });
        QVERIFY(visited.isEmpty());
    }

    void keyTargets_data() {
        QTest::addColumn<int>("mode");
        QTest::addColumn<GridKey>("key");
        QTest::addColumn<int>("from");
        QTest::addColumn<int>("target");
        // 540 by 500 over 60 items: medium icons in 5 columns, 4 rows a page; list has 15 rows a column.
        QTest::newRow("right") << 3 << GridKey::Right << 7 << 8;
        QTest::newRow("left") << 3 << GridKey::Left << 7 << 6;
        QTest::newRow("down a row") << 3 << GridKey::Down << 7 << 12;
        QTest::newRow("up a row") << 3 << GridKey::Up << 7 << 2;
        QTest::newRow("up past the top clamps") << 3 << GridKey::Up << 2 << 0;
        QTest::newRow("down past the end clamps") << 3 << GridKey::Down << 57 << 59;
        QTest::newRow("page down") << 3 << GridKey::PageDown << 7 << 27;
        QTest::newRow("page up") << 3 << GridKey::PageUp << 27 << 7;
        QTest::newRow("home") << 3 << GridKey::Home << 33 << 0;
        QTest::newRow("end") << 3 << GridKey::End << 3 << 59;
        QTest::newRow("content down") << 8 << GridKey::Down << 3 << 4;
        QTest::newRow("content right") << 8 << GridKey::Right << 3 << 4;
        QTest::newRow("list down") << 5 << GridKey::Down << 3 << 4;
        QTest::newRow("list right a column") << 5 << GridKey::Right << 3 << 18;
        QTest::newRow("list left a column") << 5 << GridKey::Left << 18 << 3;
        QTest::newRow("list page down") << 5 << GridKey::PageDown << 3 << 18;
        QTest::newRow("list right from the last column") << 5 << GridKey::Right << 50 << 59;
    }
    void keyTargets() {
        QFETCH(int, mode);
        QFETCH(GridKey, key);
        QFETCH(int, from);
        QFETCH(int, target);
        const IconGridLayout layout = layoutIconGrid(mode, 60, QSizeF(540, 500), 160);
        QCOMPARE(gridKeyTarget(layout, key, from), target);
    }

    void renamePlacement_data() {
        QTest::addColumn<int>("mode");
        QTest::addColumn<QRectF>("placement");
        // Item 1 in a 1000 by 600 viewport, a line of 20.
        QTest::newRow("medium: under the icon") << 3 << QRectF(10 + 98.4 + 6, 10 + 8 + 48 + 1, 94.4 - 12, 20);
        QTest::newRow("small: beside the icon")
            << 4 << QRectF(256 + 8 + 32 + 9, 10 + 22 - 8 - 1, 242 - 49 - 8, 20);
        QTest::newRow("content: on the name line")
            << 8 << QRectF(10 + 8 + 40 + 9, 90 + 10 - 0.5, 980 - 57 - 8, 20);
    }
    void renamePlacement() {
        QFETCH(int, mode);
        QFETCH(QRectF, placement);
        const IconGridLayout layout = layoutIconGrid(mode, 10, QSizeF(1000, 600), 160);
        const QRectF got = orvane::renamePlacement(layout, 1, 20);
        const auto near = [](QRectF a, QRectF b) {
            return std::abs(a.x() - b.x()) < 0.01 && std::abs(a.y() - b.y()) < 0.01 &&
                   std::abs(a.width() - b.width()) < 0.01 && std::abs(a.height() - b.height()) < 0.01;
        };
        QVERIFY2(
            near(got, placement),
            qPrintable(
                QStringLiteral("%1,%2 %3x%4").arg(got.x()).arg(got.y()).arg(got.width()).arg(got.height())));
        QVERIFY(layout.frame(1).contains(got));
    }
};

ORVANE_TEST_MAIN(IconGridTest)
#include "IconGridTest.moc"
