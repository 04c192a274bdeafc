#include "platform/DesktopTrash.h"
#include "platform/NativePath.h"
#include "support/TempTree.h"
#include "support/TestEnvironment.h"

#include <QProcess>
#include <sys/mount.h>
#include <sys/stat.h>
#include <unistd.h>

using namespace orvane;
using orvane::test::TempTree;

// Another volume that every user writes to, as a shared stick is, with a neighbour (`nobody`) on it.
class DesktopTrashTest : public QObject {
    Q_OBJECT
    std::unique_ptr<TempTree> tree;
    bool mounted = false;

    QString volume() const { return tree->path(QStringLiteral("volume")); }

    bool run(const QString& script, bool asNeighbour) {
        QStringList command{QStringLiteral("sh"), QStringLiteral("-c"), script};
        if (asNeighbour)
            command = QStringList{QStringLiteral("setpriv"), QStringLiteral("--reuid=65534"),
                                  QStringLiteral("--regid=65534"), QStringLiteral("--clear-groups"),
                                  QStringLiteral("--")} +
                      command;
        QProcess process;
        process.setWorkingDirectory(volume());
        process.start(command.takeFirst(), command);
        return process.waitForFinished() && process.exitCode() == 0;
    }

private slots:
    void init() {
        tree = std::make_unique<TempTree>();
        ::chmod(QFile::encodeName(tree->path()).constData(), 0755);
        const QByteArray at = QFile::encodeName(tree->folder(QStringLiteral("volume")));
        mounted = ::mount("tmpfs", at.constData(), "tmpfs", 0, "mode=1777,size=4m") == 0;
    }
    void cleanup() {
        if (mounted) ::umount2(QFile::encodeName(volume()).constData(), MNT_DETACH);
        tree.reset();
    }

    // A deleted item goes only where nobody else can read or replace it, or stays put with a reason.
    void anotherVolumesTrashIsTheUsersAlone_data() {
        QTest::addColumn<QString>("admin");     // what root made on the volume first
        QTest::addColumn<QString>("neighbour"); // then what the neighbour made
        QTest::addColumn<QString>("trash");     // the Trash used, or empty when refused
        QTest::newRow("nothing yet") << ""
                                     << ""
                                     << ".Trash-UID";
        QTest::newRow("neighbour's, open to all")
            << ""
            << "mkdir -m 0777 .Trash-UID .Trash-UID/files .Trash-UID/info"
            << "";
        QTest::newRow("a link to the neighbour's") << ""
                                                   << "mkdir mine && ln -s mine .Trash-UID"
                                                   << "";
        QTest::newRow("ours, open to all") << "mkdir -m 0777 .Trash-UID"
                                           << ""
                                           << "";
        QTest::newRow("shared, sticky") << "mkdir -m 1777 .Trash"
                                        << ""
                                        << ".Trash/UID";
        QTest::newRow("shared, not sticky") << "mkdir -m 0777 .Trash"
                                            << ""
                                            << ".Trash-UID";
        QTest::newRow("shared, ours taken there") << "mkdir -m 1777 .Trash"
                                                  << "mkdir -m 0777 .Trash/UID"
                                                  << ".Trash-UID";
        QTest::newRow("shared, a link") << ""
                                        << "mkdir -m 1777 t && ln -s t .Trash"
                                        << ".Trash-UID";
    }

    void anotherVolumesTrashIsTheUsersAlone() {
        if (!mounted) QSKIP("cannot mount a volume of its own here");
        QFETCH(QString, admin);
        QFETCH(QString, neighbour);
        QFETCH(QString, trash);
        const QString uid = QString::number(::getuid());
        QVERIFY(run(admin.replace(QStringLiteral("UID"), uid), false));
        QVERIFY(run(neighbour.replace(QStringLiteral("UID"), uid), true));
        trash.replace(QStringLiteral("UID"), uid);
        const QString item = TempTree::writeFile(volume() + QStringLiteral("/secret.txt"), "secret");
        QString trashed, error;
        QCOMPARE(DesktopTrash::moveIn(item, trashed, error), !trash.isEmpty());
        if (trash.isEmpty()) {
            QVERIFY2(error.contains(QLatin1String("belongs to someone else")), qPrintable(error));
            QCOMPARE(TempTree::contents(item), QByteArray("secret"));
            return;
        }
        QCOMPARE(trashed, volume() + u'/' + trash + QStringLiteral("/files/secret.txt"));
        struct stat st;
        QVERIFY(::lstat(QFile::encodeName(volume() + u'/' + trash).constData(), &st) == 0);
        QVERIFY(S_ISDIR(st.st_mode) && st.st_uid == ::getuid() && (st.st_mode & 077) == 0);
    }
    // A record is trusted only for what it may say: a path inside its volume, under its own group.
    void recordsAreReadByTheirOwnRules_data() {
        QTest::addColumn<QString>("top"); // empty for the home Trash
        QTest::addColumn<QByteArray>("record");
        QTest::addColumn<QByteArray>("original"); // as bytes; empty when unknown
        QTest::addColumn<bool>("dated");
        const QByteArray date = "DeletionDate=2024-02-29T13:05:09\n";
        QTest::newRow("absolute") << ""
                                  << "[Trash Info]\nPath=/a/b%20c.txt\n" + date << QByteArray("/a/b c.txt")
                                  << true;
        QTest::newRow("relative on a volume")
            << "/media/stick"
            << "[Trash Info]\nPath=dir/x\n" + date << QByteArray("/media/stick/dir/x") << true;
        QTest::newRow("relative at the root volume")
            << "/"
            << "[Trash Info]\nPath=srv/x\n" + date << QByteArray("/srv/x") << true;
        QTest::newRow("relative in the home Trash")
            << ""
            << "[Trash Info]\nPath=dir/x\n" + date << QByteArray() << true;
        QTest::newRow("climbing out of its volume")
            << "/media/stick"
            << "[Trash Info]\nPath=../../etc/passwd\n" + date << QByteArray() << true;
        QTest::newRow("a byte that is not UTF-8")
            << ""
            << "[Trash Info]\nPath=/a/%FF%20x\n" + date << QByteArray("/a/\xff x") << true;
        QTest::newRow("another group first")
            << ""
            << "[Other]\nPath=/no\n[Trash Info]\r\nPath=/yes\r\n" + date << QByteArray("/yes") << true;
        QTest::newRow("no group") << ""
                                  << "Path=/no\n" + date << QByteArray() << false;
        QTest::newRow("no date") << "" << QByteArray("[Trash Info]\nPath=/a\n") << QByteArray("/a") << false;
        QTest::newRow("a date of another form")
            << "" << QByteArray("[Trash Info]\nPath=/a\nDeletionDate=yesterday\n") << QByteArray("/a")
            << false;
        QTest::newRow("empty") << "" << QByteArray() << QByteArray() << false;
    }

