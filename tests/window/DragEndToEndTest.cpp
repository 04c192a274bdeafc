#include "chrome/ExplorerTabStrip.h"
#include "chrome/ExplorerTabView.h"
#include "core/TabList.h"
#include "kit/WindowWidgets.h"
#include "platform/NativePath.h"
#include "support/TestEnvironment.h"
#include "support/WindowFixture.h"
#include "views/FileTable.h"
#include "window/AppDelegate.h"
#include "window/Explorer.h"

#include <QLabel>
#include <QProcess>
#include <QTimer>
#include <atomic>
#include <cstdlib>
#include <sys/stat.h>
#include <thread>

using namespace orvane;
using namespace orvane::test;

// Real drags through the X server: xdotool presses, moves and lets go as a person would, and the
// drag runs Qt's own XDND session. The test runs itself under a fresh Xvfb.
class DragEndToEndTest : public QObject, WindowFixture {
    Q_OBJECT

private slots:
    void init() {
        startProgram();
        tree->file(QStringLiteral("a.txt"), "a");
        tree->folder(QStringLiteral("docs"));
        tree->folder(QStringLiteral("other"));
        openWindow({}, true);
        place(*w, QPoint(0, 0));
        QTRY_COMPARE(w->entries().size(), size_t(3));
    }
    void cleanup() {
        xdotool({"keyup", "shift", "ctrl", "alt"});
        stopProgram();
    }

    void aRowDraggedOntoAFolderRow_data() {
        QTest::addColumn<QString>("key");
        QTest::addColumn<QByteArray>("arrives");
        QTest::addColumn<bool>("stays");
        QTest::addColumn<QString>("status");
        QTest::newRow("no key moves") << "" << QByteArray("docs/a.txt") << false << "Move to docs";
        QTest::newRow("Ctrl copies") << "ctrl" << QByteArray("docs/a.txt") << true << "Copy to docs";
        QTest::newRow("Shift moves") << "shift" << QByteArray("docs/a.txt") << false << "Move to docs";
        QTest::newRow("Alt links") << "alt" << QByteArray("docs/a.txt - Shortcut.alias") << true
                                   << "Create shortcuts in docs";
    }
    void aRowDraggedOntoAFolderRow() {
        QFETCH(QString, key);
        QFETCH(QByteArray, arrives);
        QFETCH(bool, stays);
        QFETCH(QString, status);
        const QPoint from = rowCentre(*w, QStringLiteral("a.txt")),
                     to = rowCentre(*w, QStringLiteral("docs"));
        QTest::mouseClick(w->table()->viewport(), Qt::LeftButton, {},
                          w->table()->viewport()->mapFromGlobal(from));
        dragHolding(from, to, key, [&] { return w->widgets().status->text() == status; });
        QTRY_VERIFY(exists(arrives) && !w->busy());
        QCOMPARE(QFile::exists(tree->path(QStringLiteral("a.txt"))), stays);
    }

    // Another window of the program takes the row into the folder it shows.
    void aRowDraggedIntoAnotherWindow() {
        Explorer* first = w;
        Explorer* second = openWindow(tree->path(QStringLiteral("other")), true);
        place(*second, QPoint(0, 420));
        const QPoint from = rowCentre(*first, QStringLiteral("a.txt"));
        QTest::mouseClick(first->table()->viewport(), Qt::LeftButton, {},
                          first->table()->viewport()->mapFromGlobal(from));
        const QPoint to =
            second->table()->viewport()->mapToGlobal(second->table()->viewport()->rect().center());
        dragHolding(from, to, {},
                    [&] { return second->widgets().status->text() == QLatin1String("Move to other"); });
        QTRY_VERIFY(exists("other/a.txt") && !first->busy() && !second->busy());
    }

    // A tab let go outside every window becomes a window of its own, its history kept.
    void aTabTornOffBecomesAWindow() {
        w->navigate(QUrl::fromLocalFile(tree->path(QStringLiteral("docs"))));
        w->newTab();
        const QUuid id = w->tabs().at(0).id;
        ExplorerTabView* tab = w->widgets().tabStrip->orderedTabViews().front();
        const QPoint from = tab->mapToGlobal(tab->rect().center());
        dragHolding(from, QPoint(1100, 700), {}, [] { return true; });
        QTRY_COMPARE(app->windows.size(), size_t(2));
        Explorer* torn = app->windows.back().get();
        QCOMPARE(torn->tabs().current().id, id);
        QVERIFY(torn->tabs().current().canGoBack());
        QCOMPARE(w->tabs().count(), 1);
    }

