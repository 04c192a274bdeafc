#include "navigation/PlacesTable.h"
#include "core/PinnedStore.h"
#include "core/Settings.h"
#include "navigation/SidebarLocations.h"
#include "platform/DesktopTrash.h"
#include "platform/NativePath.h"
#include "support/TempTree.h"
#include "support/TestEnvironment.h"

#include <QAbstractButton>
#include <QAccessible>
#include <QAccessibleActionInterface>
#include <QMenu>
#include <QSignalSpy>
#include <sys/mount.h>
#include <unistd.h>

using namespace orvane;
using orvane::test::TempTree;

// The pane on its own over a real store in a temporary preferences file.
class PlacesTableTest : public QObject {
    Q_OBJECT
    std::unique_ptr<TempTree> tree;
    QString settingsFile;
    std::unique_ptr<Settings> settings;
    std::unique_ptr<PinnedStore> store;
    std::unique_ptr<PlacesTable> table;

    QUrl local(const QString& relative) const { return QUrl::fromLocalFile(tree->path(relative)); }
    int rowOf(const QString& title, int from = 0) const {
        const SidebarTreeSnapshot& s = table->tree().snapshot();
        for (int row = from; row < s.count(); ++row)
            if (s.places[row].title == title) return row;
        return -1;
    }
    QStringList titles() const {
        QStringList list;
        for (const SidebarPlace& p : table->tree().snapshot().places)
            list << p.title;
        return list;
    }
    QStringList storedPins() const {
        return QSettings(settingsFile, QSettings::IniFormat).value(Settings::pinsKey).toStringList();
    }
    QPoint lowerHalf(int row) const { return table->rowRect(row).center() + QPoint(0, 6); }

private slots:
    void init() {
        tree = std::make_unique<TempTree>();
        for (const char* f : {"A/inner", "B", "C"})
            tree->folder(QLatin1String(f));
        settingsFile = tree->path("prefs.ini");
        QSettings(settingsFile, QSettings::IniFormat).setValue(Settings::pinsKey, QStringList());
        settings = std::make_unique<Settings>(settingsFile);
        store = std::make_unique<PinnedStore>(*settings);
        for (const char* f : {"A", "B", "C"})
            store->pin(local(QLatin1String(f)));
        table = std::make_unique<PlacesTable>(*store);
        table->resize(280, 900);
        table->show();
        QVERIFY(QTest::qWaitForWindowExposed(table.get()));
    }
    void cleanup() {
        table.reset();
        store.reset();
    }

    void sectionsPinsAndLocationsWithoutPhone() {
        const QStringList shown = titles();
        QCOMPARE(shown.mid(0, 6), QStringList({"Home", "Quick access", "A", "B", "C", "Locations"}));
        QCOMPARE(shown[6], SidebarLocations::current(false).rootWord);
        QVERIFY(!shown.contains("Android USB"));
        store->pin(QUrl(QStringLiteral("android://phone/Internal%20storage/DCIM")));
        QVERIFY(titles().contains("DCIM")); // a phone pin stays without a phone
        QVERIFY(!titles().contains("Android USB"));
        table->setPhoneConnected(true, QStringLiteral("locked"));
        QCOMPARE(titles().last(), QStringLiteral("Android USB (locked)"));
        table->setPhoneConnected(true);
        QCOMPARE(titles().last(), QStringLiteral("Android USB"));
    }

    void disclosureExpandsAndClicksOpen() {
        QAbstractButton* button = table->disclosureButton(rowOf("A"));
        QVERIFY(button);
        QCOMPARE(button->accessibleName(), QStringLiteral("Expand A"));
        button->click();
        QCOMPARE(rowOf("inner"), rowOf("A") + 1);
        QCOMPARE(table->disclosureButton(rowOf("A"))->accessibleName(), QStringLiteral("Collapse A"));
        QSignalSpy open(table.get(), &PlacesTable::openRequested);
        for (int click = 0; click < 2; ++click) // a second click on the selected row goes there again
            QTest::mouseClick(table->viewport(), Qt::LeftButton, {}, table->rowRect(rowOf("inner")).center());
        QCOMPARE(open.size(), 2);
        QCOMPARE(open.last().first().toUrl(), local("A/inner"));
        QTest::mouseClick(table->viewport(), Qt::LeftButton, {},
                          table->rowRect(rowOf("Quick access")).center());
        QCOMPARE(open.size(), 2);
        QCOMPARE(table->tree().selectedRow(), rowOf("inner"));
        QVERIFY(table->handleKey(PhysicalKey::Left)); // steps out to A and goes there
        QCOMPARE(open.last().first().toUrl(), local("A"));
        QVERIFY(table->handleKey(PhysicalKey::Left)); // closes A
        QCOMPARE(rowOf("inner"), -1);
    }

