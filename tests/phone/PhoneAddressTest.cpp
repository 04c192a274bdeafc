// What the address box of a phone tab makes of typed text, walked through the real bridge.
#include "phone/PhoneAddress.h"
#include "phone/BridgeHarness.h"
#include "phone/PhoneLocation.h"
#include "support/TestEnvironment.h"

using namespace orvane;
using namespace orvane::test;

class PhoneAddressTest : public QObject {
    Q_OBJECT

    std::unique_ptr<TempTree> phone;

    PhoneAddress::Outcome resolve(const QString& text) {
        auto outcome = std::make_shared<std::optional<PhoneAddress::Outcome>>();
        PhoneAddress::resolve(text, [outcome](const PhoneAddress::Outcome& o) { *outcome = o; });
        if (!QTest::qWaitFor([&] { return outcome->has_value(); }, 20000)) qWarning("no answer");
        return outcome->value_or(PhoneAddress::Outcome());
    }

    static QStringList names(const QList<PhoneItem>& chain) {
        QStringList out;
        for (const PhoneItem& item : chain)
            out << item.name;
        return out;
    }

private slots:
    void init() {
        phone = std::make_unique<TempTree>();
        phone->folder(QStringLiteral("Internal storage/DCIM/Camera"));
        phone->folder(QStringLiteral("Internal storage/Download/صور"));
        phone->file(QStringLiteral("Internal storage/notes.txt"), "x");
        phone->folder(QStringLiteral("SD card"));
        simulate(phone->path());
    }

    void typedPathsAreWalked_data() {
        QTest::addColumn<QString>("typed");
        QTest::addColumn<QStringList>("chain");
        QTest::addColumn<QString>("error");
        QTest::newRow("full path") << "Android USB/Internal storage/DCIM"
                                   << QStringList{"Internal storage", "DCIM"} << QString();
        QTest::newRow("without the phone's name, slashes doubled")
            << " /Internal storage//DCIM/Camera/ " << QStringList{"Internal storage", "DCIM", "Camera"}
            << QString();
        QTest::newRow("arabic folder") << "Android USB/Internal storage/Download/صور"
                                       << QStringList{"Internal storage", "Download", "صور"} << QString();
        QTest::newRow("the phone itself") << "Android USB" << QStringList{} << QString();
        QTest::newRow("address without a chain walks its path")
            << "android://phone/SD%20card" << QStringList{"SD card"} << QString();
        QTest::newRow("names are exact")
            << "Android USB/internal storage" << QStringList{} << "Folder not found: internal storage";
        QTest::newRow("a file is no folder")
            << "Internal storage/notes.txt" << QStringList{} << "Folder not found: notes.txt";
        QTest::newRow("missing deep down")
            << "Internal storage/DCIM/Screenshots" << QStringList{} << "Folder not found: Screenshots";
    }

    void typedPathsAreWalked() {
        QFETCH(QString, typed);
        QFETCH(QStringList, chain);
        QFETCH(QString, error);
        const PhoneAddress::Outcome outcome = resolve(typed);
        QCOMPARE(outcome.error, error);
        QCOMPARE(outcome.chain.has_value(), error.isEmpty());
        if (outcome.chain) QCOMPARE(names(*outcome.chain), chain);
    }

    // An address that carries its chain needs no phone at all, even a stale one.
    void anAddressWithItsChainOpensWithoutThePhone() {
        const PhoneAddress::Outcome walked = resolve(QStringLiteral("Internal storage/DCIM"));
        QVERIFY(walked.chain);
        QVERIFY(!PhoneAddress::names(PhoneLocation::url(*walked.chain).toString()));
        PhoneBridge::setExecutable(phone->path(QStringLiteral("no-bridge")));
        const PhoneAddress::Outcome direct = resolve(PhoneLocation::url(*walked.chain).toString());
        PhoneBridge::setExecutable(QString());
        QCOMPARE(direct.chain, walked.chain);
    }

    void aFailedListingGivesTheBridgesText() {
        simulate(phone->path(), {{QStringLiteral("MTP_BRIDGE_LOCKED"), QStringLiteral("1")}});
        const PhoneAddress::Outcome outcome = resolve(QStringLiteral("Internal storage"));
        QVERIFY(!outcome.chain);
        QVERIFY(outcome.error.startsWith(QStringLiteral("The phone is locked.")));
    }
};

ORVANE_TEST_MAIN(PhoneAddressTest)
#include "PhoneAddressTest.moc"
