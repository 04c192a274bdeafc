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

    // Slots count the tabs as they stand, the dragged one among them.
    void movingATabToASlot_data() {
        QTest::addColumn<int>("from");
        QTest::addColumn<int>("slot");
        QTest::addColumn<QString>("order");
        QTest::addColumn<int>("active"); // "b" was active
        QTest::newRow("to the last slot appends") << 0 << 3 << "bca" << 0;
        QTest::newRow("past the end is clamped") << 0 << 9 << "bca" << 0;
        QTest::newRow("upward inserts before") << 2 << 0 << "cab" << 2;
        QTest::newRow("downward adjusts for the removed tab") << 0 << 2 << "bac" << 0;
        QTest::newRow("the slot before itself changes nothing") << 1 << 1 << "abc" << 1;
        QTest::newRow("the slot after itself changes nothing") << 1 << 2 << "abc" << 1;
        QTest::newRow("the active tab itself") << 1 << 0 << "bac" << 0;
    }
    void movingATabToASlot() {
        QFETCH(int, from);
        QFETCH(int, slot);
        QFETCH(QString, order);
        QFETCH(int, active);
        TabList tabs(at("/a"));
        tabs.append(TabState::at(at("/b")));
        tabs.append(TabState::at(at("/c")));
        tabs.setActive(1);
        tabs.move(from, slot);
        QString names;
        for (const TabState& tab : tabs.all())
            names += tab.url.fileName();
        QCOMPARE(names, order);
        QCOMPARE(tabs.active(), active);
        tabs.insert(0, TabState::at(at("/d")));
        QCOMPARE(tabs.current().url, at("/b")); // an insertion keeps the active tab
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
