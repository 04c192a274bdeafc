#include "properties/PropertiesWindow.h"
#include "core/WindowCommands.h"
#include "properties/PropertiesCommands.h"
#include "properties/PropertiesReader.h"
#include "support/AccessibleTree.h"
#include "support/TempTree.h"
#include "support/TestEnvironment.h"
#include "support/WindowDriver.h"
#include "window/AppDelegate.h"
#include "window/Explorer.h"

#include <QAccessible>
#include <QAccessibleActionInterface>
#include <QLabel>
#include <QRegularExpression>
#include <QSignalSpy>

using namespace orvane;
using orvane::test::TempTree;

namespace {

constexpr int bigFolders = 200;
constexpr int filesPerFolder = 100;

QList<QUrl> local(const TempTree& tree, const QStringList& relative) {
    QList<QUrl> urls;
    for (const QString& r : relative)
        urls << QUrl::fromLocalFile(tree.path(r));
    return urls;
}

void press(QWidget& window, Qt::Key key, Qt::KeyboardModifiers modifiers = Qt::NoModifier) {
    QWidget* focus = window.focusWidget();
    QTest::keyClick(focus ? focus : &window, key, modifiers);
}

// "Calculating… 123 items checked" gives 123; -1 for any other text.
int itemsChecked(const QString& status) {
    static const QRegularExpression pattern(QStringLiteral("^Calculating… (\\d+) items checked$"));
    const QRegularExpressionMatch m = pattern.match(status);
    return m.hasMatch() ? m.captured(1).toInt() : -1;
}

} // namespace

class PropertiesWindowTest : public QObject {
    Q_OBJECT
    TempTree tree;

private slots:
    void initTestCase() {
        tree.file("small/a.txt", "hello");
        tree.folder("small/sub");
        tree.file("other.png", QByteArray(2000, 'p'));
        for (int f = 0; f < bigFolders; ++f)
            for (int i = 0; i < filesPerFolder; ++i)
                tree.file(QString("big/f%1/i%2").arg(f).arg(i), "x");
    }

    void placeholdersAtOnceThenRowsFill_data() {
        QTest::addColumn<QStringList>("items");
        QTest::addColumn<QString>("title");
        QTest::addColumn<QString>("type");
        QTest::addColumn<QString>("opens");
        QTest::addColumn<QString>("size");
        QTest::addColumn<QString>("contains");
        QTest::addColumn<QString>("location");
        QTest::newRow("a folder") << QStringList{"small"} << "small Properties"
                                  << "File folder"
                                  << "Not applicable to folders"
                                  << "5 bytes"
                                  << "1 file, 1 subfolder"
                                  << "";
        QTest::newRow("a file inside it as well")
            << QStringList{"small", "small/a.txt"} << "2 Items Properties"
            << "Multiple values"
            << "Multiple file types"
            << "5 bytes"
            << "1 file, 1 subfolder"
            << "Multiple values";
        QTest::newRow("two kinds in one folder") << QStringList{"other.png", "small"} << "2 Items Properties"
                                                 << "Multiple values"
                                                 << "Multiple file types"
                                                 << "2 KB (2,005 bytes)"
                                                 << "2 files, 1 subfolder"
                                                 << "";
    }
    void placeholdersAtOnceThenRowsFill() {
        QFETCH(QStringList, items);
        PropertiesWindow window(local(tree, items));
        window.setAttribute(Qt::WA_DeleteOnClose, false);
        QTEST(window.windowTitle(), "title");
        QCOMPARE(window.value("size"), QString("Calculating…"));
        QCOMPARE(window.value("contains"), QString("Counting…"));
        QCOMPARE(window.value("path").count(u'\n'), items.size() - 1);
        QCOMPARE(window.scanStatus(), QString("Calculating folder size…"));
        window.show();
        window.beginReading();
        QVERIFY(window.isSpinning());
        QTRY_COMPARE(window.scanStatus(), QString("Properties are read-only"));
        QVERIFY(!window.isSpinning());
        QTEST(window.value("type"), "type");
        QTEST(window.value("opens"), "opens");
        QTEST(window.value("size"), "size");
        QTEST(window.value("contains"), "contains");
        QFETCH(QString, location);
        QCOMPARE(window.value("location"), location.isEmpty() ? tree.path() : location);
        QCOMPARE(window.value("access"), QString("Read and write"));
        // Items of one owner show that owner, not "Multiple values".
        QVERIFY(window.value("owner") != "Multiple values" && window.value("owner") != "Unavailable");
    }

