#include "platform/DesktopTrash.h"
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
        if (::mount("tmpfs", at.constData(), "tmpfs", 0, "mode=1777,size=4m") != 0)
            QSKIP("cannot mount a volume of its own here");
    }
    void cleanup() {
        ::umount2(QFile::encodeName(volume()).constData(), MNT_DETACH);
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
};

ORVANE_TEST_MAIN(DesktopTrashTest)
#include "DesktopTrashTest.moc"
