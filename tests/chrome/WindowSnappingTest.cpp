#include "chrome/WindowSnapping.h"
#include "core/WindowCommands.h"
#include "support/TestEnvironment.h"
#include "support/WindowFixture.h"
#include "window/AppDelegate.h"
#include "window/Explorer.h"

#include <QDir>
#include <QFile>
#include <QProcess>
#include <QScreen>
#include <QStandardPaths>
#include <QThread>

using namespace orvane;
using orvane::test::WindowFixture;

namespace {

// An X server of the test's own with a real window manager on it, so placement goes through the
// same requests and answers as on a desktop. `screens` X screens, the second larger.
class XDesktop {
public:
    explicit XDesktop(int screens) {
        const QString xvfb = QStandardPaths::findExecutable(QStringLiteral("Xvfb"));
        const QString openbox = QStandardPaths::findExecutable(QStringLiteral("openbox"));
        if (xvfb.isEmpty() || openbox.isEmpty()) return;
        int n = 40 + int(QCoreApplication::applicationPid() % 400);
        while (QFile::exists(QStringLiteral("/tmp/.X%1-lock").arg(n)))
            ++n;
        display = QStringLiteral(":%1").arg(n);
        QStringList args{display,
                         QStringLiteral("-nolisten"),
                         QStringLiteral("tcp"),
                         QStringLiteral("-screen"),
                         QStringLiteral("0"),
                         QStringLiteral("1280x800x24")};
        if (screens > 1)
            args << QStringLiteral("-screen") << QStringLiteral("1") << QStringLiteral("1600x1000x24");
        server.start(xvfb, args);
        for (int i = 0; i < 200 && !QFile::exists(QStringLiteral("/tmp/.X11-unix/X%1").arg(n)); ++i)
            QThread::msleep(50);
        qputenv("DISPLAY", display.toLatin1());
        manager.start(openbox, {QStringLiteral("--sm-disable")});
        // The manager is there once it has named itself on the root window.
        for (int i = 0; i < 200 && !managed(); ++i)
            QThread::msleep(50);
    }
    ~XDesktop() {
        for (QProcess* p : {&manager, &server}) {
            p->terminate();
            p->waitForFinished();
        }
    }
    bool managed() const {
        QProcess xprop;
        xprop.start(QStringLiteral("xprop"),
                    {QStringLiteral("-root"), QStringLiteral("_NET_SUPPORTING_WM_CHECK")});
        xprop.waitForFinished();
        return xprop.readAll().contains("window id");
    }
    QString display;
    QProcess server, manager;
};

} // namespace

class WindowSnappingTest : public QObject, WindowFixture {
    Q_OBJECT

    const bool onDesktop = QGuiApplication::platformName() == QLatin1String("xcb");

    WindowSnapping& snapping() const { return *w->findChild<WindowSnapping*>(); }
    QRect area() const { return w->screen()->availableGeometry(); }
    void arrange(int position) { QVERIFY(w->commands().run(QStringLiteral("arrangeWindow"), position)); }
    // The window manager answers a placement when it likes; a snap is done when the frame is there.
    bool settlesAt(const QRect& frame) {
        return QTest::qWaitFor([&] { return w->frameGeometry() == frame; }, 5000);
    }

private slots:
    void init() {
        if (!onDesktop) QSKIP("no X server with a window manager here (Xvfb, openbox)");
        startProgram();
        openWindow({}, true);
        w->setGeometry(QRect(area().topLeft() + QPoint(60, 50), QSize(700, 420)));
        QVERIFY(settlesAt(QRect(area().topLeft() + QPoint(60, 50), QSize(700, 420))));
    }
    void cleanup() { stopProgram(); }

    void piecesFillTheArea_data() {
        QTest::addColumn<int>("position");
        QTest::addColumn<QRect>("frame");
        const QRect v(10, 20, 1001, 701); // odd both ways
        QTest::newRow("left half") << 0 << QRect(10, 20, 500, 701);
        QTest::newRow("right half") << 1 << QRect(510, 20, 501, 701);
        QTest::newRow("maximize") << 2 << v;
        QTest::newRow("top left") << 4 << QRect(10, 20, 500, 351);
        QTest::newRow("top right") << 5 << QRect(510, 20, 501, 351);
        QTest::newRow("bottom left") << 6 << QRect(10, 371, 500, 350);
        QTest::newRow("bottom right") << 7 << QRect(510, 371, 501, 350);
        QTest::newRow("unknown") << 42 << v;
    }
    void piecesFillTheArea() {
        QFETCH(int, position);
        QFETCH(QRect, frame);
        QCOMPARE(paneSnapFrame(position, QRect(10, 20, 1001, 701)), frame);
    }