    void theLiveStatusMoves() {
        PropertiesWindow window(local(tree, {"big"}));
        window.reader().setReportInterval(1);
        QList<int> counts;
        connect(&window, &PropertiesWindow::scanStatusChanged, this,
                [&](const QString& text) { counts << itemsChecked(text); });
        window.show();
        window.beginReading();
        QTRY_COMPARE_WITH_TIMEOUT(window.scanStatus(), QString("Properties are read-only"), 30000);
        QCOMPARE(counts.takeLast(), -1);
        QVERIFY(!counts.isEmpty());
        QVERIFY(counts.first() > 0);
        QVERIFY(std::is_sorted(counts.begin(), counts.end()));
        QCOMPARE(window.value("contains"), QString("20,000 files, 200 subfolders"));
    }

    void closingCancelsAndDropsLateResults() {
        PropertiesWindow window(local(tree, {"big"}));
        window.setAttribute(Qt::WA_DeleteOnClose, false);
        window.reader().setReportInterval(1);
        QSignalSpy closed(&window, &PropertiesWindow::closed);
        connect(&window, &PropertiesWindow::scanStatusChanged, &window, &QWidget::close);
        window.show();
        window.beginReading();
        QTRY_COMPARE(closed.count(), 1);
        const QString sizeAtClose = window.value("size");
        const QString statusAtClose = window.scanStatus();
        QVERIFY(itemsChecked(statusAtClose) > 0);
        QVERIFY(window.reader().isCancelled());
        QVERIFY(!window.isSpinning());
        QTRY_VERIFY(!window.reader().isRunning());
        const PropertiesSizeSummary last = window.reader().lastSummary();
        QVERIFY(last.cancelled);
        QVERIFY(last.files < bigFolders * filesPerFolder);
        QCoreApplication::processEvents();
        QCOMPARE(window.value("size"), sizeAtClose);
        QCOMPARE(window.scanStatus(), statusAtClose);
    }

    void keys_data() {
        QTest::addColumn<QList<int>>("keys"); // key, modifiers, key, modifiers...
        QTest::addColumn<int>("page");
        QTest::addColumn<bool>("closes");
        const int ctrl = int(Qt::ControlModifier);
        const int ctrlShift = int(Qt::ControlModifier | Qt::ShiftModifier);
        QTest::newRow("next page") << QList<int>{Qt::Key_Tab, ctrl} << 1 << false;
        QTest::newRow("next wraps") << QList<int>{Qt::Key_Tab, ctrl, Qt::Key_Tab, ctrl} << 0 << false;
        QTest::newRow("previous wraps") << QList<int>{Qt::Key_Backtab, ctrlShift} << 1 << false;
        QTest::newRow("by number") << QList<int>{Qt::Key_2, ctrl, Qt::Key_1, ctrl} << 0 << false;
        QTest::newRow("second by number") << QList<int>{Qt::Key_2, ctrl} << 1 << false;
        QTest::newRow("Alt is not ours")
            << QList<int>{Qt::Key_Tab, int(Qt::ControlModifier | Qt::AltModifier)} << 0 << false;
        QTest::newRow("Return closes") << QList<int>{Qt::Key_Return, 0} << 0 << true;
        QTest::newRow("Escape closes") << QList<int>{Qt::Key_Escape, 0} << 0 << true;
    }
    void keys() {
        QFETCH(QList<int>, keys);
        PropertiesWindow window(local(tree, {"small/a.txt"}));
        window.setAttribute(Qt::WA_DeleteOnClose, false);
        QSignalSpy closed(&window, &PropertiesWindow::closed);
        window.show();
        QVERIFY(QTest::qWaitForWindowExposed(&window));
        for (int i = 0; i + 1 < keys.size(); i += 2)
            press(window, Qt::Key(keys[i]), Qt::KeyboardModifiers(keys[i + 1]));
        QTEST(window.currentPage(), "page");
        QTEST(closed.count() == 1, "closes");
        QTEST(window.isHidden(), "closes");
    }

