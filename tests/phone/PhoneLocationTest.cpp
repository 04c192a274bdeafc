// Phone addresses, phone dates, phone entries and the names the views take from them.
#include "phone/PhoneLocation.h"
#include "core/Entry.h"
#include "phone/PhoneEntry.h"
#include "phone/PhoneNames.h"
#include "support/TestEnvironment.h"

#include <QJsonDocument>
#include <QStandardPaths>

using namespace orvane;

Q_DECLARE_METATYPE(QList<orvane::PhoneItem>)

namespace {
PhoneItem folder(quint32 id, const QString& name, quint32 storage = 65537) {
    PhoneItem item;
    item.id = id;
    item.storage = storage;
    item.name = name;
    item.folder = true;
    return item;
}

QUrl withLocation(const QByteArray& value) {
    return QUrl(QStringLiteral("android://phone/x?location=") + QString::fromLatin1(value));
}

QUrl withChainJson(const QByteArray& json) {
    return withLocation(QUrl::toPercentEncoding(QString::fromLatin1(json.toBase64()), "/="));
}
} // namespace

class PhoneLocationTest : public QObject {
    Q_OBJECT

private slots:
    void initTestCase() { registerPhoneNames(); }
    void roundTrip_data() {
        QTest::addColumn<QList<PhoneItem>>("chain");
        const PhoneItem root = folder(phoneRootHandle, QStringLiteral("Internal storage"));
        PhoneItem detailed = folder(22, QStringLiteral("Camera"));
        detailed.modified = 1700000000.25;
        detailed.created = QStringLiteral("20240314T090512.0+0100");
        detailed.width = 10;
        detailed.height = 20;
        QTest::newRow("storage root") << QList<PhoneItem>{root};
        QTest::newRow("nested with optional fields")
            << QList<PhoneItem>{root, folder(5, QStringLiteral("DCIM")), detailed};
        QTest::newRow("arabic") << QList<PhoneItem>{root, folder(7, QStringLiteral("صور العائلة"))};
        QTest::newRow("url characters")
            << QList<PhoneItem>{folder(phoneRootHandle, QStringLiteral("SD card"), 131073),
                                folder(9, QStringLiteral("a?b#c%d+e&f=g 100%"), 131073)};
    }

    void roundTrip() {
        QFETCH(QList<PhoneItem>, chain);
        const QUrl url = PhoneLocation::url(chain);
        QCOMPARE(PhoneLocation::decode(url), std::optional<QList<PhoneItem>>(chain));
        QCOMPARE(PhoneLocation::decode(QUrl(url.toString(QUrl::FullyEncoded))),
                 std::optional<QList<PhoneItem>>(chain));
        QCOMPARE(folderName(url), chain.last().name);
    }

    void theAddressReadsAsAPath() {
        const QList<PhoneItem> chain{folder(phoneRootHandle, QStringLiteral("Internal storage")),
                                     folder(3, QStringLiteral("DCIM")), folder(4, QStringLiteral("Camera"))};
        const QUrl url = PhoneLocation::url(chain);
        QCOMPARE(url.toString(QUrl::FullyEncoded).section(u'?', 0, 0),
                 QStringLiteral("android://phone/Internal%20storage/DCIM/Camera"));
        QVERIFY(url.query().startsWith(QLatin1String("location=")));
        QCOMPARE(PhoneLocation::url({}).toString(), QStringLiteral("android://phone/"));
        QCOMPARE(PhoneLocation::url({chain.first()}).path(), QStringLiteral("/Internal storage"));
    }

    void topLevel_data() {
        QTest::addColumn<QUrl>("url");
        QTest::newRow("no slash") << QUrl(QStringLiteral("android://phone"));
        QTest::newRow("slash") << QUrl(QStringLiteral("android://phone/"));
        QTest::newRow("other query items") << QUrl(QStringLiteral("android://phone/DCIM?view=grid&x"));
        QTest::newRow("location without value") << QUrl(QStringLiteral("android://phone/?location"));
    }

    void topLevel() {
        QFETCH(QUrl, url);
        QCOMPARE(PhoneLocation::decode(url), std::optional<QList<PhoneItem>>(QList<PhoneItem>()));
        QCOMPARE(folderName(url), QStringLiteral("Android USB"));
    }

