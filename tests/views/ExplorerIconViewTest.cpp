#include "views/ExplorerIconView.h"
#include "core/Settings.h"
#include "support/TempTree.h"
#include "support/TestEnvironment.h"
#include "views/EntryTableModel.h"
#include "views/ExplorerIconCanvas.h"
#include "views/ExplorerIconScrollView.h"
#include "views/FileTable.h"

#include <QAccessible>
#include <QAccessibleActionInterface>
#include <QMimeData>
#include <QScrollBar>
#include <QSignalSpy>
#include <QTemporaryDir>
#include <QVBoxLayout>

using namespace orvane;
using namespace orvane::test;

namespace {
// Stands for the window: records the keys that reach it.
class KeyCatcher : public QWidget {
public:
    QList<int> keys;

protected:
    void keyPressEvent(QKeyEvent* event) override { keys << event->key(); }
};
} // namespace

class ExplorerIconViewTest : public QObject {
    Q_OBJECT
    std::unique_ptr<TempTree> tree;
    std::unique_ptr<EntryTableModel> model;
    std::unique_ptr<QTemporaryDir> prefsDir;
    std::unique_ptr<Settings> settings;
    std::unique_ptr<FileTable> table;
    std::unique_ptr<KeyCatcher> window;
    ExplorerIconView* view = nullptr;
    ExplorerIconCanvas* canvas = nullptr;

    const std::vector<Entry>& entries() const { return model->entries(); }
    void fill(const QStringList& names) {
        std::vector<Entry> items;
        for (const QString& name : names)
            items.push_back(
                Entry::fromPath(name.endsWith(u'/') ? tree->folder(name.chopped(1)) : tree->file(name)));
        model->setEntries(std::move(items));
    }
    QPoint centre(int index) const { return canvas->itemRect(index).center(); }
    QList<int> selected() const {
        QList<int> rows;
        for (int row = 0; row < model->rowCount(); ++row)
            if (table->selectionModel()->isRowSelected(row)) rows << row;
        return rows;
    }

private slots:
    void init() {
        tree = std::make_unique<TempTree>();
        prefsDir = std::make_unique<QTemporaryDir>();
        settings = std::make_unique<Settings>(prefsDir->filePath("prefs.ini"));
        model = std::make_unique<EntryTableModel>();
        table = std::make_unique<FileTable>(*settings);
        table->setModel(model.get());
        window = std::make_unique<KeyCatcher>();
        view = new ExplorerIconView(window.get());
        (new QVBoxLayout(window.get()))->addWidget(view);
        canvas = view->canvas();
        fill({QStringLiteral("apple.txt"), QStringLiteral("Banana.txt"), QStringLiteral("blueberry.txt"),
              QStringLiteral("cherry/"), QStringLiteral("Évian.pdf"), QStringLiteral("fig.txt")});
        view->update(&model->entries(), table->selectionModel(), 3, 160);
        window->resize(560, 400);
        window->show();
        QVERIFY(QTest::qWaitForWindowExposed(window.get()));
        view->makeFileListFirstResponder();
    }
    void cleanup() {
        window.reset();
        table.reset();
        model.reset();
    }

    void tableSelectionIsTheOneTruth() {
        QSignalSpy changes(table->selectionModel(), &QItemSelectionModel::selectionChanged);
        QTest::mouseClick(canvas, Qt::LeftButton, {}, centre(2));
        QCOMPARE(selected(), QList<int>({2}));
        QCOMPARE(changes.size(), 1);
        QTest::mouseClick(canvas, Qt::LeftButton, Qt::ControlModifier, centre(4));
        QCOMPARE(selected(), QList<int>({2, 4}));
        // A change made at the table shows in the canvas without anything coming back.
        changes.clear();
        table->selectionModel()->select(model->index(5, 0),
                                        QItemSelectionModel::ClearAndSelect | QItemSelectionModel::Rows);
        QCOMPARE(changes.size(), 1);
        QVERIFY(canvas->selectionState().isSelected(5));
        QVERIFY(!canvas->selectionState().isSelected(2));
        // A click in a gap empties it.
        QTest::mouseClick(canvas, Qt::LeftButton, {}, QPoint(canvas->itemRect(0).right() + 2, 30));
        QVERIFY(selected().isEmpty());
    }

    void clickInAMultipleSelectionNarrowsOnRelease() {
        table->selectAll();
        QTest::mousePress(canvas, Qt::LeftButton, {}, centre(1));
        QCOMPARE(selected().size(), 6);
        QTest::mouseRelease(canvas, Qt::LeftButton, {}, centre(1));
        QCOMPARE(selected(), QList<int>({1}));
    }

    void keysMoveTypeAndPassOn() {
        QTest::keyClick(canvas, Qt::Key_Right);
        QCOMPARE(selected(), QList<int>({0}));
        QTest::keyClick(canvas, Qt::Key_Right);
        QCOMPARE(selected(), QList<int>({1}));
        QTest::keyClick(canvas, Qt::Key_E);
        QCOMPARE(selected(), QList<int>({4}));
        // What neither the canvas nor the window's hook takes reaches the window.
        int offered = 0;
        view->onKeyDown = [&](QKeyEvent* event) { return ++offered, event->key() == Qt::Key_F2; };
        QTest::keyClick(canvas, Qt::Key_F2);
        QTest::keyClick(canvas, Qt::Key_Return);
        QTest::keyClick(canvas, Qt::Key_Space);
        QCOMPARE(offered, 3);
        QCOMPARE(window->keys, QList<int>({Qt::Key_Return, Qt::Key_Space}));
        QCOMPARE(selected(), QList<int>({4}));
    }

