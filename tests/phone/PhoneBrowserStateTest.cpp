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

    PhoneItem named(const QString& name) const {
        for (const PhoneItem& item : state->baseItems())
            if (item.name == name) return item;
        qWarning("%s is not listed", qPrintable(name));
        return {};
    }
    bool onPhone(const QString& path) const {
        return QFileInfo::exists(phone->path(QStringLiteral("Internal storage/DCIM/") + path));
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
        // The bridge answers in order, so once this one is back the late listing has come and gone.
        QVERIFY(!call({QStringLiteral("scan")}).reply.error);
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

    // Nothing is sent for a name the phone would refuse or that a sibling has, nor for the same name.
    void renamesAreCheckedBeforeAnythingIsSent_data() {
        QTest::addColumn<QString>("name");
        QTest::newRow("empty") << QString();
        QTest::newRow("dot") << ".";
        QTest::newRow("dot dot") << "..";
        QTest::newRow("slash") << "a/b";
        QTest::newRow("nul") << QStringLiteral("a") + QChar(0) + QStringLiteral("b");
        QTest::newRow("a sibling's") << "Zulu";
        QTest::newRow("a hidden sibling's") << ".thumbnails";
    }

    void renamesAreCheckedBeforeAnythingIsSent() {
        QFETCH(QString, name);
        open({"Internal storage", "DCIM"});
        statuses.clear();
        state->rename(named(QStringLiteral("Alpha.txt")), name);
        QCOMPARE(statuses, QStringList{"Choose a valid, unique name."});
        QVERIFY(!state->busy());
        QVERIFY(onPhone(QStringLiteral("Alpha.txt")));
    }

    // Into itself or below is refused by the chain alone; one clash moves nothing at all; a moved
    // object keeps its handle and leaves its old parent.
    void movesAreCheckedBeforeTheFirst() {
        phone->file(QStringLiteral("Internal storage/DCIM/Zulu/Other.txt"), "other");
        phone->file(QStringLiteral("Internal storage/DCIM/Other.txt"), "mine");
        phone->folder(QStringLiteral("Internal storage/DCIM/Zulu/Deep"));
        open({"Internal storage", "DCIM"});
        const PhoneItem zulu = named(QStringLiteral("Zulu"));
        const PhoneItem alpha = named(QStringLiteral("Alpha.txt"));
        PhoneItem deep = zulu; // below Zulu: only its place in the chain matters
        deep.id += 1000;
        const QList<PhoneItem> below = state->chainTo(zulu) << deep;
        QSignalSpy busy(state.get(), &PhoneBrowserState::busyChanged);
        state->moveItems({alpha, zulu}, deep, below);
        QCOMPARE(state->status(), PhoneBrowserState::intoItselfText());
        state->moveItems({zulu}, zulu, state->chainTo(zulu));
        QCOMPARE(state->status(), PhoneBrowserState::intoItselfText());
        QCOMPARE(busy.count(), 2); // two unlocks, no lock: nothing was asked of the phone

        QSignalSpy started(state.get(), &PhoneBrowserState::transferStarted);
        state->moveItems({alpha, named(QStringLiteral("Other.txt"))}, zulu, state->chainTo(zulu));
        QTRY_COMPARE(state->status(), PhoneBrowserState::moveClashText());
        QVERIFY(onPhone(QStringLiteral("Alpha.txt")) && onPhone(QStringLiteral("Other.txt")));
        QCOMPARE(started.count(), 0);

        QSignalSpy progress(state.get(), &PhoneBrowserState::transferProgress);
        QSignalSpy finished(state.get(), &PhoneBrowserState::transferFinished);
        state->moveItems({alpha}, zulu, state->chainTo(zulu));
        QTRY_VERIFY(finished.count() == 1 && !state->busy());
        QVERIFY(statuses.contains(QStringLiteral("Moving Alpha.txt…")) &&
                statuses.contains(QStringLiteral("Moved")));
        QCOMPARE(progress.takeFirst().at(0).toDouble(), 1.0);
        QVERIFY(!onPhone(QStringLiteral("Alpha.txt")) && !state->baseItems().contains(alpha));
        const Outcome renamed =
            call({QStringLiteral("rename"), QString::number(alpha.id), QStringLiteral("A.txt")});
        QVERIFY(!renamed.reply.error);
        QCOMPARE(readAll(phone->path(QStringLiteral("Internal storage/DCIM/Zulu/A.txt"))),
                 QByteArray("alpha"));
    }

    // One at a time, stopping at the first error; what went before stays gone.
    void deletesStopAtTheFirstError() {
        open({"Internal storage", "DCIM"});
        PhoneItem gone = named(QStringLiteral("Alpha.txt"));
        gone.id = 0xFFFFFFF0u;
        state->deleteItems({named(QStringLiteral("Alpha.txt")), gone, named(QStringLiteral("Zulu"))});
        QCOMPARE(state->status(), QStringLiteral("Deleting Alpha.txt…"));
        QTRY_VERIFY(!state->busy());
        QCOMPARE(state->status(), QStringLiteral("This item is no longer on the phone. Click Refresh."));
        QVERIFY(!onPhone(QStringLiteral("Alpha.txt")) && onPhone(QStringLiteral("Zulu")));
        state->deleteItems({named(QStringLiteral("Zulu"))});
        QTRY_COMPARE(state->status(), QStringLiteral("0 items • Double-click a folder to open it"));
        QVERIFY(statuses.contains(QStringLiteral("Deleted")) && !onPhone(QStringLiteral("Zulu")));
    }
};

ORVANE_TEST_MAIN(PhoneBrowserStateTest)
#include "PhoneBrowserStateTest.moc"
