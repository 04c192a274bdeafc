#include "window/Explorer.h"
#include "core/Preferences.h"
#include "core/Services.h"
#include "core/Settings.h"
#include "kit/EditablePathBox.h"
#include "support/TempTree.h"
#include "support/TestEnvironment.h"
#include "support/WindowDriver.h"
#include "support/WindowFixture.h"
#include "views/FileTable.h"
#include "window/AppDelegate.h"

#include <QDir>
#include <QItemSelectionModel>
#include <QLabel>
#include <QLineEdit>
#include <QMessageBox>
#include <QTableView>
#include <QTemporaryDir>
#include <QToolButton>

using namespace orvane;
using orvane::test::TempTree;
using namespace orvane::test;

namespace {
QStringList names(const Explorer& w, bool selectedOnly = false) {
    QStringList list;
    for (const Entry& e : selectedOnly ? w.selected() : w.entries())
        list << e.name();
    return list;
}

QUrl url(const QString& path) {
    return QUrl::fromLocalFile(path);
}

} // namespace

class ExplorerTest : public QObject, WindowFixture {
    Q_OBJECT

private slots:
    void init() {
        startProgram();
        tree->file("a.txt", "a");
        tree->file("b.txt", "bb");
        tree->folder("Sub/Deeper");
        tree->folder("Other");
        Preferences::standard()->remove(QStringLiteral("lastFolder"));
    }
    void cleanup() { stopProgram(); }

    void startFolderFallsBackToHome_data() {
        QTest::addColumn<QString>("stored");
        QTest::addColumn<bool>("expectStored");
        QTest::newRow("existing lastFolder") << "Sub" << true;
        QTest::newRow("vanished lastFolder") << "Gone" << false;
        QTest::newRow("nothing stored") << "" << false;
    }
    void startFolderFallsBackToHome() {
        QFETCH(QString, stored);
        QFETCH(bool, expectStored);
        Settings& settings = app->services().settings();
        if (!stored.isEmpty()) settings.setLastFolder(tree->path(stored));
        const QUrl start = Explorer::startURL(settings, std::nullopt);
        QCOMPARE(start.toLocalFile(), expectStored ? tree->path(stored) : QDir::homePath());
        QCOMPARE(Explorer::startURL(settings, url(tree->path("Other"))).toLocalFile(), tree->path("Other"));
        QCOMPARE(Explorer::startURL(settings, url(tree->path("nowhere"))).toLocalFile(), QDir::homePath());
    }

    void historyBackForwardAndBranching() {
        Explorer* w = app->newWindow(url(tree->path()));
        QVERIFY(w->navigate(url(tree->path("Sub"))));
        QVERIFY(w->navigate(url(tree->path("Sub/Deeper"))));
        w->back();
        w->back();
        QCOMPARE(w->current().toLocalFile(), tree->path());
        w->forward();
        QCOMPARE(w->current().toLocalFile(), tree->path("Sub"));
        QVERIFY(w->widgets().forwardButton->isEnabled());
        QVERIFY(w->navigate(url(tree->path("Other"))));
        QVERIFY(!w->widgets().forwardButton->isEnabled());
        QCOMPARE(w->tabs().current().history.size(), 3);
        w->forward(); // ignored at the end
        QCOMPARE(w->current().toLocalFile(), tree->path("Other"));
        QCOMPARE(app->services().settings().lastFolder(), tree->path("Other"));
    }

    void missingFoldersAreReportedAndNothingMoves() {
        Explorer* w = app->newWindow(url(tree->path()));
        QVERIFY(!w->navigate(url(tree->path("a.txt"))));
        QCOMPARE(takeAlert(*w), QStringLiteral("Folder not found|") + tree->path("a.txt"));
        QVERIFY(w->navigate(url(tree->path("Sub"))));
        w->up();
        QVERIFY(QDir(tree->path("Sub")).removeRecursively());
        w->back();
        QCOMPARE(takeAlert(*w), QStringLiteral("Folder unavailable|") + tree->path("Sub"));
        QCOMPARE(w->current().toLocalFile(), tree->path());
        QCOMPARE(w->tabs().current().index, 2);
    }

    void addressFieldResolvesRelativeAndTildePaths() {
        Explorer* w = app->newWindow(url(tree->path()));
        QLineEdit* field = w->widgets().pathBox->addressField();
        field->setText(QStringLiteral("Sub/Deeper/.."));
        w->addressGo();
        QCOMPARE(w->current().toLocalFile(), tree->path("Sub"));
        field->setText(QStringLiteral("~"));
        w->addressGo();
        QCOMPARE(w->current().toLocalFile(), QDir::homePath());
        w->keyboard().focusAddress();
        field->setText(QStringLiteral("no such place"));
        w->addressGo();
        QVERIFY(takeAlert(*w).startsWith(QLatin1String("Folder not found|")));
        QVERIFY(w->widgets().pathBox->addressShown());
        QCOMPARE(field->text(), QStringLiteral("no such place"));

        // A file's path opens its folder with the file chosen.
        field->setText(tree->path("Sub/../b.txt"));
        w->addressGo();
        QCOMPARE(w->current().toLocalFile(), tree->path());
        QTRY_COMPARE(int(w->selected().size()), 1);
        QCOMPARE(w->selected().front().name(), QStringLiteral("b.txt"));
    }

