#include "fileops/TrashItems.h"
#include "fileops/FileTree.h"
#include "platform/NativePath.h"
#include "support/TempTree.h"
#include "support/TestEnvironment.h"

using namespace orvane;
using orvane::test::TempTree;

// Real items in the test's own Trash, put there the way the window puts them.
class TrashItemsTest : public QObject {
    Q_OBJECT
    std::unique_ptr<TempTree> tree;

    DesktopTrash::Record trash(const QString& path) {
        QString trashed, error;
        if (!DesktopTrash::moveIn(path, trashed, error)) qWarning() << error;
        for (const DesktopTrash::Record& record : DesktopTrash::contents())
            if (record.trashed == trashed) return record;
        return {};
    }

private slots:
    void init() { tree = std::make_unique<TempTree>(); }
    void cleanup() {
        for (const DesktopTrash::Record& record : DesktopTrash::contents())
            TrashItems::erase({record.trashed});
        tree.reset();
    }

    // Restoring never replaces what took the old place meanwhile, and makes a folder that is gone.
    void restoreFindsAFreePlace_data() {
        QTest::addColumn<QString>("item");      // relative; a trailing slash makes a folder
        QTest::addColumn<QStringList>("after"); // made once the item is in the Trash
        QTest::addColumn<QString>("restored");
        QTest::newRow("free") << "a/notes.txt" << QStringList() << "a/notes.txt";
        QTest::newRow("taken") << "a/notes.txt" << QStringList{"a/notes.txt"} << "a/notes (2).txt";
        QTest::newRow("taken twice") << "a/notes.txt" << QStringList{"a/notes.txt", "a/notes (2).txt"}
                                     << "a/notes (3).txt";
        QTest::newRow("no extension") << "a/Makefile" << QStringList{"a/Makefile"} << "a/Makefile (2)";
        QTest::newRow("a dot file") << "a/.profile" << QStringList{"a/.profile"} << "a/.profile (2)";
        QTest::newRow("a folder with a dot") << "a/v1.2/" << QStringList{"a/v1.2/"} << "a/v1.2 (2)";
        QTest::newRow("taken by a folder") << "a/x.txt" << QStringList{"a/x.txt/"} << "a/x (2).txt";
        QTest::newRow("its folder gone") << "gone/deeper/n.txt" << QStringList() << "gone/deeper/n.txt";
    }

    void restoreFindsAFreePlace() {
        QFETCH(QString, item);
        QFETCH(QStringList, after);
        QFETCH(QString, restored);
        tree->folder(QStringLiteral("a"));
        const bool folder = item.endsWith(u'/');
        item.chop(folder ? 1 : 0);
        const QString path = folder ? tree->folder(item) : tree->file(item, "mine");
        const DesktopTrash::Record record = trash(path);
        QCOMPARE(record.original, path);
        if (item.startsWith(QLatin1String("gone/"))) {
            QString error;
            QVERIFY(FileTree::remove(tree->path(QStringLiteral("gone")), error));
        }
        for (const QString& taken : after)
            taken.endsWith(u'/') ? (void)tree->folder(taken.chopped(1)) : (void)tree->file(taken, "theirs");
        const TrashItems::Outcome outcome = TrashItems::restore({record});
        QVERIFY2(outcome.failures.isEmpty(), qPrintable(outcome.failures.join(u'\n')));
        QCOMPARE(outcome.restored.size(), size_t(1));
        QCOMPARE(outcome.restored.front().restored, tree->path(restored));
        if (!folder) QCOMPARE(TempTree::contents(tree->path(restored)), QByteArray("mine"));
        for (const QString& taken : after)
            if (!taken.endsWith(u'/')) QCOMPARE(TempTree::contents(tree->path(taken)), QByteArray("theirs"));
        QVERIFY(DesktopTrash::isEmpty());
    }

    // An item whose record is lost or says nothing stays in the Trash, with the reason beside its name.
    void restoreWithoutAnOriginKeepsTheItem() {
        const DesktopTrash::Record record{trash(tree->file(QStringLiteral("x.txt"))).trashed, {}, {}};
        const TrashItems::Outcome outcome = TrashItems::restore({record});
        QVERIFY(outcome.restored.empty());
        QCOMPARE(outcome.failures, QStringList{QStringLiteral("x.txt: ") + TrashItems::unknownOrigin()});
        QVERIFY(TempTree::present(record.trashed));
    }

    // Undoing a restore puts each item back into the Trash, from which it can be restored again.
    void undoingARestoreTrashesAgain() {
        const QString path = tree->rawFile("b/\xff.txt", "raw");
        const TrashItems::Outcome outcome = TrashItems::restore({trash(path)});
        QCOMPARE(outcome.restored.size(), size_t(1));
        QCOMPARE(TempTree::contents(path), QByteArray("raw"));
        QString error;
        QVERIFY2(TrashItems::undoStep(outcome.restored)(error), qPrintable(error));
        QVERIFY(!TempTree::present(path));
        const std::vector<DesktopTrash::Record> again = DesktopTrash::contents();
        QCOMPARE(again.size(), size_t(1));
        QCOMPARE(again.front().original, path);
    }

    // Removal for good takes the item and its record, so nothing is listed after it.
    void eraseTakesItemAndRecord() {
        const DesktopTrash::Record file = trash(tree->file(QStringLiteral("f.txt")));
        const DesktopTrash::Record folder =
            trash(tree->file(QStringLiteral("d/inner.txt")).section(u'/', 0, -2));
        const PermanentDelete::Result result = TrashItems::erase({file.trashed, folder.trashed});
        QCOMPARE(result.deleted, 2);
        QVERIFY(DesktopTrash::contents().empty());
        QVERIFY(DesktopTrash::isEmpty());
    }
};

ORVANE_TEST_MAIN(TrashItemsTest)
#include "TrashItemsTest.moc"
