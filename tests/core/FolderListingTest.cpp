#include "core/FolderListing.h"
#include "support/TempTree.h"
#include "support/TestEnvironment.h"

#include <QFile>

using namespace orvane;
using orvane::test::TempTree;

namespace {
QStringList names(const std::vector<Entry>& entries) {
    QStringList list;
    for (const Entry& e : entries)
        list << e.name();
    list.sort();
    return list;
}
} // namespace

class FolderListingTest : public QObject {
    Q_OBJECT
private slots:
    void hiddenAndQueryFilters_data() {
        QTest::addColumn<bool>("showHidden");
        QTest::addColumn<QString>("query");
        QTest::addColumn<QStringList>("expected");
        QTest::newRow("plain") << false << ""
                               << QStringList{"Photos", "Report.pdf", "report-old.txt", "تقرير.txt"};
        QTest::newRow("hidden shown")
            << true << "" << QStringList{".config", "Photos", "Report.pdf", "report-old.txt", "تقرير.txt"};
        QTest::newRow("query ignores case")
            << false << "REPORT" << QStringList{"Report.pdf", "report-old.txt"};
        QTest::newRow("query in arabic") << false << "تقرير" << QStringList{"تقرير.txt"};
        QTest::newRow("query matches hidden only when shown") << false << "config" << QStringList{};
        QTest::newRow("nothing matches") << false << "zzz" << QStringList{};
    }
    void hiddenAndQueryFilters() {
        QFETCH(bool, showHidden);
        QFETCH(QString, query);
        QFETCH(QStringList, expected);
        TempTree tree;
        tree.file("Report.pdf", "x");
        tree.file("report-old.txt");
        tree.file("تقرير.txt");
        tree.folder("Photos");
        tree.folder(".config");
        std::vector<Entry> entries;
        QString error;
        QVERIFY(FolderListing::read(tree.path(), showHidden, query, entries, error));
        QCOMPARE(names(entries), expected);
    }

    void entriesCarryTheirAttributes() {
        TempTree tree;
        tree.sizedFile("song.mp3", 1234);
        tree.folder("Album.d");
        const QDateTime when(QDate(2021, 6, 1), QTime(12, 0), Qt::UTC);
        tree.setModified("song.mp3", when);
        std::vector<Entry> entries;
        QString error;
        QVERIFY(FolderListing::read(tree.path(), false, {}, entries, error));
        QCOMPARE(entries.size(), size_t(2));
        for (const Entry& e : entries) {
            if (e.name() == QLatin1String("Album.d")) {
                QVERIFY(e.directory);
                QCOMPARE(e.kind, QStringLiteral("File folder"));
            } else {
                QCOMPARE(e.size, qint64(1234));
                QCOMPARE(e.modified, when);
                QVERIFY(!e.directory);
                QVERIFY(e.kind != QLatin1String("File folder"));
                QCOMPARE(e.location, tree.path("song.mp3"));
            }
        }
    }

    void unreadableFolderGivesTheSystemText() {
        std::vector<Entry> entries;
        QString error;
        QVERIFY(!FolderListing::read(QStringLiteral("/nonexistent/folder"), false, {}, entries, error));
        QVERIFY(!error.isEmpty());
        QVERIFY(entries.empty());
    }

    // A dangling link still lists, as itself, with the plain defaults where nothing can be read.
    void brokenLinkStillLists() {
        TempTree tree;
        QVERIFY(QFile::link(tree.path("gone"), tree.path("dangling")));
        std::vector<Entry> entries;
        QString error;
        QVERIFY(FolderListing::read(tree.path(), false, {}, entries, error));
        QCOMPARE(names(entries), QStringList{"dangling"});
        QVERIFY(!entries.front().directory);
    }

    // Shown with U+FFFD, held by the exact bytes, also inside a folder whose own name is not UTF-8.
    void namesThatAreNotUtf8() {
        TempTree tree;
        const QString inner = tree.rawFile("d\xFE/bad\xFF.txt", "12345");
        std::vector<Entry> entries;
        QString error;
        QVERIFY(FolderListing::read(inner.section(u'/', 0, -2), false, {}, entries, error));
        QCOMPARE(entries.size(), size_t(1));
        QCOMPARE(entries.front().location, inner);
        QCOMPARE(entries.front().name(), QString("bad\uFFFD.txt"));
        QCOMPARE(entries.front().size, qint64(5));
        QCOMPARE(Entry::fromPath(inner).size, qint64(5));
        QCOMPARE(folderName(QUrl::fromLocalFile(inner.section(u'/', 0, -2))), QString("d\uFFFD"));
    }

    void entryOfAMissingItemNeverFails() {
        const Entry e = Entry::fromPath(QStringLiteral("/nonexistent/file.txt"));
        QCOMPARE(e.kind, QStringLiteral("File"));
        QCOMPARE(e.size, qint64(0));
        QVERIFY(!e.directory);
        QVERIFY(!e.modified.isValid());
    }
};

ORVANE_TEST_MAIN(FolderListingTest)
#include "FolderListingTest.moc"
