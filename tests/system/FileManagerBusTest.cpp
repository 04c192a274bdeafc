#include "system/FileManagerBus.h"
#include "core/WindowListing.h"
#include "kit/WindowWidgets.h"
#include "platform/NativePath.h"
#include "properties/PropertiesWindow.h"
#include "support/PrivateBus.h"
#include "support/TempTree.h"
#include "support/TestEnvironment.h"
#include "support/WindowFixture.h"
#include "system/InstanceChannel.h"
#include "window/AppDelegate.h"
#include "window/Explorer.h"

#include <QDBusConnectionInterface>
#include <QDBusInterface>
#include <QEventLoop>
#include <QLabel>
#include <QProcess>

using namespace orvane;
using namespace orvane::test;

namespace {
QStringList selectedNames(const Explorer& window) {
    QStringList names;
    for (const Entry& e : window.selected())
        names << QString::fromUtf8(NativePath::encode(e.name()));
    return names;
}

QList<PropertiesWindow*> propertiesWindows() {
    QList<PropertiesWindow*> all;
    for (QWidget* widget : QApplication::topLevelWidgets())
        if (auto* window = qobject_cast<PropertiesWindow*>(widget); window && window->isVisible())
            all << window;
    return all;
}

// The desktop's own client, as a browser's "Show in folder" runs it.
int gdbusCall(const QString& method, const QStringList& uris,
              const QString& service = FileManagerBus::serviceName,
              const QString& path = FileManagerBus::objectPath,
              const QString& interface = FileManagerBus::serviceName) {
    QStringList quoted;
    for (const QString& uri : uris)
        quoted << u'\'' + uri + u'\'';
    QStringList args{QStringLiteral("call"),          QStringLiteral("--session"),
                     QStringLiteral("--dest"),        service,
                     QStringLiteral("--object-path"), path,
                     QStringLiteral("--method"),      interface + u'.' + method,
                     u'[' + quoted.join(u',') + u']'};
    if (interface == FileManagerBus::serviceName)
        args << QStringLiteral("''");
    else
        args << QStringLiteral("{}");
    // The call is answered by this process's own event loop, which must go on running meanwhile.
    QProcess gdbus;
    QEventLoop loop;
    QObject::connect(&gdbus, &QProcess::finished, &loop, &QEventLoop::quit);
    gdbus.start(QStringLiteral("gdbus"), args);
    if (!gdbus.waitForStarted()) return -1;
    loop.exec();
    return gdbus.exitStatus() == QProcess::NormalExit ? gdbus.exitCode() : -1;
}
} // namespace

class FileManagerBusTest : public QObject, WindowFixture {
    Q_OBJECT
    PrivateBus bus;
    QString uri(const QByteArray& relative) const {
        return QString::fromLatin1(
            NativePath::encodedUrl(tree->path() + u'/' + NativePath::decode(relative)));
    }

private slots:
    void initTestCase() { QVERIFY(bus.running()); }
    void init() {
        startProgram();
        tree->file(QStringLiteral("Docs/a.txt"));
        tree->file(QStringLiteral("Docs/b.txt"));
        tree->rawFile("Docs/bad\xff.txt");
        tree->folder(QStringLiteral("Other"));
    }
    void cleanup() {
        for (PropertiesWindow* window : propertiesWindows())
            window->close();
        stopProgram();
    }

    // What each call shows, asked through the real client: the folder, what is selected in it, and
    // what the status line says of the rest.
    void callsShowWhatTheyName_data() {
        QTest::addColumn<QString>("method");
        QTest::addColumn<QByteArrayList>("items");
        QTest::addColumn<QString>("folder");
        QTest::addColumn<QStringList>("selected");
        QTest::addColumn<QString>("status");
        QTest::addColumn<int>("properties");
        QTest::newRow("items are selected in their folder")
            << "ShowItems" << QByteArrayList{"Docs/a.txt", "Docs/bad\xff.txt"} << "Docs"
            << QStringList{"a.txt", "bad\xff.txt"} << "" << 0;
        QTest::newRow("a folder as an item is selected in its parent")
            << "ShowItems" << QByteArrayList{"Other"} << "" << QStringList{"Other"} << "" << 0;
        QTest::newRow("folders open as themselves")
            << "ShowFolders" << QByteArrayList{"Other"} << "Other" << QStringList{} << "" << 0;
        QTest::newRow("missing and foreign items are counted")
            << "ShowItems" << QByteArrayList{"Docs/b.txt", "Docs/gone", "https://example.org/x"} << "Docs"
            << QStringList{"b.txt"} << "Could not find 2 requested item(s)" << 0;
        QTest::newRow("properties open for the items") << "ShowItemProperties" << QByteArrayList{"Docs/a.txt"}
                                                       << "Docs" << QStringList{"a.txt"} << "" << 1;
    }
    void callsShowWhatTheyName() {
        QFETCH(QString, method);
        QFETCH(QByteArrayList, items);
        QFETCH(QString, folder);
        QFETCH(QStringList, selected);
        QFETCH(QString, status);
        QFETCH(int, properties);
        FileManagerBus service(*app, nullptr);
        QTRY_VERIFY(service.ownsName());
        app->applicationDidFinishLaunching();
        QStringList uris;
        for (const QByteArray& item : items)
            uris << (item.contains(':') ? QString::fromLatin1(item) : uri(item));
        QCOMPARE(gdbusCall(method, uris), 0);
        QTRY_COMPARE(app->windows.size(), size_t(1));
        Explorer* window = app->windows.front().get();
        QTRY_COMPARE(window->current(), QUrl::fromLocalFile(NativePath::canonical(tree->path(folder))));
        QTRY_COMPARE(selectedNames(*window), selected);
        QCOMPARE(window->widgets().status->text().contains(status), true);
        QTRY_COMPARE(propertiesWindows().size(), properties);
    }

