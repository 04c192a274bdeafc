// The folder walk against real trees: names, hidden items, links, unreadable folders, and agreement
// with a plain single-threaded walk on a tree large enough for the threads to trade folders.
#include "search/FolderWalk.h"
#include "support/TempTree.h"
#include "support/TestEnvironment.h"

#include <QDirIterator>
#include <QFile>
#include <QRandomGenerator>
#include <fcntl.h>
#include <sys/stat.h>
#include <unistd.h>

using namespace orvane;
using namespace orvane::test;

namespace {
QStringList relative(const std::vector<Entry>& entries, const QString& root) {
    QStringList out;
    for (const Entry& e : entries)
        out << e.location.mid(root.size() + 1);
    out.sort();
    return out;
}

struct WalkOutcome {
    QStringList found;
    bool unavailable = false;
    bool completed = false;
};

WalkOutcome walk(const QString& root, const QString& text, bool hidden, int threads = 2) {
    std::atomic<quint64> generation{1};
    FolderWalk walker(root, text, hidden);
    walker.setThreads(threads);
    WalkOutcome outcome;
    outcome.completed = walker.run(generation, 1);
    outcome.found = relative(walker.results(), root);
    outcome.unavailable = walker.someUnavailable();
    return outcome;
}

// A tower of folders with long names, each holding "hit.txt", deep enough that its paths pass PATH_MAX.
void longTower(const QString& root, int levels) {
    const std::string name(100, 'd');
    int fd = open(QFile::encodeName(root).constData(), O_RDONLY | O_DIRECTORY | O_CLOEXEC);
    for (int i = 0; i < levels && fd >= 0; ++i) {
        close(openat(fd, "hit.txt", O_WRONLY | O_CREAT | O_CLOEXEC, 0644));
        mkdirat(fd, name.c_str(), 0755);
        const int next = openat(fd, name.c_str(), O_RDONLY | O_DIRECTORY | O_CLOEXEC);
        close(fd);
        fd = next;
    }
    if (fd >= 0) close(fd);
}

// Root reads every folder; for the length of one walk this process acts as nobody instead.
class ActingAsNobody {
public:
    ActingAsNobody() : switched(geteuid() == 0 && seteuid(65534) == 0) {}
    ~ActingAsNobody() {
        if (switched) (void)seteuid(0);
    }

private:
    bool switched;
};
} // namespace

class FolderWalkTest : public QObject {
    Q_OBJECT

    std::unique_ptr<TempTree> big; // made by the first row, walked by all

private slots:
    void findsNamesAtAnyDepth_data() {
        QTest::addColumn<QString>("text");
        QTest::addColumn<QStringList>("expected");
        QTest::newRow("nested, any case")
            << "photo" << QStringList{"a/b/c/Holiday PHOTO.jpg", "a/photos", "a/photos/photo1.png"};
        QTest::newRow("a folder matches by its own name") << "PHOTOS" << QStringList{"a/photos"};
        QTest::newRow("text outside ASCII, any case") << "résumé" << QStringList{"docs/RÉSUMÉ 2024.pdf"};
        QTest::newRow("accents are not folded here") << "resume" << QStringList{"docs/resume.txt"};
        QTest::newRow("names outside ASCII") << "مستند" << QStringList{"docs/مستند.txt"};
        QTest::newRow("spaces count") << "y p" << QStringList{"a/b/c/Holiday PHOTO.jpg"};
        QTest::newRow("nothing") << "zebra" << QStringList{};
    }
    void findsNamesAtAnyDepth() {
        QFETCH(QString, text);
        QFETCH(QStringList, expected);
        TempTree tree;
        for (const char* name : {"a/b/c/Holiday PHOTO.jpg", "a/photos/photo1.png", "a/other.txt",
                                 "docs/RÉSUMÉ 2024.pdf", "docs/resume.txt", "docs/مستند.txt"})
            tree.file(QString::fromUtf8(name), "x");
        const WalkOutcome outcome = walk(tree.path(), text, false);
        QVERIFY(outcome.completed);
        QVERIFY(!outcome.unavailable);
        QCOMPARE(outcome.found, expected);
    }

    void entriesCarryTheirFacts() {
        TempTree tree;
        tree.sizedFile(QStringLiteral("deep/er/match.bin"), 1234);
        tree.folder(QStringLiteral("deep/match folder"));
        std::atomic<quint64> generation{7};
        FolderWalk walker(tree.path(), QStringLiteral("MATCH"), false);
        QVERIFY(walker.run(generation, 7));
        std::vector<Entry>& found = walker.results();
        std::sort(found.begin(), found.end(),
                  [](const Entry& a, const Entry& b) { return a.location < b.location; });
        QCOMPARE(found.size(), size_t(2));
        QCOMPARE(found[0].location, tree.path(QStringLiteral("deep/er/match.bin")));
        QCOMPARE(found[0].name(), QStringLiteral("match.bin"));
        QCOMPARE(found[0].size, qint64(1234));
        QVERIFY(found[0].modified.isValid());
        QVERIFY(found[1].isPlainFolder());
        QCOMPARE(found[1].kind, QStringLiteral("File folder"));
    }

    void hiddenItemsOnlyWhenShown_data() {
        QTest::addColumn<bool>("hidden");
        QTest::addColumn<QStringList>("expected");
        QTest::newRow("hidden off") << false << QStringList{"seen/note.txt"};
        QTest::newRow("hidden on") << true
                                   << QStringList{".notes", ".notes/note.txt", "seen/.note.txt",
                                                  "seen/note.txt"};
    }
    void hiddenItemsOnlyWhenShown() {
        QFETCH(bool, hidden);
        QFETCH(QStringList, expected);
        TempTree tree;
        tree.file(QStringLiteral("seen/note.txt"));
        tree.file(QStringLiteral("seen/.note.txt"));
        tree.file(QStringLiteral(".notes/note.txt"));
        QCOMPARE(walk(tree.path(), QStringLiteral("note"), hidden).found, expected);
    }

