#include "fileops/ExplorerFileOps.h"
#include "core/ExplorerEvents.h"
#include "core/Jobs.h"
#include "core/PinnedStore.h"
#include "core/WindowCommands.h"
#include "fileops/FileClipboard.h"
#include "fileops/FileNames.h"
#include "kit/TransferProgressEdge.h"
#include "support/TempTree.h"
#include "support/TestEnvironment.h"
#include "support/WindowDriver.h"
#include "support/WindowFixture.h"
#include "views/ExplorerColumns.h"
#include "views/ExplorerIconCanvas.h"
#include "views/ExplorerIconView.h"
#include "views/ExplorerViewModes.h"
#include "views/FileTable.h"
#include "window/AppDelegate.h"
#include "window/Explorer.h"

#include <QAbstractButton>
#include <QClipboard>
#include <QDir>
#include <QInputDialog>
#include <QLabel>
#include <QLineEdit>
#include <QMessageBox>
#include <QMimeData>
#include <QProcess>
#include <QSignalSpy>
#include <QTimer>
#include <QToolButton>

using namespace orvane;
using orvane::test::TempTree;
using namespace orvane::test;

Q_DECLARE_METATYPE(orvane::test::Key)

class ExplorerFileOpsTest : public QObject, WindowFixture {
    Q_OBJECT
    ExplorerFileOps* ops() { return dynamic_cast<ExplorerFileOps*>(w->inlineRename()); }

    // The window in front with the table focused, as after a click into it.
    void focusTable() {
        QVERIFY(QTest::qWaitForWindowActive(w));
        QTRY_VERIFY(!w->entries().empty());
        w->table()->setFocus();
    }
    QStringList selectedNames() const {
        QStringList names;
        for (const Entry& e : w->selected())
            names << e.name();
        return names;
    }
    QString textOf(const QString& name, const char* column) const {
        for (size_t row = 0; row < w->entries().size(); ++row)
            if (w->entries()[row].name() == name)
                return w->table()
                    ->model()
                    ->index(int(row), explorerColumnIndex(QLatin1String(column)))
                    .data()
                    .toString();
        return QStringLiteral("(no row)");
    }
    // The editors over the table that are still on show.
    int editorsShown() const {
        int shown = 0;
        for (const QLineEdit* field : w->table()->viewport()->findChildren<QLineEdit*>())
            shown += field->isVisible();
        return shown;
    }

    void waitForJob() {
        QSignalSpy done(ops(), &ExplorerFileOps::jobFinished);
        if (w->busy()) QVERIFY(done.wait(20000));
    }

private slots:
    void init() {
        startProgram();
        tree->file("hello.txt", "hello");
        tree->file("ملاحظات.txt", "notes");
        tree->folder("Box/Inner");
        openWindow();
    }
    void cleanup() { stopProgram(); }

    void archivesAreMadeAndUndoneThroughTheWindow_data() {
        QTest::addColumn<QString>("command");
        QTest::addColumn<QString>("selected");
        QTest::addColumn<QString>("made");
        QTest::addColumn<QString>("status");
        QTest::newRow("compress") << "compressAction"
                                  << "hello.txt"
                                  << "hello.txt.zip"
                                  << "Created hello.txt.zip · Ctrl+Z to undo";
        QTest::newRow("extract") << "extractHere"
                                 << "pack.zip"
                                 << "pack"
                                 << "Extracted pack · Ctrl+Z to undo";
    }
    // The job holds the window, selects what it made, and the one undo step takes only that away.
    void archivesAreMadeAndUndoneThroughTheWindow() {
        QFETCH(QString, command);
        QFETCH(QString, selected);
        QFETCH(QString, made);
        QFETCH(QString, status);
        QCOMPARE(
            QProcess::execute("sh", {"-c", "cd '" + tree->path() + "' && zip -qr pack.zip hello.txt Box"}),
            0);
        w->refresh();
        w->selectURL(QUrl::fromLocalFile(tree->path(selected)));
        QVERIFY(w->commands().run(command));
        QVERIFY(w->busy());
        waitForJob();
        QCOMPARE(w->widgets().status->text(), status);
        QTRY_COMPARE(selectedNames(), QStringList{made});
        QVERIFY(w->commands().run(QStringLiteral("undoAction")));
        QVERIFY(!QFileInfo::exists(tree->path(made)));
        QCOMPARE(QDir(tree->path()).entryList(QDir::AllEntries | QDir::Hidden | QDir::NoDotAndDotDot),
                 QStringList({"Box", "hello.txt", "pack.zip", "ملاحظات.txt"}));
    }

