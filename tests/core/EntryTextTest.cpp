#include "core/EntryText.h"
#include "phone/PhoneNames.h"
#include "support/TestEnvironment.h"

using namespace orvane;

class EntryTextTest : public QObject {
    Q_OBJECT
private slots:
    void byteCounts_data() {
        QTest::addColumn<qint64>("bytes");
        QTest::addColumn<QString>("text");
        QTest::newRow("zero") << qint64(0) << "Zero KB";
        QTest::newRow("one") << qint64(1) << "1 byte";
        QTest::newRow("bytes") << qint64(999) << "999 bytes";
        QTest::newRow("kilo") << qint64(1000) << "1 KB";
        QTest::newRow("kilo rounds") << qint64(1500) << "2 KB";
        QTest::newRow("just below a mega") << qint64(999999) << "1 MB";
        QTest::newRow("mega one digit") << qint64(1500000) << "1.5 MB";
        QTest::newRow("mega whole") << qint64(2000000) << "2 MB";
        QTest::newRow("giga two digits") << qint64(1234567890) << "1.23 GB";
        QTest::newRow("giga trims zeros") << qint64(1200000000) << "1.2 GB";
        QTest::newRow("tera") << qint64(5000000000000) << "5 TB";
    }
    void byteCounts() {
        QFETCH(qint64, bytes);
        QFETCH(QString, text);
        QCOMPARE(byteCountText(bytes), text);
    }

    void datesUseOneFixedPattern() {
        const QDateTime when(QDate(2025, 3, 4), QTime(21, 5), Qt::LocalTime);
        QCOMPARE(dateText(when), QStringLiteral("3/4/2025 9:05 PM"));
        QCOMPARE(dateText(QDateTime(QDate(2024, 12, 25), QTime(0, 30), Qt::LocalTime)),
                 QStringLiteral("12/25/2024 12:30 AM"));
        QCOMPARE(dateText(QDateTime()), QStringLiteral("—"));
    }

    void columns() {
        Entry folder;
        folder.location = QStringLiteral("/home/me/Music");
        folder.directory = true;
        folder.size = 4096;
        folder.kind = QStringLiteral("File folder");
        QCOMPARE(columnText(QStringLiteral("name"), folder), QStringLiteral("Music"));
        QCOMPARE(columnText(QStringLiteral("size"), folder), QString());
        QCOMPARE(columnText(QStringLiteral("created"), folder), QStringLiteral("—"));
        QCOMPARE(columnText(QStringLiteral("kind"), folder), QStringLiteral("File folder"));
        QCOMPARE(columnText(QStringLiteral("dimensions"), folder), QString());
        Entry file = folder;
        file.directory = false;
        file.size = 2048;
        QCOMPARE(columnText(QStringLiteral("size"), file), QStringLiteral("2 KB"));
    }

    void folderNames() {
        QCOMPARE(folderName(QUrl::fromLocalFile(QStringLiteral("/home/me"))), QStringLiteral("me"));
        QCOMPARE(folderName(QUrl::fromLocalFile(QStringLiteral("/home/me/"))), QStringLiteral("me"));
        QVERIFY(!folderName(QUrl::fromLocalFile(QStringLiteral("/"))).isEmpty());
        registerPhoneNames();
        QCOMPARE(folderName(QUrl(QStringLiteral("android://phone"))), QStringLiteral("Android USB"));
    }
};

ORVANE_TEST_MAIN(EntryTextTest)
#include "EntryTextTest.moc"
