#include "navigation/NavigationPane.h"
#include "core/PinnedStore.h"
#include "navigation/PlacesTable.h"
#include "support/TempTree.h"
#include "support/TestEnvironment.h"
#include "support/WindowDriver.h"
#include "support/WindowFixture.h"
#include "window/AppDelegate.h"
#include "window/Explorer.h"

#include <QDir>
#include <QLabel>

using namespace orvane;
using orvane::test::TempTree;
using orvane::test::WindowFixture;

// The pane inside a window: it follows every navigation and never navigates on its own.
class NavigationPaneTest : public QObject, WindowFixture {
    Q_OBJECT

    PlacesTable& table() const { return *w->findChild<PlacesTable*>(); }
    QString selected() const {
        const int row = table().tree().selectedRow();
        return row < 0 ? QString() : table().tree().snapshot().places[row].location;
    }
    int rowOf(const QString& location) const {
        const SidebarTreeSnapshot& s = table().tree().snapshot();
        for (int row = 0; row < s.count(); ++row)
            if (s.places[row].location == location) return row;
        return -1;
    }

private slots:
    void init() {
        startProgram();
        tree->folder("Project/Sources/Deep");
        openWindow(QDir::homePath());
        QVERIFY(w->findChild<NavigationPane*>()->pins().pin(QUrl::fromLocalFile(tree->path("Project"))));
    }
    void cleanup() { stopProgram(); }

    void selectionFollowsTheWindow() {
        QCOMPARE(selected(), QDir::homePath()); // Home comes first
        w->navigate(QUrl::fromLocalFile(tree->path("Project")));
        QCOMPARE(selected(), tree->path("Project"));
        w->navigate(QUrl::fromLocalFile(tree->path("Project/Sources")));
        QCOMPARE(selected(), QString()); // shown nowhere yet
        QVERIFY(w->commands().run(QStringLiteral("expandToCurrentFolder")));
        QCOMPARE(selected(), tree->path("Project/Sources"));
        const SidebarTreeSnapshot& shown = table().tree().snapshot();
        QCOMPARE(shown.places[shown.rootOf(table().tree().selectedRow())].location, QStringLiteral("/"));
        QVERIFY(w->commands().run(QStringLiteral("back")));
        QCOMPARE(selected(), tree->path("Project"));
    }

    void collapseKeepsTheWindowWhereItIs() {
        const int pin = rowOf(tree->path("Project"));
        table().tree().setExpanded(pin, true);
        table().tree().setExpanded(rowOf(tree->path("Project/Sources")), true);
        table().openRow(rowOf(tree->path("Project/Sources/Deep")));
        QCOMPARE(w->current(), QUrl::fromLocalFile(tree->path("Project/Sources/Deep")));
        w->show();
        QVERIFY(QTest::qWaitForWindowActive(w));
        table().setFocus();
        QVERIFY(table().handleKey(PhysicalKey::Left)); // to Sources, navigating
        QCOMPARE(w->current(), QUrl::fromLocalFile(tree->path("Project/Sources")));
        QVERIFY(table().hasFocus());
        table().tree().select(rowOf(tree->path("Project/Sources")));
        table().tree().setExpanded(pin, false);
        QCOMPARE(selected(), tree->path("Project"));
        QCOMPARE(w->current(), QUrl::fromLocalFile(tree->path("Project/Sources")));
    }
};

ORVANE_TEST_MAIN(NavigationPaneTest)
#include "NavigationPaneTest.moc"
