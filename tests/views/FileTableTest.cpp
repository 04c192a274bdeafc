#include "views/FileTable.h"
#include "support/TempTree.h"
#include "support/TestEnvironment.h"
#include "views/ColumnSettings.h"
#include "views/EntryTableModel.h"
#include "views/ExplorerColumns.h"
#include "views/ExplorerFont.h"
#include "views/ExplorerHeaderView.h"

#include <QContextMenuEvent>
#include <QItemSelectionModel>
#include <QMenu>
#include <QSettings>
#include <QSignalSpy>

using namespace orvane;
using orvane::test::TempTree;

Q_DECLARE_METATYPE(QList<int>)

class FileTableTest : public QObject {
    Q_OBJECT
    std::unique_ptr<TempTree> tree;
    std::vector<Entry> entries;
    std::unique_ptr<EntryTableModel> model;
    std::unique_ptr<FileTable> table;

    void makeTable() {
        table = std::make_unique<FileTable>();
        table->setModel(model.get());
        table->resize(1000, 400);
        table->show();
        QVERIFY(QTest::qWaitForWindowExposed(table.get()));
    }
    QPoint rowCenter(int row) const {
        return QPoint(60, table->rowViewportPosition(row) + table->rowHeight(row) / 2);
    }
    QList<int> selectedRows() const {
        QList<int> rows;
        for (const QModelIndex& index : table->selectionModel()->selectedRows())
            rows << index.row();
        std::sort(rows.begin(), rows.end());
        return rows;
    }
    void select(const QList<int>& rows) {
        table->clearSelection();
        for (int row : rows)
            table->selectionModel()->select(model->index(row, 0),
                                            QItemSelectionModel::Select | QItemSelectionModel::Rows);
    }
    void clickHeader(const QString& key) {
        QHeaderView* header = table->horizontalHeader();
        const int column = explorerColumnIndex(key);
        QTest::mouseClick(header->viewport(), Qt::LeftButton, {},
                          QPoint(header->sectionViewportPosition(column) + 20, header->height() / 2));
    }

private slots:
    void init() {
        QSettings().clear();
        tree = std::make_unique<TempTree>();
        entries.clear();
        for (const char* name : {"alpha.txt", "beta.txt", "gamma.txt", "delta.txt", "epsilon.txt"})
            entries.push_back(Entry::fromPath(tree->file(name, name)));
        entries.push_back(Entry::fromPath(tree->folder("Folder with a much longer name than the rest")));
        model = std::make_unique<EntryTableModel>(&entries);
        makeTable();
    }
    void cleanup() {
        table.reset();
        model.reset();
    }

    void controlClickTogglesOneRowWithoutAMenu() {
        int menus = 0;
        table->contextMenuProvider = [&] { return ++menus, new QMenu; };
        select({0, 1, 2});
        QTest::mouseClick(table->viewport(), Qt::LeftButton, Qt::ControlModifier, rowCenter(1));
        QCOMPARE(selectedRows(), (QList<int>{0, 2}));
        QTest::mouseClick(table->viewport(), Qt::LeftButton, Qt::ControlModifier, rowCenter(4));
        QCOMPARE(selectedRows(), (QList<int>{0, 2, 4}));
        QCOMPARE(menus, 0);
    }

    void shiftClickExtends() {
        QTest::mouseClick(table->viewport(), Qt::LeftButton, {}, rowCenter(1));
        QTest::mouseClick(table->viewport(), Qt::LeftButton, Qt::ShiftModifier, rowCenter(3));
        QCOMPARE(selectedRows(), (QList<int>{1, 2, 3}));
    }

    void clickOnNoRowClears() {
        QSignalSpy noRow(table.get(), &FileTable::clickedOnNoRow);
        select({1, 2});
        QTest::mouseClick(table->viewport(), Qt::LeftButton, {}, QPoint(60, table->viewport()->height() - 5));
        QCOMPARE(noRow.count(), 1);
        QVERIFY(selectedRows().isEmpty());
        QTest::mouseClick(table->viewport(), Qt::LeftButton, {}, rowCenter(0));
        QCOMPARE(noRow.count(), 1);
    }

    void rightClickSettlesTheSelectionThenAsksForTheMenu_data() {
        QTest::addColumn<QList<int>>("before");
        QTest::addColumn<int>("row");
        QTest::addColumn<QList<int>>("after");
        QTest::newRow("unselected row is selected alone") << QList<int>{0, 1} << 3 << QList<int>{3};
        QTest::newRow("selected row keeps the selection") << QList<int>{0, 1, 4} << 1 << QList<int>{0, 1, 4};
        QTest::newRow("no row clears the selection") << QList<int>{2} << -1 << QList<int>{};
    }
    void rightClickSettlesTheSelectionThenAsksForTheMenu() {
        QFETCH(QList<int>, before);
        QFETCH(int, row);
        QFETCH(QList<int>, after);
        QList<int> seenByProvider{-1};
        QPointer<QMenu> shown;
        table->contextMenuProvider = [&] {
            seenByProvider = selectedRows();
            shown = new QMenu;
            shown->addAction(QStringLiteral("Open"));
            return shown.data();
        };
        select(before);
        const QPoint at = row >= 0 ? rowCenter(row) : QPoint(60, table->viewport()->height() - 5);
        QContextMenuEvent event(QContextMenuEvent::Mouse, at, table->viewport()->mapToGlobal(at));
        QCoreApplication::sendEvent(table->viewport(), &event);
        QCOMPARE(selectedRows(), after);
        QCOMPARE(seenByProvider, after);
        QVERIFY(shown && shown->isVisible());
        shown->close();
        QTRY_VERIFY(!shown); // the table disposes of the menu once it closes
    }

