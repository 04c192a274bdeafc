#include "fileops/FileNames.h"
#include "support/TempTree.h"
#include "support/TestEnvironment.h"

#include <QStandardPaths>

#include <QFile>

using namespace orvane;
using orvane::test::TempTree;

class FileNamesTest : public QObject {
    Q_OBJECT
private slots:
    void destinationCollisions_data();
    void destinationCollisions();
    void danglingLinkTakesName();
    void reservedNamesCountAsTaken();
    void newFolderNames();
    void stemRange_data();
    void stemRange();
    void nameRule_data();
    void nameRule();
};

void FileNamesTest::destinationCollisions_data() {
    QTest::addColumn<QString>("name");
    QTest::addColumn<bool>("folder");
    QTest::addColumn<QStringList>("taken"); // names already in the target
    QTest::addColumn<QString>("expected");
    const QStringList hello{"hello.txt", "hello - Copy.txt", "hello - Copy (2).txt"};
    QTest::newRow("free name") << "hello.txt" << false << QStringList() << "hello.txt";
    QTest::newRow("file") << "hello.txt" << false << hello.mid(0, 1) << "hello - Copy.txt";
    QTest::newRow("file second") << "hello.txt" << false << hello.mid(0, 2) << "hello - Copy (2).txt";
    QTest::newRow("file third") << "hello.txt" << false << hello << "hello - Copy (3).txt";
    QTest::newRow("gap is reused") << "hello.txt" << false << QStringList{"hello.txt", "hello - Copy (2).txt"}
                                   << "hello - Copy.txt";
    QTest::newRow("only last extension")
        << "a.tar.gz" << false << QStringList{"a.tar.gz"} << "a.tar - Copy.gz";
    QTest::newRow("extensionless") << "notes" << false << QStringList{"notes"} << "notes - Copy";
    QTest::newRow("extensionless third")
        << "notes" << false << QStringList{"notes", "notes - Copy", "notes - Copy (2)"} << "notes - Copy (3)";
    QTest::newRow("dot file") << ".profile" << false << QStringList{".profile"} << ".profile - Copy";
    QTest::newRow("dot file second") << ".profile" << false << QStringList{".profile", ".profile - Copy"}
                                     << ".profile - Copy (2)";
    QTest::newRow("folder with dots")
        << "my.photos" << true << QStringList{"my.photos"} << "my.photos - Copy";
    QTest::newRow("folder with dots third")
        << "my.photos" << true << QStringList{"my.photos", "my.photos - Copy", "my.photos - Copy (2)"}
        << "my.photos - Copy (3)";
    QTest::newRow("arabic") << "ملاحظات.txt" << false << QStringList{"ملاحظات.txt"} << "ملاحظات - Copy.txt";
    // A name at the 255-byte limit: the stem gives way, by whole characters, never the extension.
    const QString longest = QString(251, 'a') + ".txt";
    QTest::newRow("longest name") << longest << false << QStringList{longest}
                                  << QString(244, 'a') + " - Copy.txt";
    QTest::newRow("longest second") << longest << false
                                    << QStringList{longest, QString(244, 'a') + " - Copy.txt"}
                                    << QString(240, 'a') + " - Copy (2).txt";
    const QString accented = QString(125, u'é') + ".txt"; // 254 bytes
    QTest::newRow("two-byte characters")
        << accented << false << QStringList{accented} << QString(122, u'é') + " - Copy.txt";
}

void FileNamesTest::destinationCollisions() {
    QFETCH(QString, name);
    QFETCH(bool, folder);
    QFETCH(QStringList, taken);
    QFETCH(QString, expected);
    TempTree tree;
    const QString source = folder ? tree.folder("src/" + name) : tree.file("src/" + name, "x");
    const QString target = tree.folder("target");
    for (const QString& existing : taken)
        tree.folder("target/" + existing);
    QCOMPARE(FileNames::destination(source, target), target + '/' + expected);
}

void FileNamesTest::danglingLinkTakesName() {
    TempTree tree;
    const QString source = tree.file("src/a.txt");
    const QString target = tree.folder("target");
    QVERIFY(QFile::link(tree.path("nowhere"), target + "/a.txt"));
    QVERIFY(QFile::link(tree.path("nowhere"), target + "/New Folder"));
    QCOMPARE(FileNames::destination(source, target), target + "/a - Copy.txt");
    QCOMPARE(FileNames::newFolderName(target), QString("New Folder (2)"));
}

void FileNamesTest::reservedNamesCountAsTaken() {
    TempTree tree;
    const QString source = tree.file("src/a.txt");
    const QString target = tree.folder("target");
    QCOMPARE(FileNames::destination(source, target, {target + "/a.txt"}), target + "/a - Copy.txt");
}

void FileNamesTest::newFolderNames() {
    TempTree tree;
    const QString folder = tree.folder("here");
    QCOMPARE(FileNames::newFolderName(folder), QString("New Folder"));
    tree.folder("here/New Folder");
    QCOMPARE(FileNames::newFolderName(folder), QString("New Folder (2)"));
    tree.file("here/New Folder (2)");
    QCOMPARE(FileNames::newFolderName(folder), QString("New Folder (3)"));
}

void FileNamesTest::stemRange_data() {
    QTest::addColumn<QString>("name");
    QTest::addColumn<bool>("directory");
    QTest::addColumn<int>("length");
    QTest::newRow("file") << "report.pdf" << false << 6;
    QTest::newRow("two dots") << "a.tar.gz" << false << 5;
    QTest::newRow("no dot") << "README" << false << 6;
    QTest::newRow("leading dot only") << ".bashrc" << false << 7;
    QTest::newRow("folder with dot") << "my.photos" << true << 9;
    QTest::newRow("utf-16 units") << "😀.txt" << false << 2;
}

void FileNamesTest::stemRange() {
    QFETCH(QString, name);
    QFETCH(bool, directory);
    QFETCH(int, length);
    QCOMPARE(filenameStemRange(name, directory), (TextRange{0, length}));
}

void FileNamesTest::nameRule_data() {
    QTest::addColumn<QString>("name");
    QTest::addColumn<bool>("valid");
    QTest::newRow("plain") << "notes.txt" << true;
    QTest::newRow("arabic") << "ملاحظات" << true;
    QTest::newRow("dots inside") << "a..b" << true;
    QTest::newRow("empty") << "" << false;
    QTest::newRow("dot") << "." << false;
    QTest::newRow("dot dot") << ".." << false;
    QTest::newRow("slash") << "a/b" << false;
    QTest::newRow("colon") << "a:b" << false;
    QTest::newRow("nul") << QString("a") + QChar(0) + "b" << false;
}

void FileNamesTest::nameRule() {
    QFETCH(QString, name);
    QFETCH(bool, valid);
    QCOMPARE(FileNames::isValidName(name), valid);
}

ORVANE_TEST_MAIN(FileNamesTest)
#include "FileNamesTest.moc"
