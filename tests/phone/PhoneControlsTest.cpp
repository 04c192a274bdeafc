// The table of enabled controls on a phone tab.
#include "phone/PhoneControls.h"
#include "support/TestEnvironment.h"

using namespace orvane;

class PhoneControlsTest : public QObject {
    Q_OBJECT

private slots:
    // Columns of `enabled`: send, copy to computer, paste, rename, delete, new folder, pin.
    void enabledByTheFacts_data() {
        QTest::addColumn<bool>("busy");
        QTest::addColumn<bool>("atTop");
        QTest::addColumn<int>("selected");
        QTest::addColumn<bool>("storage");
        QTest::addColumn<QString>("enabled");
        QTest::newRow("folder, nothing selected") << false << false << 0 << false << "1000011";
        QTest::newRow("folder, one selected") << false << false << 1 << false << "1101111";
        QTest::newRow("folder, two selected") << false << false << 2 << false << "1100111";
        QTest::newRow("storages, nothing selected") << false << true << 0 << false << "0000001";
        QTest::newRow("storages, one storage selected") << false << true << 1 << true << "0000001";
        QTest::newRow("busy offers nothing, delete least of all") << true << false << 1 << false << "0000000";
    }

    void enabledByTheFacts() {
        QFETCH(bool, busy);
        QFETCH(bool, atTop);
        QFETCH(int, selected);
        QFETCH(bool, storage);
        QFETCH(QString, enabled);
        PhoneControlFacts facts;
        facts.busy = busy;
        facts.atTop = atTop;
        facts.selected = selected;
        facts.storageSelected = storage;
        facts.canPin = true;
        const PhoneControls c = PhoneControls::from(facts);
        const bool got[] = {c.send, c.copyToComputer, c.paste, c.rename, c.remove, c.newFolder, c.pin};
        QString text;
        for (bool on : got)
            text += on ? u'1' : u'0';
        QCOMPARE(text, enabled);
    }

    void pasteAndPinFollowTheirOwnFacts() {
        PhoneControlFacts facts;
        facts.canPaste = true;
        facts.pinned = true;
        facts.canPin = true;
        const PhoneControls c = PhoneControls::from(facts);
        QVERIFY(c.paste && c.pin);
        QCOMPARE(c.pinTitle, QStringLiteral("Unpin"));
        facts.pinned = false;
        QCOMPARE(PhoneControls::from(facts).pinTitle, QStringLiteral("Pin folder"));
    }
};

ORVANE_TEST_MAIN(PhoneControlsTest)
#include "PhoneControlsTest.moc"
