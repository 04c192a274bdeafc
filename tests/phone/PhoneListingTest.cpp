// The order and filter of a phone folder: the window's sort, except that folders don't go first.
#include "phone/PhoneListing.h"
#include "support/TestEnvironment.h"

using namespace orvane;

namespace {
PhoneItem item(quint32 id, const QString& name, bool folder, quint64 size = 0, double modified = 0,
               const QString& created = {}) {
    PhoneItem i;
    i.id = id;
    i.storage = 65537;
    i.name = name;
    i.folder = folder;
    i.size = size;
    if (modified != 0) i.modified = modified;
    if (!created.isEmpty()) i.created = created;
    return i;
}

QStringList names(const QList<PhoneItem>& items) {
    QStringList out;
    for (const PhoneItem& i : items)
        out << i.name;
    return out;
}

// A folder, files of three kinds, a hidden file, dates old and new and one without any.
QList<PhoneItem> folder() {
    return {item(1, QStringLiteral("Zulu"), true, 0, 1000, QStringLiteral("20200101T000000")),
            item(2, QStringLiteral("Alpha.txt"), false, 30, 3000, QStringLiteral("20220101T000000.0+0100")),
            item(3, QStringLiteral("photo10.jpg"), false, 500, 2000, QStringLiteral("20210101T000000")),
            item(4, QStringLiteral("photo2.jpg"), false, 10, -5),
            item(5, QStringLiteral(".nomedia"), false, 1, 500),
            item(6, QStringLiteral("Music"), true)};
}
} // namespace

class PhoneListingTest : public QObject {
    Q_OBJECT

private slots:
    void sortsLikeTheWindowButFoldersMix_data() {
        QTest::addColumn<QString>("key");
        QTest::addColumn<bool>("ascending");
        QTest::addColumn<bool>("group");
        QTest::addColumn<QStringList>("order");
        QTest::newRow("name") << "name" << true << false
                              << QStringList{"Alpha.txt", "Music", "photo2.jpg", "photo10.jpg", "Zulu"};
        QTest::newRow("name descending")
            << "name" << false << false
            << QStringList{"Zulu", "photo10.jpg", "photo2.jpg", "Music", "Alpha.txt"};
        QTest::newRow("size descending, largest first")
            << "size" << false << false
            << QStringList{"photo10.jpg", "Alpha.txt", "photo2.jpg", "Zulu", "Music"};
        // Created goes by the phone's own date text, fraction and zone dropped.
        QTest::newRow("created") << "created" << true << false
                                 << QStringList{"Music", "photo2.jpg", "Zulu", "photo10.jpg", "Alpha.txt"};
        // Grouping gathers kinds in their own order whatever the direction.
        QTest::newRow("grouped by type, descending")
            << "name" << false << true
            << QStringList{"Zulu", "Music", "photo10.jpg", "photo2.jpg", "Alpha.txt"};
    }

    void sortsLikeTheWindowButFoldersMix() {
        QFETCH(QString, key);
        QFETCH(bool, ascending);
        QFETCH(bool, group);
        QFETCH(QStringList, order);
        const PhoneListing listing = PhoneListing::make(folder(), SortState{key, ascending, group}, false);
        QCOMPARE(names(listing.items), order);
        QCOMPARE(qsizetype(listing.entries.size()), listing.items.size());
        for (qsizetype i = 0; i < listing.items.size(); ++i)
            QCOMPARE(listing.entries[size_t(i)].name(), listing.items[i].name);
    }

    void hiddenItemsOnlyWhenShown() {
        QVERIFY(!names(PhoneListing::make(folder(), SortState(), false).items).contains(".nomedia"));
        const PhoneListing shown = PhoneListing::make(folder(), SortState(), true);
        QCOMPARE(shown.items.first().name, QStringLiteral(".nomedia"));
        QCOMPARE(shown.indexOf(5), 0);
        QCOMPARE(shown.indexOf(99), -1);
    }

    void theWholeListingKeepsNameOrder() {
        QCOMPARE(names(PhoneListing::byName(folder())),
                 (QStringList{".nomedia", "Alpha.txt", "Music", "photo2.jpg", "photo10.jpg", "Zulu"}));
    }
};

ORVANE_TEST_MAIN(PhoneListingTest)
#include "PhoneListingTest.moc"
