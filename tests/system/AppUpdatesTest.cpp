#include "system/AppUpdates.h"
#include "core/Settings.h"
#include "support/AccessibleTree.h"
#include "system/CustomizationWindow.h"

#include <QCheckBox>
#include <QCoreApplication>
#include <QFile>
#include <QLabel>
#include <QProcess>
#include <QSignalSpy>
#include <QSslKey>
#include <QSslServer>
#include <QSslSocket>
#include <QTemporaryDir>
#include <QTest>

using namespace orvane;

namespace {

const QString upToDate = QStringLiteral("You’re up to date.");
const QString found = QStringLiteral("A new update is available.");
const QString failed = QStringLiteral("Couldn’t check for updates. Please try again.");

QByteArray run(const QStringList& arguments, const QByteArray& input = {}) {
    QProcess openssl;
    openssl.start(QStringLiteral("openssl"), arguments);
    openssl.write(input);
    openssl.closeWriteChannel();
    if (!openssl.waitForFinished(20000) || openssl.exitCode() != 0)
        qFatal("openssl %s failed", qPrintable(arguments.join(' ')));
    return openssl.readAllStandardOutput();
}

QByteArray feed(const QString& version, const QByteArray& extra = {}) {
    return "<?xml version=\"1.0\" encoding=\"utf-8\"?>\n" + extra +
           "<rss version=\"2.0\" xmlns:sparkle=\"http://www.andymatuschak.org/xml-namespaces/sparkle\">"
           "<channel><title>Orvane</title><item><title>Orvane " +
           version.toUtf8() + "</title><sparkle:version>" + version.toUtf8() +
           "</sparkle:version></item><item><sparkle:version>0.0.1</sparkle:version></item>"
           "</channel></rss>\n";
}

// Serves one canned answer over HTTPS on 127.0.0.1; an empty answer keeps the line open, silent.
class FeedServer : public QSslServer {
public:
    QByteArray answer;
    explicit FeedServer(const QString& dir) {
        QSslConfiguration tls = QSslConfiguration::defaultConfiguration();
        QFile cert(dir + "/cert.pem"), key(dir + "/key.pem");
        cert.open(QIODevice::ReadOnly);
        key.open(QIODevice::ReadOnly);
        tls.setLocalCertificate(QSslCertificate(&cert));
        tls.setPrivateKey(QSslKey(&key, QSsl::Ec));
        setSslConfiguration(tls);
        connect(this, &QTcpServer::pendingConnectionAvailable, this, [this] {
            auto* socket = static_cast<QSslSocket*>(nextPendingConnection());
            connect(socket, &QSslSocket::readyRead, socket, [this, socket] {
                if (!socket->readAll().contains("\r\n\r\n") || answer.isEmpty()) return;
                socket->write("HTTP/1.1 200 OK\r\nContent-Type: application/xml\r\nContent-Length: " +
                              QByteArray::number(answer.size()) + "\r\nConnection: close\r\n\r\n" + answer);
                socket->disconnectFromHost();
            });
        });
        listen(QHostAddress::LocalHost);
    }
};

} // namespace

class AppUpdatesTest : public QObject {
    Q_OBJECT
    QTemporaryDir dir;
    QByteArray publicKey; // base64

    QString path(const char* name) const { return dir.filePath(QLatin1String(name)); }

    // The feed followed by its signature block, signed by `key` with the openssl tool.
    QByteArray signedFeed(const QByteArray& body, const char* key = "release.pem") {
        QFile data(path("feed.xml"));
        data.open(QIODevice::WriteOnly);
        data.write(body);
        data.close();
        const QByteArray signature =
            run({"pkeyutl", "-sign", "-rawin", "-inkey", path(key), "-in", path("feed.xml")});
        return body + "<!-- sparkle-signatures:\nedSignature: " + signature.toBase64() +
               "\nlength: " + QByteArray::number(body.size()) + "\n-->\n";
    }

    UpdateSource source(const FeedServer& server) const {
        UpdateSource s;
        s.feed = QUrl(QStringLiteral("https://127.0.0.1:%1/appcast.xml").arg(server.serverPort()));
        s.host = QStringLiteral("127.0.0.1");
        s.publicKey = publicKey;
        QFile cert(path("cert.pem"));
        cert.open(QIODevice::ReadOnly);
        s.trusted = {QSslCertificate(&cert)};
        s.timeoutMs = 2000;
        return s;
    }

private slots:
    void initTestCase() {
        run({"genpkey", "-algorithm", "ed25519", "-out", path("release.pem")});
        run({"genpkey", "-algorithm", "ed25519", "-out", path("forger.pem")});
        publicKey =
            run({"pkey", "-in", path("release.pem"), "-pubout", "-outform", "DER"}).right(32).toBase64();
        run({"req", "-x509", "-newkey", "ec", "-pkeyopt", "ec_paramgen_curve:prime256v1", "-nodes", "-keyout",
             path("key.pem"), "-out", path("cert.pem"), "-days", "2", "-subj", "/CN=127.0.0.1", "-addext",
             "subjectAltName=IP:127.0.0.1"});
    }

    void configuration_data() {
        QTest::addColumn<QString>("feed");
        QTest::addColumn<QString>("host");
        QTest::addColumn<QByteArray>("key");
        QTest::addColumn<bool>("configured");
        const QByteArray key(32, 'k');
        QTest::newRow("sound") << "https://updates.example/appcast.xml"
                               << "updates.example" << key.toBase64() << true;
        QTest::newRow("plain http") << "http://updates.example/appcast.xml"
                                    << "updates.example" << key.toBase64() << false;
        QTest::newRow("other host") << "https://evil.example/appcast.xml"
                                    << "updates.example" << key.toBase64() << false;
        QTest::newRow("short key") << "https://updates.example/a.xml"
                                   << "updates.example" << QByteArray(31, 'k').toBase64() << false;
        QTest::newRow("not base64") << "https://updates.example/a.xml"
                                    << "updates.example" << QByteArray("*!*") << false;
        QTest::newRow("unset") << ""
                               << "" << QByteArray() << false;
    }