    // A reader hears each value with its row as the label, the status as it moves, and a tab list.
    void everyValueIsReadable() {
        PropertiesWindow window(local(tree, {"small"}));
        window.setAttribute(Qt::WA_DeleteOnClose, false);
        window.show();
        QVERIFY(QTest::qWaitForWindowExposed(&window));
        window.beginReading();
        QTRY_COMPARE(window.scanStatus(), QString("Properties are read-only"));
        QCOMPARE(test::accessibilityFaults(&window), QStringList());
        QAccessibleInterface* size = nullptr;
        for (QLabel* label : window.findChildren<QLabel*>())
            if (label->text() == "5 bytes") size = QAccessible::queryAccessibleInterface(label);
        QVERIFY(size);
        QCOMPARE(size->text(QAccessible::Name), QString("5 bytes"));
        const auto labels = size->relations(QAccessible::Label);
        QCOMPARE(labels.size(), 1);
        QCOMPARE(labels.first().first->text(QAccessible::Name), QString("Size"));
        QAccessibleInterface* statusBar = nullptr;
        QAccessibleInterface* tabList = nullptr;
        for (QWidget* child : window.findChildren<QWidget*>()) {
            QAccessibleInterface* item = QAccessible::queryAccessibleInterface(child);
            if (item->role() == QAccessible::StatusBar) statusBar = item;
            if (item->role() == QAccessible::PageTabList) tabList = item;
        }
        QVERIFY(statusBar && tabList);
        QCOMPARE(statusBar->text(QAccessible::Name), QString("Properties are read-only"));
        QCOMPARE(tabList->child(0)->text(QAccessible::Name), QString("General"));
        QCOMPARE(tabList->child(1)->role(), QAccessible::PageTab);
        QCOMPARE(tabList->child(1)->text(QAccessible::Name), QString("Details"));
        tabList->child(1)->actionInterface()->doAction(QAccessibleActionInterface::pressAction());
        QCOMPARE(window.currentPage(), 1);
    }

    // The window's command: a new window each time, for the selection or else the current folder.
    void theCommandOpensOneWindowEachTime() {
        AppDelegate app;
        Explorer* w = app.newWindow(QUrl::fromLocalFile(tree.path("small")));
        auto* command = w->findChild<PropertiesCommands*>();
        QVERIFY(command);
        QVERIFY(w->commands().isEnabled("propertiesAction"));
        QVERIFY(w->commands().run("propertiesAction"));
        QCOMPARE(command->windows().size(), 1);
        QCOMPARE(command->windows().at(0)->windowTitle(), QString("small Properties"));
        QTRY_COMPARE(w->entries().size(), size_t(2));
        test::selectNames(*w, {"a.txt", "sub"});
        QVERIFY(w->commands().run("propertiesAction"));
        QCOMPARE(command->windows().size(), 2);
        PropertiesWindow* second = command->windows().at(1);
        QCOMPARE(second->windowTitle(), QString("2 Items Properties"));
        QTRY_COMPARE(second->scanStatus(), QString("Properties are read-only"));
        second->close();
        QCOMPARE(command->windows().size(), 1);
    }
};

ORVANE_TEST_MAIN(PropertiesWindowTest)
#include "PropertiesWindowTest.moc"