    // Onto another window's strip: the tab joins it there, and the source keeps its other tab.
    void aTabDroppedOnAnotherWindowsStrip() {
        Explorer* first = w;
        first->newTab();
        const QUuid id = first->tabs().at(1).id;
        Explorer* second = openWindow(tree->path(QStringLiteral("other")), true);
        place(*second, QPoint(0, 420));
        ExplorerTabView* tab = first->widgets().tabStrip->orderedTabViews().back();
        ExplorerTabView* onto = second->widgets().tabStrip->orderedTabViews().front();
        const QPoint to = onto->mapToGlobal(QPoint(onto->width() - 10, onto->height() / 2));
        dragHolding(tab->mapToGlobal(tab->rect().center()), to, {}, [] { return true; });
        QTRY_COMPARE(second->tabs().count(), 2);
        QCOMPARE(second->tabs().current().id, id);
        QCOMPARE(second->tabs().active(), 1);
        QCOMPARE(first->tabs().count(), 1);
    }

private:
    static void place(Explorer& window, const QPoint& at) {
        window.resize(900, 380);
        window.move(at);
        QTRY_COMPARE(window.geometry().topLeft(), at);
    }

    static QPoint rowCentre(Explorer& window, const QString& name) {
        for (int row = 0; row < int(window.entries().size()); ++row)
            if (window.entries()[size_t(row)].name() == name)
                return window.table()->viewport()->mapToGlobal(
                    window.table()->visualRect(window.table()->model()->index(row, 0)).center());
        return {};
    }

    bool exists(const QByteArray& relative) const {
        struct stat facts;
        return ::lstat(NativePath::encode(tree->path()) + '/' + relative, &facts) == 0;
    }

    static void xdotool(const QStringList& args) {
        QCOMPARE(QProcess::execute(QStringLiteral("xdotool"), args), 0);
    }

    // Presses at `from`, moves in steps to `to` with `key` held, waits there until `hovering` holds,
    // then lets go. The drag runs a loop of its own inside this thread, so the pointer is driven from
    // another one.
    static void dragHolding(const QPoint& from, const QPoint& to, const QString& key,
                            const std::function<bool()>& hovering) {
        std::atomic<bool> ready = false, done = false;
        QTimer watch;
        QObject::connect(&watch, &QTimer::timeout, [&] { ready = ready || hovering(); });
        watch.start(20);
        std::thread hand([&] {
            const auto run = [](const QString& command) {
                return std::system(("xdotool " + command).toLocal8Bit().constData());
            };
            const auto at = [](const QPoint& p) {
                return QStringLiteral("mousemove %1 %2").arg(p.x()).arg(p.y());
            };
            run(at(from) + " mousedown 1");
            if (!key.isEmpty()) run("keydown " + key);
            for (int step = 1; step <= 8; ++step)
                run(at(from + (to - from) * step / 8));
            // Moves go on until the window says what the drop would do, as a hand waits for the cue.
            for (int wiggle = 0; !ready && wiggle < 1000; ++wiggle)
                run(at(to + QPoint(wiggle % 2, 1)));
            run(QStringLiteral("mouseup 1"));
            if (!key.isEmpty()) run("keyup " + key);
            done = true;
        });
        QTRY_VERIFY_WITH_TIMEOUT(done, 60000);
        hand.join();
        QVERIFY(ready);
    }
};

// Under a server of its own: the test starts itself again inside xvfb-run.
int main(int argc, char** argv) {
    if (qgetenv("ORVANE_DRAG_DISPLAY") != "1") {
        QStringList args{QStringLiteral("-a"), QStringLiteral("-s"), QStringLiteral("-screen 0 1280x800x24"),
                         QString::fromLocal8Bit(argv[0])};
        for (int i = 1; i < argc; ++i)
            args << QString::fromLocal8Bit(argv[i]);
        qputenv("ORVANE_DRAG_DISPLAY", "1");
        qputenv("QT_QPA_PLATFORM", "xcb");
        QProcess run;
        run.setProcessChannelMode(QProcess::ForwardedChannels);
        run.start(QStringLiteral("xvfb-run"), args);
        run.waitForFinished(-1);
        return run.exitStatus() == QProcess::NormalExit ? run.exitCode() : 1;
    }
    orvane::test::prepareEnvironment();
    QApplication app(argc, argv);
    app.setOrganizationName(QStringLiteral("Orvane"));
    app.setApplicationName(QStringLiteral("Orvane"));
    QStandardPaths::setTestModeEnabled(true);
    DragEndToEndTest tc;
    QTEST_SET_MAIN_SOURCE_PATH
    return QTest::qExec(&tc, argc, argv);
}

#include "DragEndToEndTest.moc"
