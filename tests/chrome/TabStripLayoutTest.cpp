#include "chrome/TabStripLayout.h"
#include "support/TestEnvironment.h"

using namespace orvane;

class TabStripLayoutTest : public QObject {
    Q_OBJECT

private slots:
    // A 1250 wide window leaves 1064 for its tabs.
    void tabWidths_data() {
        QTest::addColumn<int>("count");
        QTest::addColumn<qreal>("contentWidth");
        QTest::addColumn<qreal>("width");
        QTest::addColumn<bool>("overflow");
        QTest::addColumn<qreal>("document");
        QTest::addColumn<qreal>("viewport");
        QTest::newRow("1 tab is as wide as a tab gets") << 1 << 1250.0 << 228.0 << false << 228.0 << 228.0;
        QTest::newRow("4 tabs still at the maximum") << 4 << 1250.0 << 228.0 << false << 912.0 << 912.0;
        QTest::newRow("5 tabs share the row") << 5 << 1250.0 << 212.8 << false << 1064.0 << 1064.0;
        QTest::newRow("9 tabs just above the minimum")
            << 9 << 1250.0 << 1064.0 / 9 << false << 1064.0 << 1064.0;
        QTest::newRow("10 tabs overflow") << 10 << 1250.0 << 112.0 << true << 1120.0 << 1012.0;
        QTest::newRow("40 tabs scroll") << 40 << 1250.0 << 112.0 << true << 4480.0 << 1012.0;
        QTest::newRow("exactly the minimum fits") << 5 << 746.0 << 112.0 << false << 560.0 << 560.0;
        QTest::newRow("one point short overflows") << 5 << 745.9 << 112.0 << true << 560.0 << 507.0;
        QTest::newRow("tiny window keeps 120") << 1 << 200.0 << 120.0 << false << 120.0 << 120.0;
        QTest::newRow("tiny window with 3 tabs") << 3 << 200.0 << 112.0 << true << 336.0 << 68.0;
        QTest::newRow("no tabs count as one") << 0 << 1250.0 << 228.0 << false << 228.0 << 228.0;
    }
    void tabWidths() {
        QFETCH(int, count);
        QFETCH(qreal, contentWidth);
        QFETCH(qreal, width);
        QFETCH(bool, overflow);
        QFETCH(qreal, document);
        QFETCH(qreal, viewport);
        const TabStripLayout l = TabStripLayout::compute(count, contentWidth);
        QCOMPARE(l.tabWidth, width);
        QCOMPARE(l.overflow, overflow);
        QCOMPARE(l.reserve, overflow ? 52 : 0);
        QCOMPARE(l.documentWidth, document);
        QCOMPARE(l.viewportWidth, viewport);
        QVERIFY(l.viewportWidth + l.reserve <= l.available);
    }

    void allowanceIsTheRowsOwnControls() {
        const TabStripLayout l = TabStripLayout::compute(3, 500, 36);
        QCOMPARE(l.available, 464);
        QCOMPARE(l.tabWidth, 464.0 / 3);
    }

    // Fractional widths must still tile the document: no gap, no overlap, the last edge at its end.
    void framesTileTheDocument_data() {
        QTest::addColumn<int>("count");
        QTest::addColumn<qreal>("contentWidth");
        QTest::newRow("5 tabs of 212.8") << 5 << 1250.0;
        QTest::newRow("7 tabs of 152") << 7 << 1250.0;
        QTest::newRow("9 tabs of 118.2") << 9 << 1250.0;
        QTest::newRow("40 tabs of 112") << 40 << 1250.0;
    }
    void framesTileTheDocument() {
        QFETCH(int, count);
        QFETCH(qreal, contentWidth);
        const TabStripLayout l = TabStripLayout::compute(count, contentWidth);
        int edge = 0;
        for (int i = 0; i < count; ++i) {
            const QRect f = l.frame(i);
            QCOMPARE(f.left(), edge);
            QVERIFY(qAbs(f.width() - l.tabWidth) <= 1);
            QCOMPARE(f.height(), 38);
            edge = f.left() + f.width();
        }
        QCOMPARE(edge, qRound(l.documentWidth));
    }

    void revealBringsTheTabIntoView_data() {
        QTest::addColumn<qreal>("origin");
        QTest::addColumn<qreal>("left");
        QTest::addColumn<qreal>("expected");
        // 40 tabs: document 4480, viewport 1012, so the origin lies in [0, 3468].
        QTest::newRow("already in view stays") << 500.0 << 600.0 << 500.0;
        QTest::newRow("left of the clip moves to its edge") << 500.0 << 224.0 << 224.0;
        QTest::newRow("right of the clip meets its right edge") << 0.0 << 1120.0 << 1120.0 + 112 - 1012;
        QTest::newRow("the last tab ends the document") << 0.0 << 4368.0 << 3468.0;
        QTest::newRow("the first tab starts it") << 3468.0 << 0.0 << 0.0;
        QTest::newRow("a stale origin past the end is pulled back") << 9000.0 << 4368.0 << 3468.0;
    }
    void revealBringsTheTabIntoView() {
        QFETCH(qreal, origin);
        QFETCH(qreal, left);
        QFETCH(qreal, expected);
        const TabStripLayout l = TabStripLayout::compute(40, 1250);
        QCOMPARE(l.revealOrigin(origin, left, left + 112), expected);
    }

    void scrollButtonsAndSteps() {
        const TabStripLayout l = TabStripLayout::compute(40, 1250);
        const qreal step = 0.65 * 1012;
        QCOMPARE(l.scrollTarget(0, +1), step);
        QCOMPARE(l.scrollTarget(step, -1), 0.0);
        QCOMPARE(l.scrollTarget(3400, +1), 3468.0);
        QCOMPARE(l.scrollTarget(100, -1), 0.0);
        QVERIFY(!l.canScrollBack(0.4));
        QVERIFY(l.canScrollBack(0.6));
        QVERIFY(l.canScrollForward(3467.4));
        QVERIFY(!l.canScrollForward(3467.6));
        // A narrow viewport still moves by at least one tab.
        const TabStripLayout narrow = TabStripLayout::compute(3, 200);
        QCOMPARE(narrow.scrollTarget(0, +1), 112.0);
        // Without overflow there is nowhere to go.
        const TabStripLayout few = TabStripLayout::compute(3, 1250);
        QCOMPARE(few.scrollTarget(0, +1), 0.0);
        QVERIFY(!few.canScrollBack(0) && !few.canScrollForward(0));
    }
};

ORVANE_TEST_MAIN(TabStripLayoutTest)
#include "TabStripLayoutTest.moc"
