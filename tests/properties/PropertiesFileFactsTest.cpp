#include "properties/PropertiesFileFacts.h"
#include "platform/NativePath.h"
#include "properties/PropertiesSizeScanner.h"
#include "support/TempTree.h"
#include "support/TestEnvironment.h"

#include <QFile>
#include <fcntl.h>
#include <linux/fs.h>
#include <pwd.h>
#include <sys/ioctl.h>
#include <sys/stat.h>
#include <unistd.h>

using namespace orvane;
using orvane::test::TempTree;

namespace {

PropertiesFileFacts facts(const QString& path) {
    return PropertiesFileFacts::read(QUrl::fromLocalFile(path));
}

// Sets or clears the immutable flag; false where the file system or the user cannot.
bool setImmutable(const QString& path, bool on) {
    const int fd = open(QFile::encodeName(path).constData(), O_RDONLY | O_CLOEXEC);
    if (fd < 0) return false;
    int flags = 0;
    bool done = ioctl(fd, FS_IOC_GETFLAGS, &flags) == 0;
    flags = on ? flags | FS_IMMUTABLE_FL : flags & ~FS_IMMUTABLE_FL;
    done = done && ioctl(fd, FS_IOC_SETFLAGS, &flags) == 0;
    close(fd);
    return done;
}

} // namespace

class PropertiesFileFactsTest : public QObject {
    Q_OBJECT

private slots:
    void linksAreNotFollowed_data() {
        QTest::addColumn<QString>("target");
        QTest::newRow("dangling") << "nowhere/at/all";
        QTest::newRow("to a folder") << "folder";
        QTest::newRow("to a file") << "plain.txt";
    }
    void linksAreNotFollowed() {
        QFETCH(QString, target);
        TempTree tree;
        tree.folder("folder");
        tree.file("plain.txt", "text");
        QVERIFY(symlink(QFile::encodeName(target).constData(),
                        QFile::encodeName(tree.path("link")).constData()) == 0);
        const PropertiesFileFacts f = facts(tree.path("link"));
        QVERIFY(!f.error);
        QVERIFY(f.isSymbolicLink);
        QVERIFY(!f.isDirectory);
        QCOMPARE(f.kind, QString("Symbolic link"));
        QCOMPARE(f.text("target"), target);
        QCOMPARE(f.text("attributes"), QString("Symbolic link"));
    }

    void permissions_data() {
        QTest::addColumn<int>("mode");
        QTest::addColumn<QString>("text");
        QTest::newRow("644") << 0644 << "644 (POSIX)";
        QTest::newRow("7") << 07 << "007 (POSIX)";
        QTest::newRow("none") << 0 << "000 (POSIX)";
        QTest::newRow("set-user-id") << 04755 << "4755 (POSIX)";
    }
    void permissions() {
        QFETCH(int, mode);
        TempTree tree;
        const QString path = tree.file("f", "x");
        QVERIFY(chmod(QFile::encodeName(path).constData(), mode_t(mode)) == 0);
        QTEST(facts(path).text("permissions"), "text");
    }

    // A name that is not UTF-8 is read by its exact bytes, never as the look-alike beside it.
    void namesThatAreNotUtf8() {
        TempTree tree;
        tree.rawFile("bad\xef\xbf\xbd"); // what a lossy conversion would name
        const QString link = NativePath::decode(NativePath::encode(tree.path()) + "/bad\xff");
        QVERIFY(symlink("target\xff", NativePath::encode(link).constData()) == 0);
        const PropertiesFileFacts f = facts(link);
        QVERIFY(f.isSymbolicLink);
        QCOMPARE(NativePath::encode(f.linkTarget.value_or(QString())), QByteArray("target\xff"));
        QCOMPARE(PropertiesSizeScanner::canonicalPath(QUrl::fromLocalFile(link)),
                 NativePath::encode(NativePath::canonical(tree.path())) + "/bad\xff");
    }

    void aMissingPathKeepsItsDefaults() {
        TempTree tree;
        const PropertiesFileFacts f = facts(tree.path("gone"));
        QVERIFY(f.error && !f.error->isEmpty());
        QVERIFY(!f.isDirectory && !f.isSymbolicLink);
        for (const char* key : {"type", "created", "modified", "accessed", "owner", "group", "permissions",
                                "access", "attributes"})
            QCOMPARE(f.text(key), QString("Unavailable"));
        QCOMPARE(f.text("target"), QString("Not a symbolic link"));
        QCOMPARE(f.text("location"), tree.path());
    }

    void plainItems() {
        TempTree tree;
        const PropertiesFileFacts file = facts(tree.file("notes.txt", "hello"));
        QVERIFY(!file.error);
        QCOMPARE(file.typeName, QString("text/plain"));
        QVERIFY(!file.kind.isEmpty() && file.kind != "File" && file.kind != "Unavailable");
        QCOMPARE(file.text("attributes"), QString("None"));
        QCOMPARE(file.text("access"), QString("Read and write"));
        QCOMPARE(file.text("location"), tree.path());
        QCOMPARE(file.owner, QString::fromLocal8Bit(getpwuid(geteuid())->pw_name));
        QVERIFY(file.text("modified").contains(QString::number(QDate::currentDate().year())));
        QCOMPARE(facts(tree.file(".hidden")).text("attributes"), QString("Hidden"));
        const PropertiesFileFacts folder = facts(tree.folder("sub"));
        QVERIFY(folder.isDirectory);
        QCOMPARE(folder.kind, QString("File folder"));
    }

    // Reading the type from the content must not count as a use of the file.
    void readingLeavesTheAccessTimeAlone() {
        TempTree tree;
        const QString path = tree.file("no-extension", "#!/bin/sh\necho hi\n");
        const timespec old[2] = {{978307200, 0}, {UTIME_OMIT, 0}}; // 2001
        QVERIFY(utimensat(AT_FDCWD, QFile::encodeName(path).constData(), old, 0) == 0);
        const PropertiesFileFacts f = facts(path);
        QCOMPARE(f.typeName, QString("application/x-shellscript"));
        struct stat st;
        QVERIFY(stat(QFile::encodeName(path).constData(), &st) == 0);
        QCOMPARE(qint64(st.st_atim.tv_sec), qint64(978307200));
        QCOMPARE(f.accessed->toSecsSinceEpoch(), qint64(978307200));
    }

    void anImmutableFileIsLocked() {
        TempTree tree;
        const QString path = tree.file("fixed.txt", "x");
        if (!setImmutable(path, true)) QSKIP("the immutable flag cannot be set here");
        const PropertiesFileFacts f = facts(path);
        setImmutable(path, false);
        QCOMPARE(f.locked, std::optional<bool>(true));
        QCOMPARE(f.text("attributes"), QString("Locked"));
        QCOMPARE(facts(path).text("attributes"), QString("None"));
    }
};

ORVANE_TEST_MAIN(PropertiesFileFactsTest)
#include "PropertiesFileFactsTest.moc"