    // Steps: a snap position, "move" (the user drags the window), "toggle" (a double click on the
    // title strip). Then restore: the frame the window comes back to.
    void restoreReturnsToTheFrameBefore_data() {
        QTest::addColumn<QStringList>("steps");
        QTest::addColumn<bool>("toMoved");
        QTest::newRow("left, right, restore") << QStringList{"0", "1", "3"} << false;
        QTest::newRow("quarters in a row") << QStringList{"4", "5", "7", "6", "3"} << false;
        QTest::newRow("snap, drag away, snap") << QStringList{"0", "move", "1", "3"} << true;
        QTest::newRow("restore with nothing stored") << QStringList{"3"} << false;
        QTest::newRow("title strip twice") << QStringList{"toggle", "toggle"} << false;
        QTest::newRow("half, then title strip twice") << QStringList{"0", "toggle", "toggle"} << false;
    }
    void restoreReturnsToTheFrameBefore() {
        QFETCH(QStringList, steps);
        QFETCH(bool, toMoved);
        const QRect before = w->frameGeometry();
        QRect moved;
        for (const QString& step : steps) {
            if (step == QLatin1String("move")) {
                moved = before.translated(37, 29);
                w->setGeometry(moved);
                QVERIFY(settlesAt(moved));
            } else if (step == QLatin1String("toggle")) {
                const bool wasMaximised = w->frameGeometry() == area();
                snapping().toggleTitleBarMaximize();
                if (!wasMaximised) QVERIFY(settlesAt(area()));
            } else if (step.toInt() != WindowSnapping::Restore) {
                arrange(step.toInt());
                QVERIFY(settlesAt(paneSnapFrame(step.toInt(), area())));
            } else {
                arrange(WindowSnapping::Restore);
            }
        }
        QVERIFY(settlesAt(toMoved ? moved : before));
        QVERIFY(!snapping().restoreFrame());
    }

    // A quarter smaller than the window's minimum: the frame it got is the one remembered.
    void aWindowTooLargeForAQuarterIsNotTakenForMoved() {
        const QRect before = w->frameGeometry();
        w->setMinimumSize(area().width() / 2 + 20, area().height() / 2 + 10);
        QVERIFY(w->minimumSize().boundedTo(before.size()) == w->minimumSize());
        arrange(WindowSnapping::TopLeft);
        QVERIFY(settlesAt(QRect(area().topLeft(), w->minimumSize())));
        arrange(WindowSnapping::BottomLeft);
        QVERIFY(QTest::qWaitFor([&] { return w->frameGeometry().size() == w->minimumSize(); }, 5000));
        arrange(WindowSnapping::Restore);
        QVERIFY(settlesAt(before));
    }

    // Every snap lands on the screen that holds the window, inside its available area.
    void snapsOnTheWindowsOwnScreen() {
        const QList<QScreen*> screens = QGuiApplication::screens();
        if (screens.size() < 2) QSKIP("one screen in this run");
        QScreen* second = screens.last();
        const QRect v = second->availableGeometry();
        // Each screen is an X screen of its own here, so the window moves there by being shown there.
        w->hide();
        w->setScreen(second);
        w->show();
        QVERIFY(QTest::qWaitForWindowExposed(w));
        w->setGeometry(QRect(v.topLeft() + QPoint(30, 30), QSize(640, 400)));
        QVERIFY(settlesAt(QRect(v.topLeft() + QPoint(30, 30), QSize(640, 400))));
        QTRY_COMPARE(w->screen(), second);
        for (int position : {0, 1, 5, 6, 2}) {
            arrange(position);
            QVERIFY2(settlesAt(paneSnapFrame(position, v)), qPrintable(QString::number(position)));
        }
        arrange(WindowSnapping::Restore);
        QVERIFY(settlesAt(QRect(v.topLeft() + QPoint(30, 30), QSize(640, 400))));
    }
};

// Runs the tests on one screen and again on two, each under an X server and window manager of its
// own; without Xvfb they skip.
int main(int argc, char** argv) {
    if (qEnvironmentVariableIsEmpty("ORVANE_SNAP_SCREENS")) {
        QCoreApplication runner(argc, argv);
        int failed = 0;
        for (const char* screens : {"1", "2"}) {
            QProcess run;
            QProcessEnvironment env = QProcessEnvironment::systemEnvironment();
            env.insert(QStringLiteral("ORVANE_SNAP_SCREENS"), QLatin1String(screens));
            run.setProcessEnvironment(env);
            run.setProcessChannelMode(QProcess::ForwardedChannels);
            run.start(QCoreApplication::applicationFilePath(), runner.arguments().mid(1));
            run.waitForFinished(-1);
            failed += run.exitStatus() == QProcess::NormalExit ? run.exitCode() : 1;
        }
        return failed;
    }
    orvane::test::prepareEnvironment();
    std::optional<XDesktop> desktop;
    {
        QCoreApplication probe(argc, argv); // QProcess wants an application object
        desktop.emplace(qEnvironmentVariableIntValue("ORVANE_SNAP_SCREENS"));
    }
    if (desktop->managed()) qputenv("QT_QPA_PLATFORM", "xcb");
    QApplication app(argc, argv);
    app.setOrganizationName(QStringLiteral("Orvane"));
    app.setApplicationName(QStringLiteral("Orvane"));
    QStandardPaths::setTestModeEnabled(true);
    WindowSnappingTest tc;
    QTEST_SET_MAIN_SOURCE_PATH
    const int result = QTest::qExec(&tc, argc, argv);
    return result;
}

#include "WindowSnappingTest.moc"
