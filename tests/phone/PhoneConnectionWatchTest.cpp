// The watch that shows and hides the phone: real scans of a simulated phone that comes and goes.
#include "phone/PhoneConnectionWatch.h"
#include "phone/BridgeHarness.h"
#include "support/TestEnvironment.h"

#include <QSignalSpy>

using namespace orvane;
using namespace orvane::test;

class PhoneConnectionWatchTest : public QObject {
    Q_OBJECT

private slots:
    void reportsOnlyChanges() {
        TempTree phone;
        phone.folder(QStringLiteral("Internal storage"));
        simulate(phone.path());
        PhoneConnectionWatch watch(nullptr, std::chrono::milliseconds(50));
        QSignalSpy changes(&watch, &PhoneConnectionWatch::connectedChanged);
        QSignalSpy presence(&watch, &PhoneConnectionWatch::presenceChanged);
        watch.start();
        watch.start(); // a second start doesn't double the questions
        QTRY_COMPARE(changes.count(), 1);
        QCOMPARE(changes.takeFirst().at(0).toBool(), true);
        // Several answers, all the same, must bring no signal; only waiting shows an absence.
        QTest::qWait(300); // UNAVOIDABLE: proves an absence
        QCOMPARE(changes.count(), 0);
        simulate(phone.path(), {{QStringLiteral("MTP_BRIDGE_LOCKED"), QStringLiteral("1")}});
        QTRY_COMPARE(changes.count(), 1);
        QCOMPARE(changes.takeFirst().at(0).toBool(), false);
        QVERIFY(!watch.connected());
        // Locked, or charging only, the phone is still there, with its state.
        QTRY_COMPARE(presence.size(), 2);
        QCOMPARE(presence.last(), (QVariantList{true, QStringLiteral("locked")}));
        simulate(phone.path(), {{QStringLiteral("MTP_BRIDGE_CHARGING_ONLY"), QStringLiteral("1")}});
        QTRY_COMPARE(watch.state(), QStringLiteral("charging only"));
        QCOMPARE(changes.count(), 0);
        simulate(phone.path());
        QTRY_COMPARE(changes.count(), 1);
        QVERIFY(watch.connected());
    }

    // Answers that come back after the watch is gone touch nothing.
    void aWatchGoneBeforeItsAnswerIsSafe() {
        TempTree phone;
        phone.folder(QStringLiteral("Internal storage"));
        simulate(phone.path(), {{QStringLiteral("MTP_BRIDGE_DELAY_MS"), QStringLiteral("100")}});
        auto watch = std::make_unique<PhoneConnectionWatch>();
        watch->start();
        watch.reset();
        QVERIFY(!call({QStringLiteral("scan")}).reply.error);
    }
};

ORVANE_TEST_MAIN(PhoneConnectionWatchTest)
#include "PhoneConnectionWatchTest.moc"