    // The window is held through the process-wide list of jobs: its edge follows, and neither the
    // window nor the program may end until the paste has.
    void aLongPasteHoldsTheWindowThroughTheJobsList() {
        TempTree source;
        QList<QUrl> files;
        for (int i = 0; i < 2000; ++i)
            files << QUrl::fromLocalFile(source.file(QStringLiteral("f%1.txt").arg(i), "x"));
        FileClipboard::shared().setClipboard(files, false);
        QSignalSpy busy(&w->events(), &ExplorerEvents::busyChanged);
        QVERIFY(w->commands().run(QStringLiteral("pasteAction")));
        QCOMPARE(w->jobs().runningFor(w).size(), 1);
        QVERIFY(w->jobs().holds(w) && w->busy() && w->widgets().transferProgress->running());
        QVERIFY(!app->shouldTerminate());
        app->lastAlert()->close();
        QVERIFY(!w->close());
        w->lastAlert()->close();
        waitForJob();
        QVERIFY(!w->jobs().anyHolding() && !w->busy());
        QCOMPARE(busy.size(), 2);
        QTRY_VERIFY(!w->widgets().transferProgress->running());
        QCOMPARE(QDir(tree->path()).entryList(QDir::Files).size(), 2002);
        QVERIFY(app->shouldTerminate());
    }

    // Escape stops a paste: what arrived is whole and its undo step takes it away again.
    void escapeCancelsAPaste() {
        TempTree source;
        QList<QUrl> files;
        for (int i = 0; i < 2000; ++i)
            files << QUrl::fromLocalFile(source.file(QStringLiteral("f%1.txt").arg(i), "x"));
        FileClipboard::shared().setClipboard(files, false);
        QVERIFY(w->commands().run(QStringLiteral("pasteAction")));
        QVERIFY(w->widgets().cancelJobButton->isVisibleTo(w));
        QTest::keyClick(w->table(), Qt::Key_Escape);
        waitForJob();
        QVERIFY(!w->widgets().cancelJobButton->isVisibleTo(w));
        QVERIFY(w->widgets().status->text().startsWith(QStringLiteral("Cancelled · ")));
        const QFileInfoList arrived = QDir(tree->path()).entryInfoList({"f*.txt"}, QDir::Files);
        QVERIFY(arrived.size() < 2000);
        for (const QFileInfo& file : arrived)
            QCOMPARE(file.size(), 1);
        if (!arrived.isEmpty()) ops()->undoAction();
        QCOMPARE(QDir(tree->path()).entryList({"f*.txt"}, QDir::Files).size(), 0);
    }

    void copyPasteMakesACopyAndUndoTrashesIt() {
        selectNames(*w, {"hello.txt"});
        ops()->copyAction();
        QCOMPARE(w->widgets().status->text(), QStringLiteral("1 items copied"));
        ops()->pasteAction();
        QVERIFY(w->busy());
        QVERIFY(!w->close()); // a running transfer holds the window open
        takeAlert(*w);
        waitForJob();
        QVERIFY(QFile::exists(tree->path("hello - Copy.txt")));
        QCOMPARE(w->widgets().status->text(), QStringLiteral("1 items copied · Ctrl+Z to undo"));
        QTRY_VERIFY(!w->widgets().transferProgress->running());
        ops()->undoAction();
        QVERIFY(!QFile::exists(tree->path("hello - Copy.txt")));
        QVERIFY(QFile::exists(tree->path("hello.txt")));
        QCOMPARE(w->widgets().status->text(), QStringLiteral("Last file operation undone"));
    }

