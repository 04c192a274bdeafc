#include "system/ExternalOpenRequests.h"
#include "core/Job.h"
#include "core/Jobs.h"
#include "core/WindowListing.h"
#include "platform/NativePath.h"
#include "support/TempTree.h"
#include "support/TestEnvironment.h"
#include "support/WindowDriver.h"
#include "support/WindowFixture.h"
#include "window/AppDelegate.h"
#include "window/Explorer.h"

#include <QDialog>
#include <QDir>
#include <QFile>
#include <QLabel>

using namespace orvane;
using namespace orvane::test;

namespace {
int tabCount(const AppDelegate& app) {
    int n = 0;
    for (const auto& window : app.windows)
        n += window->tabs().count();
    return n;
}

QStringList selectedNames(const Explorer& window) {
    QStringList names;
    for (const Entry& e : window.selected())
        names << e.name();
    return names;
}
} // namespace

class ExternalOpenRequestsTest : public QObject, WindowFixture {
    Q_OBJECT

    QUrl at(const QString& relative = {}) const { return QUrl::fromLocalFile(tree->path(relative)); }

private slots:
    void init() {
        startProgram();
        tree->file(QStringLiteral("Docs/a.txt"));
        tree->file(QStringLiteral("Docs/.hidden.txt"));
        tree->folder(QStringLiteral("Other"));
        app->didFinishLaunching = true;
    }
    void cleanup() { stopProgram(); }

    // A tab that already shows the folder, by any spelling, is brought forward; nothing new opens.
    void anOpenFolderIsFoundInAnyWindow() {
        app->newWindow(at());
        Explorer* two = app->newWindow(at(QStringLiteral("Other")));
        two->activateTab(two->tabs().append(TabState::at(at(QStringLiteral("Docs")))));
        app->receiveExternalURLs({at(QStringLiteral("Other/../Other"))});
        QCOMPARE(tabCount(*app), 3);
        QCOMPARE(two->tabs().active(), 0);

        app->receiveExternalURLs({at(QStringLiteral("Docs/a.txt"))});
        QCOMPARE(two->tabs().active(), 1);
        QTRY_COMPARE(selectedNames(*two), QStringList{"a.txt"});
        QCOMPARE(tabCount(*app), 3);
    }

    // Busy windows are left alone: the request gets a window of its own.
    void busyWindowsGetNoNewTab() {
        Explorer* busy = app->newWindow(at());
        Job* job = busy->jobs().start(QStringLiteral("Copying"), busy);
        app->receiveExternalURLs({at(QStringLiteral("Docs"))});
        QCOMPARE(app->windows.size(), size_t(2));
        QCOMPARE(busy->tabs().count(), 1);
        QCOMPARE(app->windows.back()->current(),
                 QUrl::fromLocalFile(NativePath::canonical(tree->path("Docs"))));
        job->finish();
    }

    // A hidden item asked for is shown and selected, in its window only.
    void aHiddenItemTurnsOnHiddenFilesThere() {
        Explorer* other = app->newWindow(at(QStringLiteral("Other")));
        Job* job = other->jobs().start(QStringLiteral("Copying"), other);
        app->receiveExternalURLs({at(QStringLiteral("Docs/.hidden.txt"))});
        Explorer* shown = app->windows.back().get();
        QVERIFY(shown != other && shown->listing().showHidden());
        QVERIFY(!other->listing().showHidden());
        QTRY_COMPARE(selectedNames(*shown), QStringList{".hidden.txt"});
        job->finish();
    }

    // With nothing found the answer is an alert, on a window made for it if there is none.
    void nothingFoundIsAnAlert() {
        app->receiveExternalURLs({at(QStringLiteral("gone")), QUrl(QStringLiteral("https://example.org/"))});
        QCOMPARE(app->windows.size(), size_t(1));
        QCOMPARE(takeAlert(*app->windows.front()), QStringLiteral("Requested item is unavailable|") +
                                                       tree->path(QStringLiteral("gone")) +
                                                       QStringLiteral("\nhttps://example.org/"));
        app->receiveExternalURLs({at(QStringLiteral("Other")), at(QStringLiteral("gone"))});
        QCOMPARE(app->windows.front()->widgets().status->text(),
                 QStringLiteral("Could not find 1 requested item(s)"));
    }

    // Requests made while a dialog is up wait for it, and keep their order.
    void aModalDialogHoldsRequestsBack() {
        Explorer* window = app->newWindow(at());
        QDialog dialog(window);
        dialog.setModal(true);
        dialog.show();
        QTRY_VERIFY(QApplication::activeModalWidget());
        app->receiveExternalURLs({at(QStringLiteral("Docs"))});
        app->receiveExternalURLs({at(QStringLiteral("Other"))});
        QTest::qWait(300); // UNAVOIDABLE: proves that nothing opens while the dialog stands
        QCOMPARE(window->tabs().count(), 1);
        dialog.close();
        QTRY_COMPARE(window->tabs().count(), 3);
        QCOMPARE(window->tabs().all()[1].url.fileName(), QStringLiteral("Docs"));
        QCOMPARE(window->tabs().all()[2].url.fileName(), QStringLiteral("Other"));
    }

    // Relative paths stand in the working folder; a file URL keeps bytes that are not UTF-8.
    void commandLinesKeepExactPaths() {
        const QString before = QDir::currentPath();
        QVERIFY(QDir::setCurrent(tree->path(QStringLiteral("Docs"))));
        QByteArray args[] = {"orvane", "--verbose", "a.txt", "file:///srv/bad%FF", "/abs/x"};
        char* argv[] = {args[0].data(), args[1].data(), args[2].data(), args[3].data(), args[4].data()};
        const QList<QUrl> urls = ExternalOpenRequests::fromArguments(5, argv);
        QDir::setCurrent(before);
        QCOMPARE(urls.size(), 3);
        QCOMPARE(NativePath::canonical(urls[0].toLocalFile()),
                 NativePath::canonical(tree->path(QStringLiteral("Docs/a.txt"))));
        QCOMPARE(NativePath::encode(urls[1].toLocalFile()), QByteArray("/srv/bad\xff"));
        QCOMPARE(urls[2], QUrl::fromLocalFile(QStringLiteral("/abs/x")));
    }
};

ORVANE_TEST_MAIN(ExternalOpenRequestsTest)
#include "ExternalOpenRequestsTest.moc"