    // Rows have no widgets, so assistive tools reach them only through the pane's own interface.
    void rowsAreNamedAndPressableThroughAccessibility() {
        QAccessibleInterface* pane = QAccessible::queryAccessibleInterface(table.get());
        QVERIFY(pane);
        QCOMPARE(pane->role(), QAccessible::Tree);
        QCOMPARE(pane->childCount(), table->tree().snapshot().count());
        QAccessibleInterface* section = pane->child(rowOf("Quick access"));
        QCOMPARE(section->role(), QAccessible::StaticText);
        QVERIFY(section->actionInterface()->actionNames().isEmpty());
        QAccessibleInterface* a = pane->child(rowOf("A"));
        QCOMPARE(a->text(QAccessible::Name), QStringLiteral("A"));
        QCOMPARE(a->role(), QAccessible::TreeItem);
        QCOMPARE(pane->indexOfChild(a), rowOf("A"));
        QVERIFY(a->state().collapsed && !a->state().selected);
        QCOMPARE(pane->childAt(a->rect().center().x(), a->rect().center().y()), a);
        // The disclosure is a button of the row's own, named and pressed as the chevron is clicked.
        QCOMPARE(a->childCount(), 1);
        QAccessibleInterface* disclosure = a->child(0);
        QCOMPARE(disclosure->role(), QAccessible::PushButton);
        QCOMPARE(disclosure->text(QAccessible::Name), QStringLiteral("Expand A"));
        QCOMPARE(disclosure->parent(), a);
        QCOMPARE(a->indexOfChild(disclosure), 0);
        QCOMPARE(disclosure->rect(),
                 QRect(table->viewport()->mapToGlobal(table->disclosureButton(rowOf("A"))->pos()),
                       table->disclosureButton(rowOf("A"))->size()));
        disclosure->actionInterface()->doAction(QAccessibleActionInterface::pressAction());
        QCOMPARE(rowOf("inner"), rowOf("A") + 1);
        QVERIFY(a->state().expanded);
        QCOMPARE(disclosure->text(QAccessible::Name), QStringLiteral("Collapse A"));
        QCOMPARE(disclosure->text(QAccessible::Description), QStringLiteral("Collapse A"));
        QSignalSpy open(table.get(), &PlacesTable::openRequested);
        pane->child(rowOf("inner"))->actionInterface()->doAction(QAccessibleActionInterface::pressAction());
        QCOMPARE(open.size(), 1);
        QCOMPARE(open.last().first().toUrl(), local("A/inner"));
        QVERIFY(pane->child(rowOf("inner"))->state().selected);
    }

    void dropOnOwnSlotIsRefusedAndNothingIsSaved() {
        const QStringList before = storedPins();
        int posted = 0;
        QObject guard;
        connect(settings.get(), &Settings::pinsChanged, &guard, [&posted] { ++posted; });
        const QString b = tree->path("B");
        QVERIFY(!table->proposePinDrop(b, table->rowRect(rowOf("B")).center() - QPoint(0, 6)));
        QVERIFY(!table->dropPin(b, lowerHalf(rowOf("B"))));                  // just behind its own row
        QVERIFY(!table->dropPin(tree->path("A"), lowerHalf(rowOf("Home")))); // above the first pin
        QCOMPARE(storedPins(), before);
        QCOMPARE(posted, 0);
    }

