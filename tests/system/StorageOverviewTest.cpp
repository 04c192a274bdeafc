#include "system/StorageOverview.h"
#include "core/WindowCommands.h"
#include "platform/NativePath.h"
#include "support/AccessibleTree.h"
#include "support/FatMount.h"
#include "support/TestEnvironment.h"
#include "support/WindowFixture.h"
#include "system/StorageCard.h"
#include "system/StorageEject.h"
#include "window/AppDelegate.h"
#include "window/Explorer.h"

#include <QDir>
#include <QDirIterator>
#include <QProcess>
#include <QProgressBar>
#include <QPushButton>
#include <QSignalSpy>
#include <csignal>
#include <fcntl.h>
#include <functional>
#include <memory>
#include <sys/mount.h>
#include <sys/stat.h>
#include <unistd.h>

using namespace orvane;
using orvane::test::FatMount;
using orvane::test::WindowFixture;

namespace {

// A tmpfs of its own at a path given by bytes; it needs the right to mount, which tests have as root.
class Tmpfs {
public:
    explicit Tmpfs(const QByteArray& at) : bytes(at) {
        mkdir(bytes.constData(), 0755);
        made = mount("tmpfs", bytes.constData(), "tmpfs", 0, "size=8m") == 0;
    }
    ~Tmpfs() { unmount(); }
    void unmount() {
        if (made) umount2(bytes.constData(), MNT_DETACH);
        made = false;
    }
    QString path() const { return NativePath::decode(bytes); }
    QByteArray bytes;
    bool made = false;
};
#define REQUIRE_MOUNT(m)                                                                                     \
    if (!(m).made) QSKIP("mounting a tmpfs needs root")

// df's own figures for one mount: size, available, used.
QList<qint64> dfFigures(const QString& path) {
    QProcess df;
    df.start(QStringLiteral("df"), {QStringLiteral("-B1"), QStringLiteral("--output=size,avail,used"), path});
    df.waitForFinished();
    const QList<QByteArray> lines = df.readAllStandardOutput().trimmed().split('\n');
    QList<qint64> figures;
    for (const QByteArray& word : lines.value(1).simplified().split(' '))
        figures << word.toLongLong();
    return figures;
}

const StorageVolume* find(const std::vector<StorageVolume>& volumes, const QString& path) {
    for (const StorageVolume& v : volumes)
        if (v.path == path) return &v;
    return nullptr;
}

// The process serving a FUSE mount, found by the mount point on its command line.
pid_t fuseServer(const QString& mountPoint) {
    for (const QString& entry : QDir(QStringLiteral("/proc")).entryList(QDir::Dirs)) {
        QFile cmdline(QStringLiteral("/proc/") + entry + QStringLiteral("/cmdline"));
        if (cmdline.open(QIODevice::ReadOnly) && cmdline.readAll().split('\0').contains(mountPoint.toUtf8()))
            return entry.toInt();
    }
    return 0;
}

int threadCount() {
    return int(QDir(QStringLiteral("/proc/self/task")).entryList(QDir::Dirs | QDir::NoDotAndDotDot).size());
}

} // namespace

class StorageOverviewTest : public QObject, WindowFixture {
    Q_OBJECT

    StorageOverviewController* overview() { return w->findChild<StorageOverview*>()->controller(); }
    StorageCard* cardOf(const QString& path) {
        for (StorageCard* card : overview()->cards())
            if (card->volume().path == path) return card;
        return nullptr;
    }

private slots:
    void cleanup() { stopProgram(); }

