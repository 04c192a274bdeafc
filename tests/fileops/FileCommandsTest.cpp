#include "fileops/FileCommands.h"
#include "fileops/FileTrash.h"
#include "fileops/PermanentDelete.h"
#include "platform/NativePath.h"
#include "support/TempTree.h"
#include "support/TestEnvironment.h"

#include <QDir>
#include <QDirIterator>
#include <QFile>
#include <QFileInfo>
#include <QStandardPaths>
#include <optional>

using namespace orvane;
using orvane::test::TempTree;

namespace {
QByteArray contents(const QString& path) {
    QFile f(path);
    return f.open(QIODevice::ReadOnly) ? f.readAll() : QByteArray();
}

// Every .trashinfo under the test home, wherever this Qt keeps its Trash.
QStringList trashInfos() {
    QStringList found;
    QDirIterator it(QDir::homePath(), {"*.trashinfo"}, QDir::Files | QDir::Hidden,
                    QDirIterator::Subdirectories);
    while (it.hasNext())
        found << it.next();
    return found;
}
} // namespace

class FileCommandsTest : public QObject {
    Q_OBJECT
private slots:
    void newFolderTakesNextFreeName();
    void newTextDocument();
    void renameRefused_data();
    void renameRefused();
    void renameAndUndo();
    void trashAndUndoLeaveNoGhost();
    void trashUndoRefusesToReplace();
    void permanentDelete();
    void namesThatAreNotUtf8_data();
    void namesThatAreNotUtf8();
};

void FileCommandsTest::newFolderTakesNextFreeName() {
    TempTree tree;
    const QString folder = tree.folder("here");
    const FileCommandResult first = FileCommands::createFolder(folder);
    QVERIFY(first.ok);
    QCOMPARE(first.path, folder + "/New Folder");
    const FileCommandResult second = FileCommands::createFolder(folder);
    QCOMPARE(second.path, folder + "/New Folder (2)");
    QVERIFY(QFileInfo(second.path).isDir());
    QString error;
    QVERIFY(second.undo(error));
    QVERIFY(!QFileInfo::exists(second.path));
    const FileCommandResult nowhere = FileCommands::createFolder(tree.path("missing"));
    QVERIFY(!nowhere.ok && !nowhere.undo);
    QCOMPARE(nowhere.title, QString("Cannot create folder"));
    QVERIFY(!nowhere.detail.isEmpty());
}

void FileCommandsTest::newTextDocument() {
    TempTree tree;
    const QString folder = tree.folder("here");
    const FileCommandResult made = FileCommands::createTextDocument(folder, "New document.txt");
    QVERIFY(made.ok);
    QCOMPARE(QFileInfo(made.path).size(), 0);
    tree.file("here/New document.txt", "kept");
    const FileCommandResult again = FileCommands::createTextDocument(folder, "New document.txt");
    QVERIFY(!again.ok);
    QCOMPARE(again.title, QString("Cannot create document"));
    QCOMPARE(contents(made.path), QByteArray("kept"));
}

void FileCommandsTest::renameRefused_data() {
    QTest::addColumn<QString>("name");
    QTest::addColumn<QString>("title");
    QTest::addColumn<QString>("detail");
    const QString invalid = "Enter a name without / or :.";
    QTest::newRow("taken") << "b.txt"
                           << "Cannot rename"
                           << "An item with that name already exists.";
    QTest::newRow("taken by a dangling link") << "dangling"
                                              << "Cannot rename"
                                              << "An item with that name already exists.";
    QTest::newRow("slash") << "x/y"
                           << "Invalid name" << invalid;
    QTest::newRow("colon") << "x:y"
                           << "Invalid name" << invalid;
    QTest::newRow("dot dot") << ".."
                             << "Invalid name" << invalid;
}

void FileCommandsTest::renameRefused() {
    QFETCH(QString, name);
    QFETCH(QString, title);
    QFETCH(QString, detail);
    TempTree tree;
    const QString a = tree.file("a.txt", "a");
    tree.file("b.txt", "b");
    QVERIFY(QFile::link(tree.path("nowhere"), tree.path("dangling")));
    const FileCommandResult result = FileCommands::rename(a, name);
    QVERIFY(!result.ok);
    QCOMPARE(result.title, title);
    QCOMPARE(result.detail, detail);
    QCOMPARE(contents(a), QByteArray("a"));
    QCOMPARE(contents(tree.path("b.txt")), QByteArray("b"));
}

void FileCommandsTest::renameAndUndo() {
    TempTree tree;
    const QString old = tree.folder("Projects");
    tree.file("Projects/inner.txt", "i");
    QStringList followed;
    const FileCommandResult result = FileCommands::rename(
        old, "مشاريع", [&](const QString& from, const QString& to) { followed << from << to; });
    QVERIFY(result.ok);
    QCOMPARE(result.path, tree.path("مشاريع"));
    QCOMPARE(contents(result.path + "/inner.txt"), QByteArray("i"));
    QString error;
    QVERIFY(result.undo(error));
    QCOMPARE(contents(old + "/inner.txt"), QByteArray("i"));
    QCOMPARE(followed, QStringList({result.path, old}));
    const FileCommandResult same = FileCommands::rename(old, "Projects");
    QVERIFY(same.ok && !same.undo);
}

