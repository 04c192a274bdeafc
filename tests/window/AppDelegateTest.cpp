#include "window/AppDelegate.h"
#include "core/Job.h"
#include "core/Jobs.h"
#include "support/TempTree.h"
#include "support/TestEnvironment.h"
#include "window/Explorer.h"

#include <QMessageBox>
#include <QSignalSpy>

using namespace orvane;

class AppDelegateTest : public QObject {
    Q_OBJECT
private slots:
    void firstWindowIsMadeOnlyWhenNoneExists() {
        AppDelegate app;
        QSignalSpy decided(&app, &AppDelegate::firstWindowDecided);
        app.applicationDidFinishLaunching();
        // An open request served before the queued block leaves no room for an extra window.
        app.newWindow();
        QVERIFY(decided.wait());
        QCOMPARE(app.windows.size(), size_t(1));

        AppDelegate empty;
        QSignalSpy decidedEmpty(&empty, &AppDelegate::firstWindowDecided);
        empty.applicationDidFinishLaunching();
        QVERIFY(decidedEmpty.wait());
        QCOMPARE(empty.windows.size(), size_t(1));
    }

    void busyWindowRefusesToCloseAndQuitIsRefused() {
        AppDelegate app;
        Explorer* idle = app.newWindow();
        Explorer* working = app.newWindow();
        QPointer<Job> job = working->jobs().start(QStringLiteral("Copying"), working);
        QVERIFY(!app.shouldTerminate());
        QVERIFY(app.lastAlert());
        QCOMPARE(app.lastAlert()->text(), QStringLiteral("A file transfer is still running"));
        QCOMPARE(app.lastAlert()->informativeText(),
                 QStringLiteral("Wait for it to finish before quitting."));
        app.lastAlert()->close();

        QVERIFY(!working->close());
        QVERIFY(working->lastAlert());
        QCOMPARE(working->lastAlert()->text(), QStringLiteral("Transfer in progress"));
        working->lastAlert()->close();
        QCOMPARE(app.windows.size(), size_t(2));

        QVERIFY(idle->close());
        QCOMPARE(app.windows.size(), size_t(1));
        QVERIFY(!app.shouldTerminateAfterLastWindowClosed());
        job->finish();
        QVERIFY(app.shouldTerminateAfterLastWindowClosed());
        QVERIFY(app.shouldTerminate());
    }

    void defaultBrowserChangeHoldsQuitting() {
        AppDelegate app;
        app.defaultBrowserChanging = [] { return true; };
        QVERIFY(!app.shouldTerminate());
        QVERIFY(!app.shouldTerminateAfterLastWindowClosed());
    }

    void closedWindowLeavesTheRegistry() {
        AppDelegate app;
        QPointer<Explorer> w = app.newWindow();
        QVERIFY(w->close());
        QVERIFY(app.windows.empty());
        QTRY_VERIFY(w.isNull());
    }
};

ORVANE_TEST_MAIN(AppDelegateTest)
#include "AppDelegateTest.moc"
