// The search field of a real window: scopes, the scope button's words, the results standing in for
// the listing, and the way back to the folder.
#include "search/WindowSearch.h"
#include "chrome/DetailsPane.h"
#include "core/Jobs.h"
#include "kit/EditablePathBox.h"
#include "phone/BridgeHarness.h"
#include "phone/PhoneLocation.h"
#include "support/TempTree.h"
#include "support/TestEnvironment.h"
#include "support/WindowDriver.h"
#include "support/WindowFixture.h"
#include "views/ExplorerColumns.h"
#include "views/FileTable.h"
#include "window/AppDelegate.h"
#include "window/Explorer.h"

#include <QHeaderView>
#include <QLabel>
#include <QLineEdit>
#include <QToolButton>

using namespace orvane;
using namespace orvane::test;

class WindowSearchTest : public QObject, WindowFixture {
    Q_OBJECT
    WindowSearch* search = nullptr;

    QStringList names() const {
        QStringList out;
        for (const Entry& e : w->entries())
            out << e.name();
        return out;
    }
    QString status() const { return w->widgets().status->text(); }
    void type(const QString& text) {
        w->widgets().searchField->clear();
        QTest::keyClicks(w->widgets().searchField, text);
    }

private slots:
    void init() {
        startProgram();
        tree->file(QStringLiteral("Top notes.txt"));
        tree->file(QStringLiteral("Work/2024/Quarterly Notes.md"));
        tree->file(QStringLiteral("Work/plan.txt"));
        tree->file(QStringLiteral(".hidden/notes inside.txt"));
        openWindow();
        search = w->findChild<WindowSearch*>();
        QVERIFY(search);
        QTRY_COMPARE(int(w->entries().size()), 2);
    }
    void cleanup() { stopProgram(); }

    void subfoldersFindNestedNames() {
        w->commands().run(QStringLiteral("changeSearchScope"), 1);
        type(QStringLiteral("notes"));
        QCOMPARE(status(), QStringLiteral("Searching…"));
        QCOMPARE(w->windowTitle(), QStringLiteral("Search — ") + folderName(w->current()));
        QVERIFY(w->widgets().clearSearchButton->isVisible() || !w->isVisible());
        QTRY_COMPARE(status(), QStringLiteral("2 results · Folder + subfolders"));
        QVERIFY(w->jobs().running().isEmpty()); // the walk's job ended with it
        QCOMPARE(names(), (QStringList{"Quarterly Notes.md", "Top notes.txt"}));
        QCOMPARE(w->entries().front().location, tree->path(QStringLiteral("Work/2024/Quarterly Notes.md")));
        QVERIFY(w->widgets().emptyLabel->isHidden());

        // Each result says where it lies beneath the folder searched, sorts by it, and the details
        // pane names it; the column goes with the search.
        const int folder = explorerColumnIndex(QStringLiteral("folder"));
        QVERIFY(w->table()->columnShown(QStringLiteral("folder")));
        QCOMPARE(w->table()->model()->index(0, folder).data().toString(), QStringLiteral("Work/2024"));
        w->commands().run(QStringLiteral("reverseSort"));
        QTest::mouseClick(w->table()->horizontalHeader()->viewport(), Qt::LeftButton, {},
                          QPoint(w->table()->horizontalHeader()->sectionViewportPosition(folder) + 20, 10));
        QCOMPARE(names(), (QStringList{"Top notes.txt", "Quarterly Notes.md"}));
        selectNames(*w, {"Quarterly Notes.md"});
        w->commands().run(QStringLiteral("toggleDetails"));
        QVERIFY(w->widgets().detailsPane->meta().endsWith(QStringLiteral("Folder\nWork/2024")));
        QTest::mouseClick(w->widgets().clearSearchButton, Qt::LeftButton);
        QTRY_VERIFY(!w->table()->columnShown(QStringLiteral("folder")));
    }

    void nothingFoundSaysSo() {
        w->commands().run(QStringLiteral("changeSearchScope"), 1);
        type(QStringLiteral("zebra"));
        QTRY_COMPARE(status(), QStringLiteral("0 results · Folder + subfolders"));
        QCOMPARE(w->widgets().emptyLabel->text(), QStringLiteral("No matching items"));
        QVERIFY(!w->widgets().emptyLabel->isHidden());
    }