    // What a paste brought is what is selected afterwards.
    void pastedItemsAreSelected() {
        selectNames(*w, {"hello.txt", "ملاحظات.txt"});
        ops()->copyAction();
        QVERIFY(w->navigate(QUrl::fromLocalFile(tree->path("Box"))));
        ops()->pasteAction();
        waitForJob();
        QTRY_COMPARE(selectedNames(), QStringList({"hello.txt", "ملاحظات.txt"}));
        QVERIFY(w->navigate(QUrl::fromLocalFile(tree->path())));
        selectNames(*w, {"hello.txt"});
        ops()->copyAction();
        ops()->pasteAction();
        waitForJob();
        QTRY_COMPARE(selectedNames(), QStringList{"hello - Copy.txt"});
    }

    void cutPasteMovesPinsFollowAndUndoReturns() {
        QVERIFY(w->findChild<NavigationPane*>()->pins().pin(QUrl::fromLocalFile(tree->path("Box"))));
        selectNames(*w, {"Box", "ملاحظات.txt"});
        ops()->cutAction();
        QVERIFY(FileClipboard::shared().isCut(QUrl::fromLocalFile(tree->path("Box"))));
        w->navigate(QUrl::fromLocalFile(tree->folder("Target")));
        ops()->pasteAction();
        waitForJob();
        QVERIFY(QFile::exists(tree->path("Target/Box/Inner")));
        QVERIFY(QFile::exists(tree->path("Target/ملاحظات.txt")));
        QVERIFY(!QFile::exists(tree->path("Box")));
        QVERIFY(
            w->findChild<NavigationPane*>()->pins().contains(QUrl::fromLocalFile(tree->path("Target/Box"))));
        QVERIFY(!FileClipboard::shared().cutHolds());
        ops()->undoAction();
        QVERIFY(QFile::exists(tree->path("Box/Inner")));
        QVERIFY(QFile::exists(tree->path("ملاحظات.txt")));
        QVERIFY(w->findChild<NavigationPane*>()->pins().contains(QUrl::fromLocalFile(tree->path("Box"))));
    }

    // Cut items show faint in the table and the icon views until Escape gives them back.
    void cutItemsShowFaintUntilEscape() {
        selectNames(*w, {"hello.txt"});
        ops()->cutAction();
        const auto row = [this](const char* name) {
            for (size_t i = 0; i < w->entries().size(); ++i)
                if (w->entries()[i].name() == QLatin1String(name)) return int(i);
            return -1;
        };
        ExplorerIconCanvas* canvas = w->findChild<ExplorerViewModes*>()->iconView()->canvas();
        QVERIFY(w->table()->isCutRow(row("hello.txt")));
        QVERIFY(!w->table()->isCutRow(row("Box")));
        QVERIFY(canvas->isDimmed(w->entries()[size_t(row("hello.txt"))]));
        w->table()->setFocus();
        QTest::keyClick(w->table(), Qt::Key_Escape);
        QVERIFY(!w->table()->isCutRow(row("hello.txt")));
        QVERIFY(!canvas->isDimmed(w->entries()[size_t(row("hello.txt"))]));
    }

    void aForeignCopyTurnsTheCutIntoACopy() {
        selectNames(*w, {"hello.txt"});
        ops()->cutAction();
        auto* data = new QMimeData;
        data->setUrls({QUrl::fromLocalFile(tree->path("hello.txt"))});
        QGuiApplication::clipboard()->setMimeData(data);
        QTRY_VERIFY(!FileClipboard::shared().cutHolds());
        w->navigate(QUrl::fromLocalFile(tree->path("Box")));
        ops()->pasteAction();
        waitForJob();
        QVERIFY(QFile::exists(tree->path("Box/hello.txt")));
        QVERIFY(QFile::exists(tree->path("hello.txt")));
    }

