#include "fileops/TransferProgressSnapshot.h"
#include "fileops/FileTree.h"
#include "support/TempTree.h"
#include "support/TestEnvironment.h"

#include <QFile>
#include <QStandardPaths>

using namespace orvane;
using orvane::test::TempTree;

class TransferProgressSnapshotTest : public QObject {
    Q_OBJECT
private slots:
    void untouchedThenCompleted();
    void emptyFilesCountByItems();
    void linkIsOneItemAndNotFollowed();
    void partialFileCountsItsBytes();
    void unreadableSourceDropsOut();
};

// A folder with a nested file and a link: nothing there yet is 0, a finished copy is short of 1.
void TransferProgressSnapshotTest::untouchedThenCompleted() {
    TempTree tree;
    tree.sizedFile("box/nested/data.bin", 100000);
    QVERIFY(QFile::link("nested/data.bin", tree.path("box/link")));
    const TransferProgressSnapshot snapshot({{tree.path("box"), tree.path("copy")}});
    QCOMPARE(snapshot.items().size(), size_t(4)); // box, nested, data.bin, link
    QCOMPARE(snapshot.total(), 100003);
    QCOMPARE(snapshot.fraction(), 0.0);
    QString error;
    QVERIFY(FileTree::copy(tree.path("box"), tree.path("copy"), error));
    QCOMPARE(snapshot.fraction(), 0.99);
}

void TransferProgressSnapshotTest::emptyFilesCountByItems() {
    TempTree tree;
    TransferJobs jobs;
    for (const char* name : {"a", "b", "c", "d"})
        jobs.push_back({tree.file(QString("src/") + name), tree.path("dst/") + name});
    const TransferProgressSnapshot snapshot(jobs);
    QCOMPARE(snapshot.total(), 4);
    tree.folder("dst");
    tree.file("dst/a");
    QCOMPARE(snapshot.fraction(), 0.25);
    tree.file("dst/b");
    QCOMPARE(snapshot.fraction(), 0.5);
}

void TransferProgressSnapshotTest::linkIsOneItemAndNotFollowed() {
    TempTree tree;
    tree.sizedFile("big.bin", 1 << 20);
    tree.folder("box");
    QVERIFY(QFile::link(tree.path("big.bin"), tree.path("box/link")));
    QVERIFY(QFile::link(tree.path("."), tree.path("box/loop"))); // a link to a folder is not entered
    const TransferProgressSnapshot snapshot({{tree.path("box"), tree.path("dst")}});
    QCOMPARE(snapshot.total(), 3);
    tree.folder("dst");
    QVERIFY(QFile::link(tree.path("nowhere"), tree.path("dst/link"))); // a dangling link still stands there
    QCOMPARE(snapshot.fraction(), 2.0 / 3.0);
}

void TransferProgressSnapshotTest::partialFileCountsItsBytes() {
    TempTree tree;
    const TransferProgressSnapshot snapshot({{tree.sizedFile("f.bin", 1000), tree.path("g.bin")}});
    tree.sizedFile("g.bin", 250);
    QCOMPARE(snapshot.fraction(), 0.25);
    tree.sizedFile("g.bin", 5000); // a destination larger than expected counts no more than its weight
    QCOMPARE(snapshot.fraction(), 0.99);
}

void TransferProgressSnapshotTest::unreadableSourceDropsOut() {
    TempTree tree;
    const TransferProgressSnapshot snapshot({{tree.path("missing"), tree.path("x")}});
    QVERIFY(snapshot.items().empty());
    QCOMPARE(snapshot.total(), 1);
    QCOMPARE(snapshot.fraction(), 0.0);
}

ORVANE_TEST_MAIN(TransferProgressSnapshotTest)
#include "TransferProgressSnapshotTest.moc"
