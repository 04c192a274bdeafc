#include "chrome/ExplorerChrome.h"
#include "chrome/DetailsPane.h"
#include "chrome/ExplorerMenus.h"
#include "core/Job.h"
#include "core/Jobs.h"
#include "core/Services.h"
#include "core/Settings.h"
#include "preview/PreviewPane.h"
#include "preview/PreviewView.h"
#include "preview/QuickLookPanel.h"
#include "support/AccessibleTree.h"
#include "support/TempTree.h"
#include "support/TestEnvironment.h"
#include "support/WindowDriver.h"
#include "support/WindowFixture.h"
#include "views/FileTable.h"
#include "window/AppDelegate.h"
#include "window/Explorer.h"

#include <QClipboard>
#include <QHeaderView>
#include <QItemSelectionModel>
#include <QLabel>
#include <QMenu>
#include <QMimeData>
#include <QSignalSpy>
#include <QTableView>
#include <QToolButton>

using namespace orvane;
using orvane::test::TempTree;
using namespace orvane::test;

namespace {
QString enabledButtons(const Explorer& w) {
    QStringList on;
    for (const char* key : {"new", "cut", "copy", "paste", "rename", "trash", "pin"})
        if (w.widgets().action(key)->isEnabled()) on << QLatin1String(key);
    return on.join(u',');
}

} // namespace

class ExplorerChromeTest : public QObject, WindowFixture {
    Q_OBJECT

private slots:
    void init() {
        QGuiApplication::clipboard()->clear();
        startProgram();
        tree->sizedFile("one.txt", 1500);
        tree->sizedFile("two.txt", 2500);
        tree->folder("Folder");
        openWindow();
    }
    void cleanup() { stopProgram(); }

    // The address chevron lists the places gone to, latest first, and goes back to one.
    void theChevronListsRecentPlaces() {
        QVERIFY(w->navigate(QUrl::fromLocalFile(tree->path("Folder"))));
        std::unique_ptr<QMenu> menu(w->findChild<ExplorerChrome*>()->recentPlacesMenu());
        QStringList titles;
        for (QAction* a : menu->actions())
            titles << (a->isSeparator() ? QStringLiteral("-") : a->text());
        QCOMPARE(titles,
                 (QStringList{"Folder", folderName(QUrl::fromLocalFile(tree->path())), "-", "Edit address"}));
        QCOMPARE(w->widgets().editAddressButton->accessibleName(), QStringLiteral("Recent places"));
        menu->actions()[1]->trigger();
        QCOMPARE(w->current().toLocalFile(), tree->path());
    }

    void toolbarFollowsTheSelection_data() {
        QTest::addColumn<QStringList>("selection");
        QTest::addColumn<bool>("busy");
        QTest::addColumn<QString>("enabled");
        QTest::newRow("nothing selected") << QStringList{} << false << "new,pin";
        QTest::newRow("one file") << QStringList{"one.txt"} << false << "new,cut,copy,rename,trash";
        QTest::newRow("two files") << QStringList{"one.txt", "two.txt"} << false << "new,cut,copy,trash";
        QTest::newRow("one folder") << QStringList{"Folder"} << false << "new,cut,copy,rename,trash,pin";
        QTest::newRow("busy") << QStringList{"one.txt"} << true << "";
    }
    void toolbarFollowsTheSelection() {
        QFETCH(QStringList, selection);
        QFETCH(bool, busy);
        QFETCH(QString, enabled);
        Job* job = busy ? w->jobs().start(QStringLiteral("Copying"), w) : nullptr;
        selectNames(*w, selection);
        (*w->findChild<ExplorerChrome*>()).updateActionState();
        QCOMPARE(enabledButtons(*w), enabled);
        if (job) job->finish();
    }

    void pasteFollowsTheClipboard() {
        auto* data = new QMimeData;
        data->setUrls({QUrl::fromLocalFile(tree->path("one.txt"))});
        QGuiApplication::clipboard()->setMimeData(data);
        QTRY_VERIFY(w->widgets().action("paste")->isEnabled());
        QGuiApplication::clipboard()->setText(QStringLiteral("just text"));
        QTRY_VERIFY(!w->widgets().action("paste")->isEnabled());
    }

