#include "core/WindowListing.h"
#include "support/TestEnvironment.h"
#include "views/EntryTableModel.h"

using namespace orvane;

namespace {

Entry item(const QString& name, qint64 size) {
    Entry e;
    e.location = QStringLiteral("/f/") + name;
    e.size = size;
    return e;
}

QStringList names(const std::vector<Entry>& list) {
    QStringList out;
    for (const Entry& e : list)
        out << e.name();
    return out;
}

} // namespace

class WindowListingTest : public QObject {
    Q_OBJECT

private slots:
    // A re-read keeps the known order for unchanged items and places new and changed ones exactly
    // where a full sort would.
    void aRereadEndsInTheOrderOfAFullSort_data() {
        QTest::addColumn<QString>("key");
        QTest::addColumn<bool>("ascending");
        QTest::newRow("name") << QStringLiteral("name") << true;
        QTest::newRow("size descending") << QStringLiteral("size") << false;
    }
    void aRereadEndsInTheOrderOfAFullSort() {
        QFETCH(QString, key);
        QFETCH(bool, ascending);
        EntryTableModel rows;
        WindowListing listing(rows);
        listing.setSort(SortState{key, ascending, false});
        std::vector<Entry> first;
        for (int i = 0; i < 60; ++i)
            first.push_back(item(QStringLiteral("file%1").arg(i), i * 10));
        listing.setSource(first);
        std::vector<Entry> again = first;
        std::reverse(again.begin(), again.end()); // the disk gives any order
        again.erase(again.begin() + 7);
        again[3].size = 1000; // changed: moves under a size sort
        again.push_back(item(QStringLiteral("file25b"), 255));
        again.push_back(item(QStringLiteral("a first"), 5));
        listing.setSource(again);
        std::vector<Entry> expected = again;
        sortEntries(expected, listing.sort());
        QCOMPARE(names(listing.entries()), names(expected));
        listing.setQuery(QStringLiteral("FILE2"));
        QVERIFY(!listing.entries().empty());
        for (const Entry& e : listing.entries())
            QVERIFY(e.name().startsWith(QLatin1String("file2")));
    }
};

ORVANE_TEST_MAIN(WindowListingTest)
#include "WindowListingTest.moc"