    // Calls that come before launching is over wait for it, and then decide the first window.
    void callsBeforeLaunchWait() {
        FileManagerBus service(*app, nullptr);
        QTRY_VERIFY(service.ownsName());
        QCOMPARE(gdbusCall(QStringLiteral("ShowFolders"), {uri("Other")}), 0);
        QCOMPARE(app->windows.size(), size_t(0));
        app->applicationDidFinishLaunching();
        QTRY_COMPARE(app->windows.size(), size_t(1));
        QCOMPARE(app->windows.front()->current().fileName(), QStringLiteral("Other"));
        QCOMPARE(app->windows.front()->tabs().count(), 1);
    }

    // Ten thousand items in one call make one tab; what is missing is counted, not listed.
    void tenThousandItems() {
        FileManagerBus service(*app, nullptr);
        QTRY_VERIFY(service.ownsName());
        app->applicationDidFinishLaunching();
        QStringList uris{uri("Docs/a.txt")};
        for (int i = 1; i < 10000; ++i)
            uris << uri("Docs/missing-" + QByteArray::number(i));
        QDBusConnection client = QDBusConnection::connectToBus(QString::fromLatin1(bus.address), "client");
        QDBusInterface(FileManagerBus::serviceName, FileManagerBus::objectPath, FileManagerBus::serviceName,
                       client)
            .asyncCall(QStringLiteral("ShowItems"), uris, QString());
        QTRY_COMPARE(app->windows.size(), size_t(1));
        Explorer* window = app->windows.front().get();
        QTRY_COMPARE(selectedNames(*window), QStringList{"a.txt"});
        QCOMPARE(window->widgets().status->text(), QStringLiteral("Could not find 9999 requested item(s)"));
        QDBusConnection::disconnectFromBus("client");
    }

    // A holder that was there first keeps the name; Orvane waits in line, takes it only when told
    // to, and gives it back.
    void anotherHolderKeepsTheName() {
        FileManagerBus* service = nullptr;
        {
            QDBusConnection other = QDBusConnection::connectToBus(QString::fromLatin1(bus.address), "other");
            QCOMPARE(other.interface()
                         ->registerService(FileManagerBus::serviceName,
                                           QDBusConnectionInterface::QueueService,
                                           QDBusConnectionInterface::AllowReplacement)
                         .value(),
                     QDBusConnectionInterface::ServiceRegistered);
            service = new FileManagerBus(*app, nullptr);
            QVERIFY(service->exported() && !service->ownsName());
            QVERIFY(service->takeName());
            QVERIFY(service->handBackName());
            QCOMPARE(other.interface()->serviceOwner(FileManagerBus::serviceName).value(),
                     other.baseService());
        }
        QDBusConnection::disconnectFromBus("other");
        QTRY_VERIFY(service->ownsName());
        delete service;
    }

    // A call that reaches a second Orvane is handed to the first, which holds the instance channel.
    void aSecondProcessHandsOver() {
        InstanceChannel channel(*app);
        QVERIFY(channel.listening());
        app->applicationDidFinishLaunching();
        QTRY_COMPARE(app->windows.size(), size_t(1));
        QProcess second;
        second.start(QCoreApplication::applicationDirPath() + QStringLiteral("/Orvane"), QStringList{});
        QVERIFY(second.waitForStarted());
        QDBusConnection client = QDBusConnection::sessionBus();
        QTRY_VERIFY(client.interface()->isServiceRegistered(FileManagerBus::serviceName));
        const int called = gdbusCall(QStringLiteral("ShowItems"), {uri("Docs/b.txt")});
        second.kill();
        second.waitForFinished();
        QCOMPARE(called, 0);
        Explorer* window = app->windows.front().get();
        QTRY_COMPARE(window->current().fileName(), QStringLiteral("Docs"));
        QTRY_COMPARE(selectedNames(*window), QStringList{"b.txt"});
    }

    // The desktop's launcher opens a folder through the application's own name.
    void theLauncherOpensThroughTheApplicationName() {
        FileManagerBus service(*app, nullptr);
        app->applicationDidFinishLaunching();
        QTRY_COMPARE(app->windows.size(), size_t(1));
        QCOMPARE(gdbusCall(QStringLiteral("Open"), {uri("Other")}, QStringLiteral("org.orvane.Orvane"),
                           QStringLiteral("/org/orvane/Orvane"),
                           QStringLiteral("org.freedesktop.Application")),
                 0);
        QTRY_COMPARE(app->windows.front()->current().fileName(), QStringLiteral("Other"));
    }
};

ORVANE_TEST_MAIN(FileManagerBusTest)
#include "FileManagerBusTest.moc"
