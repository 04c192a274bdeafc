#include "views/FileTable.h"
#include "core/Settings.h"
#include "kit/ExplorerFont.h"
#include "support/TempTree.h"
#include "support/TestEnvironment.h"
#include "support/WindowDriver.h"
#include "views/EntryTableModel.h"
#include "views/ExplorerColumns.h"
#include "views/ExplorerHeaderView.h"

#include <QContextMenuEvent>
#include <QMenu>
#include <QSignalSpy>
#include <QTemporaryDir>

using namespace orvane;
using namespace orvane::test;

Q_DECLARE_METATYPE(QList<int>)

class FileTableTest : public QObject {
    Q_OBJECT
    std::unique_ptr<TempTree> tree;
    std::vector<Entry> entries;
    std::unique_ptr<EntryTableModel> model;
    std::unique_ptr<QTemporaryDir> prefsDir;
    std::unique_ptr<Settings> settings;
    std::unique_ptr<FileTable> table;

    void makeTable() {
        table = std::make_unique<FileTable>(*settings);
        table->setModel(model.get());
        table->resize(1000, 400);
        table->show();
        QVERIFY(QTest::qWaitForWindowExposed(table.get()));
    }
    // The middle of the name cell of a row, or the empty space below the rows for -1.
    QPoint at(int row) const {
        return row < 0 ? QPoint(60, table->viewport()->height() - 5)
                       : QPoint(60, table->rowViewportPosition(row) + table->rowHeight(row) / 2);
    }
    void click(int row, Qt::KeyboardModifiers modifiers = {}) {
        QTest::mouseClick(table->viewport(), Qt::LeftButton, modifiers, at(row));
    }
    void clickHeader(const QString& key) {
        QHeaderView* header = table->horizontalHeader();
        const int column = explorerColumnIndex(key);
        QTest::mouseClick(header->viewport(), Qt::LeftButton, {},
                          QPoint(header->sectionViewportPosition(column) + 20, header->height() / 2));
    }
    int column(const QString& key) const { return explorerColumnIndex(key); }
    // The visible columns but the name.
    int othersWidth() const {
        int others = 0;
        for (int c = 1; c < model->columnCount(); ++c)
            others += table->isColumnHidden(c) ? 0 : table->columnWidth(c);
        return others;
    }

private slots:
    void init() {
        tree = std::make_unique<TempTree>();
        prefsDir = std::make_unique<QTemporaryDir>();
        settings = std::make_unique<Settings>(prefsDir->filePath("prefs.ini"));
        entries.clear();
        for (const char* name : {"alpha.txt", "beta.txt", "gamma.txt", "delta.txt", "epsilon.txt"})
            entries.push_back(Entry::fromPath(tree->file(name, name)));
        entries.push_back(Entry::fromPath(tree->folder("Folder with a much longer name than the rest")));
        model = std::make_unique<EntryTableModel>();
        model->setEntries(entries);
        makeTable();
    }
    void cleanup() {
        table.reset();
        model.reset();
    }