    void dropOnLocationsPlacesLast() {
        QSignalSpy status(table.get(), &PlacesTable::statusMessage);
        QVERIFY(table->dropPin(tree->path("A"), lowerHalf(rowOf("Locations"))));
        QCOMPARE(status.last().first().toString(), QStringLiteral("Quick access order saved"));
        QCOMPARE(titles().mid(2, 3), QStringList({"B", "C", "A"}));
        QVERIFY(table->dropPin(tree->path("A"), table->rowRect(rowOf("B")).topLeft() + QPoint(5, 2)));
        QCOMPARE(titles().mid(2, 3), QStringList({"A", "B", "C"}));
    }

    // Another window's pane over the same preferences sees the order change, and can drop too.
    void pinsMoveAcrossWindowsInOneStore() {
        PinnedStore otherStore(*settings);
        PlacesTable other(otherStore);
        other.resize(280, 900);
        QVERIFY(table->dropPin(tree->path("C"), table->rowRect(rowOf("A")).center() - QPoint(0, 6)));
        QCOMPARE(other.tree().snapshot().places[2].title, QStringLiteral("C"));
        const QString a = tree->path("A");
        const QStringList otherTitles = [&] {
            QStringList list;
            for (const SidebarPlace& p : other.tree().snapshot().places)
                list << p.title;
            return list;
        }();
        QVERIFY(other.dropPin(a, other.rowRect(int(otherTitles.indexOf("Locations"))).topLeft()));
        QCOMPARE(titles().mid(2, 3), QStringList({"C", "B", "A"}));
    }

    void contextMenuPinsAndUnpins() {
        QMenu* menu = table->sidebarMenu(rowOf("Home"));
        QVERIFY(menu);
        QStringList items;
        for (QAction* a : menu->actions())
            items << a->text();
        QCOMPARE(items, QStringList({"Open", "Open in new tab", "Pin to Quick access"}));
        QVERIFY(!table->sidebarMenu(rowOf("Quick access")));
        QMenu* pinMenu = table->sidebarMenu(rowOf("B"));
        QCOMPARE(pinMenu->actions().last()->text(), QStringLiteral("Unpin from Quick access"));
        pinMenu->actions().last()->trigger();
        QCOMPARE(rowOf("B"), -1);
    }

    // The Trash row's can follows the Trash, filled and emptied by anyone; its menu empties it when full.
    void theTrashRowShowsWhetherAnythingIsIn() {
        int emptied = 0;
        table->emptyTrash = [&emptied] { ++emptied; };
        const auto symbol = [this] { return table->tree().snapshot().places[rowOf("Trash")].symbol; };
        const auto emptyItem = [this] { return table->sidebarMenu(rowOf("Trash"))->actions().last(); };
        QCOMPARE(symbol(), QStringLiteral("trash"));
        QCOMPARE(emptyItem()->text(), QStringLiteral("Empty Trash"));
        QVERIFY(!emptyItem()->isEnabled());
        QString trashed, error;
        QVERIFY2(DesktopTrash::moveIn(tree->file("gone.txt"), trashed, error), qPrintable(error));
        QTRY_COMPARE(symbol(), QStringLiteral("trash.full"));
        emptyItem()->trigger();
        QCOMPARE(emptied, 1);
        QVERIFY(::unlink(NativePath::encode(trashed).constData()) == 0);
        DesktopTrash::forget(trashed);
        QTRY_COMPARE(symbol(), QStringLiteral("trash"));
    }

    // The mount table is watched: a volume comes and goes while the pane is open.
    void aMountedVolumeAppearsAndGoes() {
        const QString point = QStringLiteral("/mnt/orvane-test-%1").arg(getpid());
        if (geteuid() != 0 || !QDir().mkpath(point)) QSKIP("needs to mount");
        if (mount(QFile::encodeName(tree->path("B")).constData(), QFile::encodeName(point).constData(),
                  nullptr, MS_BIND, nullptr) != 0) {
            QDir().rmdir(point);
            QSKIP("mounting is not allowed here");
        }
        const QString name = point.section(u'/', -1);
        QTRY_VERIFY(titles().contains(name));
        umount2(QFile::encodeName(point).constData(), MNT_DETACH);
        QDir().rmdir(point);
        QTRY_VERIFY(!titles().contains(name));
    }
};

ORVANE_TEST_MAIN(PlacesTableTest)
#include "PlacesTableTest.moc"
