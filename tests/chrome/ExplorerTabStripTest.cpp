#include "chrome/ExplorerTabStrip.h"

#include "chrome/ExplorerTabView.h"
#include "chrome/TitleRow.h"
#include "support/TempTree.h"
#include "support/TestEnvironment.h"
#include "support/WindowFixture.h"
#include "window/AppDelegate.h"
#include "window/Explorer.h"

#include <QCursor>
#include <QPointer>
#include <QSignalSpy>
#include <QToolButton>
#include <QWheelEvent>

using namespace orvane;
using orvane::test::TempTree;
using orvane::test::WindowFixture;

namespace {

// The visible part of a tab, in document coordinates.
bool inView(const ExplorerTabStrip& strip, const ExplorerTabView* view) {
    const qreal origin = strip.scrollOrigin();
    return view->x() >= origin - 0.5 && view->x() + view->width() <= origin + strip.viewport()->width() + 0.5;
}

ExplorerTabView* activeView(const ExplorerTabStrip& strip) {
    for (ExplorerTabView* view : strip.orderedTabViews())
        if (view->activeTab()) return view;
    return nullptr;
}

} // namespace

class ExplorerTabStripTest : public QObject, WindowFixture {
    Q_OBJECT

    ExplorerTabStrip& strip() const { return *w->widgets().tabStrip; }
    void openTabs(int count) {
        while (w->tabs().count() < count)
            w->newTab();
    }

private slots:
    void init() {
        startProgram();
        tree->folder("Alpha");
        tree->folder("Beta");
        openWindow();
        QCOMPARE(w->width(), 1250);
    }
    void cleanup() { stopProgram(); }

    void widthsInAWindow_data() {
        QTest::addColumn<int>("count");
        QTest::addColumn<bool>("overflow");
        QTest::newRow("1 tab") << 1 << false;
        QTest::newRow("5 tabs") << 5 << false;
        QTest::newRow("40 tabs") << 40 << true;
    }
    void widthsInAWindow() {
        QFETCH(int, count);
        QFETCH(bool, overflow);
        openTabs(count);
        const TabStripLayout& l = strip().tabLayout();
        QCOMPARE(l.count, count);
        QCOMPARE(l.available, strip().width() - ExplorerTabStrip::plusSlot);
        const qreal expected = qBound<qreal>(112, qreal(l.available - l.reserve) / count, 228);
        QCOMPARE(l.tabWidth, expected);
        QCOMPARE(l.overflow, overflow);
        const QList<ExplorerTabView*> views = strip().orderedTabViews();
        QCOMPARE(views.size(), count);
        for (const ExplorerTabView* view : views)
            QVERIFY2(qAbs(view->width() - expected) <= 1, qPrintable(QString::number(view->width())));
        if (count == 1) QCOMPARE(views.first()->width(), 228);
        if (count == 5) QVERIFY2(expected < 228, "five tabs shrink before they overflow in this window");
        if (count == 40) QCOMPARE(views.first()->width(), 112);

        // The overflow buttons come only with overflow; the newest tab is active, at the end.
        QCOMPARE(strip().tabBackButton()->isVisibleTo(w), overflow);
        QCOMPARE(strip().tabForwardButton()->isVisibleTo(w), overflow);
        QCOMPARE(strip().tabBackButton()->isEnabled(), overflow);
        QVERIFY(!strip().tabForwardButton()->isEnabled());
        QVERIFY(inView(strip(), activeView(strip())));
        const QRect plus = strip().newTabButton()->geometry();
        QVERIFY(plus.right() < strip().width());
        QCOMPARE(w->width(), 1250);
    }

    void manyTabsNeverWidenTheWindow() {
        const QSize rowMinimum = w->widgets().titleRow->minimumSizeHint();
        const QSize windowMinimum = w->minimumSizeHint();
        openTabs(40);
        QCOMPARE(w->width(), 1250);
        QCOMPARE(strip().viewport()->findChild<QWidget*>(QStringLiteral("tabBar"))->width(), 40 * 112);
        QVERIFY(strip().viewport()->width() < strip().width());
        QCOMPARE(w->widgets().titleRow->minimumSizeHint(), rowMinimum);
        QCOMPARE(w->minimumSizeHint(), windowMinimum);
        QVERIFY(rowMinimum.width() <= 600);
        w->resize(600, 500);
        QCOMPARE(w->width(), 600);
        QVERIFY(strip().geometry().right() < w->width());
        QVERIFY(inView(strip(), activeView(strip())));
        while (w->tabs().count() > 2)
            w->closeTab(0);
        QCOMPARE(w->width(), 600);
        w->resize(1250, 710);
        QCOMPARE(w->width(), 1250);
        QVERIFY(!strip().tabBackButton()->isVisibleTo(w));
    }

    void clickActivatesAndViewsAreKept() {
        openTabs(3);
        const QList<ExplorerTabView*> before = strip().orderedTabViews();
        QTest::mouseClick(before[0], Qt::LeftButton);
        QCOMPARE(w->tabs().active(), 0);
        QVERIFY(before[0]->activeTab());
        QVERIFY(!before[2]->activeTab());
        w->navigate(QUrl::fromLocalFile(tree->path("Alpha")));
        QCOMPARE(strip().orderedTabViews(), before);
        QCOMPARE(before[0]->name(), QStringLiteral("Alpha"));
        QCOMPARE(before[0]->toolTip(), tree->path("Alpha"));
        QCOMPARE(before[0]->closeButton()->accessibleName(), QStringLiteral("Close Alpha"));
        QCOMPARE(before[1]->tabID(), w->tabs().all()[1].id);
    }

