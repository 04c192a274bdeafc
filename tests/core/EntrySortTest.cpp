#include "core/EntrySort.h"
#include "core/NaturalOrder.h"
#include "support/TestEnvironment.h"

using namespace orvane;

namespace {
Entry make(const QString& path, const QString& kind = QStringLiteral("Plain text document"), qint64 size = 0,
           qint64 modifiedSecs = -1, bool directory = false) {
    Entry e;
    e.location = path;
    e.kind = directory ? QStringLiteral("File folder") : kind;
    e.size = size;
    e.directory = directory;
    if (modifiedSecs >= 0) e.modified = QDateTime::fromSecsSinceEpoch(modifiedSecs, Qt::UTC);
    return e;
}

QStringList namesOf(const std::vector<Entry>& entries) {
    QStringList names;
    for (const Entry& e : entries)
        names << e.name();
    return names;
}

// Both the keyed sort and the pairwise order must agree, or views that use one would disagree.
QStringList sortedBoth(std::vector<Entry> entries, const SortState& state) {
    std::vector<Entry> pairwise = entries;
    std::stable_sort(pairwise.begin(), pairwise.end(),
                     [&](const Entry& a, const Entry& b) { return entryBefore(a, b, state); });
    sortEntries(entries, state);
    const QStringList keyed = namesOf(entries);
    if (keyed != namesOf(pairwise)) qWarning() << "keyed" << keyed << "pairwise" << namesOf(pairwise);
    return keyed;
}
} // namespace

class EntrySortTest : public QObject {
    Q_OBJECT
private slots:
    void naturalOrder_data() {
        QTest::addColumn<QString>("a");
        QTest::addColumn<QString>("b");
        QTest::addColumn<int>("expected");
        QTest::newRow("digits as numbers") << "file2"
                                           << "file10" << -1;
        QTest::newRow("case ignored") << "apple"
                                      << "Banana" << -1;
        QTest::newRow("equal but for case") << "Readme"
                                            << "README" << 0;
        QTest::newRow("leading zeros equal") << "v01"
                                             << "v1" << 0;
        QTest::newRow("long digit runs") << "img99999999999"
                                         << "img100000000000" << -1;
        QTest::newRow("arabic letters") << "ب"
                                        << "ا" << 1;
    }
    void naturalOrder() {
        QFETCH(QString, a);
        QFETCH(QString, b);
        QFETCH(int, expected);
        QCOMPARE(NaturalOrder::shared().compare(a, b), expected);
        QCOMPARE(NaturalOrder::shared().compare(b, a), -expected);
    }

    // Whatever locale the process was started with, digits still compare as numbers.
    void naturalOrderUnderCLocale() {
        const QLocale saved;
        QLocale::setDefault(QLocale::c());
        NaturalOrder order;
        QLocale::setDefault(saved);
        QVERIFY(order.compare(QStringLiteral("file2"), QStringLiteral("file10")) < 0);
    }

    void byName_data() {
        QTest::addColumn<bool>("ascending");
        QTest::addColumn<QStringList>("expected");
        QTest::newRow("ascending mixes folders and files")
            << true << QStringList{"A.txt", "B folder", "C.txt", "D folder", "track2", "track10"};
        QTest::newRow("descending reverses")
            << false << QStringList{"track10", "track2", "D folder", "C.txt", "B folder", "A.txt"};
    }
    void byName() {
        QFETCH(bool, ascending);
        QFETCH(QStringList, expected);
        std::vector<Entry> entries = {make("/x/track10"), make("/x/D folder", {}, 0, -1, true),
                                      make("/x/A.txt"),   make("/x/track2"),
                                      make("/x/C.txt"),   make("/x/B folder", {}, 0, -1, true)};
        QCOMPARE(sortedBoth(entries, {QStringLiteral("name"), ascending, false}), expected);
    }

    void byEveryKey_data() {
        QTest::addColumn<QString>("key");
        QTest::addColumn<bool>("ascending");
        QTest::addColumn<QStringList>("expected");
        QTest::newRow("size up") << "size" << true << QStringList{"a", "c", "b"};
        QTest::newRow("size down") << "size" << false << QStringList{"b", "c", "a"};
        QTest::newRow("modified up, absent first") << "modified" << true << QStringList{"c", "b", "a"};
        QTest::newRow("modified down") << "modified" << false << QStringList{"a", "b", "c"};
        QTest::newRow("created absent ties break by name") << "created" << true << QStringList{"a", "b", "c"};
        QTest::newRow("created down reverses the tie-break")
            << "created" << false << QStringList{"c", "b", "a"};
        QTest::newRow("kind up") << "kind" << true << QStringList{"b", "c", "a"};
        QTest::newRow("kind down") << "kind" << false << QStringList{"a", "c", "b"};
        QTest::newRow("unknown key sorts by name") << "bogus" << true << QStringList{"a", "b", "c"};
    }
    void byEveryKey() {
        QFETCH(QString, key);
        QFETCH(bool, ascending);
        QFETCH(QStringList, expected);
        std::vector<Entry> entries = {make("/x/a", "Zip archive", 1, 300), make("/x/b", "Audio", 90, 200),
                                      make("/x/c", "PDF document", 5)};
        QCOMPARE(sortedBoth(entries, {key, ascending, false}), expected);
    }

    // Groups always run in ascending order of type; only the order inside a group follows the direction.
    void groupingKeepsTypesTogether() {
        std::vector<Entry> entries = {make("/x/z.txt"), make("/x/Docs", {}, 0, -1, true), make("/x/a.txt"),
                                      make("/x/b.mp3", "MP3 audio"), make("/x/Music", {}, 0, -1, true)};
        QCOMPARE(sortedBoth(entries, {QStringLiteral("name"), true, true}),
                 QStringList({"Docs", "Music", "b.mp3", "a.txt", "z.txt"}));
        QCOMPARE(sortedBoth(entries, {QStringLiteral("name"), false, true}),
                 QStringList({"Music", "Docs", "b.mp3", "z.txt", "a.txt"}));
    }

    // Same name in two folders (a search result) falls back to the plain path, reversing with the direction.
    void equalNamesBreakByPath() {
        std::vector<Entry> entries = {make("/b/notes.txt"), make("/a/Notes.txt")};
        QCOMPARE(sortedBoth(entries, {QStringLiteral("name"), true, false}).size(), 2);
        sortEntries(entries, {QStringLiteral("name"), true, false});
        QCOMPARE(entries.front().location, QStringLiteral("/a/Notes.txt"));
        sortEntries(entries, {QStringLiteral("name"), false, false});
        QCOMPARE(entries.front().location, QStringLiteral("/b/notes.txt"));
    }

    void rightToLeftNames() {
        std::vector<Entry> entries = {make("/x/ملف10"), make("/x/ملف2"), make("/x/שלום"), make("/x/apple")};
        const QStringList sorted = sortedBoth(entries, {QStringLiteral("name"), true, false});
        QCOMPARE(sorted.indexOf("ملف2") + 1, sorted.indexOf("ملف10"));
        QCOMPARE(sorted.size(), 4);
    }
};

ORVANE_TEST_MAIN(EntrySortTest)
#include "EntrySortTest.moc"