    void intoItselfIsRefusedForTheWholeBatch() {
        selectNames(*w, {"Box", "hello.txt"});
        ops()->copyAction();
        w->navigate(QUrl::fromLocalFile(tree->path("Box/Inner")));
        ops()->pasteAction();
        QVERIFY(!w->busy());
        QCOMPARE(takeAlert(*w), QStringLiteral("Cannot copy a folder into itself|") + tree->path("Box"));
        QVERIFY(!QFile::exists(tree->path("Box/Inner/hello.txt")));
    }

    void newFolderOpensTheEditorWhichSurvivesTheWatcher() {
        ops()->newFolder();
        QVERIFY(QFileInfo(tree->path("New Folder")).isDir());
        QPointer<QLineEdit> editor = ops()->renameEditor();
        QVERIFY(editor);
        QCOMPARE(editor->text(), QStringLiteral("New Folder"));
        tree->file("appeared.txt");
        auto* content = dynamic_cast<LocalFolderContent*>(w->contentFor(w->current()));
        QTRY_VERIFY(content->changesWaiting());
        QVERIFY(ops()->renameEditor());
        editor->setText(QStringLiteral("Projects"));
        ops()->finishInlineRename(true);
        QVERIFY(QFileInfo(tree->path("Projects")).isDir());
        QVERIFY(!content->changesWaiting());
        QVERIFY(std::any_of(w->entries().begin(), w->entries().end(),
                            [](const Entry& e) { return e.name() == QLatin1String("appeared.txt"); }));
        ops()->newFolder();
        ops()->finishInlineRename(true); // an untouched editor keeps the default name
        ops()->newFolder();
        QCOMPARE(ops()->renameEditor()->text(), QStringLiteral("New Folder (2)"));
    }

    void renameRefusals_data() {
        QTest::addColumn<QString>("name");
        QTest::addColumn<QString>("alert");
        QTest::newRow("taken") << "ملاحظات.txt"
                               << "Cannot rename|An item with that name already exists.";
        QTest::newRow("slash") << "a/b"
                               << "Invalid name|Enter a name without / or :.";
        QTest::newRow("colon") << "a:b"
                               << "Invalid name|Enter a name without / or :.";
    }
    void renameRefusals() {
        QFETCH(QString, name);
        QFETCH(QString, alert);
        selectNames(*w, {"hello.txt"});
        ops()->renameAction();
        QVERIFY(ops()->renameEditor());
        QCOMPARE(ops()->renameEditor()->selectedText(), QStringLiteral("hello"));
        ops()->renameEditor()->setText(name);
        ops()->finishInlineRename(true);
        QCOMPARE(takeAlert(*w), alert);
        QVERIFY(QFile::exists(tree->path("hello.txt")));
        QCOMPARE(QFile(tree->path("ملاحظات.txt")).size(), qint64(5));
    }

    // Return ends the edit and nothing else: the list never hears it, so no editor reopens, and the
    // next key acts on the renamed file.
    void returnEndsTheRenameAndNothingElse_data() {
        QTest::addColumn<Key>("start");
        QTest::addColumn<Key>("end");
        QTest::newRow("F2 then Return") << keys::F2 << keys::Return;
        QTest::newRow("Return then Enter") << keys::Return << keys::Enter;
    }
    void returnEndsTheRenameAndNothingElse() {
        QFETCH(Key, start);
        QFETCH(Key, end);
        focusTable();
        selectNames(*w, {"hello.txt"});
        QVERIFY(press(w, start));
        QVERIFY(ops()->renameEditor());
        typeText(w, QStringLiteral("zebra"));
        QVERIFY(press(w, end));
        QVERIFY(QFile::exists(tree->path("zebra.txt")));
        QVERIFY(!ops()->renameEditor());
        QTRY_COMPARE(editorsShown(), 0);
        QCOMPARE(selectedNames(), QStringList{"zebra.txt"});
        QString asked;
        QTimer::singleShot(0, [&asked] {
            auto* box = qobject_cast<QMessageBox*>(QApplication::activeModalWidget());
            if (!box) return;
            asked = box->text();
            box->reject();
        });
        QVERIFY(press(w, keys::Delete));
        QCOMPARE(asked, QStringLiteral("Move \"zebra.txt\" to Trash?"));
        QVERIFY(QFile::exists(tree->path("zebra.txt")));
    }