    // An item can be chosen exactly when its command would run, so nothing refuses silently
    // during a transfer.
    void contextMenuItemsRunWhenEnabled_data() {
        QTest::addColumn<QStringList>("selection");
        QTest::addColumn<bool>("busy");
        QTest::addColumn<QString>("enabled");
        const QString always = "Copy as path,Properties", pin = ",Pin to Quick access",
                      link = "Create a symbolic link,", color = ",Folder color…";
        QTest::newRow("folder") << QStringList{"Folder"} << false
                                << "Open,Open in new tab,Cut,Copy,Compress,Rename,Move to Trash,New folder," +
                                       link + always + pin + color;
        QTest::newRow("folder, busy")
            << QStringList{"Folder"} << true << "Open,Open in new tab," + always + pin + color;
        QTest::newRow("two files") << QStringList{"one.txt", "two.txt"} << false
                                   << "Open,Open with,Cut,Copy,Compress,Move to Trash,New folder," + link +
                                          always;
        QTest::newRow("two files, busy")
            << QStringList{"one.txt", "two.txt"} << true << "Open,Open with," + always;
        QTest::newRow("nothing") << QStringList{} << false << "New folder,Open Terminal Here," + always + pin;
    }
    void contextMenuItemsRunWhenEnabled() {
        QFETCH(QStringList, selection);
        QFETCH(bool, busy);
        QFETCH(QString, enabled);
        Job* job = busy ? w->jobs().start(QStringLiteral("Copying"), w) : nullptr;
        selectNames(*w, selection);
        QMenu menu;
        ExplorerMenus::fillContextMenu(&menu, w);
        QStringList on;
        for (QAction* a : menu.actions()) {
            if (a->isSeparator() || !a->isEnabled()) continue;
            on << a->text();
            if (a->menu()) continue; // a submenu's own items carry the commands
            QVERIFY2(w->commands().isEnabled(a->property("command").toString()), qPrintable(a->text()));
        }
        std::sort(on.begin(), on.end());
        QStringList expected = enabled.split(u',');
        std::sort(expected.begin(), expected.end());
        QCOMPARE(on, expected);
        if (job) job->finish();
    }

    void statusLineCountsAndSums() {
        QCOMPARE(w->widgets().countLabel->text(), QStringLiteral("Ctrl+L  Path    •    F1  Shortcuts"));
        selectNames(*w, {"one.txt", "two.txt"});
        QCOMPARE(w->widgets().countLabel->text(), QStringLiteral("2 selected  ·  4 KB"));
        QCOMPARE(w->widgets().status->text(), QStringLiteral("3 items"));
    }

    void detailsAndPreviewExcludeEachOther() {
        (*w->findChild<ExplorerChrome*>()).toggleDetails();
        QVERIFY((*w->findChild<ExplorerChrome*>()).detailsVisible);
        QVERIFY(w->widgets().detailsPane->isVisibleTo(w));
        QVERIFY(w->widgets().detailsPane->width() >= 260 || w->widgets().detailsPane->minimumWidth() >= 260);
        QCOMPARE(w->widgets().detailsPane->title(), QFileInfo(tree->path()).fileName());
        selectNames(*w, {"one.txt", "two.txt"});
        QCOMPARE(w->widgets().detailsPane->title(), QStringLiteral("2 items selected"));
        QCOMPARE(w->widgets().detailsPane->meta(), QStringLiteral("Files total\n4 KB"));
        (*w->findChild<ExplorerChrome*>()).togglePreview();
        QVERIFY((*w->findChild<ExplorerChrome*>()).previewVisible);
        QVERIFY(!(*w->findChild<ExplorerChrome*>()).detailsVisible);
        QVERIFY(!w->widgets().detailsPane->isVisibleTo(w));
        QVERIFY(w->widgets().previewPane->isVisibleTo(w));
        QCOMPARE(w->widgets().previewPane->view()->cardTitle(), QStringLiteral("2 items selected"));
        (*w->findChild<ExplorerChrome*>()).toggleDetails();
        QVERIFY(!(*w->findChild<ExplorerChrome*>()).previewVisible);
        QVERIFY(!w->widgets().previewPane->isVisibleTo(w));
        QVERIFY(w->widgets().previewPane->displayed().empty());
    }

    // The pane follows the selection while it shows, and its close button is the toggle.
    void thePreviewFollowsTheSelection() {
        QVERIFY(w->commands().run(QStringLiteral("togglePreview")));
        PreviewPane* pane = w->widgets().previewPane;
        QCOMPARE(pane->view()->cardTitle(), QStringLiteral("Select a file to preview"));
        QSignalSpy shown(pane, &PreviewPane::previewShown);
        selectNames(*w, {"one.txt"});
        QVERIFY(shown.wait());
        QCOMPARE(pane->fileName(), QStringLiteral("one.txt"));
        QCOMPARE(pane->view()->cardTitle(), w->selected().front().kind);
        selectNames(*w, {"Folder"});
        QCOMPARE(pane->view()->cardTitle(), QStringLiteral("Folder"));
        QCOMPARE(accessibilityFaults(pane), QStringList());
        auto* close = pane->findChild<QToolButton*>();
        QCOMPARE(close->accessibleName(), QStringLiteral("Close preview pane"));
        close->click();
        QVERIFY(!w->commands().isChecked(QStringLiteral("togglePreview")));
        QVERIFY(!pane->isVisibleTo(w));
    }