    void headerClicksRequestSorting_data() {
        QTest::addColumn<QStringList>("clicks");
        QTest::addColumn<QStringList>("requests");
        QTest::newRow("size twice flips") << QStringList{"size", "size"} << QStringList{"size+", "size-"};
        QTest::newRow("the sorted column flips at once") << QStringList{"name"} << QStringList{"name-"};
        QTest::newRow("a new column starts ascending")
            << QStringList{"modified", "modified", "kind"} << QStringList{"modified+", "modified-", "kind+"};
        QTest::newRow("dimensions has no sort") << QStringList{"dimensions", "dimensions"} << QStringList{};
    }
    void headerClicksRequestSorting() {
        QFETCH(QStringList, clicks);
        QFETCH(QStringList, requests);
        QStringList seen;
        connect(table.get(), &FileTable::sortRequested, this,
                [&](const QString& key, bool ascending) { seen << key + (ascending ? u'+' : u'-'); });
        for (const QString& key : clicks)
            clickHeader(key);
        QCOMPARE(seen, requests);
        if (!requests.isEmpty()) {
            QCOMPARE(table->sortKey() + (table->sortAscending() ? u'+' : u'-'), requests.last());
        } else {
            QCOMPARE(table->sortKey(), QStringLiteral("name"));
        }
    }

    void sortIndicatorIsShownWithoutARequest() {
        QSignalSpy requests(table.get(), &FileTable::sortRequested);
        table->setSortIndicator("size", false);
        QCOMPARE(table->sortKey(), QStringLiteral("size"));
        QVERIFY(!table->sortAscending());
        clickHeader("size");
        QCOMPARE(requests.count(), 1);
        QVERIFY(requests.first().at(1).toBool()); // descending shown, so the click asks for ascending
    }

    void compactRows() {
        QCOMPARE(table->rowHeight(0), 32);
        table->setCompact(true);
        QCOMPARE(table->rowHeight(0), 24);
        QCOMPARE(table->rowViewportPosition(3) - table->rowViewportPosition(2), 24);
        table->setCompact(false);
        QCOMPARE(table->rowHeight(5), 32);
    }

    void keyboardFocusRowFollowsTheSelectionRule() {
        QSignalSpy status(table.get(), &FileTable::selectionStatusChanged);
        table->setKeyboardFocusRow(2);
        table->extendingKeyboardSelection = true;
        select({2, 3});
        QCOMPARE(table->keyboardFocusRow(), std::optional<int>(2));
        table->extendingKeyboardSelection = false;
        QVERIFY(status.count() > 0);
        status.clear();
        select({4});
        QCOMPARE(table->keyboardFocusRow(), std::nullopt);
        QVERIFY(status.count() > 0);
        table->setKeyboardFocusRow(1);
        QTest::mousePress(table->viewport(), Qt::LeftButton, Qt::ControlModifier, rowCenter(1));
        QCOMPARE(table->keyboardFocusRow(), std::nullopt);
    }

    void keysGoToTheHandlerFirst() {
        QList<int> offered;
        bool claim = true;
        table->keyHandler = [&](QKeyEvent* event) { return offered << event->key(), claim; };
        table->setFocus();
        table->setCurrentIndex(model->index(0, 0));
        QTest::keyClick(table.get(), Qt::Key_Down);
        QCOMPARE(table->currentIndex().row(), 0);
        claim = false;
        QTest::keyClick(table.get(), Qt::Key_Down);
        QCOMPARE(table->currentIndex().row(), 1);
        QCOMPARE(offered, (QList<int>{Qt::Key_Down, Qt::Key_Down}));
    }

    void columnsMenuOffersEveryColumn_data() {
        QTest::addColumn<bool>("detailsMode");
        QTest::newRow("details view") << true;
        QTest::newRow("icon view") << false;
    }
    void columnsMenuOffersEveryColumn() {
        QFETCH(bool, detailsMode);
        table->detailsMode = detailsMode;
        std::unique_ptr<QMenu> menu(table->columnsMenu());
        QCOMPARE(menu->title(), QStringLiteral("Columns"));
        const QList<QAction*> items = menu->actions();
        QCOMPARE(items.size(), explorerColumns().size() + 2);
        for (int i = 0; i < explorerColumns().size(); ++i) {
            const QString key = explorerColumns()[i].key;
            QCOMPARE(items[i]->text(), explorerColumns()[i].title);
            QCOMPARE(items[i]->isChecked(), key != "created");
            QCOMPARE(items[i]->isEnabled(), key != "name");
        }
        QVERIFY(items[explorerColumns().size()]->isSeparator());
        QCOMPARE(items.last()->text(), QStringLiteral("Size columns to fit"));
        QCOMPARE(items.last()->isEnabled(), detailsMode);
        items[explorerColumnIndex("kind")]->trigger();
        QVERIFY(table->isColumnHidden(explorerColumnIndex("kind")));
    }