    // A new folder named from the keyboard leaves no editor behind and shows its date at once.
    void newFolderNamedByKeysIsComplete() {
        focusTable();
        QVERIFY(press(w, keys::N, primary | shift));
        QVERIFY(ops()->renameEditor());
        typeText(w, QStringLiteral("Projects"));
        QVERIFY(press(w, keys::Return));
        QVERIFY(QFileInfo(tree->path("Projects")).isDir());
        QTRY_COMPARE(editorsShown(), 0);
        QCOMPARE(selectedNames(), QStringList{"Projects"});
        const QString modified = textOf(QStringLiteral("Projects"), "modified");
        QVERIFY2(!modified.isEmpty() && modified != QStringLiteral("—"), qPrintable(modified));
        // The watcher's re-read must have come and gone; only waiting past the burst shows it.
        QTest::qWait(2 * LocalFolderContent::burstMs); // UNAVOIDABLE: proves an absence
        QCOMPARE(textOf(QStringLiteral("Projects"), "modified"), modified);
        QCOMPARE(editorsShown(), 0);
    }

    // A refused name is not lost: once the alert is read, the editor is back with what was typed.
    void refusedRenameKeepsTheTypedText() {
        focusTable();
        selectNames(*w, {"hello.txt"});
        QVERIFY(press(w, keys::F2));
        ops()->renameEditor()->setText(QStringLiteral("ملاحظات.txt"));
        QVERIFY(press(w, keys::Return));
        QCOMPARE(selectedNames(), QStringList{"hello.txt"});
        QTRY_VERIFY(w->lastAlert());
        QCOMPARE(takeAlert(*w), QStringLiteral("Cannot rename|An item with that name already exists."));
        QTRY_VERIFY(ops()->renameEditor());
        QCOMPARE(ops()->renameEditor()->text(), QStringLiteral("ملاحظات.txt"));
        QCOMPARE(selectedNames(), QStringList{"hello.txt"});
        QVERIFY(press(w, keys::Escape));
        QVERIFY(!ops()->renameEditor());
        QVERIFY(QFile::exists(tree->path("hello.txt")));
    }

    // Another row clicked while the refused name is still in the editor: the refused text goes,
    // rather than standing over the row as a second item of that name.
    void clickingAwayFromARefusedNameDropsIt() {
        w->resize(1000, 600);
        focusTable();
        selectNames(*w, {"hello.txt"});
        QVERIFY(press(w, keys::F2));
        ops()->renameEditor()->setText(QStringLiteral("ملاحظات.txt"));
        QVERIFY(press(w, keys::Return));
        QTRY_VERIFY(w->lastAlert());
        takeAlert(*w);
        QTRY_VERIFY(ops()->renameEditor());
        int other = 0;
        while (w->entries()[size_t(other)].name() != QStringLiteral("ملاحظات.txt"))
            ++other;
        const QRect row = w->table()->visualRect(w->table()->model()->index(other, 1));
        QTest::mouseClick(w->table()->viewport(), Qt::LeftButton, {}, row.center());
        QTRY_COMPARE(editorsShown(), 0);
        QVERIFY(!w->lastAlert()->isVisible());
        QCOMPARE(selectedNames(), QStringList{"ملاحظات.txt"});
        QVERIFY(QFile::exists(tree->path("hello.txt")));
    }

