#include "core/PinnedStore.h"
#include "core/Services.h"
#include "core/Settings.h"
#include "core/WindowCommands.h"
#include "navigation/NavigationPane.h"
#include "navigation/PlacesTable.h"
#include "platform/NativePath.h"
#include "support/TempTree.h"
#include "support/TestEnvironment.h"
#include "window/AppDelegate.h"
#include "window/Explorer.h"

#include <QDir>
#include <QSignalSpy>
#include <QStandardPaths>
#include <algorithm>

using namespace orvane;
using orvane::test::TempTree;

namespace {
QUrl local(const QString& path) {
    return QUrl::fromLocalFile(path);
}

QStringList names(const PinnedStore& store) {
    QStringList list;
    for (const QUrl& url : store.urls())
        list << url.path().section(u'/', -1);
    return list;
}
} // namespace

class PinnedStoreTest : public QObject {
    Q_OBJECT
    std::unique_ptr<TempTree> tree;
    QString settingsFile;
    std::unique_ptr<Settings> settings;

    std::unique_ptr<PinnedStore> store() { return std::make_unique<PinnedStore>(*settings); }
    // A store over pins A, B, C with the default seeds removed.
    std::unique_ptr<PinnedStore> storeABC() {
        QSettings(settingsFile, QSettings::IniFormat).setValue(Settings::pinsKey, QStringList());
        auto s = store();
        for (const char* n : {"A", "B", "C"})
            s->pin(local(tree->path(QLatin1String(n))));
        return s;
    }

private slots:
    void init() {
        tree = std::make_unique<TempTree>();
        for (const char* n : {"A", "B", "C", "Project/Assets", "Project-old"})
            tree->folder(QLatin1String(n));
        tree->file("plain.txt");
        settingsFile = tree->path("prefs.ini");
        settings = std::make_unique<Settings>(settingsFile);
    }

    void seedsOnceAndAnEmptiedListStaysEmpty() {
        auto first = store();
        const QStringList expected = {
            "Desktop",
            "Downloads",
            "Documents",
            "Pictures",
            QStandardPaths::writableLocation(QStandardPaths::MoviesLocation).section(u'/', -1),
            "Music"};
        QCOMPARE(names(*first), expected);
        QCOMPARE(store()->urls(), first->urls());
        const QList<QUrl> seeded = first->urls();
        for (const QUrl& url : seeded)
            QVERIFY(first->unpin(url));
        QVERIFY(store()->urls().isEmpty());
    }

    void pinRefusals_data() {
        QTest::addColumn<QString>("target");
        QTest::addColumn<bool>("changes");
        QTest::newRow("plain file") << "plain.txt" << false;
        QTest::newRow("missing path") << "nowhere" << false;
        QTest::newRow("folder") << "Project" << true;
        QTest::newRow("pinned again through a dot") << "A/." << false;
        QTest::newRow("pinned again through a link") << "linkToA" << false;
    }
    void pinRefusals() {
        QFETCH(QString, target);
        QFETCH(bool, changes);
        QVERIFY(QFile::link(tree->path("A"), tree->path("linkToA")));
        auto s = storeABC();
        QSignalSpy posted(settings.get(), &Settings::pinsChanged);
        QCOMPARE(s->pin(local(tree->path(target))), changes);
        QCOMPARE(posted.count(), changes ? 1 : 0);
        QCOMPARE(s->urls().size(), changes ? 4 : 3);
    }

    void moveByInsertionSlot_data() {
        QTest::addColumn<QString>("pin");
        QTest::addColumn<int>("slot");
        QTest::addColumn<bool>("changes");
        QTest::addColumn<QStringList>("order");
        QTest::newRow("last to the front") << "C" << 0 << true << QStringList{"C", "A", "B"};
        QTest::newRow("first into the middle") << "A" << 2 << true << QStringList{"B", "A", "C"};
        QTest::newRow("first to the end") << "A" << 3 << true << QStringList{"B", "C", "A"};
        QTest::newRow("middle to the end") << "B" << 3 << true << QStringList{"A", "C", "B"};
        QTest::newRow("slot before itself") << "B" << 1 << false << QStringList{"A", "B", "C"};
        QTest::newRow("slot after itself") << "B" << 2 << false << QStringList{"A", "B", "C"};
        QTest::newRow("below range") << "A" << -1 << false << QStringList{"A", "B", "C"};
        QTest::newRow("above range") << "A" << 4 << false << QStringList{"A", "B", "C"};
        QTest::newRow("not pinned") << "Project" << 0 << false << QStringList{"A", "B", "C"};
    }
    void moveByInsertionSlot() {
        QFETCH(QString, pin);
        QFETCH(int, slot);
        QFETCH(bool, changes);
        QFETCH(QStringList, order);
        auto s = storeABC();
        QSignalSpy posted(settings.get(), &Settings::pinsChanged);
        QCOMPARE(s->move(local(tree->path(pin)), slot), changes);
        QCOMPARE(posted.count(), changes ? 1 : 0);
        QCOMPARE(names(*s), order);
        QCOMPARE(names(*store()), order);
    }

    void foreignSchemesAreRefused() {
        auto s = storeABC();
        const QUrl web(QStringLiteral("https://example.org/A"));
        QVERIFY(!s->pin(web));
        QVERIFY(!s->move(web, 0));
        QVERIFY(!s->unpin(web));
        QVERIFY(!s->contains(web));
    }