    void anUnavailableIndexSaysWhy() {
        const QByteArray before = qgetenv("ORVANE_LOCATE_DB");
        qputenv("ORVANE_LOCATE_DB", QFile::encodeName(tree->path("missing.db")));
        w->commands().run(QStringLiteral("changeSearchScope"), 2);
        type(QStringLiteral("notes"));
        QTRY_COMPARE(status(), QStringLiteral("Search index unavailable"));
        qputenv("ORVANE_LOCATE_DB", before);
        QVERIFY(w->widgets().emptyLabel->text().contains("missing.db: No such file or directory"));
        QVERIFY(!w->widgets().emptyLabel->isHidden());
    }

    // With text in the field a scope change searches again at once; with none, only the words change.
    void aScopeChangeRestartsTheSearch() {
        w->commands().run(QStringLiteral("changeSearchScope"), 2);
        QCOMPARE(names().size(), 2);
        QCOMPARE(w->widgets().searchScopeButton->toolTip(),
                 QStringLiteral("Search: this computer (indexed locations)"));
        w->commands().run(QStringLiteral("changeSearchScope"), 0);
        type(QStringLiteral("plan"));
        QVERIFY(names().isEmpty());
        QCOMPARE(w->widgets().emptyLabel->text(), QStringLiteral("No matching items in this folder"));
        w->commands().run(QStringLiteral("changeSearchScope"), 1);
        QCOMPARE(status(), QStringLiteral("Searching…"));
        QTRY_COMPARE(names(), QStringList{"plan.txt"});
        w->commands().run(QStringLiteral("changeSearchScope"), 0);
        QTRY_VERIFY(names().isEmpty());
        QCOMPARE(w->windowTitle(), folderName(w->current()) + QStringLiteral(" — Orvane"));
    }

    void clearingTheFieldBringsBackTheFolder() {
        w->commands().run(QStringLiteral("changeSearchScope"), 1);
        type(QStringLiteral("plan"));
        QTRY_COMPARE(names(), QStringList{"plan.txt"});
        QTest::mouseClick(w->widgets().clearSearchButton, Qt::LeftButton);
        QTRY_COMPARE(names(), (QStringList{"Top notes.txt", "Work"}));
        QCOMPARE(status(), QStringLiteral("2 items"));
        QVERIFY(w->widgets().searchField->text().isEmpty());
        QCOMPARE(w->windowTitle(), folderName(w->current()) + QStringLiteral(" — Orvane"));
    }

    // Showing hidden items is part of the search: the hidden folder is searched only then.
    void hiddenFoldersFollowTheWindow() {
        w->commands().run(QStringLiteral("changeSearchScope"), 1);
        type(QStringLiteral("inside"));
        QTRY_COMPARE(status(), QStringLiteral("0 results · Folder + subfolders"));
        w->commands().run(QStringLiteral("toggleHidden"));
        QTRY_COMPARE(names(), QStringList{"notes inside.txt"});
    }

    // Going somewhere else empties the field and lists the folder, and a late result is not shown.
    void navigationEndsTheSearch() {
        w->commands().run(QStringLiteral("changeSearchScope"), 1);
        type(QStringLiteral("notes"));
        QVERIFY(w->navigate(QUrl::fromLocalFile(tree->path(QStringLiteral("Work")))));
        QTRY_COMPARE(names(), (QStringList{"2024", "plan.txt"}));
        // Nothing may start once the debounce has passed, which only waiting can show.
        QTest::qWait(ExplorerSearch::debounceMs + 200); // UNAVOIDABLE: proves an absence
        QCOMPARE(names(), (QStringList{"2024", "plan.txt"}));
        QVERIFY(w->widgets().searchField->text().isEmpty());
    }

