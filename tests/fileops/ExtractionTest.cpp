#include "fileops/Extraction.h"
#include "platform/NativePath.h"
#include "support/TempTree.h"
#include "support/TestEnvironment.h"

#include <QDir>
#include <QProcess>
#include <sys/stat.h>
#include <unistd.h>

using namespace orvane;
using orvane::test::TempTree;

namespace {
// Runs a shell line in `folder`; the archives are made there by the real tools.
void shell(const QString& folder, const QString& line) {
    QProcess sh;
    sh.setWorkingDirectory(folder);
    sh.start("sh", {"-ec", line});
    sh.waitForFinished(60000);
    QVERIFY2(sh.exitCode() == 0, qPrintable(line + ": " + sh.readAllStandardError()));
}

QStringList everything(const QString& folder) {
    return QDir(folder).entryList(QDir::AllEntries | QDir::Hidden | QDir::NoDotAndDotDot | QDir::System);
}

struct stat facts(const QString& path) {
    struct stat st {};
    ::lstat(NativePath::encode(path).constData(), &st);
    return st;
}
} // namespace

class ExtractionTest : public QObject {
    Q_OBJECT
private slots:
    void extract_data();
    void extract();
    void hostile_data();
    void hostile();
    void cancelRemovesWhatWasWritten();
    void names_data();
    void names();
};

// The source tree in "src": a file with its own mode and time, a folder, a link inside.
void ExtractionTest::extract_data() {
    QTest::addColumn<QString>("make");
    QTest::addColumn<QString>("archive");
    QTest::addColumn<QString>("result");
    QTest::addColumn<QStringList>("taken");
    const QString all = "a.txt sub link";
    QTest::newRow("zip of several") << "zip -qry ../in/t.zip " + all << "t.zip"
                                    << "t" << QStringList{};
    QTest::newRow("zip, name taken twice") << "zip -qry ../in/t.zip " + all << "t.zip"
                                           << "t (3)" << QStringList{"t", "t (2)"};
    QTest::newRow("tar") << "tar -cf ../in/t.tar " + all << "t.tar"
                         << "t" << QStringList{};
    QTest::newRow("tar.gz") << "tar -czf ../in/t.tar.gz " + all << "t.tar.gz"
                            << "t" << QStringList{};
    QTest::newRow("tar.bz2") << "tar -cjf ../in/t.tar.bz2 " + all << "t.tar.bz2"
                             << "t" << QStringList{};
    QTest::newRow("tar.xz") << "tar -cJf ../in/t.tar.xz " + all << "t.tar.xz"
                            << "t" << QStringList{};
    QTest::newRow("tar.zst") << "tar --zstd -cf ../in/t.tar.zst " + all << "t.tar.zst"
                             << "t" << QStringList{};
    QTest::newRow("7z") << "7z a -bd -snl ../in/t.7z " + all + " >/dev/null"
                        << "t.7z"
                        << "t" << QStringList{};
    QTest::newRow("one folder lands as itself")
        << "mkdir one && cp -a a.txt sub link one && bsdtar -cf ../in/t.tar one"
        << "t.tar"
        << "one" << QStringList{};
    QTest::newRow("one folder, its name taken")
        << "mkdir one && cp -a a.txt sub link one && bsdtar -cf ../in/t.tar one"
        << "t.tar"
        << "one (2)" << QStringList{"one"};
}

// Names, contents, modes, times and links arrive as they were; nothing else is left beside.
void ExtractionTest::extract() {
    QFETCH(QString, make);
    QFETCH(QString, archive);
    QFETCH(QString, result);
    QFETCH(QStringList, taken);
    TempTree tree;
    tree.file("src/a.txt", "alpha");
    tree.file("src/sub/b.txt", "beta");
    QVERIFY(::symlink("a.txt", tree.path("src/link").toUtf8()) == 0);
    ::chmod(tree.path("src/a.txt").toUtf8(), 0751);
    shell(tree.path("src"),
          "touch -h -d 2001-02-03T04:05:06 a.txt link sub/b.txt sub && mkdir ../in && " + make);
    for (const QString& name : taken)
        tree.folder("in/" + name);
    Extraction unpack;
    const Extraction::Outcome out = unpack.run(tree.path("in/" + archive), tree.path("in"));
    QVERIFY2(out.error.isEmpty(), qPrintable(out.error));
    QCOMPARE(out.result, tree.path("in/" + result));
    QCOMPARE(everything(tree.path("in")).size(), taken.size() + 2);
    QCOMPARE(TempTree::contents(out.result + "/a.txt"), QByteArray("alpha"));
    QCOMPARE(TempTree::contents(out.result + "/sub/b.txt"), QByteArray("beta"));
    QCOMPARE(facts(out.result + "/a.txt").st_mode & 07777, mode_t(0751));
    QCOMPARE(facts(out.result + "/a.txt").st_mtim.tv_sec, facts(tree.path("src/a.txt")).st_mtim.tv_sec);
    QCOMPARE(facts(out.result + "/sub").st_mtim.tv_sec, facts(tree.path("src/sub")).st_mtim.tv_sec);
    QVERIFY(S_ISLNK(facts(out.result + "/link").st_mode));
    QCOMPARE(QFile::symLinkTarget(out.result + "/link"), out.result + "/a.txt");
}