    void escapeCancelsTheRename() {
        focusTable();
        selectNames(*w, {"hello.txt"});
        ops()->renameAction();
        ops()->renameEditor()->setText(QStringLiteral("other.txt"));
        QTest::keyClick(ops()->renameEditor(), Qt::Key_Escape);
        QVERIFY(!ops()->renameEditor());
        QVERIFY(QFile::exists(tree->path("hello.txt")));
        // The editor leaving hands the focus back without moving the selection to another item.
        QCOMPARE(selectedNames(), QStringList{"hello.txt"});
    }

    void slowSecondClickRenamesAndDoubleClickDoesNot() {
        w->resize(1000, 600);
        selectNames(*w, {"hello.txt"});
        int row = 0;
        while (w->entries()[size_t(row)].name() != QLatin1String("hello.txt"))
            ++row;
        QWidget* viewport = w->table()->viewport();
        const QPoint onName = w->table()->visualRect(w->table()->model()->index(row, 0)).center();
        QTest::mouseClick(viewport, Qt::LeftButton, {}, onName);
        QVERIFY(ops()->renameClickURL.isValid());
        QTRY_VERIFY_WITH_TIMEOUT(ops()->renameEditor(), 3000);
        ops()->finishInlineRename(false);
        QTest::mouseClick(viewport, Qt::LeftButton, {}, onName);
        QTest::mouseDClick(viewport, Qt::LeftButton, {}, onName);
        QVERIFY(!ops()->renameClickURL.isValid());
    }

    void trashAndItsUndo() {
        selectNames(*w, {"hello.txt"});
        answerNextDialog(QStringLiteral("Cancel"));
        ops()->trashAction();
        QVERIFY(QFile::exists(tree->path("hello.txt")));
        answerNextDialog(QStringLiteral("Move to Trash"));
        ops()->trashAction();
        QVERIFY(!QFile::exists(tree->path("hello.txt")));
        const QString trashed = QStandardPaths::writableLocation(QStandardPaths::GenericDataLocation) +
                                QStringLiteral("/Trash/files/hello.txt");
        QVERIFY(QFile::exists(trashed));
        ops()->undoAction();
        QVERIFY(QFile::exists(tree->path("hello.txt")));
        QVERIFY(!QFile::exists(trashed));
    }

    void permanentDeleteLeavesNothingToUndo() {
        selectNames(*w, {"hello.txt"});
        ops()->copyAction();
        ops()->pasteAction();
        waitForJob();
        QVERIFY(ops()->fileUndo);
        selectNames(*w, {"Box"});
        answerNextDialog(QStringLiteral("Delete permanently"));
        ops()->permanentlyDeleteAction();
        waitForJob();
        QVERIFY(!QFile::exists(tree->path("Box")));
        QCOMPARE(w->widgets().status->text(), QStringLiteral("1 items permanently deleted"));
        QVERIFY(!ops()->fileUndo);
    }

    void newTextDocumentAsksForAName() {
        // The name offered has its stem chosen, as a renamed file's editor does.
        QString chosen;
        QTimer::singleShot(0, [&chosen] {
            QTimer::singleShot(0, [&chosen] {
                auto* input = qobject_cast<QInputDialog*>(QApplication::activeModalWidget());
                if (!input) return;
                chosen = input->findChild<QLineEdit*>()->selectedText();
                input->reject();
            });
        });
        ops()->newTextDocument();
        QCOMPARE(chosen, QFileInfo(FileNames::newDocumentName()).completeBaseName());
        answerNextDialog(QStringLiteral("OK"), QStringLiteral("todo.txt"));
        ops()->newTextDocument();
        QVERIFY(QFile::exists(tree->path("todo.txt")));
        answerNextDialog(QStringLiteral("OK"), QStringLiteral("todo.txt"));
        ops()->newTextDocument();
        QVERIFY(takeAlert(*w).startsWith(QLatin1String("Cannot create document|")));
        answerNextDialog(QStringLiteral("Cancel"));
        ops()->newTextDocument();
        QCOMPARE(QDir(tree->path()).entryList(QDir::Files).size(), 3);
    }
};

ORVANE_TEST_MAIN(ExplorerFileOpsTest)
#include "ExplorerFileOpsTest.moc"