    // A phone tab's deeper scopes walk the phone here, through the real bridge, and clearing the
    // field gives the folder's own listing back.
    void aPhoneTabSearchesThePhone() {
        TempTree phone;
        phone.file(QStringLiteral("Internal storage/DCIM/Photo 1.jpg"));
        phone.file(QStringLiteral("Internal storage/Music/photo song.mp3"));
        phone.file(QStringLiteral("SD card/photos.txt"));
        simulate(phone.path());
        PhoneItem root;
        root.storage = storage.toUInt();
        root.id = phoneRootHandle;
        root.name = QStringLiteral("Internal storage");
        root.folder = true;
        QVERIFY(w->navigate(PhoneLocation::url({root})));
        QToolButton* button = w->widgets().searchScopeButton;
        w->commands().run(QStringLiteral("changeSearchScope"), 2);
        QCOMPARE(button->toolTip(), QStringLiteral("Search: this phone (all storage)"));
        w->commands().run(QStringLiteral("changeSearchScope"), 1);
        type(QStringLiteral("PHOTO"));
        QCOMPARE(status(), QStringLiteral("Searching phone…"));
        QTRY_COMPARE(status(), QStringLiteral("2 results · Folder + subfolders"));
        QCOMPARE(names(), (QStringList{"Photo 1.jpg", "photo song.mp3"}));
        const QList<PhoneItem> chain =
            search->phoneResultChain(w->entries().front().location.section(u'/', 3, 4).replace(u'/', u':'));
        QCOMPARE(chain.size(), 2);
        QCOMPARE(chain.last().name, QStringLiteral("DCIM"));

        // A hit is an item like any other: copied, described, and a folder hit opens that folder.
        selectNames(*w, {"Photo 1.jpg"});
        QVERIFY(w->commands().isEnabled(QStringLiteral("saveFromAndroid")));
        QVERIFY(w->commands().isEnabled(QStringLiteral("renameAction")));
        w->commands().run(QStringLiteral("toggleDetails"));
        QCOMPARE(w->widgets().detailsPane->title(), QStringLiteral("Photo 1.jpg"));
        w->commands().run(QStringLiteral("toggleDetails"));
        type(QStringLiteral("music"));
        QTRY_COMPARE(names(), QStringList{"Music"});
        QTRY_VERIFY(status().startsWith(QStringLiteral("1 results")));
        selectNames(*w, {"Music"});
        QVERIFY(w->commands().run(QStringLiteral("openSelected")));
        QTRY_COMPARE(names(), QStringList{"photo song.mp3"});
        QCOMPARE(w->widgets().pathBox->addressField()->text(),
                 QStringLiteral("Android USB/Internal storage/Music"));
        QVERIFY(w->navigate(PhoneLocation::url({root})));
        QTRY_COMPARE(names(), (QStringList{"DCIM", "Music"}));
        type(QStringLiteral("PHOTO"));
        QTRY_COMPARE(status(), QStringLiteral("2 results · Folder + subfolders"));
        QTest::mouseClick(w->widgets().clearSearchButton, Qt::LeftButton);
        QTRY_COMPARE(names(), (QStringList{"DCIM", "Music"}));
        QTRY_COMPARE(status(), QStringLiteral("2 items • Double-click a folder to open it"));
    }

    void theScopeButtonNamesItsScope_data() {
        QTest::addColumn<int>("scope");
        QTest::addColumn<QString>("words");
        QTest::newRow("this folder") << 0 << "Search: this folder only";
        QTest::newRow("subfolders") << 1 << "Search: folder and subfolders";
        QTest::newRow("computer") << 2 << "Search: this computer (indexed locations)";
    }
    void theScopeButtonNamesItsScope() {
        QFETCH(int, scope);
        QFETCH(QString, words);
        QToolButton* button = w->widgets().searchScopeButton;
        QCOMPARE(button->accessibleName(), QStringLiteral("Search scope"));
        w->commands().run(QStringLiteral("changeSearchScope"), scope);
        QCOMPARE(button->toolTip(), words);
        QCOMPARE(button->accessibleName(), words);
        QVERIFY(w->commands().isChecked(QStringLiteral("changeSearchScope"), scope));
        QCOMPARE(WindowSearch::scopeTitle(2, true), QStringLiteral("This phone (all storage)"));
    }
};

ORVANE_TEST_MAIN(WindowSearchTest)
#include "WindowSearchTest.moc"
