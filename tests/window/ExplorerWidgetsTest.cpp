#include "window/ExplorerWidgets.h"
#include "core/InlineRename.h"

#include "chrome/DetailsPane.h"
#include "chrome/ExplorerSidebarSplit.h"
#include "chrome/ExplorerTabStrip.h"
#include "chrome/ExplorerTabView.h"
#include "fileops/ExplorerFileOps.h"
#include "kit/EditablePathBox.h"
#include "support/TempTree.h"
#include "support/TestEnvironment.h"
#include "support/WindowDriver.h"
#include "support/WindowFixture.h"
#include "views/ExplorerColumns.h"
#include "views/FileTable.h"
#include "window/AppDelegate.h"
#include "window/Explorer.h"

#include <QAbstractButton>
#include <QAccessible>
#include <QHeaderView>
#include <QLineEdit>
#include <QListWidget>
#include <QMenuBar>
#include <QScrollBar>
#include <QToolButton>

using namespace orvane;
using namespace orvane::test;

namespace {

bool interactive(QWidget* widget) {
    return qobject_cast<QAbstractButton*>(widget) || qobject_cast<QLineEdit*>(widget) ||
           qobject_cast<QAbstractItemView*>(widget) || qobject_cast<QMenuBar*>(widget) ||
           qobject_cast<ExplorerTabView*>(widget);
}

// What assistive technology hears for a widget.
QString spokenName(QWidget* widget) {
    QAccessibleInterface* face = QAccessible::queryAccessibleInterface(widget);
    return face ? face->text(QAccessible::Name) : QString();
}

QStringList namelessControls(QWidget* window) {
    QStringList nameless;
    for (QWidget* widget : window->findChildren<QWidget*>())
        if (interactive(widget) && spokenName(widget).trimmed().isEmpty())
            nameless << QString::fromLatin1(widget->metaObject()->className()) + u' ' + widget->objectName() +
                            u' ' + widget->toolTip();
    return nameless;
}

} // namespace

class ExplorerWidgetsTest : public QObject, WindowFixture {
    Q_OBJECT

private slots:
    void init() {
        startProgram();
        tree->file("a.txt", "a");
        tree->folder("Sub");
        openWindow({}, true);
    }
    void cleanup() { stopProgram(); }

    // Every control of the window has a name of its own, not only a tool tip, in every state the
    // window shows: two tabs, the details pane, the address field and the rename editor.
    void everyControlHasAName() {
        w->newTab();
        w->commands().run(QStringLiteral("toggleDetails"));
        QCOMPARE(namelessControls(w).join(" | "), QString());
        w->widgets().pathBox->showAddress();
        selectNames(*w, {"a.txt"});
        w->commands().run(QStringLiteral("renameAction"));
        QVERIFY(w->inlineRename()->renameEditor());
        QCOMPARE(namelessControls(w).join(" | "), QString());
        QCOMPARE(spokenName(w->inlineRename()->renameEditor()), QStringLiteral("Rename a.txt"));
    }

    // The window gives way sensibly: the navigation pane narrows first, whole columns make room rather
    // than being cut or scrolled, and no button loses part of its title.
    void layoutAtCommonSizes_data() {
        QTest::addColumn<QSize>("size");
        QTest::addColumn<bool>("details");
        QTest::addColumn<int>("navigation");
        QTest::newRow("700 x 500") << QSize(700, 500) << false << -1;
        QTest::newRow("700 x 500, details")
            << QSize(700, 500) << true << ExplorerSidebarSplit::navigationMinimum;
        QTest::newRow("1440 x 900") << QSize(1440, 900) << false << 240;
        QTest::newRow("1440 x 900, details") << QSize(1440, 900) << true << 240;
        QTest::newRow("narrowest") << QSize(400, 400) << true << ExplorerSidebarSplit::navigationMinimum;
    }
    void layoutAtCommonSizes() {
        QFETCH(QSize, size);
        QFETCH(bool, details);
        QFETCH(int, navigation);
        if (details) w->commands().run(QStringLiteral("toggleDetails"));
        w->resize(size);
        QTRY_COMPARE(w->width(), qMax(600, size.width()));
        QVERIFY(w->centralWidget()->minimumSizeHint().width() <= 600);
        QApplication::processEvents();
        const WindowWidgets& ui = w->widgets();
        if (navigation > 0) QCOMPARE(ui.navigationPane->width(), navigation);
        QVERIFY(ui.navigationPane->width() <= 240);
        if (details) QVERIFY(ui.detailsPane->width() >= ExplorerSidebarSplit::detailsMinimum);
        // Columns: whole, inside the table, none scrolled off to the side.
        FileTable* table = w->table();
        QTRY_VERIFY(!table->horizontalScrollBar()->isVisible());
        int shown = 0;
        for (int i = 0; i < table->model()->columnCount(); ++i) {
            if (table->isColumnHidden(i)) continue;
            ++shown;
            QVERIFY(table->columnWidth(i) >= explorerColumns()[i].minimumWidth);
            QVERIFY(table->columnViewportPosition(i) + table->columnWidth(i) <= table->viewport()->width());
        }
        QVERIFY(table->columnShown(QStringLiteral("name")));
        if (size.width() >= 1440) QCOMPARE(shown, table->isColumnVisible(QStringLiteral("created")) ? 6 : 5);
        // Buttons: titled or not, never cut.
        for (QToolButton* button : w->findChildren<QToolButton*>()) {
            if (!button->isVisible() || button->text().isEmpty()) continue;
            const bool titled = button->toolButtonStyle() != Qt::ToolButtonIconOnly;
            if (titled) QVERIFY2(button->width() >= button->sizeHint().width(), qPrintable(button->text()));
        }
        if (size.width() >= 1440)
            QCOMPARE(ui.action("view")->toolButtonStyle(), Qt::ToolButtonTextBesideIcon);
    }

    // Icon buttons are named by their tool tip without its key.
    void namesComeFromTheToolTips_data() {
        QTest::addColumn<QString>("tip");
        QTest::addColumn<QString>("name");
        QTest::newRow("back") << "Back · Alt+Left"
                              << "Back";
        QTest::newRow("trash") << "Move to Trash · Delete"
                               << "Move to Trash";
        QTest::newRow("scope") << "Search scope"
                               << "Search scope";
        QTest::newRow("close") << "Close window"
                               << "Close window";
    }
    void namesComeFromTheToolTips() {
        QFETCH(QString, tip);
        QFETCH(QString, name);
        QAbstractButton* found = nullptr;
        for (QAbstractButton* b : w->findChildren<QAbstractButton*>())
            if (b->toolTip() == tip) found = b;
        QVERIFY(found);
        QCOMPARE(found->accessibleName(), name);
    }

    // Tabs are page tabs in a page tab list; the lists are named.
    void rolesOfTabsAndLists() {
        w->newTab();
        const QList<ExplorerTabView*> tabs = w->widgets().tabStrip->orderedTabViews();
        QCOMPARE(tabs.size(), 2);
        for (ExplorerTabView* tab : tabs) {
            QAccessibleInterface* face = QAccessible::queryAccessibleInterface(tab);
            QCOMPARE(face->role(), QAccessible::PageTab);
            QCOMPARE(face->text(QAccessible::Name), tab->name());
            QCOMPARE(face->state().selected, tab->activeTab());
            QCOMPARE(face->parent()->role(), QAccessible::PageTabList);
        }
        QCOMPARE(spokenName(w->table()), QStringLiteral("Files"));
    }
};

ORVANE_TEST_MAIN(ExplorerWidgetsTest)
#include "ExplorerWidgetsTest.moc"