    void middleClickCloses() {
        openTabs(3);
        w->activateTab(0);
        QPointer<ExplorerTabView> second = strip().orderedTabViews()[1];
        const QUuid id = second->tabID();
        // Let go away from the tab and nothing closes.
        QTest::mousePress(second, Qt::MiddleButton, {}, QPoint(20, 10));
        QTest::mouseRelease(second, Qt::MiddleButton, {}, QPoint(-30, 10));
        QCOMPARE(w->tabs().count(), 3);
        QTest::mouseClick(second, Qt::MiddleButton, {}, QPoint(20, 10));
        QCOMPARE(w->tabs().count(), 2);
        QCOMPARE(w->tabs().indexOf(id), -1);
        QCOMPARE(w->tabs().active(), 0);
        QCOMPARE(strip().orderedTabViews().size(), 2);
        QTRY_VERIFY(!second);
    }

    void closeButtonCloses() {
        openTabs(3);
        QSignalSpy closes(&strip(), &ExplorerTabStrip::closeRequested);
        QPointer<ExplorerTabView> last = strip().orderedTabViews()[2];
        QVERIFY(last->closeButton()->isVisible());
        QTest::mouseClick(last->closeButton(), Qt::LeftButton);
        QCOMPARE(closes.count(), 1);
        QCOMPARE(w->tabs().count(), 2);
        // Closing the active last tab activates the new last one.
        QCOMPARE(w->tabs().active(), 1);
        QVERIFY(strip().orderedTabViews()[1]->activeTab());
        QTRY_VERIFY(!last);
        QTest::mouseClick(strip().newTabButton(), Qt::LeftButton);
        QCOMPARE(w->tabs().count(), 3);
    }

    // Tab after tab closes under a pointer that stays where it is.
    void theTabThatSlidesUnderThePointerLightsUp() {
        openTabs(40);
        w->activateTab(39);
        ExplorerTabView* first = strip().orderedTabViews()[0];
        w->activateTab(0);
        ExplorerTabView* second = strip().orderedTabViews()[1];
        QVERIFY(!second->closeButton()->isVisibleTo(second));
        QCursor::setPos(first->closeButton()->mapToGlobal(first->closeButton()->rect().center()));
        QTRY_VERIFY(first->hovering());
        QTest::mouseClick(first->closeButton(), Qt::LeftButton);
        QTRY_VERIFY(second->hovering());
        QVERIFY(second->closeButton()->isVisibleTo(second));
        QVERIFY(!strip().orderedTabViews()[2]->hovering());
    }

    void activeTabRevealedAfterNewTab() {
        openTabs(40);
        w->activateTab(0);
        QCOMPARE(strip().scrollOrigin(), 0.0);
        QVERIFY(!strip().tabBackButton()->isEnabled());
        QVERIFY(strip().tabForwardButton()->isEnabled());
        w->newTab();
        ExplorerTabView* fresh = strip().orderedTabViews().last();
        QVERIFY(fresh->activeTab());
        QVERIFY(inView(strip(), fresh));
        QCOMPARE(strip().scrollOrigin(), 41 * 112.0 - strip().viewport()->width());
        QVERIFY(strip().tabBackButton()->isEnabled());
        QVERIFY(!strip().tabForwardButton()->isEnabled());
    }

    void overflowButtonsAndWheelScroll() {
        openTabs(40);
        w->activateTab(0);
        const qreal step = qMax(112.0, 0.65 * strip().tabLayout().viewportWidth);
        QTest::mouseClick(strip().tabForwardButton(), Qt::LeftButton);
        QTRY_COMPARE(strip().scrollOrigin(), step);
        QTRY_VERIFY(strip().tabBackButton()->isEnabled());
        QTest::mouseClick(strip().tabBackButton(), Qt::LeftButton);
        QTRY_COMPARE(strip().scrollOrigin(), 0.0);
        QTRY_VERIFY(!strip().tabBackButton()->isEnabled());

        // A plain wheel turned towards the user moves the strip on; the origin stays in the document.
        const QPointF at(10, 10);
        QWheelEvent down(at, strip().mapToGlobal(at), QPoint(), QPoint(0, -120 * 200), Qt::NoButton,
                         Qt::NoModifier, Qt::NoScrollPhase, false);
        QApplication::sendEvent(&strip(), &down);
        QCOMPARE(strip().scrollOrigin(), 40 * 112.0 - strip().viewport()->width());
        QVERIFY(!strip().tabForwardButton()->isEnabled());
        QWheelEvent sideways(at, strip().mapToGlobal(at), QPoint(300, 20), QPoint(), Qt::NoButton,
                             Qt::NoModifier, Qt::NoScrollPhase, false);
        QApplication::sendEvent(&strip(), &sideways);
        QCOMPARE(strip().scrollOrigin(), 40 * 112.0 - strip().viewport()->width() - 300);
    }
};

ORVANE_TEST_MAIN(ExplorerTabStripTest)
#include "ExplorerTabStripTest.moc"
