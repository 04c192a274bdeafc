#include "views/EntryTableModel.h"
#include "platform/NativePath.h"
#include "support/TestEnvironment.h"
#include "views/ExplorerColumns.h"

#include <QAbstractItemModelTester>
#include <QItemSelectionModel>
#include <QSignalSpy>

using namespace orvane;

namespace {

std::vector<Entry> rows(const QStringList& names, qint64 size = 1) {
    std::vector<Entry> list;
    for (const QString& name : names) {
        Entry e;
        e.location = QStringLiteral("/f/") + name;
        e.size = size;
        list.push_back(e);
    }
    return list;
}

QStringList shown(const EntryTableModel& model) {
    QStringList names;
    for (const Entry& e : model.entries())
        names << e.name();
    return names;
}

} // namespace

class EntryTableModelTest : public QObject {
    Q_OBJECT

private slots:
    // A folder named by a byte that is not UTF-8 shows its stand-in, beside its look-alike.
    void theFolderColumnShowsNamesThatAreNotUtf8() {
        EntryTableModel model;
        Entry odd, alike;
        odd.location = NativePath::decode("/base/bad\xff/a.txt");
        alike.location = QStringLiteral("/base/bad\uFFFD/b.txt");
        model.setEntries({odd, alike});
        const int column = explorerColumnIndex(QStringLiteral("folder"));
        for (const QString& base : {QString(), QStringLiteral("/base")}) {
            model.setFolderBase(base);
            const QString prefix = base.isEmpty() ? QStringLiteral("/base/") : QString();
            QCOMPARE(model.index(0, column).data().toString(), prefix + QStringLiteral("bad\uFFFD"));
            QCOMPARE(model.index(1, column).data().toString(), prefix + QStringLiteral("bad\uFFFD"));
        }
        QVERIFY(model.entries()[0].location != model.entries()[1].location);
    }

    // The selection, the current row and a persistent ring stay with their items while other rows
    // come and go, whether the change is small (ranges) or large (one layout change).
    void selectionAndCurrentRowFollowTheirItems_data() {
        QTest::addColumn<QStringList>("before");
        QTest::addColumn<QStringList>("after");
        QTest::addColumn<int>("inserted");
        QTest::addColumn<int>("removed");
        QTest::addColumn<int>("layouts");
        QTest::newRow("one added above")
            << QStringList{"b", "c", "d"} << QStringList{"a", "b", "c", "d"} << 1 << 0 << 0;
        QTest::newRow("one removed above")
            << QStringList{"a", "b", "c", "d"} << QStringList{"b", "c", "d"} << 0 << 1 << 0;
        QTest::newRow("added and removed around")
            << QStringList{"a", "c", "e"} << QStringList{"b", "c", "d"} << 2 << 2 << 0;
        QTest::newRow("reordered") << QStringList{"a", "c", "e"} << QStringList{"e", "c", "a"} << 0 << 0 << 1;
        QStringList many, fewer;
        for (int i = 0; i < 40; ++i) {
            many << QStringLiteral("n%1").arg(i, 2, 10, QLatin1Char('0'));
            if (i % 2 == 0 || i == 13) fewer << many.back();
        }
        fewer.replaceInStrings(QStringLiteral("n13"), QStringLiteral("c"));
        many.replaceInStrings(QStringLiteral("n13"), QStringLiteral("c"));
        QTest::newRow("many runs at once") << many << fewer << 0 << 0 << 1;
    }
    void selectionAndCurrentRowFollowTheirItems() {
        QFETCH(QStringList, before);
        QFETCH(QStringList, after);
        EntryTableModel model;
        QAbstractItemModelTester tester(&model, QAbstractItemModelTester::FailureReportingMode::QtTest);
        model.setEntries(rows(before));
        QItemSelectionModel selection(&model);
        const QModelIndex c = model.index(int(before.indexOf("c")), 0);
        selection.setCurrentIndex(c, QItemSelectionModel::ClearAndSelect | QItemSelectionModel::Rows);
        QSignalSpy inserts(&model, &QAbstractItemModel::rowsInserted);
        QSignalSpy removes(&model, &QAbstractItemModel::rowsRemoved);
        QSignalSpy layoutSpy(&model, &QAbstractItemModel::layoutChanged);
        QSignalSpy resets(&model, &QAbstractItemModel::modelReset);
        model.setEntries(rows(after));
        QCOMPARE(shown(model), after);
        QCOMPARE(selection.currentIndex().row(), int(after.indexOf("c")));
        QCOMPARE(selection.selectedRows().size(), 1);
        QCOMPARE(selection.selectedRows().front().row(), int(after.indexOf("c")));
        QFETCH(int, inserted);
        QFETCH(int, removed);
        QFETCH(int, layouts);
        QCOMPARE(inserts.size(), inserted);
        QCOMPARE(removes.size(), removed);
        QCOMPARE(layoutSpy.size(), layouts);
        QCOMPARE(resets.size(), 0);
    }

    void changedItemsAreRepaintedAndRemovedSelectionGoes() {
        EntryTableModel model;
        model.setEntries(rows({"a", "b", "c"}));
        QItemSelectionModel selection(&model);
        selection.select(model.index(1, 0), QItemSelectionModel::Select | QItemSelectionModel::Rows);
        QSignalSpy changes(&model, &QAbstractItemModel::dataChanged);
        std::vector<Entry> next = rows({"a", "c"});
        next[1].size = 99;
        model.setEntries(next);
        QCOMPARE(changes.size(), 1);
        QCOMPARE(changes.front().at(0).toModelIndex().row(), 1);
        QCOMPARE(model.entries()[1].size, 99);
        QVERIFY(selection.selectedRows().isEmpty());
    }
};

ORVANE_TEST_MAIN(EntryTableModelTest)
#include "EntryTableModelTest.moc"
