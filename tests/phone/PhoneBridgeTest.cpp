// The client's transport: launch, relaunch, watchdog, ordering and every way a bridge can fail,
// each provoked in the real bridge process.
#include "phone/BridgeHarness.h"
#include "support/TestEnvironment.h"

#include <QElapsedTimer>
#include <QFileInfo>
#include <QStandardPaths>

using namespace orvane;
using namespace orvane::test;

class PhoneBridgeTest : public QObject {
    Q_OBJECT

    std::unique_ptr<TempTree> phone;

    void start(const QMap<QString, QString>& faults = {}) { simulate(phone->path(), faults); }

    static bool unavailable(const Outcome& outcome) {
        return outcome.finished &&
               outcome.reply.error == std::optional<QString>(PhoneBridge::unavailableText()) &&
               !outcome.reply.items;
    }

private slots:
    void init() {
        phone = std::make_unique<TempTree>();
        phone->file(QStringLiteral("Internal storage/a.txt"), "abc");
    }

    void cleanup() {
        PhoneBridge::setExecutable(QString());
        PhoneBridge::setWatchdogLimit(std::chrono::seconds(60));
    }

    void aMissingExecutableFailsUntilOneIsThere() {
        start();
        PhoneBridge::setExecutable(phone->path(QStringLiteral("no-such-bridge")));
        QVERIFY(unavailable(call({})));
        QVERIFY(unavailable(call({QStringLiteral("scan")})));
        QVERIFY(liveBridges().isEmpty());
        PhoneBridge::setExecutable(QString());
        const Outcome outcome = call({});
        QVERIFY(!outcome.reply.error);
        QCOMPARE(outcome.reply.items->size(), 1);
    }

    void badLinesEndTheBridgeAndTheNextRequestStartsAnother_data() {
        QTest::addColumn<QString>("fault");
        QTest::newRow("empty line") << QStringLiteral("MTP_BRIDGE_EMPTY_REPLY");
        QTest::newRow("not JSON") << QStringLiteral("MTP_BRIDGE_GARBLE");
    }

    void badLinesEndTheBridgeAndTheNextRequestStartsAnother() {
        QFETCH(QString, fault);
        start({{fault, QStringLiteral("2")}});
        QVERIFY(!call({QStringLiteral("scan")}).reply.error);
        const QList<int> first = liveBridges();
        QCOMPARE(first.size(), 1);
        QVERIFY(unavailable(call({storage, root})));
        QVERIFY(liveBridges().isEmpty());
        const Outcome again = call({storage, root});
        QVERIFY(!again.reply.error);
        QVERIFY(findNamed(again.reply, QStringLiteral("a.txt")));
        QCOMPARE(liveBridges().size(), 1);
        QVERIFY(liveBridges() != first);
    }

    void aBridgeThatExitsAfterAnsweringIsReplacedSilently() {
        start({{QStringLiteral("MTP_BRIDGE_EXIT_AFTER"), QStringLiteral("1")}});
        QVERIFY(!call({QStringLiteral("scan")}).reply.error);
        QTRY_VERIFY(liveBridges().isEmpty());
        const Outcome next = call({storage, root});
        QVERIFY(!next.reply.error);
        QVERIFY(findNamed(next.reply, QStringLiteral("a.txt")));
    }

    void theWatchdogCutsAHangingListing() {
        start({{QStringLiteral("MTP_BRIDGE_HANG_ON"), QStringLiteral("list")}});
        PhoneBridge::setWatchdogLimit(std::chrono::milliseconds(300));
        QElapsedTimer timer;
        timer.start();
        QVERIFY(unavailable(call({storage, root})));
        QVERIFY(timer.elapsed() >= 300);
        QVERIFY(liveBridges().isEmpty());
        QVERIFY(!call({QStringLiteral("scan")}).reply.error);
        QCOMPARE(liveBridges().size(), 1);
    }

    void transfersHaveNoWatchdog() {
        start({{QStringLiteral("MTP_BRIDGE_DELAY_MS"), QStringLiteral("600")}});
        const Outcome listing = call({storage, root});
        QVERIFY(!listing.reply.error);
        const QString id = QString::number(findNamed(listing.reply, QStringLiteral("a.txt"))->id);
        // Every request now takes three times the limit: only the transfers may finish.
        PhoneBridge::setWatchdogLimit(std::chrono::milliseconds(200));
        TempTree local;
        const QString target = local.path(QStringLiteral("a.txt"));
        const Outcome got = call({QStringLiteral("get"), id, target});
        QVERIFY2(!got.reply.error, qPrintable(got.reply.error.value_or(QString())));
        QCOMPARE(readAll(target), QByteArray("abc"));
        const QString source = local.file(QStringLiteral("b.txt"), "bee");
        QVERIFY(!call({QStringLiteral("put"), storage, root, source}).reply.error);
        QVERIFY(unavailable(call({QStringLiteral("scan")})));
    }

    void progressThenEndOfFileFailsAfterTheProgress() {
        start({{QStringLiteral("MTP_BRIDGE_CUT_AFTER_PROGRESS"), QStringLiteral("1")}});
        TempTree local;
        const Outcome outcome =
            call({QStringLiteral("get"), QStringLiteral("1"), local.path(QStringLiteral("x"))});
        QVERIFY(unavailable(outcome));
        QCOMPARE(outcome.progress, (QList<double>{0.25, 0.5, 0.75}));
        QCOMPARE(outcome.events, (QStringList{QStringLiteral("progress"), QStringLiteral("progress"),
                                              QStringLiteral("progress"), QStringLiteral("done")}));
    }

