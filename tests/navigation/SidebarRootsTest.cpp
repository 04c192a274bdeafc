#include "navigation/SidebarRoots.h"
#include "support/TestEnvironment.h"

#include <QDir>

using namespace orvane;

class SidebarRootsTest : public QObject {
    Q_OBJECT
private slots:
    void pins_data() {
        QTest::addColumn<QStringList>("pins");
        QTest::addColumn<QStringList>("expected"); // "title|symbol" per pin
        const QString home = QDir::homePath();
        QTest::newRow("standard folders")
            << QStringList{home + "/Desktop", home + "/Downloads", home + "/Documents", home + "/Pictures",
                           home + "/Movies",  home + "/Videos",    home + "/Music"}
            << QStringList{"Desktop|desktopcomputer",
                           "Downloads|arrow.down.circle",
                           "Documents|doc.text",
                           "Pictures|photo",
                           "Videos|film",
                           "Videos|film",
                           "Music|music.note"};
        QTest::newRow("only in the home folder") << QStringList{"/data/Desktop", home + "/Projects"}
                                                 << QStringList{"Desktop|folder", "Projects|folder"};
        QTest::newRow("namesakes") << QStringList{"/a/Reports", "/b/Reports", "/c/Other"}
                                   << QStringList{"Reports — a|folder", "Reports — b|folder", "Other|folder"};
    }
    void pins() {
        QFETCH(QStringList, pins);
        QFETCH(QStringList, expected);
        QList<QUrl> urls;
        for (const QString& p : pins)
            urls << QUrl::fromLocalFile(p);
        QStringList shown;
        for (const SidebarPlace& place : SidebarRoots::pinPlaces(urls, QDir::homePath()))
            shown << place.title + u'|' + place.symbol;
        QCOMPARE(shown, expected);
    }

    void rootsInOrder() {
        const QUrl phonePin(QStringLiteral("android://phone/Internal%20storage/DCIM"));
        const QList<SidebarPlace> roots =
            SidebarRoots::roots("/home/me", {QUrl::fromLocalFile("/data/Work"), phonePin},
                                {{"File System", "/", "internaldrive"}});
        QStringList titles;
        for (const SidebarPlace& place : roots)
            titles << place.title;
        QCOMPARE(titles, QStringList({"Home", "Quick access", "Work", "DCIM", "Locations", "File System"}));
        QCOMPARE(roots[0].symbol, QStringLiteral("house"));
        QVERIFY(roots[1].isSection() && roots[4].isSection());
        QCOMPARE(roots[3].url(), phonePin);
    }
};

ORVANE_TEST_MAIN(SidebarRootsTest)
#include "SidebarRootsTest.moc"
