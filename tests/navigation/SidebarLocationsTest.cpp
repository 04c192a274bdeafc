#include "navigation/SidebarLocations.h"
#include "support/TestEnvironment.h"

using namespace orvane;

class SidebarLocationsTest : public QObject {
    Q_OBJECT

    static SidebarLocations sample() {
        SidebarLocations l;
        l.rootWord = QStringLiteral("File System");
        l.home = QStringLiteral("/home/me");
        l.volumeFolders = {QStringLiteral("/media/me"), QStringLiteral("/run/media/me")};
        return l;
    }

private slots:
    void volumes_data() {
        QTest::addColumn<QString>("root");
        QTest::addColumn<QString>("type");
        QTest::addColumn<bool>("writable");
        QTest::addColumn<bool>("shown");
        QTest::newRow("usb stick") << "/media/me/STICK"
                                   << "vfat" << true << true;
        QTest::newRow("read-only disc") << "/run/media/me/DISC"
                                        << "iso9660" << false << true;
        QTest::newRow("another user's") << "/media/you/STICK"
                                        << "vfat" << true << true;
        QTest::newRow("data disk") << "/mnt/data"
                                   << "ext4" << true << true;
        QTest::newRow("read-only mount") << "/mnt/archive"
                                         << "ext4" << false << false;
        QTest::newRow("tmpfs") << "/mnt/scratch"
                               << "tmpfs" << true << false;
        QTest::newRow("system folder") << "/boot/efi"
                                       << "vfat" << true << false;
        QTest::newRow("run") << "/run/user/1000"
                             << "ext4" << true << false;
        QTest::newRow("holds home") << "/home"
                                    << "ext4" << true << false;
        QTest::newRow("root") << "/"
                              << "ext4" << true << false;
    }
    void volumes() {
        QFETCH(QString, root);
        QFETCH(QString, type);
        QFETCH(bool, writable);
        QFETCH(bool, shown);
        SidebarLocations l = sample();
        l.mounts = {{root, type, writable}};
        const QList<SidebarPlace> places = l.places();
        QCOMPARE(places.first(), (SidebarPlace{"File System", "/", "internaldrive"}));
        QCOMPARE(places.size(), shown ? 3 : 2);
        if (shown) QCOMPARE(places[1], (SidebarPlace{root.section(u'/', -1), root, "externaldrive"}));
        QCOMPARE(places.last().title, QStringLiteral("Trash"));
    }

    void orderApplicationsAndPhone() {
        SidebarLocations l = sample();
        l.applications = QStringLiteral("/Applications");
        l.mounts = {{"/mnt/b", "ext4", true},
                    {"/media/me/A", "vfat", true},
                    {"/mnt/b", "ext4", true},
                    {"/media/me/File System", "ext4", true}};
        QStringList titles;
        for (const SidebarPlace& p : l.places())
            titles << p.title;
        QCOMPARE(titles, QStringList({"Applications", "File System", "b", "A", "Trash"}));
        QCOMPARE(l.places().last(), (SidebarPlace{"Trash", "trash:///", "trash"}));
        l.trashFull = true;
        QCOMPARE(l.places().last(), (SidebarPlace{"Trash", "trash:///", "trash.full"}));
        l.phoneConnected = true;
        QCOMPARE(l.places().last(), (SidebarPlace{"Android USB", "android://phone", "iphone"}));
    }
};

ORVANE_TEST_MAIN(SidebarLocationsTest)
#include "SidebarLocationsTest.moc"