    // A file that no application opens says so rather than nothing at all.
    void aFileNothingOpensSaysSo() {
        tree->file("blob.orvane-nothing", QByteArray("\x01\x02\x03\xff", 4));
        Explorer* w = app->newWindow(url(tree->path()));
        selectNames(*w, {"blob.orvane-nothing"});
        QVERIFY(w->commands().run(QStringLiteral("openSelected")));
        QVERIFY(takeAlert(*w).startsWith(QStringLiteral("No application opens \"blob.orvane-nothing\"|")));
    }

    // Tab completes folder names in the address box, as far as they agree.
    void tabCompletesFolderNames_data() {
        QTest::addColumn<QString>("typed");
        QTest::addColumn<QString>("completed");
        QTest::newRow("one fits") << "Su"
                                  << "Sub/";
        QTest::newRow("deeper") << "Sub/D"
                                << "Sub/Deeper/";
        QTest::newRow("several agree so far") << "O"
                                              << "Ot";
        QTest::newRow("none fits") << "zz"
                                   << "zz";
    }
    void tabCompletesFolderNames() {
        QFETCH(QString, typed);
        QFETCH(QString, completed);
        tree->folder("Otter");
        Explorer* w = app->newWindow(url(tree->path()));
        QVERIFY(QTest::qWaitForWindowActive(w));
        w->keyboard().focusAddress();
        w->widgets().pathBox->addressField()->setText(typed);
        press(w, keys::Tab);
        QCOMPARE(w->widgets().pathBox->addressField()->text(), completed);
    }

    void searchFiltersAndNavigationClearsIt() {
        Explorer* w = app->newWindow(url(tree->path()));
        w->commands().run(QStringLiteral("setSearchText"), QStringLiteral("B.T"));
        QCOMPARE(names(*w), QStringList{"b.txt"});
        w->commands().run(QStringLiteral("setSearchText"), QStringLiteral("nothing"));
        QVERIFY(w->entries().empty());
        QCOMPARE(w->widgets().emptyLabel->text(), QStringLiteral("No matching items in this folder"));
        w->navigate(url(tree->path("Other")));
        QVERIFY(w->tabs().current().query.isEmpty());
        QCOMPARE(w->widgets().emptyLabel->text(), QStringLiteral("This folder is empty"));
        QVERIFY(w->widgets().emptyLabel->isVisibleTo(w));
    }

    void hiddenItemsFollowTheToggle() {
        tree->file(".secret");
        Explorer* w = app->newWindow(url(tree->path()));
        QVERIFY(!names(*w).contains(".secret"));
        w->commands().run(QStringLiteral("toggleHidden"));
        QVERIFY(names(*w).contains(".secret"));
        QCOMPARE(w->widgets().status->text(), QStringLiteral("5 items"));
    }

    void refreshKeepsTheSelectionOfWhatRemains() {
        Explorer* w = app->newWindow(url(tree->path()));
        selectNames(*w, {"a.txt", "b.txt"});
        QFile::remove(tree->path("a.txt"));
        tree->file("0-new.txt");
        w->refresh();
        QCOMPARE(w->selected().size(), size_t(1));
        QCOMPARE(w->selected().front().name(), QStringLiteral("b.txt"));
    }

    void watcherRefreshesAndWaitsForAnOpenRename() {
        Explorer* w = app->newWindow(url(tree->path()));
        tree->file("c.txt");
        QTRY_VERIFY(names(*w).contains("c.txt"));
        emit w->events().editingChanged(true);
        tree->file("d.txt");
        auto* content = dynamic_cast<LocalFolderContent*>(w->contentFor(w->current()));
        QTRY_VERIFY(content->changesWaiting());
        QVERIFY(!names(*w).contains("d.txt"));
        emit w->events().editingChanged(false);
        QVERIFY(names(*w).contains("d.txt"));
    }

    void tabsOpenOnTheCurrentFolderWithoutSelection() {
        Explorer* w = app->newWindow(url(tree->path()));
        selectNames(*w, {"a.txt"});
        w->newTab();
        QCOMPARE(w->tabs().count(), 2);
        QCOMPARE(w->tabs().active(), 1);
        QCOMPARE(w->current().toLocalFile(), tree->path());
        QVERIFY(w->selected().empty());
        w->navigate(url(tree->path("Sub")));
        w->activateTab(0);
        QCOMPARE(w->current().toLocalFile(), tree->path());
        w->closeTab(1);
        QCOMPARE(w->tabs().count(), 1);
        QVERIFY(w->isVisible());
        w->closeTab();
        QVERIFY(app->windows.empty());
    }

