// One phone tab's state through the real bridge: what it lists, what it says, when it is held.
#include "phone/PhoneBrowserState.h"
#include "phone/BridgeHarness.h"
#include "platform/Platform.h"
#include "support/TestEnvironment.h"

#include <QSignalSpy>

using namespace orvane;
using namespace orvane::test;

Q_DECLARE_METATYPE(QList<orvane::PhoneItem>)

class PhoneBrowserStateTest : public QObject {
    Q_OBJECT

    std::unique_ptr<TempTree> phone;
    std::unique_ptr<TempTree> local;
    std::unique_ptr<PhoneBrowserState> state;
    QStringList statuses;

    QStringList shown() const {
        QStringList names;
        for (const PhoneItem& item : state->items())
            names << item.name;
        return names;
    }

    // Lists the tab's place and waits until nothing holds it any more.
    void reload() {
        state->reload();
        QTRY_VERIFY(!state->busy());
    }

    QList<PhoneItem> chainTo(const QString& name) {
        for (const PhoneItem& item : state->items())
            if (item.name == name) return state->chainTo(item);
        qWarning("%s is not listed", qPrintable(name));
        return {};
    }

    void open(const QStringList& names) {
        state->setHistory({});
        reload();
        for (const QString& name : names) {
            state->setHistory(chainTo(name));
            reload();
        }
    }

private slots:
    void init() {
        phone = std::make_unique<TempTree>();
        local = std::make_unique<TempTree>();
        phone->folder(QStringLiteral("Internal storage/DCIM/Zulu"));
        phone->file(QStringLiteral("Internal storage/DCIM/Alpha.txt"), "alpha");
        phone->file(QStringLiteral("Internal storage/DCIM/.thumbnails"), "hidden");
        phone->folder(QStringLiteral("SD card"));
        simulate(phone->path());
        state = std::make_unique<PhoneBrowserState>();
        statuses.clear();
        connect(state.get(), &PhoneBrowserState::statusChanged, this,
                [this](const QString& s) { statuses << s; });
    }

    void readsWithStatusTextsAndFollowsHiddenAndSort() {
        QCOMPARE(state->status(), QStringLiteral("Connecting…"));
        open({"Internal storage", "DCIM"});
        QCOMPARE(statuses.mid(0, 2),
                 (QStringList{"Reading phone…", "2 items • Double-click a folder to open it"}));
        QCOMPARE(shown(), (QStringList{"Alpha.txt", "Zulu"}));
        QCOMPARE(state->heading(), QStringLiteral("Android USB / Internal storage / DCIM"));
        state->setShowHidden(true);
        QCOMPARE(shown(), (QStringList{".thumbnails", "Alpha.txt", "Zulu"}));
        state->setSortState(SortState{QStringLiteral("name"), false, false});
        QCOMPARE(shown(), (QStringList{"Zulu", "Alpha.txt", ".thumbnails"}));
    }

    // A listing still on its way when the tab moves on is dropped, never shown for the new place.
    void aLateListingOfAnotherPlaceIsDropped() {
        open({"Internal storage"});
        const QList<PhoneItem> dcim = chainTo(QStringLiteral("DCIM"));
        simulate(phone->path(), {{QStringLiteral("MTP_BRIDGE_DELAY_MS"), QStringLiteral("300")}});
        state->reload();
        QVERIFY(state->busy());
        state->setHistory(dcim);
        QList<QStringList> seen;
        connect(state.get(), &PhoneBrowserState::listingChanged, this, [&] { seen << shown(); });
        state->reload();
        QTRY_COMPARE(seen.size(), 1);
        QTest::qWait(400);
        QCOMPARE(seen, (QList<QStringList>{{"Alpha.txt", "Zulu"}}));
        QCOMPARE(state->status(), QStringLiteral("2 items • Double-click a folder to open it"));
    }

    void navigationAsksTheWindowAndRefusesWhileBusy() {
        QSignalSpy asked(state.get(), &PhoneBrowserState::navigateTo);
        open({"Internal storage", "DCIM"});
        state->back();
        QCOMPARE(asked.takeFirst().at(0).value<QList<PhoneItem>>().size(), 1);
        state->openItem(state->items().at(1)); // Zulu
        QCOMPARE(asked.takeFirst().at(0).value<QList<PhoneItem>>().last().name, QStringLiteral("Zulu"));
        state->openItem(state->items().at(0)); // a file opens nothing here
        state->lock(QStringLiteral("Sending to phone…"));
        state->back();
        state->resolveAddress(QStringLiteral("Internal storage"));
        QCOMPARE(asked.count(), 0);
    }

    void sendingIsRefusedInWords_data() {
        QTest::addColumn<QStringList>("place");
        QTest::addColumn<QString>("name");
        QTest::addColumn<QString>("refusal");
        QTest::newRow("storages showing") << QStringList{} << "new.txt"
                                          << "Open the phone storage or a folder first.";
        QTest::newRow("name taken, hidden or not")
            << QStringList{"Internal storage", "DCIM"} << ".thumbnails"
            << "A file with that name already exists. Rename it before sending.";
        QTest::newRow("free name") << QStringList{"Internal storage", "DCIM"} << "new.txt" << QString();
    }

    void sendingIsRefusedInWords() {
        QFETCH(QStringList, place);
        QFETCH(QString, name);
        QFETCH(QString, refusal);
        open(place);
        QCOMPARE(state->sendRefusal({name}).value_or(QString()), refusal);
    }

    // The window is held and the edge restarted per file; the folder is read again after a send.
    void transfersHoldTheTabAndReport() {
        open({"Internal storage", "DCIM"});
        QSignalSpy started(state.get(), &PhoneBrowserState::transferStarted);
        QSignalSpy progress(state.get(), &PhoneBrowserState::transferProgress);
        QSignalSpy finished(state.get(), &PhoneBrowserState::transferFinished);
        const QString a = local->file(QStringLiteral("a.txt"), "a");
        const QString b = local->file(QStringLiteral("b.txt"), "b");
        state->runUpload({QFile::encodeName(a), QFile::encodeName(b)}, state->history().last());
        QVERIFY(state->busy());
        QCOMPARE(state->status(), QStringLiteral("Sending to phone…"));
        state->runUpload({QFile::encodeName(a)}, state->history().last()); // refused while busy
        QTRY_COMPARE(state->status(),
                     QStringLiteral("2 items • Double-click a folder to open it").replace(u'2', u'4'));
        QCOMPARE(started.count(), 1);
        QCOMPARE(finished.count(), 1);
        QVERIFY(statuses.contains(QStringLiteral("Files sent")));
        QCOMPARE(progress.count(QList<QVariant>{0.0}), 2);
        const QString into = local->folder(QStringLiteral("into"));
        std::optional<QString> outcome = QStringLiteral("not yet");
        state->runDownload(state->itemsAt({0, 1}), QFile::encodeName(into),
                           [&](const std::optional<QString>& error) { outcome = error; });
        QCOMPARE(state->status(), QStringLiteral("Copying from phone…"));
        QTRY_VERIFY(!outcome);
        QCOMPARE(state->status(), Platform::instance().word(PlatformWord::FilesCopiedToComputer));
        QCOMPARE(readAll(into + QStringLiteral("/a.txt")), QByteArray("a"));
        state->runUpload({QFile::encodeName(a)}, state->history().last());
        QTRY_COMPARE(state->status(),
                     QStringLiteral("An item with that name already exists. Nothing was overwritten."));
        QVERIFY(!state->busy());
    }
};

ORVANE_TEST_MAIN(PhoneBrowserStateTest)
#include "PhoneBrowserStateTest.moc"
