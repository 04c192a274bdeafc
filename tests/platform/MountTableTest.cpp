#include "platform/MountTable.h"
#include "platform/NativePath.h"
#include "support/TestEnvironment.h"

using namespace orvane;

class MountTableTest : public QObject {
    Q_OBJECT

private slots:
    // Lines as the kernel writes them; the path must come back as the folder's exact bytes.
    void readsTheKernelsLines_data() {
        QTest::addColumn<QByteArray>("line");
        QTest::addColumn<QByteArray>("path");
        QTest::addColumn<QString>("type");
        QTest::addColumn<QString>("source");
        QTest::addColumn<QString>("device");
        QTest::newRow("root") << QByteArray("27 1 254:0 / / rw,relatime - ext4 /dev/vda rw")
                              << QByteArray("/") << "ext4"
                              << "/dev/vda"
                              << "254:0";
        QTest::newRow("space") << QByteArray(
                                      "40 27 0:45 / /media/My\\040Disk rw shared:1 - vfat /dev/sdb1 rw")
                               << QByteArray("/media/My Disk") << "vfat"
                               << "/dev/sdb1"
                               << "0:45";
        QTest::newRow("line feed and tab")
            << QByteArray("41 27 0:46 / /mnt/a\\012b\\011c rw - tmpfs tmpfs rw") << QByteArray("/mnt/a\nb\tc")
            << "tmpfs"
            << "tmpfs"
            << "0:46";
        QTest::newRow("backslash") << QByteArray("42 27 0:47 / /mnt/x\\134040 rw - tmpfs tmpfs rw")
                                   << QByteArray("/mnt/x\\040") << "tmpfs"
                                   << "tmpfs"
                                   << "0:47";
        QTest::newRow("not UTF-8") << QByteArray("43 27 0:48 / /mnt/caf\xE9\xFF rw - tmpfs none rw")
                                   << QByteArray("/mnt/caf\xE9\xFF") << "tmpfs"
                                   << "none"
                                   << "0:48";
        QTest::newRow("several optional fields")
            << QByteArray("44 27 0:49 / /mnt/fat rw master:3 propagate_from:2 - fuse.fusefat fusefat rw")
            << QByteArray("/mnt/fat") << "fuse.fusefat"
            << "fusefat"
            << "0:49";
        QTest::newRow("escaped source")
            << QByteArray("45 27 0:50 / /n rw - nfs4 host:/My\\040Share rw") << QByteArray("/n") << "nfs4"
            << "host:/My Share"
            << "0:50";
        QTest::newRow("cut short") << QByteArray("46 27 0:51 / /mnt/cut rw") << QByteArray() << ""
                                   << ""
                                   << "";
        QTest::newRow("no separator")
            << QByteArray("47 27 0:52 / /mnt/nosep rw tmpfs tmpfs rw") << QByteArray() << ""
            << ""
            << "";
        QTest::newRow("empty") << QByteArray() << QByteArray() << ""
                               << ""
                               << "";
    }
    void readsTheKernelsLines() {
        QFETCH(QByteArray, line);
        QFETCH(QByteArray, path);
        QFETCH(QString, type);
        QFETCH(QString, source);
        QFETCH(QString, device);
        const std::vector<MountPoint> mounts = MountTable::parse(line + "\n");
        QCOMPARE(mounts.size(), size_t(path.isEmpty() ? 0 : 1));
        if (path.isEmpty()) return;
        QCOMPARE(NativePath::encode(mounts[0].path), path);
        QCOMPARE(mounts[0].type, type);
        QCOMPARE(mounts[0].source, source);
        QCOMPARE(mounts[0].device, device);
    }

    // The table of this very process always holds the root.
    void currentHoldsTheRoot() {
        const std::vector<MountPoint> mounts = MountTable::current();
        QVERIFY(
            std::any_of(mounts.begin(), mounts.end(), [](const MountPoint& m) { return m.path == u'/'; }));
    }
};

ORVANE_TEST_MAIN(MountTableTest)
#include "MountTableTest.moc"