    void clicksSelect_data() {
        QTest::addColumn<QList<int>>("before"); // clicked in turn, the first alone, the others with Control
        QTest::addColumn<int>("row");
        QTest::addColumn<Qt::KeyboardModifiers>("modifiers");
        QTest::addColumn<QList<int>>("after");
        QTest::newRow("control drops a selected row")
            << QList<int>{0, 1, 2} << 1 << Qt::KeyboardModifiers(Qt::ControlModifier) << QList<int>{0, 2};
        QTest::newRow("control adds a row")
            << QList<int>{0, 2} << 4 << Qt::KeyboardModifiers(Qt::ControlModifier) << QList<int>{0, 2, 4};
        QTest::newRow("shift extends")
            << QList<int>{1} << 3 << Qt::KeyboardModifiers(Qt::ShiftModifier) << QList<int>{1, 2, 3};
        QTest::newRow("no row clears") << QList<int>{1, 2} << -1 << Qt::KeyboardModifiers() << QList<int>{};
    }
    void clicksSelect() {
        QFETCH(QList<int>, before);
        QFETCH(int, row);
        QFETCH(Qt::KeyboardModifiers, modifiers);
        QFETCH(QList<int>, after);
        int menus = 0;
        table->contextMenuProvider = [&] { return ++menus, new QMenu; };
        QSignalSpy noRow(table.get(), &FileTable::clickedOnNoRow);
        for (int i = 0; i < before.size(); ++i)
            click(before[i], i ? Qt::ControlModifier : Qt::NoModifier);
        QCOMPARE(selectedRows(*table), before);
        click(row, modifiers);
        QCOMPARE(selectedRows(*table), after);
        QCOMPARE(noRow.count(), row < 0 ? 1 : 0);
        QCOMPARE(menus, 0); // Control-click is no right click here
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
            seenByProvider = selectedRows(*table);
            shown = new QMenu;
            shown->addAction(QStringLiteral("Open"));
            return shown.data();
        };
        selectRows(*table, before);
        QContextMenuEvent event(QContextMenuEvent::Mouse, at(row), table->viewport()->mapToGlobal(at(row)));
        QCoreApplication::sendEvent(table->viewport(), &event);
        QCOMPARE(selectedRows(*table), after);
        QCOMPARE(seenByProvider, after);
        QVERIFY(shown && shown->isVisible());
        shown->close();
        QTRY_VERIFY(!shown); // the table disposes of the menu once it closes
    }

    void headerClicksRequestSorting_data() {
        QTest::addColumn<QString>("shown"); // the indicator set beforehand, which asks for nothing
        QTest::addColumn<QStringList>("clicks");
        QTest::addColumn<QStringList>("requests");
        QTest::newRow("the sorted column flips at once") << "" << QStringList{"name"} << QStringList{"name-"};
        QTest::newRow("a new column starts ascending") << "" << QStringList{"modified", "modified", "kind"}
                                                       << QStringList{"modified+", "modified-", "kind+"};
        QTest::newRow("dimensions has no sort")
            << "" << QStringList{"dimensions", "dimensions"} << QStringList{};
        QTest::newRow("a shown descending sort flips")
            << "size-" << QStringList{"size"} << QStringList{"size+"};
    }
    void headerClicksRequestSorting() {
        QFETCH(QString, shown);
        QFETCH(QStringList, clicks);
        QFETCH(QStringList, requests);
        QStringList seen;
        connect(table.get(), &FileTable::sortRequested, this,
                [&](const QString& key, bool ascending) { seen << key + (ascending ? u'+' : u'-'); });
        if (!shown.isEmpty()) table->setSortIndicator(shown.chopped(1), shown.endsWith(u'+'));
        for (const QString& key : clicks)
            clickHeader(key);
        QCOMPARE(seen, requests);
        QCOMPARE(table->sortKey() + (table->sortAscending() ? u'+' : u'-'),
                 requests.isEmpty() ? QStringLiteral("name+") : requests.last());
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
        selectRows(*table, {2, 3});
        QCOMPARE(table->keyboardFocusRow(), std::optional<int>(2));
        table->extendingKeyboardSelection = false;
        QVERIFY(status.count() > 0);
        status.clear();
        selectRows(*table, {4});
        QCOMPARE(table->keyboardFocusRow(), std::nullopt);
        QVERIFY(status.count() > 0);
        table->setKeyboardFocusRow(1);
        QTest::mousePress(table->viewport(), Qt::LeftButton, Qt::ControlModifier, at(1));
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
        // The last ones come with a kind of place (search results, the Trash) and are no choice.
        const qsizetype chosen = explorerColumns().size() - 3;
        QCOMPARE(explorerColumns()[chosen].key, QStringLiteral("folder"));
        QCOMPARE(items.size(), chosen + 2);
        for (int i = 0; i < chosen; ++i) {
            const QString key = explorerColumns()[i].key;
            QCOMPARE(items[i]->text(), explorerColumns()[i].title);
            QCOMPARE(items[i]->isChecked(), key != "created");
            QCOMPARE(items[i]->isEnabled(), key != "name");
        }
        QVERIFY(items[chosen]->isSeparator());
        QCOMPARE(items.last()->text(), QStringLiteral("Size columns to fit"));
        QCOMPARE(items.last()->isEnabled(), detailsMode);
        items[column("kind")]->trigger();
        QVERIFY(table->isColumnHidden(column("kind")));
    }

    void columnStateSurvivesANewTable() {
        QSignalSpy changes(table.get(), &FileTable::columnVisibilityChanged);
        for (const char* key : {"name", "dimensions", "created"})
            table->toggleColumn(key);
        QCOMPARE(changes.count(), 2); // the name column stays
        table->setColumnWidth(column("kind"), 250);
        table->setColumnWidth(column("size"), 20); // below the minimum
        QCOMPARE(table->columnWidth(column("size")), 85);
        for (int round = 0; round < 2; ++round) { // the next window reads the same state
            QVERIFY(!table->isColumnHidden(column("name")) && !table->isColumnHidden(column("created")));
            QVERIFY(table->isColumnHidden(column("dimensions")));
            QCOMPARE(table->columnWidth(column("kind")), 250);
            QCOMPARE(table->columnWidth(column("size")), 85);
            makeTable();
        }
    }

    void nameColumnTakesTheSpareWidth() {
        QCOMPARE(table->columnWidth(0), table->viewport()->width() - othersWidth());
        const int before = table->columnWidth(0);
        table->resize(table->width() + 100, table->height());
        QTRY_COMPARE(table->columnWidth(0), before + 100);
        // Too narrow for all: columns give way whole, the name keeps the rest, nothing scrolls sideways.
        table->resize(300, table->height());
        QTRY_COMPARE(table->columnWidth(0) + othersWidth(), table->viewport()->width());
        QVERIFY(table->columnWidth(0) >= 160);
        QVERIFY(!table->columnShown(QStringLiteral("dimensions")));
        QVERIFY(table->isColumnVisible(QStringLiteral("dimensions")));
        table->resize(1200, table->height());
        QTRY_VERIFY(table->columnShown(QStringLiteral("dimensions")));
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
        QCOMPARE(FileTable::fittedWidth(key, texts), extra < 0 ? column.minimumWidth : widest + extra);
    }

    void autosizeUsesTheModelTexts() {
        table->detailsMode = false;
        table->autosizeColumns();
        QCOMPARE(table->columnWidth(column("modified")), 200); // ignored outside details
        table->detailsMode = true;
        table->autosizeColumns();
        QCOMPARE(table->columnWidth(0), qMax(FileTable::fittedWidth("name", {entries.back().name()}),
                                             table->viewport()->width() - othersWidth()));
        for (int c = 0; c < model->columnCount(); ++c)
            if (!table->isColumnHidden(c))
                QVERIFY(table->columnWidth(c) >= explorerColumns()[c].minimumWidth);
        QCOMPARE(table->columnWidth(column("dimensions")), FileTable::fittedWidth("dimensions", {}));
    }
};

ORVANE_TEST_MAIN(FileTableTest)
#include "FileTableTest.moc"