    void toggledColumnsPersistAndNameStays() {
        QSignalSpy changes(table.get(), &FileTable::columnVisibilityChanged);
        table->toggleColumn("name");
        table->toggleColumn("dimensions");
        table->toggleColumn("created");
        QCOMPARE(changes.count(), 2);
        QVERIFY(!table->isColumnHidden(explorerColumnIndex("name")));
        QVERIFY(table->isColumnHidden(explorerColumnIndex("dimensions")));
        QVERIFY(!table->isColumnHidden(explorerColumnIndex("created")));
        QCOMPARE(QSettings().value(ColumnSettings::visibleKey).toStringList(),
                 (QStringList{"name", "modified", "kind", "size", "created"}));
        makeTable(); // the next window reads the same state
        QVERIFY(table->isColumnHidden(explorerColumnIndex("dimensions")));
        QVERIFY(!table->isColumnHidden(explorerColumnIndex("created")));
    }

    void columnWidthsSurviveANewTable() {
        const int kind = explorerColumnIndex("kind");
        table->setColumnWidth(kind, 250);
        table->setColumnWidth(explorerColumnIndex("size"), 20); // below the minimum
        QCOMPARE(table->columnWidth(explorerColumnIndex("size")), 85);
        makeTable();
        QCOMPARE(table->columnWidth(kind), 250);
        QCOMPARE(table->columnWidth(explorerColumnIndex("size")), 85);
    }

    void nameColumnTakesTheSpareWidth() {
        int total = 0;
        for (int column = 0; column < model->columnCount(); ++column)
            total += table->isColumnHidden(column) ? 0 : table->columnWidth(column);
        QCOMPARE(total, table->viewport()->width());
        const int before = table->columnWidth(0);
        table->resize(table->width() + 100, table->height());
        QTRY_COMPARE(table->columnWidth(0), before + 100);
        table->resize(300, table->height());
        QTRY_COMPARE(table->columnWidth(0), 160);
    }

    void fittedWidths_data() {
        QTest::addColumn<QString>("key");
        QTest::addColumn<QStringList>("texts");
        QTest::addColumn<int>("extra");
        QTest::newRow("short sizes keep the minimum") << "size" << QStringList{"1 KB"} << -1;
        QTest::newRow("short names keep the minimum") << "name" << QStringList{"a"} << -1;
        QTest::newRow("long names get 48 more")
            << "name" << QStringList{"short", QString(60, u'W'), "mid sized name"} << 48;
        QTest::newRow("long types get 28 more") << "kind" << QStringList{QString(30, u'M')} << 28;
        QTest::newRow("dimensions counts its title alone") << "dimensions" << QStringList{} << 28;
    }
    void fittedWidths() {
        QFETCH(QString, key);
        QFETCH(QStringList, texts);
        QFETCH(int, extra);
        const ExplorerColumn& column = explorerColumns()[explorerColumnIndex(key)];
        const QFontMetrics metrics(explorerFont());
        int widest = metrics.horizontalAdvance(column.title);
        for (const QString& text : texts)
            widest = qMax(widest, metrics.horizontalAdvance(text));
        const int width = FileTable::fittedWidth(key, texts);
        if (extra < 0)
            QCOMPARE(width, column.minimumWidth);
        else
            QCOMPARE(width, widest + extra);
    }

    void autosizeUsesTheModelTexts() {
        table->detailsMode = false;
        table->autosizeColumns();
        QVERIFY(table->columnWidth(explorerColumnIndex("modified")) == 200); // ignored outside details
        table->detailsMode = true;
        table->autosizeColumns();
        const QFontMetrics metrics(explorerFont());
        const int name = metrics.horizontalAdvance(entries.back().name()) + 48;
        QCOMPARE(table->columnWidth(0),
                 qMax(
                     name, table->viewport()->width() - [&] {
                         int others = 0;
                         for (int column = 1; column < model->columnCount(); ++column)
                             others += table->isColumnHidden(column) ? 0 : table->columnWidth(column);
                         return others;
                     }()));
        for (int column = 0; column < model->columnCount(); ++column)
            if (!table->isColumnHidden(column))
                QVERIFY(table->columnWidth(column) >= explorerColumns()[column].minimumWidth);
        QCOMPARE(table->columnWidth(explorerColumnIndex("dimensions")),
                 FileTable::fittedWidth("dimensions", {}));
    }
};

ORVANE_TEST_MAIN(FileTableTest)
#include "FileTableTest.moc"