    void listsWhatAPersonWouldRecognise_data() {
        QTest::addColumn<QString>("path");
        QTest::addColumn<QString>("type");
        QTest::addColumn<bool>("shown");
        QTest::newRow("root even as overlay") << "/"
                                              << "overlay" << true;
        QTest::newRow("usb stick") << "/media/me/STICK"
                                   << "vfat" << true;
        QTest::newRow("under /run/media") << "/run/media/me/Disk"
                                          << "ext4" << true;
        QTest::newRow("a tmpfs a person made") << "/tmp/scratch"
                                               << "tmpfs" << true;
        QTest::newRow("network share") << "/mnt/share"
                                       << "nfs4" << true;
        QTest::newRow("proc") << "/proc"
                              << "proc" << false;
        QTest::newRow("sysfs") << "/sys"
                               << "sysfs" << false;
        QTest::newRow("cgroup anywhere") << "/mnt/cg"
                                         << "cgroup2" << false;
        QTest::newRow("overlay internals") << "/var/lib/docker/overlay2/x/merged"
                                           << "overlay" << false;
        QTest::newRow("snap loop") << "/snap/core/1234"
                                   << "squashfs" << false;
        QTest::newRow("shared memory") << "/dev/shm"
                                       << "tmpfs" << false;
        QTest::newRow("runtime folder") << "/run/user/1000"
                                        << "tmpfs" << false;
        QTest::newRow("the system's /tmp") << "/tmp"
                                           << "tmpfs" << false;
        QTest::newRow("boot partition") << "/boot/efi"
                                        << "vfat" << false;
        QTest::newRow("portal") << "/run/user/1000/doc"
                                << "fuse.portal" << false;
    }
    void listsWhatAPersonWouldRecognise() {
        QFETCH(QString, path);
        QFETCH(QString, type);
        QFETCH(bool, shown);
        QCOMPARE(StorageVolume::recognisable({path, type, QStringLiteral("src"), QStringLiteral("0:1"), {}}),
                 shown);
    }

    // Mount tables as given; the list in the order shown.
    void rootFirstOnceThenNaturalOrder_data() {
        QTest::addColumn<QByteArray>("table");
        QTest::addColumn<QStringList>("shown");
        QTest::newRow("natural order") << QByteArray("1 0 8:1 / / rw - ext4 /dev/sda1 rw\n"
                                                     "2 1 0:40 / /mnt/Disk\\04010 rw - tmpfs t rw\n"
                                                     "3 1 0:41 / /mnt/Disk\\0402 rw - tmpfs t rw\n")
                                       << QStringList{"/", "/mnt/Disk 2", "/mnt/Disk 10"};
        QTest::newRow("root listed twice counts once, first")
            << QByteArray("5 1 8:1 /srv /mnt/a rw - ext4 /dev/sda1 rw\n"
                          "1 0 8:1 / / rw - ext4 /dev/sda1 rw\n"
                          "6 1 8:1 / /mnt/again rw - ext4 /dev/sda1 rw\n")
            << QStringList{"/"};
        QTest::newRow("a later mount hides the earlier one")
            << QByteArray("1 0 8:1 / / rw - ext4 /dev/sda1 rw\n"
                          "2 1 0:40 / /mnt/x rw - tmpfs t rw\n"
                          "3 1 0:41 / /mnt/x rw - vfat /dev/sdb1 rw\n")
            << QStringList{"/", "/mnt/x"};
        QTest::newRow("internals left out") << QByteArray("1 0 8:1 / / rw - ext4 /dev/sda1 rw\n"
                                                          "2 1 0:4 / /proc rw - proc proc rw\n"
                                                          "3 1 0:5 / /sys/fs/cgroup rw - cgroup2 c rw\n")
                                            << QStringList{"/"};
    }
    void rootFirstOnceThenNaturalOrder() {
        QFETCH(QByteArray, table);
        QFETCH(QStringList, shown);
        std::vector<StorageVolume> volumes = StorageVolume::fromMounts(MountTable::parse(table));
        StorageVolume::sort(volumes);
        QStringList paths;
        for (const StorageVolume& v : volumes)
            paths << v.path;
        QCOMPARE(paths, shown);
    }