void FileCommandsTest::trashAndUndoLeaveNoGhost() {
    TempTree tree;
    const QString file = tree.file("doc.txt", "d");
    const QString folder = tree.folder("box.d");
    tree.file("box.d/in", "i");
    const QStringList before = trashInfos();
    const FileTrash::Batch batch = FileTrash::trash({file, tree.path("missing"), folder});
    QCOMPARE(batch.items.size(), size_t(2));
    QCOMPARE(batch.failures.size(), 1);
    QVERIFY(!batch.failures.at(0).isEmpty());
    QVERIFY(!QFileInfo::exists(file) && !QFileInfo::exists(folder));
    // Qt 6.4 falls back to the working folder when its data folder is missing, as it is in a fresh home.
    QVERIFY(QDir::isAbsolutePath(batch.items[0].trashed));
    QVERIFY(!QDir(QDir::currentPath() + "/files").exists());
    QCOMPARE(trashInfos().size(), before.size() + 2);
    QString error;
    QVERIFY2(FileTrash::undoStep(batch.items)(error), qPrintable(error));
    QCOMPARE(contents(file), QByteArray("d"));
    QCOMPARE(contents(folder + "/in"), QByteArray("i"));
    QCOMPARE(trashInfos(), before);
}

void FileCommandsTest::trashUndoRefusesToReplace() {
    TempTree tree;
    const QString a = tree.file("a.txt", "old");
    const QString b = tree.file("b.txt", "b");
    const FileTrash::Batch batch = FileTrash::trash({a, b});
    tree.file("a.txt", "new one");
    const FileUndo undo = FileTrash::undoStep(batch.items);
    QString error;
    QVERIFY(!undo(error));
    QVERIFY(!error.isEmpty());
    QCOMPARE(contents(a), QByteArray("new one"));
    QVERIFY(!QFileInfo::exists(b)); // the step stops at its first failure
    QFile::remove(a);
    QVERIFY(undo(error)); // and resumes there when run again
    QCOMPARE(contents(a), QByteArray("old"));
    QCOMPARE(contents(b), QByteArray("b"));
}

void FileCommandsTest::permanentDelete() {
    TempTree tree;
    tree.file("tree/a/b/c.txt", "c");
    QVERIFY(QFile::link(tree.path("keep"), tree.path("tree/link")));
    const QString keep = tree.file("keep/k.txt", "k");
    const QString single = tree.file("single.txt");
    QObject context;
    std::optional<PermanentDelete::Result> result;
    PermanentDelete::start({tree.path("tree"), tree.path("missing"), single}, &context,
                           [&](const PermanentDelete::Result& r) { result = r; });
    QTRY_VERIFY(result.has_value());
    QCOMPARE(result->deleted, 2);
    QCOMPARE(result->failures.size(), 1);
    QVERIFY(result->failures.at(0).startsWith("missing: "));
    QCOMPARE(result->statusText(), QString("2 items permanently deleted"));
    QVERIFY(!QFileInfo::exists(tree.path("tree")) && !QFileInfo::exists(single));
    QCOMPARE(contents(keep), QByteArray("k")); // a link is removed, never what it points to
}

void FileCommandsTest::namesThatAreNotUtf8_data() {
    QTest::addColumn<QString>("command");
    QTest::newRow("rename") << "rename";
    QTest::newRow("rename, name left as shown") << "unchanged";
    QTest::newRow("trash") << "trash";
    QTest::newRow("delete") << "delete";
}

// Beside a name with a stray byte lies one with a real U+FFFD: only the named one may change.
void FileCommandsTest::namesThatAreNotUtf8() {
    QFETCH(QString, command);
    TempTree tree;
    const QString stray = tree.rawFile("bad\xFF.txt", "stray");
    const QString lookalike = tree.rawFile("bad\xEF\xBF\xBD.txt", "lookalike");
    FileUndo undo;
    QString error;
    if (command == "rename" || command == "unchanged") {
        const QString name = command == "rename" ? "good.txt" : NativePath::display("bad\xFF.txt");
        const FileCommandResult result = FileCommands::rename(stray, NativePath::display(name));
        QVERIFY2(result.ok, qPrintable(result.detail));
        QCOMPARE(TempTree::contents(result.path), QByteArray("stray"));
        undo = result.undo;
    } else if (command == "trash") {
        const FileTrash::Batch batch = FileTrash::trash({stray});
        QVERIFY2(batch.failures.isEmpty(), qPrintable(batch.failures.join('\n')));
        undo = FileTrash::undoStep(batch.items);
    } else {
        const PermanentDelete::Result result = PermanentDelete::run({stray});
        QCOMPARE(result.deleted, 1);
    }
    QCOMPARE(TempTree::present(stray), command == "unchanged");
    QCOMPARE(TempTree::contents(lookalike), QByteArray("lookalike"));
    if (undo) QVERIFY2(undo(error), qPrintable(error));
    if (command != "delete") QCOMPARE(TempTree::contents(stray), QByteArray("stray"));
    QCOMPARE(TempTree::contents(lookalike), QByteArray("lookalike"));
}

ORVANE_TEST_MAIN(FileCommandsTest)
#include "FileCommandsTest.moc"