    // A link is a result by its name, but what it points at is never walked: no loops, no doubles.
    void linksAreNotFollowed() {
        TempTree tree;
        tree.file(QStringLiteral("real/target.txt"));
        QVERIFY(QFile::link(tree.path(QStringLiteral("real")), tree.path(QStringLiteral("real/loop"))));
        QVERIFY(QFile::link(tree.path(QStringLiteral("real")), tree.path(QStringLiteral("target link"))));
        const WalkOutcome outcome = walk(tree.path(), QStringLiteral("target"), false);
        QCOMPARE(outcome.found, (QStringList{"real/target.txt", "target link"}));
        QVERIFY(!outcome.unavailable);
    }

    // The start may itself be reached through a link.
    void theStartMayBeALink() {
        TempTree tree;
        tree.file(QStringLiteral("real/x/find me"));
        QVERIFY(QFile::link(tree.path(QStringLiteral("real")), tree.path(QStringLiteral("via"))));
        QCOMPARE(walk(tree.path(QStringLiteral("via")), QStringLiteral("find"), false).found,
                 QStringList{"x/find me"});
    }

    void unreadableFoldersAreNoted_data() {
        QTest::addColumn<QString>("start");
        QTest::addColumn<QStringList>("expected");
        QTest::newRow("a subfolder") << "" << QStringList{"locked", "open/locked.txt"};
        QTest::newRow("the start itself") << "locked" << QStringList{};
    }
    void unreadableFoldersAreNoted() {
        QFETCH(QString, start);
        QFETCH(QStringList, expected);
        TempTree tree;
        tree.file(QStringLiteral("open/locked.txt"));
        tree.file(QStringLiteral("locked/inside locked.txt"));
        QVERIFY(chmod(QFile::encodeName(tree.path()).constData(), 0755) == 0);
        QVERIFY(chmod(QFile::encodeName(tree.path(QStringLiteral("locked"))).constData(), 0) == 0);
        WalkOutcome outcome;
        {
            ActingAsNobody nobody;
            outcome = walk(tree.path(start), QStringLiteral("locked"), false);
        }
        chmod(QFile::encodeName(tree.path(QStringLiteral("locked"))).constData(), 0755);
        QVERIFY(outcome.completed);
        QVERIFY(outcome.unavailable);
        QCOMPARE(outcome.found, expected);
    }

    // Folders handed between threads or queued below the local depth open from their parents.
    void pathsLongerThanTheSystemTakes_data() {
        QTest::addColumn<int>("threads");
        QTest::newRow("one thread") << 1;
        QTest::newRow("four threads") << 4;
    }
    void pathsLongerThanTheSystemTakes() {
        QFETCH(int, threads);
        TempTree tree;
        longTower(tree.path(), 80);
        const WalkOutcome outcome = walk(tree.path(), QStringLiteral("hit"), false, threads);
        QVERIFY(outcome.completed && !outcome.unavailable);
        QCOMPARE(outcome.found.size(), 80);
    }

    void cancelledBeforeTheFirstItem() {
        TempTree tree;
        tree.file(QStringLiteral("a/match"));
        std::atomic<quint64> generation{2};
        FolderWalk walker(tree.path(), QStringLiteral("match"), false);
        QVERIFY(!walker.run(generation, 1));
        QVERIFY(walker.results().empty());
    }

    // Enough folders, deep and wide, for threads to hand work to each other; the result must be
    // exactly what one plain walk finds, and the batches must add up to it.
    void agreesWithAPlainWalk_data() {
        QTest::addColumn<int>("threads");
        QTest::newRow("one thread") << 1;
        QTest::newRow("two threads") << 2;
        QTest::newRow("four threads") << 4;
    }
    void agreesWithAPlainWalk() {
        QFETCH(int, threads);
        if (!big) big = std::make_unique<TempTree>();
        TempTree& tree = *big;
        QRandomGenerator random(7);
        QStringList folders{QString()};
        for (int i = 0; i < 800; ++i) {
            const QString parent = folders[random.bounded(int(folders.size()))];
            const QString folder = parent + (parent.isEmpty() ? "" : "/") + QStringLiteral("d%1").arg(i);
            if (threads == 1) tree.file(folder + QStringLiteral("/file%1.txt").arg(i));
            folders << folder;
        }
        QStringList expected;
        QDirIterator it(tree.path(), QDir::AllEntries | QDir::NoDotAndDotDot, QDirIterator::Subdirectories);
        while (it.hasNext()) {
            const QString path = it.next();
            if (it.fileName().contains(QLatin1String("1"))) expected << path.mid(tree.path().size() + 1);
        }
        expected.sort();

        std::atomic<quint64> generation{1};
        FolderWalk walker(tree.path(), QStringLiteral("1"), false);
        walker.setThreads(threads);
        QStringList batched;
        int batches = 0;
        walker.setBatch(
            [&](std::vector<Entry>&& found, FolderWalk::Progress progress) {
                ++batches;
                batched << relative(found, tree.path());
                QVERIFY(progress.matches >= batched.size());
            },
            std::chrono::milliseconds(0));
        QVERIFY(walker.run(generation, 1));
        QCOMPARE(relative(walker.results(), tree.path()), expected);
        batched.sort();
        QCOMPARE(batched, expected);
        QVERIFY(batches > 1);
        QCOMPARE(walker.progress().folders, qint64(folders.size()));
    }
};

ORVANE_TEST_MAIN(FolderWalkTest)
#include "FolderWalkTest.moc"