    void figures_data() {
        QTest::addColumn<qint64>("total");
        QTest::addColumn<qint64>("free");
        QTest::addColumn<int>("percent");
        QTest::addColumn<QString>("line");
        QTest::newRow("a quarter used")
            << qint64(4000) << qint64(3000) << 25 << "25% used  •  1 KB used  •  3 KB free  •  4 KB total";
        QTest::newRow("truncated, not rounded")
            << qint64(1000) << qint64(1) << 99
            << "99% used  •  999 bytes used  •  1 byte free  •  1 KB total";
        QTest::newRow("more free than total")
            << qint64(1000) << qint64(1500) << 0 << "0% used  •  Zero KB used  •  2 KB free  •  1 KB total";
        QTest::newRow("no capacity") << qint64(0) << qint64(0) << 0 << "Storage information unavailable";
        QTest::newRow("no figures") << qint64(-1) << qint64(-1) << 0 << "Storage information unavailable";
    }
    void figures() {
        QFETCH(qint64, total);
        QFETCH(qint64, free);
        QFETCH(int, percent);
        QFETCH(QString, line);
        StorageVolume v;
        if (total >= 0) v.total = total, v.free = free;
        QVERIFY(!v.used() || *v.used() >= 0);
        QCOMPARE(StorageCard::percentUsed(v), percent);
        QCOMPARE(StorageCard::figuresText(v), line);
    }

    void kindOfVolume_data() {
        QTest::addColumn<QByteArray>("line");
        QTest::addColumn<QString>("symbol");
        QTest::addColumn<bool>("ejectable");
        QTest::newRow("root") << QByteArray("1 0 8:1 / / rw - ext4 /dev/sda1 rw") << "internaldrive" << false;
        QTest::newRow("tmpfs") << QByteArray("2 1 0:40 / /mnt/t rw - tmpfs t rw") << "internaldrive" << false;
        QTest::newRow("fuse image") << QByteArray("3 1 0:41 / /mnt/f rw - fuse.fusefat fusefat rw")
                                    << "externaldrive" << true;
        QTest::newRow("nfs") << QByteArray("4 1 0:42 / /mnt/n rw - nfs4 host:/x rw") << "network" << false;
        QTest::newRow("sshfs") << QByteArray("5 1 0:43 / /mnt/s rw - fuse.sshfs me@host: rw") << "network"
                               << false;
    }
    void kindOfVolume() {
        QFETCH(QByteArray, line);
        QFETCH(QString, symbol);
        QFETCH(bool, ejectable);
        const std::vector<StorageVolume> v = StorageVolume::fromMounts(MountTable::parse(line));
        QCOMPARE(v.size(), size_t(1));
        QCOMPARE(v[0].symbol(), symbol);
        QCOMPARE(v[0].ejectable, ejectable);
    }

    // Real mounts, odd names among them, with the figures df gives.
    void realMountsMatchDf() {
        test::TempTree scratch;
        Tmpfs plain(NativePath::encode(scratch.path()) + "/plain");
        REQUIRE_MOUNT(plain);
        Tmpfs odd(NativePath::encode(scratch.path()) + "/with space\nline\xFF");
        QVERIFY(odd.made);
        QVERIFY(test::TempTree::writeFile(plain.path() + "/data", QByteArray(300000, 'x')).size());
        FatMount fat;
        const std::vector<StorageVolume> volumes = StorageVolume::read();
        QCOMPARE(volumes.front().path, QStringLiteral("/"));
        QVERIFY(find(volumes, odd.path()));
        QCOMPARE(NativePath::encode(find(volumes, odd.path())->url.toLocalFile()), odd.bytes);
        QStringList ours{plain.path()};
        if (fat.mounted()) ours << fat.path();
        for (const QString& path : ours) {
            const StorageVolume* v = find(volumes, path);
            QVERIFY2(v, qPrintable(path));
            QCOMPARE((QList<qint64>{*v->total, *v->free, *v->used()}), dfFigures(path));
        }
        QVERIFY(*find(volumes, plain.path())->used() >= 300000);
    }

