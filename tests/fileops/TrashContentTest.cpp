#include "fileops/TrashContent.h"
#include "core/Jobs.h"
#include "core/WindowCommands.h"
#include "fileops/ExplorerFileOps.h"
#include "fileops/FileTree.h"
#include "kit/EditablePathBox.h"
#include "support/TempTree.h"
#include "support/TestEnvironment.h"
#include "support/WindowDriver.h"
#include "support/WindowFixture.h"
#include "views/ExplorerColumns.h"
#include "views/FileTable.h"
#include "window/AppDelegate.h"
#include "window/Explorer.h"

#include <QLabel>
#include <QLineEdit>

using namespace orvane;
using namespace orvane::test;

// The Trash of the test's own data folder, filled the way the window fills it, shown in a real window.
class TrashContentTest : public QObject, WindowFixture {
    Q_OBJECT

    QString cell(const QString& name, const char* column) const {
        for (size_t row = 0; row < w->entries().size(); ++row)
            if (w->entries()[row].name() == name)
                return w->table()
                    ->model()
                    ->index(int(row), explorerColumnIndex(QLatin1String(column)))
                    .data()
                    .toString();
        return QStringLiteral("(not listed)");
    }
    void trash(const QString& path) {
        QString trashed, error;
        QVERIFY2(DesktopTrash::moveIn(path, trashed, error), qPrintable(error));
    }
    void waitForJobs() { QTRY_VERIFY_WITH_TIMEOUT(!w->busy(), 20000); }
    void openTrash() {
        QVERIFY(w->navigate(TrashContent::place()));
        QTRY_VERIFY(!w->entries().empty());
    }

private slots:
    void init() {
        startProgram();
        trash(tree->file(QStringLiteral("a.txt"), "a"));
        trash(tree->file(QStringLiteral("Old/b.txt"), "b"));
        openWindow();
    }
    void cleanup() {
        for (const DesktopTrash::Record& record : DesktopTrash::contents())
            TrashItems::erase({record.trashed});
        stopProgram();
    }

    // Typed in the address box, trash:/// shows every deleted item beside where it lay and when it went.
    void theAddressShowsWhatWasDeleted() {
        w->widgets().pathBox->addressField()->setText(QStringLiteral("trash:///"));
        emit w->widgets().pathBox->addressEntered();
        QTRY_COMPARE(w->entries().size(), size_t(2));
        QCOMPARE(w->windowTitle(), QStringLiteral("Trash — Orvane"));
        QCOMPARE(cell(QStringLiteral("b.txt"), "origin"), tree->path(QStringLiteral("Old")));
        QCOMPARE(cell(QStringLiteral("a.txt"), "origin"), tree->path());
        QVERIFY(cell(QStringLiteral("a.txt"), "deleted").endsWith(QLatin1String("M")));
        QVERIFY(w->table()->isColumnVisible(QStringLiteral("origin")));
        QVERIFY(w->navigate(QUrl::fromLocalFile(tree->path())));
        QVERIFY(!w->table()->isColumnVisible(QStringLiteral("origin")));
        QVERIFY(!w->table()->isColumnVisible(QStringLiteral("deleted")));
    }

    // Nothing is made, pasted or renamed in the Trash; what it gives back it gives with undo.
    void commandsOfTheTrash_data() {
        QTest::addColumn<QString>("command");
        QTest::addColumn<bool>("enabled");
        QTest::newRow("restore") << "restoreFromTrash" << true;
        QTest::newRow("empty") << "emptyTrash" << true;
        QTest::newRow("delete permanently") << "permanentlyDeleteAction" << true;
        QTest::newRow("new folder") << "newFolder" << false;
        QTest::newRow("paste") << "pasteAction" << false;
        QTest::newRow("rename") << "renameAction" << false;
        QTest::newRow("cut") << "cutAction" << false;
    }

    void commandsOfTheTrash() {
        QFETCH(QString, command);
        QFETCH(bool, enabled);
        openTrash();
        selectNames(*w, {QStringLiteral("a.txt")});
        QCOMPARE(w->commands().isEnabled(command), enabled);
    }

    void restoreRecreatesItsFolderAndUndoes() {
        QString error;
        QVERIFY(FileTree::remove(tree->path(QStringLiteral("Old")), error));
        openTrash();
        selectNames(*w, {QStringLiteral("b.txt")});
        QVERIFY(w->commands().run(QStringLiteral("restoreFromTrash")));
        waitForJobs();
        QCOMPARE(TempTree::contents(tree->path(QStringLiteral("Old/b.txt"))), QByteArray("b"));
        QCOMPARE(w->entries().size(), size_t(1));
        QCOMPARE(w->widgets().status->text(), QStringLiteral("1 items restored"));
        QVERIFY(w->commands().run(QStringLiteral("undoAction")));
        QVERIFY(!TempTree::present(tree->path(QStringLiteral("Old/b.txt"))));
        QTRY_COMPARE(w->entries().size(), size_t(2));
    }

    // The Delete key asks before anything leaves the Trash for good, and Empty Trash asks too.
    void deletingAndEmptyingAsk() {
        openTrash();
        selectNames(*w, {QStringLiteral("a.txt")});
        answerNextDialog(QStringLiteral("Cancel"));
        w->commands().run(QStringLiteral("trashAction"));
        QCOMPARE(w->entries().size(), size_t(2));
        answerNextDialog(QStringLiteral("Delete permanently"));
        w->commands().run(QStringLiteral("trashAction"));
        waitForJobs();
        QCOMPARE(w->entries().size(), size_t(1));
        answerNextDialog(QStringLiteral("Cancel"));
        w->commands().run(QStringLiteral("emptyTrash"));
        QCOMPARE(w->entries().size(), size_t(1));
        answerNextDialog(QStringLiteral("Empty Trash"));
        w->commands().run(QStringLiteral("emptyTrash"));
        waitForJobs();
        QVERIFY(w->entries().empty());
        QVERIFY(DesktopTrash::isEmpty());
        QCOMPARE(w->widgets().emptyLabel->text(), QStringLiteral("Trash is empty"));
        QVERIFY(!w->commands().isEnabled(QStringLiteral("emptyTrash")));
    }
};

ORVANE_TEST_MAIN(TrashContentTest)
#include "TrashContentTest.moc"
