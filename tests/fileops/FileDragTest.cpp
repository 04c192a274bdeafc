#include "fileops/FileDrag.h"
#include "core/UriList.h"
#include "fileops/FileDrop.h"
#include "platform/NativePath.h"
#include "support/TempTree.h"
#include "support/TestEnvironment.h"
#include "support/WindowDriver.h"
#include "support/WindowFixture.h"
#include "views/ExplorerIconView.h"
#include "views/ExplorerViewModes.h"
#include "views/FileTable.h"
#include "window/AppDelegate.h"
#include "window/Explorer.h"

#include "core/Job.h"
#include "core/Jobs.h"
#include "kit/WindowWidgets.h"

#include <QDropEvent>
#include <QLabel>
#include <QMimeData>
#include <sys/stat.h>

namespace {
bool isLink(const QString& path, QByteArray* target = nullptr) {
    struct stat facts;
    if (::lstat(orvane::NativePath::encode(path).constData(), &facts) != 0 || !S_ISLNK(facts.st_mode))
        return false;
    if (target) {
        char text[4096];
        const ssize_t n = ::readlink(orvane::NativePath::encode(path).constData(), text, sizeof text);
        *target = QByteArray(text, int(n));
    }
    return true;
}
} // namespace

using namespace orvane;
using namespace orvane::test;

class FileDragTest : public QObject, WindowFixture {
    Q_OBJECT

private slots:
    void init() {
        startProgram();
        tree->file(QStringLiteral("a.txt"));
        tree->file(QStringLiteral("b.txt"));
        tree->rawFile("bad\xff.txt");
        tree->folder(QStringLiteral("docs"));
        openWindow({}, true);
        QTRY_COMPARE(w->entries().size(), size_t(4));
    }
    void cleanup() { stopProgram(); }

    // A drag carries exactly the selection, each name by its exact bytes; nothing selected, no drag.
    void aDragCarriesTheSelection() {
        FileDrag* drag = w->findChild<FileDrag*>();
        QVERIFY(drag);
        w->table()->clearSelection();
        QVERIFY(!std::unique_ptr<QMimeData>(drag->dragData()));
        const QString raw = NativePath::decode(NativePath::encode(tree->path()) + "/bad\xff.txt");
        selectNames(*w, {NativePath::display(raw).section(u'/', -1), QStringLiteral("b.txt")});
        std::unique_ptr<QMimeData> data(drag->dragData());
        QVERIFY(data);
        QList<QUrl> urls = UriList::read(*data);
        std::sort(urls.begin(), urls.end());
        QList<QUrl> expected = {QUrl::fromLocalFile(raw),
                                QUrl::fromLocalFile(tree->path(QStringLiteral("b.txt")))};
        std::sort(expected.begin(), expected.end());
        QCOMPARE(urls, expected);
    }

    // A press on the selection that barely moves is neither a drag nor a rubber band.
    void aShortMoveKeepsTheSelection() {
        selectNames(*w, {QStringLiteral("a.txt"), QStringLiteral("b.txt")});
        QWidget* viewport = w->table()->viewport();
        const int row = w->table()->selectionModel()->selectedRows().first().row();
        const QPoint at = w->table()->visualRect(w->table()->model()->index(row, 0)).center();
        QTest::mousePress(viewport, Qt::LeftButton, {}, at);
        QMouseEvent move(QEvent::MouseMove, at + QPoint(0, 1), viewport->mapToGlobal(at + QPoint(0, 1)),
                         Qt::NoButton, Qt::LeftButton, Qt::NoModifier);
        QApplication::sendEvent(viewport, &move);
        QCOMPARE(w->table()->selectionModel()->selectedRows().size(), 2);
        QTest::mouseRelease(viewport, Qt::LeftButton, {}, at);
    }