    void openingAFolderNavigatesAndNewTabOpensIt() {
        Explorer* w = app->newWindow(url(tree->path()));
        selectNames(*w, {"Sub"});
        w->commands().run(QStringLiteral("openNewTabSelected"));
        QCOMPARE(w->tabs().count(), 2);
        QCOMPARE(w->current().toLocalFile(), tree->path("Sub"));
        selectNames(*w, {"Deeper"});
        w->openSelected();
        QCOMPARE(w->current().toLocalFile(), tree->path("Sub/Deeper"));
        w->commands().run(
            QStringLiteral("showPackageContents")); // nothing selected and no packages here: nothing happens
        QCOMPARE(w->current().toLocalFile(), tree->path("Sub/Deeper"));
    }

    void selectURLResolvesLinks() {
        QVERIFY(QFile::link(tree->path("b.txt"), tree->path("Other/link-to-b")));
        Explorer* w = app->newWindow(url(tree->path()));
        w->selectURL(url(tree->path("Other/link-to-b")));
        QCOMPARE(w->selected().size(), size_t(1));
        QCOMPARE(w->selected().front().name(), QStringLiteral("b.txt"));
    }

    // After Up the folder we came from is the selection, from the key and from the button alike.
    void upSelectsTheFolderWeCameFrom() {
        Explorer* w = app->newWindow(url(tree->path("Sub/Deeper")));
        QVERIFY(QTest::qWaitForWindowActive(w));
        w->focusFileList();
        QVERIFY(press(w, keys::Up, alt));
        QCOMPARE(w->current().toLocalFile(), tree->path("Sub"));
        QTRY_COMPARE(names(*w, true), QStringList{"Deeper"});
        w->widgets().upButton->click();
        QCOMPARE(w->current().toLocalFile(), tree->path());
        QTRY_COMPARE(names(*w, true), QStringList{"Sub"});
    }

    // The mouse's Back and Forward buttons walk the history wherever the pointer is; a middle click
    // on a folder opens it in a new tab and leaves the selection alone.
    void otherMouseButtons() {
        Explorer* w = app->newWindow(url(tree->path()));
        QVERIFY(QTest::qWaitForWindowExposed(w));
        QVERIFY(w->navigate(url(tree->path("Sub"))));
        QWidget* viewport = w->table()->viewport();
        QTest::mouseClick(viewport, Qt::BackButton, {}, QPoint(20, 10));
        QCOMPARE(w->current().toLocalFile(), tree->path());
        QTest::mouseClick(w->widgets().status, Qt::ForwardButton);
        QCOMPARE(w->current().toLocalFile(), tree->path("Sub"));
        w->back();
        QTRY_VERIFY(names(*w).contains("Other"));
        selectNames(*w, {"a.txt"});
        const int other = int(names(*w).indexOf("Other"));
        QTest::mouseClick(viewport, Qt::MiddleButton, {},
                          w->table()->visualRect(w->table()->model()->index(other, 0)).center());
        QCOMPARE(w->tabs().count(), 2);
        QCOMPARE(w->current().toLocalFile(), tree->path("Other"));
        w->activateTab(0);
        QCOMPARE(w->current().toLocalFile(), tree->path());
        // A middle click on a file opens nothing and selects nothing.
        selectNames(*w, {"a.txt"});
        const int b = int(names(*w).indexOf("b.txt"));
        QTest::mouseClick(viewport, Qt::MiddleButton, {},
                          w->table()->visualRect(w->table()->model()->index(b, 0)).center());
        QCOMPARE(w->tabs().count(), 2);
        QCOMPARE(names(*w, true), QStringList{"a.txt"});
    }

    void sortStateSurvivesTabsAndGroupingPersists() {
        Explorer* w = app->newWindow(url(tree->path()));
        w->findChild<ListingCommands*>()->setSort(QStringLiteral("size"), false);
        QCOMPARE(names(*w).first(), QStringLiteral("b.txt"));
        w->newTab();
        QCOMPARE(w->listing().sort().key, QStringLiteral("size"));
        w->commands().run(QStringLiteral("groupChoice"), true);
        QCOMPARE(names(*w).mid(0, 2), QStringList({"Sub", "Other"}));
        Explorer* second = app->newWindow(url(tree->path()));
        QVERIFY(second->listing().sort().groupByType);
        QCOMPARE(second->listing().sort().key, QStringLiteral("name"));
    }
};

ORVANE_TEST_MAIN(ExplorerTest)
#include "ExplorerTest.moc"
