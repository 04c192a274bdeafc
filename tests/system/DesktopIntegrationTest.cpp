#include "system/DesktopIntegration.h"
#include "core/Services.h"
#include "core/Settings.h"
#include "support/AccessibleTree.h"
#include "support/PrivateBus.h"
#include "support/TempTree.h"
#include "support/TestEnvironment.h"
#include "support/WindowFixture.h"
#include "system/DefaultBrowserSettings.h"
#include "system/DefaultBrowserWindow.h"
#include "system/FileManagerBus.h"
#include "system/InstanceChannel.h"
#include "system/MimeAppsList.h"
#include "window/AppDelegate.h"
#include "window/Explorer.h"

#include <QDBusConnectionInterface>
#include <QDir>
#include <QEventLoop>
#include <QFile>
#include <QProcess>
#include <QPushButton>
#include <sys/stat.h>

using namespace orvane;
using namespace orvane::test;

namespace {
// Comments, groups the desktop does not know, several defaults and odd spacing: all must stay.
const QByteArray odd = "# chosen by hand\n"
                       "[Added Associations]\n"
                       "text/plain=editor.desktop;\n"
                       "\n"
                       "[Default Applications]\n"
                       "  image/png = viewer.desktop;  \n"
                       "inode/directory =  files.desktop;other.desktop; \r\n"
                       "[X-Unknown]\n"
                       "inode/directory=not-this.desktop\n";

QByteArray readAll(const QString& path) {
    QFile file(path);
    return file.open(QIODevice::ReadOnly) ? file.readAll() : QByteArray("(absent)");
}

void writeAll(const QString& path, const QByteArray& content) {
    QDir().mkpath(QFileInfo(path).absolutePath());
    QFile file(path);
    QVERIFY(file.open(QIODevice::WriteOnly | QIODevice::Truncate));
    file.write(content);
}

// The desktop's own clients; some call back into this process, whose event loop goes on meanwhile.
QString client(const QString& program, const QStringList& args) {
    QProcess process;
    QProcessEnvironment env = QProcessEnvironment::systemEnvironment();
    env.insert(QStringLiteral("DISPLAY"), QStringLiteral(":0")); // xdg-open asks for a display first
    process.setProcessEnvironment(env);
    QEventLoop loop;
    QObject::connect(&process, &QProcess::finished, &loop, &QEventLoop::quit);
    process.start(program, args);
    if (process.waitForStarted()) loop.exec();
    return QString::fromUtf8(process.readAllStandardOutput()).trimmed();
}

// Runs the transaction to its end; the desktop answers through the event loop.
DefaultBrowserSettings::Result finish(DefaultBrowserSettings& settings, bool makeDefault) {
    std::optional<DefaultBrowserSettings::Result> result;
    auto done = [&result](const DefaultBrowserSettings::Result& r) { result = r; };
    makeDefault ? settings.makeOrvaneDefault(done) : settings.restorePreviousDefault(done);
    for (int i = 0; i < 1000 && !result; ++i)
        QCoreApplication::processEvents(QEventLoop::AllEvents, 10);
    return result.value_or(DefaultBrowserSettings::Result{{}, QStringLiteral("no answer")});
}
} // namespace

class DesktopIntegrationTest : public QObject, WindowFixture {
    Q_OBJECT
    PrivateBus bus;
    const QString list = MimeAppsList::userFile();

    // Orvane's desktop entry and a stand-in for the file manager that was there before.
    void installEntries() {
        const QString apps = QFile::decodeName(qgetenv("XDG_DATA_HOME")) + "/applications/";
        writeAll(apps + DesktopIntegration::desktopId,
                 "[Desktop Entry]\nType=Application\nName=Orvane\nExec=" +
                     QFile::encodeName(QCoreApplication::applicationDirPath()) +
                     "/Orvane %U\nDBusActivatable=true\nMimeType=inode/directory;\n");
        writeAll(apps + "files.desktop", "[Desktop Entry]\nType=Application\nName=Stand-in Files\nExec=true "
                                         "%U\nMimeType=inode/directory;\n");
    }

private slots:
    void initTestCase() {
        QVERIFY(bus.running());
        qunsetenv("XDG_CURRENT_DESKTOP");
        qputenv("XDG_DATA_DIRS", "/nonexistent");
    }
    void init() {
        startProgram();
        installEntries();
        app->didFinishLaunching = true;
    }
    void cleanup() {
        stopProgram();
        for (const char* name : {"previous", "stubborn"})
            QDBusConnection::disconnectFromBus(QLatin1String(name));
        QFile::setPermissions(list, QFileDevice::ReadOwner | QFileDevice::WriteOwner);
        QFile::remove(list);
    }

    // One value changes; every other byte stays, and going back gives the very same bytes.
    void onlyOneLineChanges_data() {
        QTest::addColumn<QByteArray>("before");
        QTest::addColumn<QByteArray>("after");
        const QByteArray line = "inode/directory=org.orvane.Orvane.desktop;";
        QTest::newRow("odd file") << odd
                                  << QByteArray(odd).replace(
                                         "inode/directory =  files.desktop;other.desktop; \r", line);
        QTest::newRow("no group") << QByteArray("[Added Associations]\nx/y=a.desktop;\n")
                                  << "[Added Associations]\nx/y=a.desktop;\n[Default Applications]\n" + line +
                                         "\n";
        QTest::newRow("empty group") << QByteArray("[Default Applications]\n# mine\n")
                                     << "[Default Applications]\n" + line + "\n# mine\n";
        QTest::newRow("no file") << QByteArray() << "[Default Applications]\n" + line + "\n";
    }
    void onlyOneLineChanges() {
        QFETCH(QByteArray, before);
        QFETCH(QByteArray, after);
        const QByteArray was = MimeAppsList::lineIn(before, "inode/directory");
        const QByteArray line = "inode/directory=org.orvane.Orvane.desktop;";
        const QByteArray changed = MimeAppsList::withLine(before, "inode/directory", line);
        QCOMPARE(changed, after);
        QCOMPARE(MimeAppsList::lineIn(changed, "inode/directory"), line);
        QCOMPARE(MimeAppsList::withLine(changed, "inode/directory", was), before);
    }