    // Files from another program, dropped with each key onto a folder row, a file row or empty space.
    void dropsDoWhatTheirPlanSays_data() {
        QTest::addColumn<QString>("onto");
        QTest::addColumn<Qt::KeyboardModifiers>("keys");
        QTest::addColumn<QByteArray>("arrives"); // relative to the window's folder; empty: refused
        QTest::addColumn<bool>("sourceStays");
        QTest::addColumn<QString>("status");
        QTest::newRow("folder row copies")
            << "docs" << none << QByteArray("docs/x\xff.txt") << true << "Copy to docs";
        QTest::newRow("Ctrl copies") << "docs" << control << QByteArray("docs/x\xff.txt") << true
                                     << "Copy to docs";
        QTest::newRow("Shift moves") << "docs" << shift << QByteArray("docs/x\xff.txt") << false
                                     << "Move to docs";
        QTest::newRow("Alt links") << "docs" << alt << QByteArray("docs/x\xff.txt - Shortcut.alias") << true
                                   << "Create shortcuts in docs";
        QTest::newRow("Ctrl+Shift links")
            << "docs" << (control | shift) << QByteArray("docs/x\xff.txt - Shortcut.alias") << true
            << "Create shortcuts in docs";
        QTest::newRow("empty space copies into the folder shown")
            << "" << none << QByteArray("x\xff.txt") << true << "";
        QTest::newRow("a file row refuses") << "a.txt" << none << QByteArray("") << true << "";
    }
    void dropsDoWhatTheirPlanSays() {
        QFETCH(QString, onto);
        QFETCH(Qt::KeyboardModifiers, keys);
        QFETCH(QByteArray, arrives);
        QFETCH(bool, sourceStays);
        QFETCH(QString, status);
        TempTree outside;
        const QString source = outside.rawFile("x\xff.txt", "data");
        const QString before = w->widgets().status->text();
        const QPoint at = pointOver(onto);
        QMimeData data;
        UriList::write(data, {QUrl::fromLocalFile(source)});
        const Qt::DropActions offered = Qt::CopyAction | Qt::MoveAction | Qt::LinkAction;
        QDragMoveEvent over(at, offered, &data, Qt::LeftButton, keys);
        deliver(&over);
        QCOMPARE(over.isAccepted(), !arrives.isEmpty());
        if (!status.isEmpty()) QCOMPARE(w->widgets().status->text().section(u'\u00a0', 0, 0), status);
        QDropEvent drop(at, offered, &data, Qt::LeftButton, keys);
        deliver(&drop);
        QCOMPARE(drop.isAccepted(), !arrives.isEmpty());
        if (arrives.isEmpty()) {
            QCOMPARE(w->widgets().status->text(), before);
            QVERIFY(!NativePath::exists(NativePath::decode(NativePath::encode(tree->path()) + "/x\xff.txt")));
            return;
        }
        const QString landed = NativePath::decode(NativePath::encode(tree->path()) + '/' + arrives);
        QTRY_VERIFY(NativePath::exists(landed) && !w->busy());
        QCOMPARE(NativePath::exists(source), sourceStays);
        QByteArray target;
        if (isLink(landed, &target)) QCOMPARE(target, NativePath::encode(source));
    }

    // Nothing moves and nothing is lost: the plan refuses or the transfer reports.
    void badDropsLoseNothing_data() {
        QTest::addColumn<QString>("kind");
        QTest::newRow("folder onto itself") << "itself";
        QTest::newRow("window busy") << "busy";
        QTest::newRow("text only") << "text";
    }
    void badDropsLoseNothing() {
        QFETCH(QString, kind);
        QMimeData data;
        UriList::write(data, {QUrl::fromLocalFile(tree->path(QStringLiteral("docs")))});
        QPointer<Job> job;
        if (kind == QLatin1String("busy")) job = w->jobs().start(QStringLiteral("Holding"), w);
        if (kind == QLatin1String("text")) {
            data.clear();
            data.setText(tree->path(QStringLiteral("a.txt")));
        }
        QDropEvent drop(pointOver(QStringLiteral("docs")), Qt::CopyAction | Qt::MoveAction, &data,
                        Qt::LeftButton, shift);
        deliver(&drop);
        QVERIFY(!drop.isAccepted());
        if (job) job->finish();
        QVERIFY(NativePath::isDir(tree->path(QStringLiteral("docs"))));
        QVERIFY(NativePath::exists(tree->path(QStringLiteral("a.txt"))));
        QCOMPARE(QDir(tree->path(QStringLiteral("docs"))).isEmpty(), true);
    }

    // A drop whose files are gone by the release is an error, and the rest of the folder stays.
    void aDropOfVanishedFilesIsReported() {
        TempTree outside;
        const QString gone = outside.file(QStringLiteral("gone.txt"));
        QMimeData data;
        UriList::write(data, {QUrl::fromLocalFile(gone)});
        QFile::remove(gone);
        QDropEvent drop(pointOver(QStringLiteral("docs")), Qt::CopyAction, &data, Qt::LeftButton, none);
        deliver(&drop);
        QTRY_VERIFY(!takeAlert(*w).isEmpty());
        QVERIFY(QDir(tree->path(QStringLiteral("docs"))).isEmpty());
    }