    void configuration() {
        QFETCH(QString, feed);
        QFETCH(QString, host);
        QFETCH(QByteArray, key);
        QFETCH(bool, configured);
        Settings settings(path("prefs-config.ini"));
        AppUpdates updates(settings, {QUrl(feed), host, key, {}, {}, 1000, 1 << 20}, QStringLiteral("1.0"));
        QCOMPARE(updates.configured(), configured);
        updates.checkForUpdates();
        if (!configured) QCOMPARE(updates.status(), QStringLiteral("The update server is not configured."));
    }

    void check_data() {
        QTest::addColumn<QByteArray>("answer");
        QTest::addColumn<QString>("status");
        QTest::newRow("newer") << signedFeed(feed("9.2")) << found;
        QTest::newRow("same") << signedFeed(feed("1.4")) << upToDate;
        QTest::newRow("older") << signedFeed(feed("1.3.9")) << upToDate;
        QTest::newRow("forged") << signedFeed(feed("9.2"), "forger.pem") << failed;
        QByteArray tampered = signedFeed(feed("1.0"));
        tampered.replace("<sparkle:version>1.0<", "<sparkle:version>9.0<");
        QTest::newRow("tampered") << tampered << failed;
        QTest::newRow("unsigned") << feed("9.2") << failed;
        const QByteArray laughs =
            "<!DOCTYPE rss [<!ENTITY a \"lol\"><!ENTITY b \"&a;&a;&a;&a;&a;&a;&a;&a;\">]>\n";
        QTest::newRow("entities") << signedFeed(feed("9.2&b;", laughs)) << failed;
        QTest::newRow("truncated") << signedFeed(feed("9.2").left(120)) << failed;
        QTest::newRow("50 MB") << signedFeed(feed("9.2") + QByteArray(50 << 20, ' ')) << failed;
        QTest::newRow("silent server") << QByteArray() << failed;
    }

    // Each answer of a real HTTPS server reaches the one status line; nothing is offered before the
    // release key's signature holds.
    void check() {
        QFETCH(QByteArray, answer);
        QFETCH(QString, status);
        FeedServer server(dir.path());
        server.answer = answer;
        Settings settings(path("prefs-check.ini"));
        AppUpdates updates(settings, source(server), QStringLiteral("1.4"));
        updates.checkForUpdates();
        QCOMPARE(updates.status(), QStringLiteral("Checking for updates…"));
        QTRY_VERIFY_WITH_TIMEOUT(updates.status() != QStringLiteral("Checking for updates…"), 15000);
        QCOMPARE(updates.status(), status);
        QCOMPARE(updates.available().has_value(), status == found);
        QVERIFY(updates.lastChecked().isValid());
    }

    // Automatic checks come on at the first start only; the person's later choice stays.
    void firstStartDefault() {
        FeedServer server(dir.path());
        const QString file = path("prefs-start.ini");
        {
            Settings settings(file);
            AppUpdates updates(settings, source(server), QStringLiteral("1.0"));
            QVERIFY(!updates.automaticallyChecks());
            updates.start();
            QVERIFY(updates.automaticallyChecks());
            updates.setAutomaticallyChecks(false);
        }
        Settings settings(file);
        AppUpdates updates(settings, source(server), QStringLiteral("1.0"));
        updates.start();
        QVERIFY(!updates.automaticallyChecks());
    }

    void packageOwner_data() {
        QTest::addColumn<QByteArray>("program");
        QTest::addColumn<bool>("owned");
        QTest::newRow("dpkg's own") << QByteArray("/usr/bin/dpkg") << true;
        QTest::newRow("built here") << QCoreApplication::applicationFilePath().toUtf8() << false;
        QTest::newRow("local") << QByteArray("/usr/local/bin/orvane") << false;
    }

    void packageOwner() {
        QFETCH(QByteArray, program);
        QFETCH(bool, owned);
        QCOMPARE(AppUpdates::ownedByPackage(program), owned);
    }

    // The window follows the check and the waveform switch, and every control is named.
    void window() {
        FeedServer server(dir.path());
        server.answer = signedFeed(feed("9.2"));
        Settings settings(path("prefs-window.ini"));
        AppUpdates updates(settings, source(server), QStringLiteral("1.0"));
        CustomizationWindow* shown = CustomizationWindow::present(updates, settings, nullptr);
        QCOMPARE(shown->windowTitle(), QStringLiteral("Orvane Settings"));
        auto* wave = shown->findChild<QCheckBox*>();
        QCOMPARE(wave->text(), QStringLiteral("Show audio waveform"));
        QSignalSpy waveform(&settings, &Settings::waveformChanged);
        wave->click();
        QVERIFY(settings.showsWaveform());
        QCOMPARE(waveform.count(), 1);
        updates.checkForUpdates();
        QTRY_COMPARE_WITH_TIMEOUT(updates.status(), found, 15000);
        bool statusShown = false;
        for (QLabel* label : shown->findChildren<QLabel*>())
            statusShown |= label->text() == found;
        QVERIFY(statusShown);
        const QStringList faults = orvane::test::accessibilityFaults(shown);
        QVERIFY2(faults.isEmpty(), qPrintable(faults.join('\n')));
        shown->close();
    }
};

QTEST_MAIN(AppUpdatesTest)
#include "AppUpdatesTest.moc"
