#include "fileops/FileDrag.h"
#include "core/UriList.h"
#include "platform/NativePath.h"
#include "support/TempTree.h"
#include "support/TestEnvironment.h"
#include "support/WindowDriver.h"
#include "support/WindowFixture.h"
#include "views/FileTable.h"
#include "window/AppDelegate.h"
#include "window/Explorer.h"

#include <QMimeData>

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
        openWindow();
        QTRY_COMPARE(w->entries().size(), size_t(3));
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
};

ORVANE_TEST_MAIN(FileDragTest)
#include "FileDragTest.moc"