    // The icon views' one drop hook holds the phone's drop in front of the file drop; files get through.
    void folderTilesTakeFilesPastThePhoneDrop() {
        ExplorerIconView* icons = w->findChild<ExplorerViewModes*>()->iconView();
        TempTree outside;
        QMimeData data;
        UriList::write(data, {QUrl::fromLocalFile(outside.file(QStringLiteral("y.txt")))});
        const Qt::DropActions offered = Qt::CopyAction | Qt::MoveAction | Qt::LinkAction;
        QDragMoveEvent over(QPoint(1, 1), offered, &data, Qt::LeftButton, alt);
        QCOMPARE(icons->onDropOperation(rowOf(QStringLiteral("a.txt")), over), Qt::IgnoreAction);
        QCOMPARE(icons->onDropOperation(rowOf(QStringLiteral("docs")), over), Qt::LinkAction);
        QDropEvent drop(QPoint(1, 1), offered, &data, Qt::LeftButton, alt);
        QVERIFY(icons->onPerformDrop(rowOf(QStringLiteral("docs")), drop));
        QTRY_VERIFY(isLink(tree->path(QStringLiteral("docs/y.txt - Shortcut.alias"))));
    }

    // Ten thousand files are one job with one progress and one undo step.
    void aLargeDropIsOneJobAndOneUndo() {
        TempTree outside;
        QList<QUrl> urls;
        for (int i = 0; i < 10000; ++i)
            urls << QUrl::fromLocalFile(outside.file(QStringLiteral("f%1").arg(i)));
        QMimeData data;
        UriList::write(data, urls);
        int jobs = 0;
        connect(&w->jobs(), &Jobs::started, this, [&jobs] { ++jobs; });
        QDropEvent drop(pointOver(QStringLiteral("docs")), Qt::CopyAction | Qt::MoveAction, &data,
                        Qt::LeftButton, shift);
        deliver(&drop);
        QVERIFY(drop.isAccepted());
        QTRY_VERIFY_WITH_TIMEOUT(!w->busy(), 60000);
        QCOMPARE(jobs, 1);
        QCOMPARE(QDir(tree->path(QStringLiteral("docs"))).count(), 10002u);
        QVERIFY(w->commands().run(QStringLiteral("undoAction")));
        QCOMPARE(QDir(outside.path()).count(), 10002u);
        QVERIFY(QDir(tree->path(QStringLiteral("docs"))).isEmpty());
    }

    // Make Alias names by the rule, numbers a taken name, and one undo removes only the last.
    void makeAliasNumbersAndUndoesOneStep() {
        for (int round = 0; round < 2; ++round) {
            selectNames(*w, {QStringLiteral("docs")});
            QVERIFY(w->commands().run(QStringLiteral("makeAlias")));
            QTRY_VERIFY(!w->busy());
        }
        QCOMPARE(w->widgets().status->text(), QStringLiteral("1 shortcuts created"));
        QByteArray target;
        QVERIFY(isLink(tree->path(QStringLiteral("docs - Shortcut.alias")), &target));
        QCOMPARE(target, QByteArray("docs")); // under the same folder: relative
        QVERIFY(isLink(tree->path(QStringLiteral("docs - Shortcut (2).alias"))));
        QVERIFY(w->commands().run(QStringLiteral("undoAction")));
        QVERIFY(!isLink(tree->path(QStringLiteral("docs - Shortcut (2).alias"))));
        QVERIFY(isLink(tree->path(QStringLiteral("docs - Shortcut.alias"))));
    }

private:
    // Qt hands drag events only to a drag it runs itself, so they go straight to the list's drop part.
    void deliver(QDropEvent* event) {
        QObject* drop = w->findChild<FileDrop*>();
        drop->eventFilter(w->table()->viewport(), event);
    }

    std::optional<int> rowOf(const QString& name) const {
        for (int row = 0; row < int(w->entries().size()); ++row)
            if (w->entries()[size_t(row)].name() == name) return row;
        return std::nullopt;
    }

    QPoint pointOver(const QString& name) const {
        for (int row = 0; row < int(w->entries().size()); ++row)
            if (w->entries()[size_t(row)].name() == name)
                return w->table()->visualRect(w->table()->model()->index(row, 0)).center();
        return QPoint(5, w->table()->viewport()->height() - 5); // below the rows
    }
};

ORVANE_TEST_MAIN(FileDragTest)
#include "FileDragTest.moc"