    void unknownKeysAndNullProgressDecodeAsFinalReplies() {
        start({{QStringLiteral("MTP_BRIDGE_EXTRA_KEYS"), QStringLiteral("1")},
               {QStringLiteral("MTP_BRIDGE_NULL_PROGRESS"), QStringLiteral("1")}});
        const Outcome listing = call({storage, root});
        QVERIFY(!listing.reply.error);
        QVERIFY(listing.progress.isEmpty());
        QVERIFY(findNamed(listing.reply, QStringLiteral("a.txt")));
        TempTree local;
        const QString id = QString::number(findNamed(listing.reply, QStringLiteral("a.txt"))->id);
        const Outcome got = call({QStringLiteral("get"), id, local.path(QStringLiteral("a.txt"))});
        QVERIFY(!got.reply.error);
        QCOMPARE(got.progress.last(), 1.0);
    }

    void requestsRunOneAfterAnotherInCallOrder() {
        start({{QStringLiteral("MTP_BRIDGE_ECHO"), QStringLiteral("1")}});
        QStringList order;
        QStringList echoed;
        const int count = 40;
        for (int i = 0; i < count; ++i) {
            const QStringList args = i % 3 == 0   ? QStringList{}
                                     : i % 3 == 1 ? QStringList{storage, root}
                                                  : QStringList{QStringLiteral("info"), QString::number(i)};
            PhoneBridge::run(args, nullptr, [&order, &echoed, i](const PhoneReply& reply) {
                order << QString::number(i);
                echoed << reply.name.value_or(QString());
            });
        }
        QTRY_COMPARE(order.size(), count);
        for (int i = 0; i < count; ++i)
            QCOMPARE(order[i], QString::number(i));
        QCOMPARE(echoed[0], QStringLiteral("[]"));
        QCOMPARE(echoed[2], QStringLiteral("[\"info\",\"2\"]"));
    }

    void transfersCutOffLeaveNothingBehind_data() {
        QTest::addColumn<QString>("verb");
        QTest::addColumn<QString>("fault");
        QTest::newRow("get from a hung phone") << "get"
                                               << "MTP_BRIDGE_STALL_MID_TRANSFER";
        QTest::newRow("get when the bridge dies") << "get"
                                                  << "MTP_BRIDGE_DIE_MID_TRANSFER";
        QTest::newRow("put to a hung phone") << "put"
                                             << "MTP_BRIDGE_STALL_MID_TRANSFER";
    }
    // A hung phone is given up once nothing has moved for the stall limit. What was cut off leaves
    // nothing at the destination, on either side, so the same transfer can simply be tried again.
    void transfersCutOffLeaveNothingBehind() {
        QFETCH(QString, verb);
        QFETCH(QString, fault);
        const QByteArray content = pattern(12 << 20, 7);
        phone->file(QStringLiteral("Internal storage/big.bin"), content);
        TempTree local;
        const QString sent = local.file(QStringLiteral("out/sent.bin"), content);
        qputenv("ORVANE_TRANSFER_STALL_MS", "400");
        start({{fault, QStringLiteral("1")}});
        // Handles belong to one bridge: each new one lists again.
        const auto request = [&] {
            const QString id = QString::number(findNamed(call({storage, root}).reply, "big.bin")->id);
            return verb == "get" ? QStringList{verb, id, local.path("big.bin")}
                                 : QStringList{verb, storage, root, sent};
        };
        QVERIFY(unavailable(call(request())));
        qunsetenv("ORVANE_TRANSFER_STALL_MS");
        QVERIFY(liveBridges().isEmpty());
        QCOMPARE(QDir(local.path()).entryList(QDir::AllEntries | QDir::Hidden | QDir::NoDotAndDotDot),
                 QStringList{"out"});
        QVERIFY(!QFileInfo::exists(phone->path(QStringLiteral("Internal storage/sent.bin"))));
        start();
        const Outcome again = call(request());
        QVERIFY2(!again.reply.error, qPrintable(again.reply.error.value_or(QString())));
        QVERIFY(readAll(verb == "get" ? local.path("big.bin") : phone->path("Internal storage/sent.bin")) ==
                content);
    }

    void numbersTravelAsDecimalStrings() {
        start({{QStringLiteral("MTP_BRIDGE_ECHO"), QStringLiteral("1")}});
        const Outcome outcome = call({storage, root});
        QCOMPARE(outcome.reply.name, std::optional<QString>(QStringLiteral("[\"65537\",\"4294967295\"]")));
        const Outcome named =
            call({QStringLiteral("rename"), QStringLiteral("1"), QStringLiteral("ملف \"x\".txt")});
        QCOMPARE(named.reply.name,
                 std::optional<QString>(QStringLiteral("[\"rename\",\"1\",\"ملف \\\"x\\\".txt\"]")));
    }
};

ORVANE_TEST_MAIN(PhoneBridgeTest)
#include "PhoneBridgeTest.moc"