    void rejected_data() {
        QTest::addColumn<QUrl>("url");
        const QList<PhoneItem> good{folder(phoneRootHandle, QStringLiteral("Internal storage"))};
        QUrl otherScheme = PhoneLocation::url(good);
        otherScheme.setScheme(QStringLiteral("file"));
        QTest::newRow("other scheme with a valid location") << otherScheme;
        QTest::newRow("broken base64") << withLocation("not*base64!");
        QTest::newRow("base64 without padding") << withLocation("W10");
        QTest::newRow("empty value") << withLocation("");
        QTest::newRow("not JSON") << withChainJson("[{");
        QTest::newRow("object instead of array") << withChainJson(R"({"id":1})");
        QTest::newRow("a file in the chain")
            << withChainJson(R"([{"id":1,"storage":65537,"name":"a.txt","folder":false,"size":3}])");
        QTest::newRow("a slash in a name")
            << withChainJson(R"([{"id":1,"storage":65537,"name":"a/b","folder":true,"size":0}])");
        QTest::newRow("a missing key")
            << withChainJson(R"([{"id":1,"storage":65537,"name":"a","folder":true}])");
    }

    void rejected() {
        QFETCH(QUrl, url);
        QCOMPARE(PhoneLocation::decode(url), std::optional<QList<PhoneItem>>());
    }

    void theFirstLocationCounts() {
        const QUrl one = PhoneLocation::url({folder(phoneRootHandle, QStringLiteral("One"))});
        const QUrl two = PhoneLocation::url({folder(phoneRootHandle, QStringLiteral("Two"))});
        const QUrl both(one.toString() + u'&' + two.query());
        QCOMPARE(PhoneLocation::decode(both)->first().name, QStringLiteral("One"));
        QCOMPARE(PhoneLocation::decode(withChainJson("[]")),
                 std::optional<QList<PhoneItem>>(QList<PhoneItem>()));
    }

    void phoneDates_data() {
        QTest::addColumn<QString>("text");
        QTest::addColumn<QDateTime>("date");
        const QDateTime march(QDate(2024, 3, 14), QTime(9, 5, 12), Qt::LocalTime);
        QTest::newRow("fifteen characters") << QStringLiteral("20240314T090512") << march;
        QTest::newRow("fraction and zone dropped") << QStringLiteral("20240314T090512.5+0100") << march;
        QTest::newRow("zulu dropped") << QStringLiteral("20240314T090512Z") << march;
        QTest::newRow("hyphens") << QStringLiteral("2024-03-14T09:05:12") << QDateTime();
        QTest::newRow("too short") << QStringLiteral("20240314T0905") << QDateTime();
        QTest::newRow("month thirteen") << QStringLiteral("20241314T090512") << QDateTime();
        QTest::newRow("empty") << QString() << QDateTime();
    }

    void phoneDates() {
        QFETCH(QString, text);
        QFETCH(QDateTime, date);
        const std::optional<QDateTime> parsed = phoneDate(text);
        QCOMPARE(parsed.value_or(QDateTime()), date);
        QVERIFY(!phoneDate(std::nullopt));
    }

    void phoneEntries() {
        PhoneItem file;
        file.id = 22;
        file.storage = 65537;
        file.name = QStringLiteral("صورة 1#.jpg");
        file.size = ~quint64(0);
        file.modified = 1700000000;
        file.created = QStringLiteral("20240314T090512.0");
        const Entry entry = phoneEntry(file);
        QVERIFY(entry.isPhone());
        QVERIFY(entry.location.startsWith(QLatin1String("android://phone/65537/22/")));
        QCOMPARE(entry.name(), file.name);
        QCOMPARE(entry.size, std::numeric_limits<qint64>::max());
        QCOMPARE(entry.modified.toSecsSinceEpoch(), 1700000000);
        QCOMPARE(entry.created, *phoneDate(file.created));
        QVERIFY(!entry.added.isValid());
        QVERIFY(!entry.directory && !entry.package);
        QCOMPARE(entry.kind, QStringLiteral("JPEG image"));
        file.modified = 0;
        file.name = QStringLiteral("notes.unknownextension");
        QVERIFY(!phoneEntry(file).modified.isValid());
        QCOMPARE(phoneEntry(file).kind, QStringLiteral("File"));
        const Entry dir = phoneEntry(folder(5, QStringLiteral("DCIM")));
        QVERIFY(dir.directory);
        QCOMPARE(dir.kind, QStringLiteral("File folder"));
        QCOMPARE(dir.name(), QStringLiteral("DCIM"));
    }
};

ORVANE_TEST_MAIN(PhoneLocationTest)
#include "PhoneLocationTest.moc"
