// The phone search through the real client and the real bridge serving a simulated phone. The walk's
// reads go through a tap that records each request before it reaches the bridge.
#include "search/PhoneSearch.h"
#include "phone/BridgeHarness.h"
#include "support/TestEnvironment.h"

using namespace orvane;
using namespace orvane::test;

namespace {
struct Found {
    QList<PhoneItem> results;
    PhoneSearch::Parents parents;
    QString summary;
    int completions = 0;

    QStringList names() const {
        QStringList out;
        for (const PhoneItem& item : results)
            out << item.name;
        out.sort();
        return out;
    }
};

PhoneSearch::Completion recordInto(Found& outcome) {
    return [&outcome](const QList<PhoneItem>& results, const PhoneSearch::Parents& parents,
                      const QString& summary) {
        ++outcome.completions;
        outcome.results = results;
        outcome.parents = parents;
        outcome.summary = summary;
    };
}

PhoneItem storageRoot() {
    PhoneItem item;
    item.storage = storage.toUInt();
    item.id = phoneRootHandle;
    item.name = QStringLiteral("Internal storage");
    item.folder = true;
    return item;
}
} // namespace

class PhoneSearchTest : public QObject {
    Q_OBJECT

    std::unique_ptr<TempTree> phone;
    std::unique_ptr<PhoneSearch> search;
    QList<QStringList> requests;

    void tapReads() {
        search->read = [this](const QStringList& args, PhoneSearch::Reply done) {
            requests << args;
            PhoneBridge::run(args, {}, std::move(done));
        };
    }

    Found searchFor(const QString& text, int scope, bool hidden = false, const QList<PhoneItem>& base = {}) {
        Found outcome;
        search->start(text, scope, {storageRoot()}, base, hidden, recordInto(outcome));
        if (!QTest::qWaitFor([&] { return outcome.completions > 0; }, 20000)) qWarning("no completion");
        return outcome;
    }

private slots:
    void init() {
        phone = std::make_unique<TempTree>();
        phone->file(QStringLiteral("Internal storage/PHOTO.JPG"), "j");
        phone->file(QStringLiteral("Internal storage/Nested/photo.mov"), "m");
        phone->file(QStringLiteral("Internal storage/Music/track.mp3"), "t");
        phone->file(QStringLiteral("Internal storage/.thumbnails/photo-thumb.jpg"), "h");
        phone->file(QStringLiteral("SD card/Photos/holiday phóto.png"), "p");
        search = std::make_unique<PhoneSearch>();
        requests.clear();
        tapReads();
    }

    void cleanup() {
        search.reset();
        simulate(phone->path());
    }

    void scopesReachTheirDepth_data() {
        QTest::addColumn<int>("scope");
        QTest::addColumn<QStringList>("expected");
        QTest::addColumn<QString>("summary");
        QTest::newRow("this folder") << 0 << QStringList{"PHOTO.JPG"} << "This folder";
        QTest::newRow("folder and subfolders")
            << 1 << QStringList{"PHOTO.JPG", "photo.mov"} << "Folder + subfolders";
        QTest::newRow("whole phone") << 2
                                     << QStringList{"PHOTO.JPG", "Photos", "holiday phóto.png", "photo.mov"}
                                     << "This phone";
    }
    void scopesReachTheirDepth() {
        QFETCH(int, scope);
        QFETCH(QStringList, expected);
        QFETCH(QString, summary);
        simulate(phone->path());
        const QList<PhoneItem> base = call({storage, root}).reply.items.value_or(QList<PhoneItem>());
        requests.clear();
        const Found outcome = searchFor(QStringLiteral("photo"), scope, false, base);
        QCOMPARE(outcome.names(), expected);
        QCOMPARE(outcome.summary, summary);
        if (scope == 0) QVERIFY(requests.isEmpty());
        if (scope == 2) {
            QCOMPARE(requests.first(), QStringList());
            QCOMPARE(requests.count(QStringList{storage, root}), 1);
            QCOMPARE(requests.count(QStringList{QStringLiteral("131073"), root}), 1);
        }
    }

    // The chain a result was found through leads back to it.
    void resultsKeepTheirChain() {
        simulate(phone->path());
        const Found outcome = searchFor(QStringLiteral("photo.mov"), 1);
        QCOMPARE(outcome.results.size(), 1);
        const PhoneItem found = outcome.results.first();
        const QList<PhoneItem> chain = outcome.parents.value(found.textKey());
        QCOMPARE(chain.size(), 2);
        QCOMPARE(chain.first(), storageRoot());
        QCOMPARE(chain.last().name, QStringLiteral("Nested"));
        const PhoneReply listing = call({storage, QString::number(chain.last().id)}).reply;
        QCOMPARE(findNamed(listing, QStringLiteral("photo.mov")), std::optional<PhoneItem>(found));
    }