void ExtractionTest::hostile_data() {
    QTest::addColumn<QString>("make");
    QTest::addColumn<QString>("error");
    QTest::addColumn<qint64>("space");
    const QString outside = "The archive tries to write outside its folder: ";
    const QString pointsOut = "The archive holds a link that points outside its folder: ";
    QTest::newRow("../evil") << "mkdir -p x && echo e > evil && tar -C x -cPf $IN/t.tar ../evil"
                             << outside + "../evil" << qint64(-1);
    QTest::newRow("absolute path") << "echo e > $OUT/abs && tar -cPf $IN/t.tar $OUT/abs && rm $OUT/abs"
                                   << outside << qint64(-1);
    QTest::newRow("link to / and a file through it")
        << "ln -s / l && tar -cf $IN/t.tar l && rm l && mkdir -p l$OUT && echo e > l$OUT/x && "
           "tar -rf $IN/t.tar l$OUT/x"
        << pointsOut + "l" << qint64(-1);
    QTest::newRow("link out by ..") << "ln -s ../../out l && tar -cf $IN/t.tar l" << pointsOut + "l"
                                    << qint64(-1);
    QTest::newRow("links that lead out together")
        << "mkdir -p a/b && ln -s ../.. a/b/up && ln -s a/b/up/.. l && tar -cf $IN/t.tar a l" << pointsOut
        << qint64(-1);
    QTest::newRow("zip bomb") << "head -c 8000000 /dev/zero > z && zip -q $IN/t.zip z"
                              << "The archive expands past" << qint64(1000000);
    QTest::newRow("truncated") << "head -c 300000 /dev/urandom > r && echo a > s && tar -czf full.tgz r s && "
                                  "head -c 100000 full.tgz > $IN/t.tar.gz"
                               << "The archive is damaged or incomplete" << qint64(-1);
    QTest::newRow("password") << "echo secret > p && zip -q -P pw $IN/t.zip p"
                              << "The archive is protected by a password" << qint64(-1);
    QTest::newRow("not an archive") << "echo plain > $IN/t.zip"
                                    << "The archive is damaged or incomplete" << qint64(-1);
    QTest::newRow("empty") << "tar -cf $IN/t.tar -T /dev/null"
                           << "The archive holds nothing" << qint64(-1);
}

// Refused whole: a clear error, nothing left in the folder but the archive, nothing written outside.
void ExtractionTest::hostile() {
    QFETCH(QString, make);
    QFETCH(QString, error);
    QFETCH(qint64, space);
    TempTree tree;
    tree.folder("src/work");
    tree.folder("out");
    shell(tree.path("src/work"), "IN=" + tree.folder("in") + " OUT=" + tree.path("out") + "; " + make);
    const QString archive = QDir(tree.path("in")).entryList(QDir::Files).value(0);
    Extraction unpack;
    unpack.spaceLimit = space;
    const Extraction::Outcome out = unpack.run(tree.path("in/" + archive), tree.path("in"));
    QVERIFY2(out.error.startsWith(error), qPrintable(out.error));
    QVERIFY(out.result.isEmpty());
    QCOMPARE(everything(tree.path("in")), QStringList{archive});
    QCOMPARE(everything(tree.path("out")), QStringList{});
    QVERIFY(!TempTree::present(tree.path("evil")));
}

// Stopped after its first file, the extraction removes the rest of its work.
void ExtractionTest::cancelRemovesWhatWasWritten() {
    TempTree tree;
    shell(tree.path(),
          "mkdir s && head -c 3000000 /dev/urandom > s/1 && cp s/1 s/2 && tar -C s -cf t.tar 1 2");
    Extraction unpack;
    int calls = 0;
    unpack.progress = [&](double) {
        ++calls;
        unpack.cancel();
    };
    const Extraction::Outcome out = unpack.run(tree.path("t.tar"), tree.path());
    QVERIFY(out.cancelled && out.error.isEmpty() && out.result.isEmpty());
    QCOMPARE(calls, 1);
    QCOMPARE(everything(tree.path()), QStringList({"s", "t.tar"}));
}

void ExtractionTest::names_data() {
    QTest::addColumn<QByteArray>("archive");
    QTest::addColumn<QByteArray>("entry");
    QTest::addColumn<QByteArray>("expected");
    QTest::newRow("entry not UTF-8") << QByteArray("t.tar") << QByteArray("n\xFF") << QByteArray("n\xFF");
    QTest::newRow("archive not UTF-8") << QByteArray("t\xFE.tar") << QByteArray("") << QByteArray("t\xFE");
}

// Names keep their exact bytes: the entry's, and the archive's in the folder named after it.
void ExtractionTest::names() {
    QFETCH(QByteArray, archive);
    QFETCH(QByteArray, entry);
    QFETCH(QByteArray, expected);
    TempTree tree;
    tree.rawFile("s/" + (entry.isEmpty() ? QByteArray("one") : entry), "x");
    tree.file("s/two", "y");
    shell(tree.path(), "tar -C s -cf t.tar .");
    const QByteArray root = NativePath::encode(tree.path());
    QCOMPARE(::rename(root + "/t.tar", root + "/" + archive), 0);
    const Extraction::Outcome out = Extraction().run(NativePath::decode(root + "/" + archive), tree.path());
    QVERIFY2(out.error.isEmpty(), qPrintable(out.error));
    QCOMPARE(NativePath::encode(out.result), entry.isEmpty() ? root + "/" + expected : root + "/t");
    if (!entry.isEmpty())
        QCOMPARE(TempTree::contents(NativePath::decode(root + "/t/" + expected)), QByteArray("x"));
}

ORVANE_TEST_MAIN(ExtractionTest)
#include "ExtractionTest.moc"