    // The whole road with the desktop's own clients: after the change they name Orvane and open
    // folders in it, the reveal name is taken from its holder; going back undoes all of it exactly.
    void theDesktopFollowsAndComesBack() {
        writeAll(list, odd);
        QDBusConnection other = QDBusConnection::connectToBus(QString::fromLatin1(bus.address), "previous");
        other.interface()->registerService(FileManagerBus::serviceName,
                                           QDBusConnectionInterface::QueueService,
                                           QDBusConnectionInterface::AllowReplacement);
        InstanceChannel channel(*app);
        DesktopIntegration desktop(*app, &channel);
        QVERIFY(!desktop.bus().ownsName());
        DefaultBrowserWindow window(desktop.defaults());
        QCOMPARE(window.folderText(), QStringLiteral("Stand-in Files"));
        QVERIFY(window.useButton()->isEnabled() && !window.restoreButton()->isEnabled());
        QCOMPARE(accessibilityFaults(&window), QStringList{});

        QVERIFY2(finish(desktop.defaults(), true).ok(), "change refused");
        QCOMPARE(client("xdg-mime", {"query", "default", "inode/directory"}), DesktopIntegration::desktopId);
        QVERIFY(desktop.bus().ownsName());
        window.refresh();
        QCOMPARE(window.folderText(), QStringLiteral("Orvane"));
        QCOMPARE(window.viewerText(), QStringLiteral("Orvane"));
        QVERIFY(!window.useButton()->isEnabled() && window.restoreButton()->isEnabled());
        const QString folder = tree->folder(QStringLiteral("Opened by gio"));
        client("gio", {"open", folder});
        QTRY_VERIFY(!app->windows.empty());
        QTRY_COMPARE(app->windows.back()->current().fileName(), QStringLiteral("Opened by gio"));
        tree->folder(QStringLiteral("Opened by xdg-open"));
        client("xdg-open", {tree->path(QStringLiteral("Opened by xdg-open"))});
        QTRY_COMPARE(app->windows.back()->current().fileName(), QStringLiteral("Opened by xdg-open"));

        QVERIFY2(finish(desktop.defaults(), false).ok(), "going back refused");
        QCOMPARE(readAll(list), odd);
        QCOMPARE(client("xdg-mime", {"query", "default", "inode/directory"}),
                 QStringLiteral("files.desktop"));
        QCOMPARE(other.interface()->serviceOwner(FileManagerBus::serviceName).value(), other.baseService());
        QDBusConnection::disconnectFromBus("previous");
    }

    // A holder that will not let go makes the change fail as a whole: the file is as it was.
    void aRefusedNameRollsBack() {
        writeAll(list, odd);
        QDBusConnection other = QDBusConnection::connectToBus(QString::fromLatin1(bus.address), "stubborn");
        other.interface()->registerService(FileManagerBus::serviceName,
                                           QDBusConnectionInterface::QueueService,
                                           QDBusConnectionInterface::DontAllowReplacement);
        DesktopIntegration desktop(*app, nullptr);
        const auto result = finish(desktop.defaults(), true);
        QCOMPARE(result.error,
                 QStringLiteral("The Show in folder service could not be changed. Previous settings "
                                "were restored."));
        QCOMPARE(readAll(list), odd);
        QDBusConnection::disconnectFromBus("stubborn");
    }

    // A file the person made read-only is not replaced behind their back.
    void aReadOnlyListIsLeftAlone() {
        writeAll(list, odd);
        ::chmod(QFile::encodeName(list).constData(), 0444);
        DesktopIntegration desktop(*app, nullptr);
        const auto result = finish(desktop.defaults(), true);
        QCOMPARE(result.error,
                 QStringLiteral("The desktop did not change the folder browser: Permission denied "
                                "[errno 13] No settings were changed."));
        QCOMPARE(readAll(list), odd);
    }

    // A change cut short by a crash is undone when Orvane next starts.
    void aCrashIsRecoveredAtTheNextStart() {
        writeAll(list, MimeAppsList::withLine(odd, "inode/directory",
                                              "inode/directory=org.orvane.Orvane.desktop;"));
        app->services().settings().setDefaultBrowserPending(
            {{"folderApplicationURL", "inode/directory =  files.desktop;other.desktop; \r"},
             {"folderIdentifier", "files.desktop;other.desktop"}});
        DesktopIntegration desktop(*app, nullptr);
        QTRY_VERIFY(!desktop.defaults().isChanging());
        QCOMPARE(readAll(list), odd);
        QVERIFY(app->services().settings().defaultBrowserPending().isEmpty());
    }
};

ORVANE_TEST_MAIN(DesktopIntegrationTest)
#include "DesktopIntegrationTest.moc"
