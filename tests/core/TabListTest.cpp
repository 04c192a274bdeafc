#include "core/TabList.h"
#include "support/TestEnvironment.h"

using namespace orvane;

namespace {
QUrl at(const char* path) {
    return QUrl::fromLocalFile(QLatin1String(path));
}
} // namespace

class TabListTest : public QObject {
    Q_OBJECT
private slots:
    void historyDiscardsForwardPartOnNewStep() {
        TabState tab = TabState::at(at("/a"));
        tab.push(at("/b"));
        tab.push(at("/c"));
        QVERIFY(tab.canGoBack());
        QVERIFY(!tab.canGoForward());
        tab.index = 0; // back twice
        QVERIFY(tab.canGoForward());
        tab.push(at("/d"));
        QCOMPARE(tab.history, QList<QUrl>({at("/a"), at("/d")}));
        QCOMPARE(tab.index, 1);
        QVERIFY(!tab.canGoForward());
    }

    void closingMovesActiveToTheTabThatTookItsPlace_data() {
        QTest::addColumn<int>("active");
        QTest::addColumn<int>("removed");
        QTest::addColumn<int>("expected");
        QTest::newRow("close active in the middle") << 1 << 1 << 1;
        QTest::newRow("close active at the end") << 2 << 2 << 1;
        QTest::newRow("close one before active") << 2 << 0 << 1;
        QTest::newRow("close one after active") << 0 << 2 << 0;
        QTest::newRow("outside is ignored") << 1 << 7 << 1;
    }
    void closingMovesActiveToTheTabThatTookItsPlace() {
        QFETCH(int, active);
        QFETCH(int, removed);
        QFETCH(int, expected);
        TabList tabs(at("/a"));
        tabs.append(TabState::at(at("/b")));
        tabs.append(TabState::at(at("/c")));
        tabs.setActive(active);
        QCOMPARE(tabs.remove(removed), expected);
        QCOMPARE(tabs.active(), expected);
    }

    void lastTabIsNeverRemoved() {
        TabList tabs(at("/a"));
        QCOMPARE(tabs.remove(0), 0);
        QCOMPARE(tabs.count(), 1);
    }

    void findsTabsByIdentityAcrossReorders() {
        TabList tabs(at("/a"));
        const TabState second = TabState::at(at("/b"));
        tabs.append(second);
        QCOMPARE(tabs.indexOf(second.id), 1);
        tabs.remove(0);
        QCOMPARE(tabs.indexOf(second.id), 0);
        QCOMPARE(tabs.indexOf(QUuid::createUuid()), -1);
    }
};

ORVANE_TEST_MAIN(TabListTest)
#include "TabListTest.moc"