    void recordsAreReadByTheirOwnRules() {
        QFETCH(QString, top);
        QFETCH(QByteArray, record);
        QFETCH(QByteArray, original);
        QFETCH(bool, dated);
        const QString trash = tree->path(QStringLiteral("Trash"));
        tree->file(QStringLiteral("Trash/files/item"), "x");
        tree->file(QStringLiteral("Trash/info/item.trashinfo"), record);
        tree->file(QStringLiteral("Trash/info/gone.trashinfo"), "[Trash Info]\nPath=/gone\n");
        const std::vector<DesktopTrash::Record> read = DesktopTrash::read(trash, top);
        QCOMPARE(read.size(), size_t(1));
        QCOMPARE(read.front().trashed, trash + QStringLiteral("/files/item"));
        QCOMPARE(NativePath::encode(read.front().original), original);
        QCOMPARE(read.front().deleted.isValid(), dated);
        if (dated) QCOMPARE(read.front().deleted, QDateTime(QDate(2024, 2, 29), QTime(13, 5, 9)));
    }

    // What was deleted on another volume is found there, told by its full path, and forgotten whole.
    void aVolumesTrashIsListedWithTheHomeOne() {
        if (!mounted) QSKIP("cannot mount a volume of its own here");
        const QString item = TempTree::writeFile(volume() + QStringLiteral("/deep/na me.txt"), "x");
        const QString home = TempTree::writeFile(tree->path(QStringLiteral("home.txt")), "y");
        const QDateTime before = QDateTime::currentDateTime().addSecs(-1);
        QString onVolume, inHome, error;
        QVERIFY2(DesktopTrash::moveIn(item, onVolume, error), qPrintable(error));
        QVERIFY2(DesktopTrash::moveIn(home, inHome, error), qPrintable(error));
        QVERIFY(!DesktopTrash::isEmpty());
        QHash<QString, DesktopTrash::Record> byItem;
        for (const DesktopTrash::Record& record : DesktopTrash::contents())
            byItem.insert(record.trashed, record);
        QVERIFY(byItem.contains(onVolume) && byItem.contains(inHome));
        QCOMPARE(byItem[onVolume].original, item);
        QCOMPARE(byItem[inHome].original, home);
        QVERIFY(byItem[onVolume].deleted >= before.addSecs(-1));
        QVERIFY(byItem[onVolume].deleted <= QDateTime::currentDateTime());
        for (const QString& trashed : {onVolume, inHome}) {
            ::unlink(NativePath::encode(trashed).constData());
            DesktopTrash::forget(trashed);
        }
        QVERIFY(DesktopTrash::isEmpty());
    }

    // The Trash's cache of folder sizes loses the line of a folder that has left it, and only that.
    void forgettingDropsTheFoldersSize() {
        const QString trash = tree->path(QStringLiteral("Trash"));
        tree->folder(QStringLiteral("Trash/files/a b"));
        tree->file(QStringLiteral("Trash/info/a b.trashinfo"), "[Trash Info]\nPath=/a%20b\n");
        tree->file(QStringLiteral("Trash/directorysizes"), "10 1700000000 a%20b\n20 1700000000 other\n");
        DesktopTrash::forget(trash + QStringLiteral("/files/a b"));
        QCOMPARE(TempTree::contents(trash + QStringLiteral("/directorysizes")),
                 QByteArray("20 1700000000 other\n"));
        QVERIFY(!TempTree::present(trash + QStringLiteral("/info/a b.trashinfo")));
    }
};

ORVANE_TEST_MAIN(DesktopTrashTest)
#include "DesktopTrashTest.moc"
