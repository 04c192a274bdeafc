#include "support/PrivateBus.h"
#include "support/TestEnvironment.h"

#include <QDBusConnection>
#include <QDBusConnectionInterface>
#include <QDir>
#include <QFile>
#include <QFileInfo>
#include <QProcess>
#include <QTemporaryDir>
#include <memory>

using namespace orvane::test;

namespace {
struct Run {
    int code = -1;
    QString output;
};

Run run(const QString& program, const QStringList& args) {
    QProcess process;
    process.setProcessChannelMode(QProcess::MergedChannels);
    process.start(program, args);
    if (!process.waitForStarted() || !process.waitForFinished(120000)) return {};
    return {process.exitStatus() == QProcess::NormalExit ? process.exitCode() : -1,
            QString::fromLocal8Bit(process.readAll())};
}
} // namespace

// `cmake --install` into a prefix of its own, checked by the desktop's own validators and by the bus
// starting what it installed.
class InstallationTest : public QObject {
    Q_OBJECT
    QTemporaryDir prefix;
    QString at(const QString& relative) const { return prefix.filePath(relative); }

private slots:
    void initTestCase() {
        QVERIFY(prefix.isValid());
        const Run install = run(QStringLiteral("cmake"),
                                {QStringLiteral("--install"), QCoreApplication::applicationDirPath() + "/..",
                                 QStringLiteral("--prefix"), prefix.path()});
        QVERIFY2(install.code == 0, qPrintable(install.output));
    }

    void filesAreInPlace_data() {
        QTest::addColumn<QString>("path");
        QTest::addColumn<bool>("executable");
        QTest::newRow("program") << "bin/Orvane" << true;
        QTest::newRow("bridge beside it") << "bin/mtp-bridge" << true;
        QTest::newRow("desktop entry") << "share/applications/org.orvane.Orvane.desktop" << false;
        QTest::newRow("activation") << "share/dbus-1/services/org.orvane.Orvane.service" << false;
        QTest::newRow("reveal service")
            << "share/dbus-1/services/org.orvane.Orvane.FileManager1.service" << false;
        QTest::newRow("software centre") << "share/metainfo/org.orvane.Orvane.metainfo.xml" << false;
        QTest::newRow("icon") << "share/icons/hicolor/scalable/apps/org.orvane.Orvane.svg" << false;
    }
    void filesAreInPlace() {
        QFETCH(QString, path);
        QFETCH(bool, executable);
        const QFileInfo file(at(path));
        QVERIFY2(file.isFile(), qPrintable(path));
        QCOMPARE(file.isExecutable(), executable);
    }

    void validatorsAccept_data() {
        QTest::addColumn<QString>("validator");
        QTest::addColumn<QStringList>("args");
        QTest::newRow("desktop entry")
            << "desktop-file-validate" << QStringList{"share/applications/org.orvane.Orvane.desktop"};
        QTest::newRow("metainfo") << "appstreamcli"
                                  << QStringList{"validate", "--no-net",
                                                 "share/metainfo/org.orvane.Orvane.metainfo.xml"};
    }
    void validatorsAccept() {
        QFETCH(QString, validator);
        QFETCH(QStringList, args);
        QStringList full;
        for (const QString& arg : args)
            full << (arg.startsWith(QLatin1String("share/")) ? at(arg) : arg);
        const Run check = run(validator, full);
        QVERIFY2(check.code == 0, qPrintable(check.output));
        QVERIFY2(!check.output.contains(QLatin1String("error")), qPrintable(check.output));
    }

    // What makes Orvane the desktop's file manager, and every program named by its installed path.
    void entriesNameTheInstalledProgram_data() {
        QTest::addColumn<QString>("file");
        QTest::addColumn<QString>("line");
        const QString desktop = "share/applications/org.orvane.Orvane.desktop";
        QTest::newRow("opens folders") << desktop << "MimeType=inode/directory;";
        QTest::newRow("takes URIs") << desktop << "Exec=%1/bin/Orvane %U";
        QTest::newRow("started over the bus") << desktop << "DBusActivatable=true";
        QTest::newRow("reveal name") << "share/dbus-1/services/org.orvane.Orvane.FileManager1.service"
                                     << "Exec=%1/bin/Orvane --gapplication-service";
    }
    void entriesNameTheInstalledProgram() {
        QFETCH(QString, file);
        QFETCH(QString, line);
        QFile entry(at(file));
        QVERIFY(entry.open(QIODevice::ReadOnly));
        const QStringList lines = QString::fromUtf8(entry.readAll()).split(u'\n');
        QVERIFY2(lines.contains(QString(line).replace(QLatin1String("%1"), prefix.path())), qPrintable(line));
    }

    // A browser's "Show in folder" with no Orvane running starts the installed one.
    void theBusStartsTheInstalledProgram() {
        qputenv("XDG_DATA_DIRS", QFile::encodeName(at("share")));
        auto bus = std::make_unique<PrivateBus>();
        QVERIFY(bus->running());
        const QString home = QDir::homePath();
        const Run call =
            run(QStringLiteral("gdbus"),
                {"call", "--session", "--dest", "org.freedesktop.FileManager1", "--object-path",
                 "/org/freedesktop/FileManager1", "--method", "org.freedesktop.FileManager1.ShowFolders",
                 "['" + QUrl::fromLocalFile(home).toString() + "']", "''"});
        QVERIFY2(call.code == 0, qPrintable(call.output));
        QDBusConnectionInterface* names = QDBusConnection::sessionBus().interface();
        const uint pid = names->servicePid(QStringLiteral("org.freedesktop.FileManager1")).value();
        QCOMPARE(QFileInfo(QStringLiteral("/proc/%1/exe").arg(pid)).symLinkTarget(), at("bin/Orvane"));
        QProcess::execute(QStringLiteral("kill"), {QString::number(pid)});
    }
};

ORVANE_TEST_MAIN(InstallationTest)
#include "InstallationTest.moc"