    // Space opens the floating preview over the selection; arrows step, stopping at the ends.
    void theFloatingPreviewStepsThroughTheSelection_data() {
        QTest::addColumn<QStringList>("selection");
        QTest::addColumn<QList<int>>("keys");
        QTest::addColumn<int>("index");
        QTest::addColumn<bool>("open");
        QTest::newRow("nothing selected: nothing") << QStringList{} << QList<int>{} << -1 << false;
        QTest::newRow("right steps on")
            << QStringList{"one.txt", "two.txt"} << QList<int>{Qt::Key_Right} << 1 << true;
        QTest::newRow("stops at the last")
            << QStringList{"one.txt", "two.txt"} << QList<int>{Qt::Key_Down, Qt::Key_Down} << 1 << true;
        QTest::newRow("and back") << QStringList{"one.txt", "two.txt"}
                                  << QList<int>{Qt::Key_Right, Qt::Key_Left, Qt::Key_Up} << 0 << true;
        QTest::newRow("Escape closes") << QStringList{"one.txt"} << QList<int>{Qt::Key_Escape} << 0 << false;
        QTest::newRow("Space closes") << QStringList{"one.txt"} << QList<int>{Qt::Key_Space} << 0 << false;
    }
    void theFloatingPreviewStepsThroughTheSelection() {
        QFETCH(QStringList, selection);
        QFETCH(QList<int>, keys);
        QFETCH(int, index);
        QFETCH(bool, open);
        selectNames(*w, selection);
        QVERIFY(w->commands().run(QStringLiteral("quickLook")));
        QPointer<QuickLookPanel> panel = w->findChild<ExplorerChrome*>()->quickLookPanel();
        for (int key : keys)
            QTest::keyClick(panel, Qt::Key(key));
        QCOMPARE(panel ? panel->index() : -1, index);
        QCOMPARE(panel && panel->isVisible(), open);
        if (!open) return;
        QCOMPARE(panel->count(), selection.size());
        selectNames(*w, {"one.txt", "two.txt", "Folder"});
        QCOMPARE(panel->count(), 3);
        QVERIFY(w->commands().run(QStringLiteral("quickLook")));
        QVERIFY(!panel->isVisible());
    }

    void copyPathQuotesEachPath() {
        selectNames(*w, {"one.txt", "two.txt"});
        (*w->findChild<ExplorerChrome*>()).copyPathAction();
        QCOMPARE(QGuiApplication::clipboard()->text(),
                 QStringLiteral("\"%1\"\n\"%2\"").arg(tree->path("one.txt"), tree->path("two.txt")));
    }

    void columnChoicesReachTheNextWindow() {
        QVERIFY(w->table()->isColumnVisible(QStringLiteral("dimensions")));
        w->table()->toggleColumn(QStringLiteral("dimensions"));
        w->table()->toggleColumn(QStringLiteral("created"));
        w->table()->toggleColumn(QStringLiteral("name"));
        Explorer* second = app->newWindow(QUrl::fromLocalFile(tree->path()));
        QVERIFY(!second->table()->isColumnVisible(QStringLiteral("dimensions")));
        QVERIFY(second->table()->isColumnVisible(QStringLiteral("created")));
        QVERIFY(second->table()->isColumnVisible(QStringLiteral("name")));
        w->table()->toggleColumn(QStringLiteral("dimensions"));
        w->table()->toggleColumn(QStringLiteral("created"));
    }

    // A click on a header reorders the listing; a second click on it reverses the order.
    void headerClicksSort() {
        QHeaderView* header = w->table()->horizontalHeader();
        const int sizeColumn = 4;
        const QPoint onSize(header->sectionViewportPosition(sizeColumn) + 10, header->height() / 2);
        QTest::mouseClick(header->viewport(), Qt::LeftButton, {}, onSize);
        QCOMPARE(w->listing().sort().key, QStringLiteral("size"));
        QCOMPARE(w->entries().back().name(), QStringLiteral("two.txt"));
        QTest::mouseClick(header->viewport(), Qt::LeftButton, {}, onSize);
        QVERIFY(!w->listing().sort().ascending);
        QCOMPARE(w->entries().front().name(), QStringLiteral("two.txt"));
        w->findChild<ListingCommands*>()->setSort(QStringLiteral("name"), true);
    }

    void sidebarWidthIsClamped_data() {
        QTest::addColumn<int>("stored");
        QTest::addColumn<int>("width");
        QTest::newRow("absent") << 0 << 240;
        QTest::newRow("too wide") << 900 << 480;
        QTest::newRow("too narrow") << 50 << 180;
        QTest::newRow("inside") << 300 << 300;
    }
    void sidebarWidthIsClamped() {
        QFETCH(int, stored);
        QFETCH(int, width);
        w->services().settings().setSidebarWidth(stored);
        QCOMPARE((*w->findChild<ExplorerChrome*>()).sidebarWidth(), width);
    }
};

ORVANE_TEST_MAIN(ExplorerChromeTest)
#include "ExplorerChromeTest.moc"
