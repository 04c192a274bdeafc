#include "window/TabDragging.h"
#include "chrome/ExplorerTabStrip.h"
#include "core/Job.h"
#include "core/Jobs.h"
#include "core/TabList.h"
#include "core/WindowCommands.h"
#include "platform/NativePath.h"
#include "support/TestEnvironment.h"
#include "support/WindowFixture.h"
#include "window/AppDelegate.h"
#include "window/Explorer.h"

#include <QMimeData>

using namespace orvane;
using namespace orvane::test;

class TabDraggingTest : public QObject, WindowFixture {
    Q_OBJECT

private slots:
    void init() {
        startProgram();
        tree->folder(QStringLiteral("one"));
        tree->folder(QStringLiteral("two"));
        tree->rawFile("bad\xff/x");
        openWindow();
        w->navigate(QUrl::fromLocalFile(tree->path(QStringLiteral("one"))));
        w->navigate(QUrl::fromLocalFile(tree->path(QStringLiteral("two"))));
        w->back();
        w->tabs().current().query = QStringLiteral("needle");
        w->newTab();
    }
    void cleanup() { stopProgram(); }

    // What another process reads is the tab as it was, names by their bytes.
    void theDataCarriesTheWholeTab_data() {
        QTest::addColumn<QByteArray>("place");
        QTest::newRow("a folder") << QByteArray("two");
        QTest::newRow("a name that is not UTF-8") << QByteArray("bad\xff");
    }
    void theDataCarriesTheWholeTab() {
        QFETCH(QByteArray, place);
        TabState tab = w->tabs().at(0);
        tab.push(QUrl::fromLocalFile(NativePath::decode(NativePath::encode(tree->path()) + '/' + place)));
        tab.url = tab.history.back();
        std::unique_ptr<QMimeData> data(TabDragging::tabData(tab));
        const std::optional<TabState> read = TabDragging::readTab(*data);
        QVERIFY(read);
        QCOMPARE(read->id, tab.id);
        QCOMPARE(NativePath::encode(read->url.toLocalFile()), NativePath::encode(tab.url.toLocalFile()));
        QCOMPARE(read->history, tab.history);
        QCOMPARE(read->index, tab.index);
        QCOMPARE(read->query, tab.query);
        QMimeData garbage;
        garbage.setData(ExplorerTabStrip::tabMimeType(), "{]");
        QVERIFY(!TabDragging::readTab(garbage));
    }

    void aTabMovesWholeToAnotherWindow() {
        Explorer* other = app->newWindow(QUrl::fromLocalFile(tree->path()));
        const TabState moving = w->tabs().at(0);
        QVERIFY(TabDragging::moveTab(*w, moving.id, *other, 0));
        QCOMPARE(w->tabs().count(), 1);
        QCOMPARE(other->tabs().count(), 2);
        const TabState& arrived = other->tabs().current();
        QCOMPARE(other->tabs().active(), 0);
        QCOMPARE(arrived.id, moving.id);
        QCOMPARE(arrived.history, moving.history);
        QCOMPARE(arrived.query, QStringLiteral("needle"));
        QVERIFY(arrived.canGoForward());
    }

    void aBusyWindowNeitherGivesNorTakesTabs_data() {
        QTest::addColumn<bool>("sourceBusy");
        QTest::newRow("busy source") << true;
        QTest::newRow("busy target") << false;
    }
    void aBusyWindowNeitherGivesNorTakesTabs() {
        QFETCH(bool, sourceBusy);
        Explorer* other = app->newWindow(QUrl::fromLocalFile(tree->path()));
        QPointer<Job> job = w->jobs().start(QStringLiteral("Holding"), sourceBusy ? w : other);
        QVERIFY(!TabDragging::moveTab(*w, w->tabs().at(0).id, *other, 0));
        if (sourceBusy) QVERIFY(!TabDragging::detachTab(*w, w->tabs().at(0).id));
        job->finish();
        QCOMPARE(w->tabs().count(), 2);
        QCOMPARE(other->tabs().count(), 1);
    }

    // Its own window or the context menu's command: Back and Forward come along.
    void aDetachedTabKeepsItsHistory() {
        const TabState moving = w->tabs().at(0);
        w->activateTab(0);
        QVERIFY(w->commands().run(QStringLiteral("moveTabToNewWindow")));
        QCOMPARE(app->windows.size(), size_t(2));
        Explorer* fresh = app->windows.back().get();
        QCOMPARE(fresh->tabs().count(), 1);
        QCOMPARE(fresh->tabs().current().id, moving.id);
        QVERIFY(fresh->tabs().current().canGoForward());
        QCOMPARE(fresh->current(), QUrl::fromLocalFile(tree->path(QStringLiteral("one"))));
        QCOMPARE(w->tabs().count(), 1);
        QVERIFY(!w->commands().isEnabled(QStringLiteral("moveTabToNewWindow"))); // the only tab stays
        QCOMPARE(TabDragging::detachTab(*w, w->tabs().at(0).id), w);
    }
};

ORVANE_TEST_MAIN(TabDraggingTest)
#include "TabDraggingTest.moc"
