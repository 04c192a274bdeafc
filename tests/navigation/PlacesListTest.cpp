#include "navigation/PlacesList.h"

#include "browsing/AppDelegate.h"
#include "browsing/EditablePathBox.h"
#include "browsing/Explorer.h"
#include "browsing/Preferences.h"
#include "navigation/PinnedStore.h"
#include "support/TempTree.h"
#include "support/TestEnvironment.h"
#include "support/WindowDriver.h"

#include <QLineEdit>
#include <QListWidget>

using namespace orvane;
using namespace orvane::test;

class PlacesListTest : public QObject {
    Q_OBJECT
    std::unique_ptr<TempTree> tree;
    std::unique_ptr<AppDelegate> app;
    Explorer* w = nullptr;

    QUrl url(const QString& relative) const { return QUrl::fromLocalFile(tree->path(relative)); }
    // The row the pane shows as the place on screen, by its title; empty when none.
    QString highlighted() const {
        const QListWidget* list = w->widgets().places;
        const QList<QListWidgetItem*> chosen = list->selectedItems();
        return chosen.size() == 1 ? chosen.front()->text() : QString();
    }
    void clickPlace(const QString& title) {
        QListWidget* list = w->widgets().places;
        const QList<QListWidgetItem*> items = list->findItems(title, Qt::MatchExactly);
        QVERIFY(!items.isEmpty());
        QTest::mouseClick(list->viewport(), Qt::LeftButton, {}, list->visualItemRect(items.front()).center());
    }

private slots:
    void init() {
        tree = std::make_unique<TempTree>();
        tree->folder("Inbox");
        tree->folder("Photos/Holiday");
        Preferences::standard()->remove(QLatin1String(PinnedStore::defaultsKey));
        app = std::make_unique<AppDelegate>();
        w = app->newWindow(url(QString()));
        QVERIFY(QTest::qWaitForWindowExposed(w));
        auto* places = w->findChild<PlacesList*>();
        QVERIFY(places->pins().pin(url("Inbox")));
        QVERIFY(places->pins().pin(url("Photos")));
        QTRY_COMPARE(w->widgets().places->findItems("Photos", Qt::MatchExactly).size(), 1);
    }
    void cleanup() {
        app.reset();
        tree.reset();
    }

    // Whichever way the window gets somewhere, the pane marks that place, or none when it has no row.
    void followsEveryNavigation() {
        clickPlace(QStringLiteral("Inbox"));
        QCOMPARE(w->current(), url("Inbox"));
        QCOMPARE(highlighted(), QStringLiteral("Inbox"));
        // Typed into the address field.
        w->widgets().pathBox->showAddress();
        w->widgets().pathBox->addressField()->setText(tree->path("Photos"));
        w->addressGo();
        QCOMPARE(highlighted(), QStringLiteral("Photos"));
        // Into a folder with no row, and out of it again by Up.
        QTRY_VERIFY(!w->entries().empty());
        selectNames(*w, {"Holiday"});
        w->openSelected();
        QCOMPARE(w->current(), url("Photos/Holiday"));
        QCOMPARE(highlighted(), QString());
        w->up();
        QCOMPARE(highlighted(), QStringLiteral("Photos"));
        // History.
        w->back();
        QCOMPARE(highlighted(), QString());
        w->back();
        w->back();
        QCOMPARE(w->current(), url("Inbox"));
        QCOMPARE(highlighted(), QStringLiteral("Inbox"));
        w->forward();
        QCOMPARE(highlighted(), QStringLiteral("Photos"));
        // Tabs: each shows its own place.
        w->newTab();
        w->navigate(url("Inbox"));
        QCOMPARE(highlighted(), QStringLiteral("Inbox"));
        w->activateTab(0);
        QCOMPARE(highlighted(), QStringLiteral("Photos"));
    }

    // Walking the pane with the arrows moves its mark without going anywhere; leaving the pane
    // puts the mark back on the place shown.
    void aWalkThatOpensNothingIsForgotten() {
        QVERIFY(QTest::qWaitForWindowActive(w));
        w->navigate(url("Photos"));
        w->widgets().places->setFocus();
        QVERIFY(press(w, keys::Up));
        QCOMPARE(highlighted(), QStringLiteral("Inbox"));
        QCOMPARE(w->current(), url("Photos"));
        w->focusFileList();
        QCOMPARE(highlighted(), QStringLiteral("Photos"));
    }
};

ORVANE_TEST_MAIN(PlacesListTest)
#include "PlacesListTest.moc"