    // A mount whose server stopped answering is listed without figures, and the read still ends; one
    // whose server has gone is refused by the system at once and left out.
    void volumeWhoseServerFails_data() {
        QTest::addColumn<int>("signal");
        QTest::addColumn<bool>("listed");
        QTest::newRow("hung") << int(SIGSTOP) << true;
        QTest::newRow("gone") << int(SIGKILL) << false;
    }
    void volumeWhoseServerFails() {
        QFETCH(int, signal);
        QFETCH(bool, listed);
        FatMount fat;
        ORVANE_REQUIRE_FAT(fat);
        const pid_t server = fuseServer(fat.path());
        QVERIFY(server > 0);
        kill(server, signal);
        // Whatever the test finds, the server goes on, or everything that touches the mount hangs.
        const std::unique_ptr<void, std::function<void(void*)>> resume(
            &signal, [server](void*) { kill(server, SIGCONT); });
        if (signal == SIGKILL) QTRY_VERIFY(!QDir(QStringLiteral("/proc/%1").arg(server)).exists());
        const int threads = threadCount();
        const std::vector<StorageVolume> volumes = StorageVolume::read(300);
        // Read again while it hangs: the question still waiting is not asked a second time.
        StorageVolume::read(300);
        QTRY_VERIFY(threadCount() <= threads + (listed ? 1 : 0));
        const StorageVolume* v = find(volumes, fat.path());
        QCOMPARE(bool(v), listed);
        if (!v) return;
        QVERIFY(!v->total && !v->free && !v->used());
        QCOMPARE(StorageCard::figuresText(*v), QStringLiteral("Storage information unavailable"));
    }

    void ejectSaysWhyABusyVolumeStays() {
        FatMount fat;
        ORVANE_REQUIRE_FAT(fat);
        const StorageVolume* v = nullptr;
        const std::vector<StorageVolume> volumes = StorageVolume::read();
        QVERIFY((v = find(volumes, fat.path())));
        QVERIFY(v->ejectable);
        const int open = ::open(NativePath::encode(fat.path()).constData(), O_RDONLY | O_DIRECTORY);
        QVERIFY(open >= 0);
        QCOMPARE(StorageEject::run(*v),
                 QStringLiteral(
                     "The volume is in use. Close the files and programs that use it, then try again."));
        QVERIFY(find(StorageVolume::fromMounts(MountTable::current()), fat.path()));
        ::close(open);
        QCOMPARE(StorageEject::run(*v), QString());
        QVERIFY(!find(StorageVolume::fromMounts(MountTable::current()), fat.path()));
    }

    // The window's overview follows a mount coming and going, and opens a volume in that window.
    void overviewFollowsMounts() {
        startProgram();
        openWindow();
        QVERIFY(w->commands().run(QStringLiteral("showStorageOverview")));
        QSignalSpy drawn(overview(), &StorageOverviewController::rendered);
        QVERIFY(drawn.wait());
        QVERIFY(overview()->stateText().endsWith(QLatin1String(" mounted volumes")));
        Tmpfs made(NativePath::encode(tree->path()) + "/Stick");
        REQUIRE_MOUNT(made);
        QTRY_VERIFY(cardOf(made.path()));
        QVERIFY(test::accessibilityFaults(overview()).isEmpty());
        QCOMPARE(cardOf(made.path())->bar()->accessibleName().section(u':', 0, 0), QStringLiteral("Stick"));
        cardOf(made.path())->openButton()->click();
        QCOMPARE(w->current(), QUrl::fromLocalFile(made.path()));
        made.unmount();
        QTRY_VERIFY(!cardOf(made.path()));
    }

    void twoReloadsDrawOnlyTheLast() {
        startProgram();
        openWindow();
        QVERIFY(w->commands().run(QStringLiteral("showStorageOverview")));
        QSignalSpy drawn(overview(), &StorageOverviewController::rendered);
        overview()->reload();
        QTRY_COMPARE(drawn.count(), 1);
        overview()->reload();
        QTRY_COMPARE(drawn.count(), 2);
        QCoreApplication::processEvents();
        QCOMPARE(drawn.count(), 2);
    }
};

ORVANE_TEST_MAIN(StorageOverviewTest)
#include "StorageOverviewTest.moc"
