#include "fileops/Compression.h"
#include "fileops/Extraction.h"
#include "platform/NativePath.h"
#include "support/TempTree.h"
#include "support/TestEnvironment.h"

#include <QDir>
#include <QProcess>
#include <QThread>
#include <sys/stat.h>
#include <unistd.h>

using namespace orvane;
using orvane::test::TempTree;

namespace {
// What `unzip` lists, one name a line, as bytes.
QByteArrayList listed(const QString& archive) {
    QProcess unzip;
    unzip.start("unzip", {"-Z1", archive});
    unzip.waitForFinished();
    QByteArrayList names = unzip.readAllStandardOutput().split('\n');
    names.removeAll(QByteArray());
    std::sort(names.begin(), names.end());
    return names;
}

bool staged(const QString& folder) {
    return !QDir(folder).entryList({QStringLiteral(".Orvane-*")}, QDir::AllEntries | QDir::Hidden).isEmpty();
}
} // namespace

class CompressionTest : public QObject {
    Q_OBJECT
private slots:
    void compress_data();
    void compress();
    void refused_data();
    void refused();
    void cancelStopsZipAndLeavesNothing();
};

void CompressionTest::compress_data() {
    QTest::addColumn<QByteArrayList>("items");
    QTest::addColumn<QByteArrayList>("taken");
    QTest::addColumn<QString>("archive");
    QTest::addColumn<QByteArrayList>("inside");
    QTest::newRow("one file keeps its extension")
        << QByteArrayList{"A.txt"} << QByteArrayList{} << "A.txt.zip" << QByteArrayList{"A.txt"};
    QTest::newRow("several, first name taken")
        << QByteArrayList{"A.txt", "Box/"} << QByteArrayList{"Archive.zip"} << "Archive (2).zip"
        << QByteArrayList{"A.txt", "Box/"};
    QTest::newRow("taken twice") << QByteArrayList{"A.txt"} << QByteArrayList{"A.txt.zip", "A.txt (2).zip"}
                                 << "A.txt (3).zip" << QByteArrayList{"A.txt"};
    QTest::newRow("a name that begins with a dash")
        << QByteArrayList{"-r.txt"} << QByteArrayList{} << "-r.txt.zip" << QByteArrayList{"-r.txt"};
    QTest::newRow("a name that is not UTF-8")
        << QByteArrayList{"bad\xFF.txt"} << QByteArrayList{} << NativePath::decode("bad\xFF.txt.zip")
        << QByteArrayList{"bad\xFF.txt"};
}

// The archive holds the items under their own names, without a leading folder, and nothing taken is touched.
void CompressionTest::compress() {
    QFETCH(QByteArrayList, items);
    QFETCH(QByteArrayList, taken);
    QFETCH(QString, archive);
    QFETCH(QByteArrayList, inside);
    TempTree tree;
    QStringList paths;
    for (const QByteArray& item : items)
        paths << (item.endsWith('/') ? tree.folder(QString::fromUtf8(item.chopped(1)))
                                     : tree.rawFile(item, "data of " + item));
    for (const QByteArray& name : taken)
        tree.rawFile(name, "kept");
    Compression zip;
    const Compression::Outcome out = zip.run(paths);
    QVERIFY2(out.error.isEmpty(), qPrintable(out.error));
    QCOMPARE(out.archive, tree.path(archive));
    // unzip is handed a plain name: a text argument would not carry byte 0xFF.
    const QString checked = tree.path("checked.zip");
    QCOMPARE(::rename(NativePath::encode(out.archive), NativePath::encode(checked)), 0);
    QCOMPARE(QProcess::execute("unzip", {"-tqq", checked}), 0);
    QCOMPARE(listed(checked), inside);
    for (const QByteArray& name : taken)
        QCOMPARE(TempTree::contents(tree.path(NativePath::decode(name))), QByteArray("kept"));
    QVERIFY(!staged(tree.path()));
}

void CompressionTest::refused_data() {
    QTest::addColumn<QString>("kind");
    QTest::addColumn<QString>("error");
    QTest::newRow("nothing") << "nothing"
                             << "Select an item to compress.";
    QTest::newRow("two folders") << "two folders"
                                 << "Select items from the same folder.";
    QTest::newRow("an item vanished") << "vanished"
                                      << "The selected items could not be compressed (code 18).";
    QTest::newRow("zip missing") << "no zip"
                                 << "The zip program is not installed.";
    if (::geteuid() != 0)
        QTest::newRow("read-only folder") << "read-only"
                                          << "Permission denied";
}

void CompressionTest::refused() {
    QFETCH(QString, kind);
    QFETCH(QString, error);
    TempTree tree;
    QStringList paths = {tree.file("a.txt", "a")};
    const QByteArray path = qgetenv("PATH");
    if (kind == "nothing") paths.clear();
    if (kind == "two folders") paths << tree.file("in/b.txt");
    if (kind == "vanished") paths << tree.path("gone.txt");
    if (kind == "no zip") qputenv("PATH", tree.folder("bin").toUtf8());
    if (kind == "read-only") ::chmod(tree.path().toUtf8(), 0555);
    const Compression::Outcome out = Compression().run(paths);
    qputenv("PATH", path);
    ::chmod(tree.path().toUtf8(), 0755);
    QVERIFY2(out.error.startsWith(error), qPrintable(out.error));
    QVERIFY(out.archive.isEmpty());
    QVERIFY(!staged(tree.path()) && !TempTree::present(tree.path("a.txt.zip")) &&
            !TempTree::present(tree.path("Archive.zip")));
}

// A sparse file keeps zip reading long enough to be stopped while it writes.
void CompressionTest::cancelStopsZipAndLeavesNothing() {
    TempTree tree;
    const QString big = tree.file("big.bin");
    QVERIFY(::truncate(big.toUtf8(), 8LL << 30) == 0);
    Compression zip;
    Compression::Outcome out;
    QThread* worker = QThread::create([&] { out = zip.run({big}); });
    worker->start();
    QTRY_VERIFY(staged(tree.path()));
    zip.cancel();
    QVERIFY(worker->wait(60000));
    delete worker;
    QVERIFY(out.cancelled && out.error.isEmpty() && out.archive.isEmpty());
    QVERIFY(!staged(tree.path()));
    QCOMPARE(QDir(tree.path()).entryList(QDir::AllEntries | QDir::Hidden | QDir::NoDotAndDotDot),
             QStringList{"big.bin"});
}

ORVANE_TEST_MAIN(CompressionTest)
#include "CompressionTest.moc"
