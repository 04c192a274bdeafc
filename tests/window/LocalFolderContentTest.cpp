#include "window/LocalFolderContent.h"
#include "core/Job.h"
#include "core/Jobs.h"
#include "support/TempTree.h"
#include "support/TestEnvironment.h"
#include "support/WindowDriver.h"
#include "support/WindowFixture.h"
#include "views/FileTable.h"
#include "window/AppDelegate.h"
#include "window/Explorer.h"

#include <QFile>
#include <QLabel>
#include <QSignalSpy>
#include <unistd.h>

using namespace orvane;
using namespace orvane::test;

class LocalFolderContentTest : public QObject, WindowFixture {
    Q_OBJECT

    bool lists(const QString& name) const {
        return std::any_of(w->entries().begin(), w->entries().end(),
                           [&](const Entry& e) { return e.name() == name; });
    }

private slots:
    void init() {
        startProgram();
        for (const char* name : {"alpha.txt", "beta.txt", "gamma.txt"})
            tree->file(name, "x");
        openWindow();
    }
    void cleanup() { stopProgram(); }

    void aBurstOfChangesIsOneOrTwoRefreshes() {
        QSignalSpy refreshes(&w->events(), &ExplorerEvents::listingChanged);
        for (int i = 0; i < 100; ++i)
            tree->file(QStringLiteral("new%1.txt").arg(i), "x");
        QTRY_COMPARE(int(w->entries().size()), 103);
        // No further refresh may follow, which only waiting past the burst can show.
        QTest::qWait(2 * LocalFolderContent::burstMs); // UNAVOIDABLE: proves an absence
        QVERIFY2(refreshes.size() >= 1 && refreshes.size() <= 2,
                 qPrintable(QString::number(refreshes.size())));
    }

    // The current row and the selection stay on their items while others come and go on disk.
    void aRefreshKeepsTheSelectionInPlace() {
        selectNames(*w, {"beta.txt"});
        w->table()->selectionModel()->setCurrentIndex(w->table()->model()->index(1, 0),
                                                      QItemSelectionModel::NoUpdate);
        QSignalSpy resets(w->table()->model(), &QAbstractItemModel::modelReset);
        tree->file("aardvark.txt", "x");
        QFile::remove(tree->path("gamma.txt"));
        QTRY_VERIFY(lists("aardvark.txt") && !lists("gamma.txt"));
        QCOMPARE(resets.size(), 0);
        QCOMPARE(w->selected().size(), size_t(1));
        QCOMPARE(w->selected().front().name(), QStringLiteral("beta.txt"));
        QCOMPARE(w->table()->selectionModel()->currentIndex().row(), 2);
    }

    // Filtering and sorting work on what was read: a file gone from disk meanwhile stays listed.
    void filterAndSortNeverReadTheDisk() {
        auto* content = dynamic_cast<LocalFolderContent*>(w->contentFor(w->current()));
        emit w->events().editingChanged(true); // keeps the watcher's own refresh out of the way
        QFile::remove(tree->path("beta.txt"));
        w->commands().run(QStringLiteral("setSearchText"), QStringLiteral("ET"));
        QCOMPARE(w->entries().size(), size_t(1));
        QVERIFY(lists("beta.txt"));
        w->commands().run(QStringLiteral("setSearchText"), QString());
        w->commands().run(QStringLiteral("reverseSort"));
        QCOMPARE(w->entries().front().name(), QStringLiteral("gamma.txt"));
        QVERIFY(lists("beta.txt"));
        QTRY_VERIFY(content->changesWaiting());
        emit w->events().editingChanged(false);
        QVERIFY(!lists("beta.txt"));
    }

    void theWindowTellsWhatHappened() {
        QSignalSpy location(&w->events(), &ExplorerEvents::locationChanged);
        QSignalSpy selection(&w->events(), &ExplorerEvents::selectionChanged);
        QSignalSpy busy(&w->events(), &ExplorerEvents::busyChanged);
        QVERIFY(w->navigate(QUrl::fromLocalFile(tree->folder("Sub"))));
        QCOMPARE(location.size(), 1);
        w->up();
        QCOMPARE(location.size(), 2);
        QCOMPARE(w->selected().front().name(), QStringLiteral("Sub")); // where we came from
        QVERIFY(selection.size() >= 1);
        Job* first = w->jobs().start(QStringLiteral("one"), w);
        Job* second = w->jobs().start(QStringLiteral("two"), w);
        first->finish();
        QCOMPARE(busy.size(), 1);
        second->finish();
        QCOMPARE(busy.size(), 2);
    }

    void anUnreadableFolderSaysSoAndLosesNothing() {
        if (geteuid() == 0) QSKIP("root reads every folder");
        const QString locked = tree->folder("Locked");
        tree->file("Locked/inside.txt", "x");
        QFile::setPermissions(locked, QFileDevice::Permissions());
        QVERIFY(w->navigate(QUrl::fromLocalFile(locked)));
        QVERIFY(w->entries().empty());
        QVERIFY(!w->widgets().status->text().isEmpty());
        QFile::setPermissions(locked,
                              QFileDevice::ReadOwner | QFileDevice::WriteOwner | QFileDevice::ExeOwner);
        QVERIFY(QFile::exists(tree->path("Locked/inside.txt")));
    }
};

ORVANE_TEST_MAIN(LocalFolderContentTest)
#include "LocalFolderContentTest.moc"