    // A stale store moves within the newest order, keeping what the other store did.
    void staleStoreMovesWithinTheNewestOrder() {
        auto first = storeABC();
        auto stale = store();
        QVERIFY(first->move(local(tree->path("A")), 3));
        QVERIFY(stale->move(local(tree->path("C")), 0));
        QCOMPARE(names(*stale), QStringList({"C", "B", "A"}));
        first->reload();
        QCOMPARE(names(*first), QStringList({"C", "B", "A"}));
    }

    void unpinAndPinAgain() {
        auto s = storeABC();
        auto other = store();
        QVERIFY(s->unpin(local(tree->path("B"))));
        QVERIFY(!s->unpin(local(tree->path("B"))));
        other->reload();
        QVERIFY(!other->contains(local(tree->path("B"))));
        QVERIFY(s->pin(local(tree->path("B"))));
        QCOMPARE(names(*s), QStringList({"A", "C", "B"}));
    }

    void replaceFollowsRenamesAndDescendants() {
        QSettings(settingsFile, QSettings::IniFormat).setValue(Settings::pinsKey, QStringList());
        auto s = store();
        for (const char* n : {"Project-old", "Project/Assets", "Project"})
            QVERIFY(s->pin(local(tree->path(QLatin1String(n)))));
        QVERIFY(QDir().rename(tree->path("Project"), tree->path("Renamed")));
        QVERIFY(s->replace(local(tree->path("Project")), local(tree->path("Renamed"))));
        QCOMPARE(names(*s), QStringList({"Project-old", "Assets", "Renamed"}));
        QVERIFY(s->contains(local(tree->path("Renamed/Assets"))));
        QVERIFY(!s->contains(local(tree->path("Project"))));
        QVERIFY(!s->replace(local(tree->path("Unrelated")), local(tree->path("A"))));
    }

    // A pin is kept by its exact bytes across a reload from the preferences file and a rename.
    void namesThatAreNotUtf8() {
        QSettings(settingsFile, QSettings::IniFormat).setValue(Settings::pinsKey, QStringList());
        const QString stray = tree->rawFile("pin\xFF/x").section(u'/', 0, -2);
        const QString lookalike = tree->rawFile("pin\xEF\xBF\xBD/x").section(u'/', 0, -2);
        QVERIFY(store()->pin(local(stray)));
        auto s = store();
        QCOMPARE(s->urls(), QList<QUrl>{local(stray)});
        QVERIFY(s->contains(local(stray)) && !s->contains(local(lookalike)));
        const QString moved = NativePath::decode(NativePath::encode(stray) + "\xFE");
        QVERIFY(::rename(NativePath::encode(stray).constData(), NativePath::encode(moved).constData()) == 0);
        QVERIFY(s->replace(local(stray), local(moved)));
        QCOMPARE(store()->urls(), QList<QUrl>{local(moved)});
    }

    void deletedFoldersStayAndCanBeRemoved() {
        auto s = storeABC();
        QVERIFY(QDir(tree->path("B")).removeRecursively());
        QCOMPARE(store()->urls().size(), 3);
        QVERIFY(s->move(local(tree->path("B")), 0));
        QVERIFY(s->unpin(local(tree->path("B"))));
    }

    void phonePinsKeepTheirAddress() {
        auto s = storeABC();
        const QUrl phone(
            QStringLiteral("android://phone/Internal%20storage/DCIM?location=W3sibmFtZSI6IkRDSU0ifV0="));
        QVERIFY(s->pin(phone));
        QVERIFY(!s->pin(phone));
        auto fresh = store();
        QCOMPARE(fresh->urls().last(), phone);
        QVERIFY(fresh->unpin(QUrl(QStringLiteral("android://phone/Internal%20storage/DCIM"))));
    }

    void corruptValuesLoseOnlyThemselves() {
        QSettings raw(settingsFile, QSettings::IniFormat);
        raw.setValue(Settings::pinsKey,
                     QStringList{tree->path("A"), QString(), QStringLiteral("relative/x"), tree->path("A"),
                                 QStringLiteral("android://bad url %%"), tree->path("B") + u'/'});
        raw.sync();
        QCOMPARE(names(*store()), QStringList({"A", "B"}));
        raw.setValue(Settings::pinsKey, 42);
        raw.sync();
        QVERIFY(store()->urls().isEmpty());
    }

    // A pin made in one window reaches every other open window through the settings' signal.
    void aPinInOneWindowShowsInAnother() {
        AppDelegate app(new Services(settingsFile));
        Explorer* one = app.newWindow(local(tree->path()));
        Explorer* two = app.newWindow(local(tree->path("C")));
        // Counts A's rows alone: the Locations rows follow whatever other programs mount meanwhile.
        const QString a = tree->path("A");
        const auto rowsOfA = [two, a] {
            const QList<SidebarPlace>& places = two->findChild<PlacesTable*>()->tree().snapshot().places;
            return std::count_if(places.begin(), places.end(),
                                 [&](const SidebarPlace& p) { return p.location == a; });
        };
        const auto before = rowsOfA();
        one->navigate(local(a));
        one->findChild<NavigationPane*>()->pinAction();
        QCOMPARE(rowsOfA(), before + 1);
        QVERIFY(two->findChild<NavigationPane*>()->pins().contains(local(tree->path("A"))));
        QCOMPARE(one->commands().title(QStringLiteral("pinAction")),
                 QStringLiteral("Unpin from Quick access"));
        one->findChild<NavigationPane*>()->pinAction();
        QVERIFY(!two->findChild<NavigationPane*>()->pins().contains(local(tree->path("A"))));
        QCOMPARE(rowsOfA(), before);
    }
};

ORVANE_TEST_MAIN(PinnedStoreTest)
#include "PinnedStoreTest.moc"