    void hiddenFoldersEnteredOnlyWhenShown_data() {
        QTest::addColumn<bool>("hidden");
        QTest::addColumn<QStringList>("expected");
        QTest::newRow("hidden off") << false << QStringList{"PHOTO.JPG", "photo.mov"};
        QTest::newRow("hidden on") << true << QStringList{"PHOTO.JPG", "photo-thumb.jpg", "photo.mov"};
    }
    void hiddenFoldersEnteredOnlyWhenShown() {
        QFETCH(bool, hidden);
        QFETCH(QStringList, expected);
        simulate(phone->path());
        const Found outcome = searchFor(QStringLiteral("photo"), 1, hidden);
        QCOMPARE(outcome.names(), expected);
        // The storage, Nested and Music, and the hidden folder only when shown.
        QCOMPARE(requests.size(), hidden ? 4 : 3);
    }

    void aFaultyPhoneListingTwiceIsReadOnce() {
        simulate(phone->path(), {{QStringLiteral("MTP_BRIDGE_REPEAT_ITEMS"), QStringLiteral("1")}});
        const Found outcome = searchFor(QStringLiteral("photo"), 2);
        QCOMPARE(outcome.names(), (QStringList{"PHOTO.JPG", "Photos", "holiday phóto.png", "photo.mov"}));
        QStringList keys;
        for (const QStringList& args : requests)
            keys << args.join(u':');
        QCOMPARE(QSet<QString>(keys.begin(), keys.end()).size(), keys.size());
        QCOMPARE(keys.size(), 6); // the storages, two roots, Nested, Music, Photos
    }

    // Storages are walked last first, so the second request is the SD card's root.
    void aFailedFolderIsCountedAndTheWalkGoesOn() {
        simulate(phone->path(), {{QStringLiteral("MTP_BRIDGE_FAIL_REPLY"), QStringLiteral("2")}});
        const Found outcome = searchFor(QStringLiteral("photo"), 2);
        QCOMPARE(outcome.names(), (QStringList{"PHOTO.JPG", "photo.mov"}));
        QCOMPARE(outcome.summary, QStringLiteral("This phone · 1 unavailable folders"));
    }

    void textFoundNowhere() {
        simulate(phone->path());
        const Found outcome = searchFor(QStringLiteral("zebra"), 1);
        QVERIFY(outcome.results.isEmpty());
        QCOMPARE(outcome.summary, QStringLiteral("Folder + subfolders"));
    }

    // Cancelled right after start, and cancelled with a listing in the bridge: neither completes,
    // and the late reply changes nothing; the next search runs normally.
    void cancelledSearchesStaySilent() {
        simulate(phone->path(), {{QStringLiteral("MTP_BRIDGE_DELAY_MS"), QStringLiteral("200")}});
        Found atOnce, inFlight;
        search->start(QStringLiteral("photo"), 1, {storageRoot()}, {}, false, recordInto(atOnce));
        search->cancel();
        QVERIFY(!search->running());
        int progressCalls = 0;
        search->progress = [&](int, int) { ++progressCalls; };
        search->start(QStringLiteral("photo"), 1, {storageRoot()}, {}, false, recordInto(inFlight));
        QTRY_COMPARE(requests.size(), 1);
        search->cancel();
        // The same request again, queued behind the dropped one: when it answers, that one has too.
        const Outcome after = call({storage, root});
        QVERIFY(after.finished);
        QCOMPARE(atOnce.completions + inFlight.completions, 0);
        QCOMPARE(progressCalls, 0);
        QCOMPARE(requests.size(), 1);
        const Found next = searchFor(QStringLiteral("track"), 1);
        QCOMPARE(next.names(), QStringList{"track.mp3"});
    }

    void matchesStreamWhileTheWalkGoesOn() {
        simulate(phone->path());
        QList<PhoneItem> streamed;
        int completionsAtFirstBatch = -1;
        Found outcome;
        search->batch = [&](const QList<PhoneItem>& found, const PhoneSearch::Parents& parents) {
            if (completionsAtFirstBatch < 0) completionsAtFirstBatch = outcome.completions;
            for (const PhoneItem& item : found)
                QVERIFY(parents.contains(item.textKey()));
            streamed << found;
        };
        int lastFolders = 0;
        search->progress = [&](int folders, int) { lastFolders = folders; };
        search->start(QStringLiteral("photo"), 2, {}, {}, false, recordInto(outcome));
        QTRY_COMPARE(outcome.completions, 1);
        QCOMPARE(completionsAtFirstBatch, 0);
        QCOMPARE(lastFolders, 6);
        for (const PhoneItem& item : streamed)
            QVERIFY(outcome.results.contains(item));
    }
};

ORVANE_TEST_MAIN(PhoneSearchTest)
#include "PhoneSearchTest.moc"