    void doubleClickOpens() {
        std::optional<int> opened;
        view->onOpen = [&](int index) { opened = index; };
        QTest::mouseDClick(canvas, Qt::LeftButton, {}, centre(3));
        QCOMPARE(opened, std::optional<int>(3));
        opened.reset();
        QTest::mouseDClick(canvas, Qt::LeftButton, {}, QPoint(3, 3));
        QCOMPARE(opened, std::nullopt);
    }

    void slowSecondClickRenames() {
        std::optional<int> renamed;
        view->onRenameClick = [&](int index) { renamed = index; };
        QTest::mouseClick(canvas, Qt::LeftButton, {}, centre(1));
        QTest::mouseClick(canvas, Qt::LeftButton, {}, centre(2));
        QTest::mouseClick(canvas, Qt::LeftButton, {}, centre(2));
        QTRY_COMPARE(renamed, std::optional<int>(2));
    }

    // Other programs get the exact bytes of each name, one that is not UTF-8 too.
    void dragCarriesFileUrls() {
        std::unique_ptr<QMimeData> data(canvas->dragData({0, 3}));
        QCOMPARE(data->urls(), QList<QUrl>({QUrl::fromLocalFile(entries()[0].location),
                                            QUrl::fromLocalFile(entries()[3].location)}));
        model->setEntries({Entry::fromPath(tree->rawFile("bad\xff.txt"))});
        data.reset(canvas->dragData({0}));
        QVERIFY(data->data(QStringLiteral("text/uri-list")).endsWith("/bad%FF.txt\r\n"));
    }

    void paintsOnlyTheCellsAsked() {
        QStringList drawn;
        canvas->cellPainter().thumbnail = [&](const Entry& entry) { return drawn << entry.name(), QImage(); };
        canvas->cellPainter().forget(true);
        canvas->repaint(canvas->itemRect(4).adjusted(10, 10, -10, -10));
        QCOMPARE(drawn, QStringList({QStringLiteral("Évian.pdf")}));
    }

    void iconCacheStaysCapped() {
        QStringList many;
        for (int i = 0; i < 1500; ++i)
            many << QStringLiteral("f%1.txt").arg(i);
        fill(many);
        QScrollBar* bar = view->scrollView()->verticalScrollBar();
        QVERIFY(bar->maximum() > 0);
        for (int value = 0; value <= bar->maximum(); value += canvas->height()) {
            bar->setValue(value);
            canvas->repaint();
            QVERIFY(canvas->cellPainter().cachedIcons() <= ExplorerIconPainter::cacheLimit);
        }
        QVERIFY(canvas->cellPainter().cachedIcons() > 0);
    }

    void listScrollsSideways() {
        QStringList many;
        for (int i = 0; i < 200; ++i)
            many << QStringLiteral("f%1.txt").arg(i);
        fill(many);
        view->update(&model->entries(), table->selectionModel(), 5, 160);
        QScrollBar* bar = view->scrollView()->horizontalScrollBar();
        QTRY_VERIFY(bar->maximum() > 0);
        QWheelEvent down(QPointF(50, 50), canvas->mapToGlobal(QPointF(50, 50)), QPoint(), QPoint(0, -120),
                         Qt::NoButton, Qt::NoModifier, Qt::NoScrollPhase, false);
        QApplication::sendEvent(canvas, &down);
        QVERIFY(bar->value() > 0);
        // The window's hook comes first and may take the wheel.
        const int before = bar->value();
        view->onMouseWheel = [](QWheelEvent* event) {
            return bool(event->modifiers() & Qt::ControlModifier);
        };
        QWheelEvent zoom(QPointF(50, 50), canvas->mapToGlobal(QPointF(50, 50)), QPoint(), QPoint(0, -120),
                         Qt::NoButton, Qt::ControlModifier, Qt::NoScrollPhase, false);
        QApplication::sendEvent(canvas, &zoom);
        QCOMPARE(bar->value(), before);
        // The end of the list is one End away, and in view.
        QTest::keyClick(canvas, Qt::Key_End);
        QVERIFY(canvas->rect().contains(canvas->itemRect(199)));
    }

    void newListingStartsOver() {
        QTest::mouseClick(canvas, Qt::LeftButton, {}, centre(5));
        fill({QStringLiteral("one.txt"), QStringLiteral("two.txt")});
        QCOMPARE(canvas->count(), 2);
        QVERIFY(selected().isEmpty());
        QCOMPARE(canvas->selectionState().focus, std::nullopt);
        QTest::keyClick(canvas, Qt::Key_Down);
        QCOMPARE(selected(), QList<int>({0}));
    }

    void accessibleItems() {
        table->selectionModel()->select(model->index(1, 0),
                                        QItemSelectionModel::ClearAndSelect | QItemSelectionModel::Rows);
        QAccessibleInterface* list = QAccessible::queryAccessibleInterface(canvas);
        QVERIFY(list);
        QCOMPARE(list->childCount(), 6);
        QAccessibleInterface* item = list->child(1);
        QVERIFY(item);
        QCOMPARE(item->text(QAccessible::Name), QStringLiteral("Banana.txt"));
        QCOMPARE(item->text(QAccessible::Help), entries()[1].location);
        QCOMPARE(item->rect(),
                 QRect(canvas->mapToGlobal(canvas->itemRect(1).topLeft()), canvas->itemRect(1).size()));
        QVERIFY(item->state().selected);
        QCOMPARE(list->indexOfChild(item), 1);
        QCOMPARE(list->childAt(item->rect().center().x(), item->rect().center().y()), item);
        QAccessibleInterface* other = list->child(3);
        other->actionInterface()->doAction(QAccessibleActionInterface::pressAction());
        QCOMPARE(selected(), QList<int>({3}));
        QVERIFY(!item->state().selected);
    }
};

ORVANE_TEST_MAIN(ExplorerIconViewTest)
#include "ExplorerIconViewTest.moc"
