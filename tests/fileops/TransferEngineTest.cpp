#include "fileops/TransferEngine.h"
#include "core/FolderListing.h"
#include "fileops/FileTree.h"
#include "platform/NativePath.h"
#include "support/FatMount.h"
#include "support/TempTree.h"
#include "support/TestEnvironment.h"

#include <QDir>
#include <QFile>
#include <QFileInfo>
#include <QProcess>
#include <QSignalSpy>
#include <QStandardPaths>
#include <QTemporaryDir>
#include <QThread>
#include <cstring>
#include <fcntl.h>
#include <optional>
#include <sys/mount.h>
#include <sys/socket.h>
#include <sys/stat.h>
#include <sys/un.h>
#include <unistd.h>

using namespace orvane;
using orvane::test::TempTree;

namespace {

QByteArray contents(const QString& path) {
    QFile f(path);
    return f.open(QIODevice::ReadOnly) ? f.readAll() : QByteArray();
}

bool present(const QString& path) {
    struct stat st;
    return lstat(QFile::encodeName(path).constData(), &st) == 0;
}

// Permission bits, or -1 when the item is missing.
int mode(const QString& path) {
    struct stat st;
    return stat(QFile::encodeName(path).constData(), &st) == 0 ? int(st.st_mode & 07777) : -1;
}

// Runs a plan through a real engine and waits for its report on this thread.
TransferResult runPlan(const TransferPlan& plan, bool moving, QList<double>* fractions = nullptr) {
    TransferEngine engine;
    std::optional<TransferResult> result;
    bool progressAfterFinish = false;
    QObject::connect(&engine, &TransferEngine::progress, [&](double f) {
        progressAfterFinish = progressAfterFinish || result.has_value();
        if (fractions) fractions->append(f);
    });
    QObject::connect(&engine, &TransferEngine::finished, [&](const TransferResult& r) { result = r; });
    if (!engine.start(plan.jobs, moving)) return {};
    [&] { QTRY_VERIFY_WITH_TIMEOUT(result.has_value(), 60000); }();
    [&] { QVERIFY(!engine.running() && !progressAfterFinish); }();
    return result.value_or(TransferResult());
}

TransferResult transfer(const QStringList& sources, bool moving, const QString& target) {
    return runPlan(TransferEngine::plan(sources, moving, target), moving);
}

bool undo(const TransferResult& result) {
    QString error;
    const bool ok = result.undo()(error);
    if (!ok) qWarning("undo failed: %s", qPrintable(error));
    return ok;
}

QStringList trashFiles() {
    QStringList names;
    for (const QString& data : {QStandardPaths::writableLocation(QStandardPaths::GenericDataLocation),
                                qEnvironmentVariable("XDG_DATA_HOME")})
        names +=
            QDir(data + "/Trash/files").entryList(QDir::AllEntries | QDir::NoDotAndDotDot | QDir::Hidden);
    return names;
}

// A socket cannot be copied by anyone, root included, so the batch always holds an item that fails.
QString makeSocket(const QString& path) {
    const int fd = socket(AF_UNIX, SOCK_STREAM, 0);
    sockaddr_un address{};
    address.sun_family = AF_UNIX;
    qstrncpy(address.sun_path, QFile::encodeName(path).constData(), sizeof address.sun_path);
    const bool ok = bind(fd, reinterpret_cast<sockaddr*>(&address), sizeof address) == 0;
    close(fd);
    return ok ? path : QString();
}

// The path the listing gives for the one item whose name ends in these bytes, as a window would hold it.
QString listed(const QString& folder, const QByteArray& tail) {
    std::vector<Entry> entries;
    QString error;
    FolderListing::read(folder, true, {}, entries, error);
    for (const Entry& e : entries)
        if (NativePath::encode(e.location).endsWith(tail)) return e.location;
    return {};
}

QString raw(const QString& folder, const QByteArray& name) {
    return folder + u'/' + NativePath::decode(name);
}

// One folder under a second path for one test; `error` says why there is none.
struct BindMount {
    QByteArray point;
    QString error;
    BindMount(const QString& from, const QString& to) : point(NativePath::encode(to)) {
        if (mount(NativePath::encode(from).constData(), point.constData(), nullptr, MS_BIND, nullptr) != 0)
            error = QStringLiteral("cannot bind-mount here: ") + strerror(errno);
    }
    ~BindMount() {
        if (error.isEmpty()) umount2(point.constData(), MNT_DETACH);
    }
};

// Walks `depth` levels of "d" down from `root`, making them when asked; answers the levels found.
int chain(const QString& root, int depth, bool make) {
    int fd = open(NativePath::encode(root).constData(), O_RDONLY | O_DIRECTORY | O_CLOEXEC);
    int level = 0;
    for (; fd >= 0 && level < depth; ++level) {
        if (make) mkdirat(fd, "d", 0755);
        const int next = openat(fd, "d", O_RDONLY | O_DIRECTORY | O_CLOEXEC);
        close(fd);
        fd = next;
    }
    if (fd >= 0) close(fd);
    return fd >= 0 ? level : level - 1;
}

} // namespace

class TransferEngineTest : public QObject {
    Q_OBJECT
private slots:
    void copyIntoOwnFolderAndUndoToTrash() {
        TempTree tree;
        const QString source = tree.file("hello.txt", "hello");
        QList<double> fractions;
        const TransferResult result =
            runPlan(TransferEngine::plan({source}, false, tree.path()), false, &fractions);
        QVERIFY(result.failures.isEmpty());
        QCOMPARE(contents(tree.path("hello - Copy.txt")), QByteArray("hello"));
        QCOMPARE(contents(source), QByteArray("hello"));
        QVERIFY(!fractions.isEmpty());
        for (double f : fractions)
            QVERIFY(f >= 0 && f <= 0.99);
        QVERIFY(undo(result));
        QVERIFY(!present(tree.path("hello - Copy.txt")) && present(source));
        QVERIFY(trashFiles().contains("hello - Copy.txt"));
    }

    // Undo asks before it trashes a copy modified since it arrived, and a "no" leaves it all in place.
    void undoAsksForChangedCopies_data() {
        QTest::addColumn<QString>("change"); // made below the target after the copy
        QTest::addColumn<QString>("question");
        QTest::newRow("untouched") << QString() << QString();
        QTest::newRow("edited file") << QString("a.txt") << QString("Move \"a.txt\" to Trash?");
        QTest::newRow("folder with a new file")
            << QString("box/new.txt") << QString("Move \"box\" to Trash?");
    }
    void undoAsksForChangedCopies() {
        QFETCH(QString, change);
        QFETCH(QString, question);
        TempTree tree;
        const QStringList sources{tree.file("src/a.txt", "a"), tree.file("src/box/b.txt", "b").chopped(6)};
        for (const char* source : {"src/a.txt", "src/box"}) // file times move by clock ticks: step far back
            tree.setModified(source, QDateTime(QDate(2020, 1, 1), QTime(12, 0)));
        const TransferResult result = transfer(sources, false, tree.folder("target"));
        QCOMPARE(result.arrivedAt.size(), size_t(2));
        if (!change.isEmpty()) TempTree::writeFile(tree.path("target/" + change), "changed");
        QStringList asked;
        bool answer = false;
        const FileUndo step = result.undo({}, [&](const QString& message, const QString&) {
            asked << message;
            return answer;
        });
        QString error;
        QCOMPARE(step(error), question.isEmpty());
        QVERIFY(error.isEmpty());
        QCOMPARE(asked, question.isEmpty() ? QStringList() : QStringList{question});
        QCOMPARE(present(tree.path("target/a.txt")), !question.isEmpty());
        answer = true;
        QVERIFY(step(error));
        QVERIFY(!present(tree.path("target/a.txt")) && !present(tree.path("target/box")));
    }

    void moveAndUndoBack_data() {
        QTest::addColumn<QString>("name");
        QTest::newRow("latin") << "notes.txt";
        QTest::newRow("arabic") << "ملاحظات.txt";
    }
    void moveAndUndoBack() {
        QFETCH(QString, name);
        TempTree tree;
        const QString source = tree.file("a/" + name, "text");
        const QString target = tree.folder("b");
        tree.file("b/" + name, "other"); // the move must take a free name, not replace this
        const TransferResult result = transfer({source}, true, target);
        QVERIFY(result.failures.isEmpty());
        QCOMPARE(result.finished.size(), size_t(1));
        const QString landed = result.finished.at(0).destination;
        QCOMPARE(QFileInfo(landed).fileName(), QFileInfo(name).completeBaseName() + " - Copy.txt");
        QVERIFY(!present(source));
        QCOMPARE(contents(landed), QByteArray("text"));
        QCOMPARE(contents(target + '/' + name), QByteArray("other"));
        QStringList followed;
        QString error;
        QVERIFY2(result.undo([&](const QString& from, const QString& to) { followed << from << to; })(error),
                 qPrintable(error));
        QCOMPARE(contents(source), QByteArray("text"));
        QVERIFY(!present(landed));
        QCOMPARE(followed, QStringList({landed, source}));
    }

    void namesThatAreNotUtf8_data() {
        QTest::addColumn<bool>("moving");
        QTest::newRow("copy") << false;
        QTest::newRow("move") << true;
    }
    // A stray byte and a real U+FFFD look the same on screen; each must still be acted on by its own bytes.
    void namesThatAreNotUtf8() {
        QFETCH(bool, moving);
        TempTree tree;
        tree.rawFile("src/bad\xFF.txt", "stray");
        tree.rawFile("src/bad\xEF\xBF\xBD.txt", "lookalike");
        tree.rawFile("src/dir\xFE/inner\xFF", "deep");
        const QString stray = listed(tree.path("src"), "bad\xFF.txt");
        const QString dir = listed(tree.path("src"), "dir\xFE");
        QVERIFY(!stray.isEmpty() && !dir.isEmpty());
        const QString target = tree.folder("target");
        const TransferResult result = transfer({stray, dir}, moving, target);
        QVERIFY2(result.failures.isEmpty(), qPrintable(result.failureDetail()));
        QCOMPARE(TempTree::contents(raw(target, "bad\xFF.txt")), QByteArray("stray"));
        QCOMPARE(TempTree::contents(raw(target, "dir\xFE/inner\xFF")), QByteArray("deep"));
        QVERIFY(!TempTree::present(raw(target, "bad\xEF\xBF\xBD.txt")));
        QCOMPARE(TempTree::present(stray), !moving);
        QVERIFY(undo(result));
        QVERIFY(!TempTree::present(raw(target, "bad\xFF.txt")));
        QCOMPARE(TempTree::contents(stray), QByteArray("stray"));
        QCOMPARE(TempTree::contents(raw(tree.path("src"), "bad\xEF\xBF\xBD.txt")), QByteArray("lookalike"));
    }

    void ontoFat_data() {
        QTest::addColumn<bool>("fromStick");
        QTest::addColumn<bool>("moving");
        QTest::newRow("copy from disk") << false << false;
        QTest::newRow("move from disk") << false << true;
        QTest::newRow("copy on the stick") << true << false;
        QTest::newRow("move on the stick") << true << true;
    }
    // FAT holds no modes and no links, and answers a no-replace rename with EINVAL: the data must still
    // arrive, and a name taken on the stick must still get a free one.
    void ontoFat() {
        QFETCH(bool, fromStick);
        QFETCH(bool, moving);
        test::FatMount fat;
        ORVANE_REQUIRE_FAT(fat);
        TempTree tree;
        const QString base = fromStick ? fat.path("pack") : tree.path("pack");
        const QString doc = TempTree::writeFile(base + "/doc.txt", "doc");
        QStringList sources{doc};
        if (!fromStick) { // fusefat loses what a folder renamed on it holds, so folders come from the disk
            QVERIFY(chmod(QFile::encodeName(doc).constData(), 0640) == 0);
            TempTree::writeFile(base + "/sub/deep.txt", "deep");
            sources << base + "/sub";
        }
        const QString target = fat.path("target");
        TempTree::writeFile(target + "/doc.txt", "theirs");
        const TransferResult result = transfer(sources, moving, target);
        QVERIFY2(result.failures.isEmpty(), qPrintable(result.failureDetail()));
        QCOMPARE(TempTree::contents(target + "/doc - Copy.txt"), QByteArray("doc"));
        QCOMPARE(TempTree::contents(target + "/doc.txt"), QByteArray("theirs"));
        if (!fromStick) QCOMPARE(TempTree::contents(target + "/sub/deep.txt"), QByteArray("deep"));
        QCOMPARE(TempTree::present(doc), !moving);
        QVERIFY(undo(result));
        QCOMPARE(TempTree::contents(doc), QByteArray("doc"));
        QVERIFY(!TempTree::present(target + "/doc - Copy.txt"));
    }

    void folderCopiedWithLinksModesAndTimes() {
        TempTree tree;
        const QString data = tree.sizedFile("pack/nested/data.bin", 2 << 20);
        QVERIFY(QFile::link("nested/data.bin", tree.path("pack/link")));
        tree.file("pack/.hidden", "h");
        tree.file("pack/tool.sh", "#!/bin/sh\n");
        const QDateTime when = QDateTime::fromSecsSinceEpoch(1500000000);
        tree.setModified("pack/tool.sh", when);
        QVERIFY(chmod(QFile::encodeName(tree.path("pack/tool.sh")).constData(), 0750) == 0);
        QVERIFY(chmod(QFile::encodeName(tree.folder("pack/locked")).constData(), 0555) == 0);
        const QString target = tree.folder("target");
        const TransferResult result = transfer({tree.path("pack")}, false, target);
        QVERIFY(result.failures.isEmpty());
        QCOMPARE(contents(target + "/pack/nested/data.bin"), contents(data));
        QCOMPARE(contents(target + "/pack/.hidden"), QByteArray("h"));
        char text[64] = {};
        QCOMPARE(readlink(QFile::encodeName(target + "/pack/link").constData(), text, sizeof text - 1), 15);
        QCOMPARE(QByteArray(text), QByteArray("nested/data.bin")); // the link text, not a rewritten path
        QCOMPARE(mode(target + "/pack/tool.sh"), 0750);
        QCOMPARE(QFileInfo(target + "/pack/tool.sh").lastModified(), when);
        QCOMPARE(mode(target + "/pack/locked"), 0555);
        chmod(QFile::encodeName(target + "/pack/locked").constData(), 0755);
        chmod(QFile::encodeName(tree.path("pack/locked")).constData(), 0755);
    }

    void moveIntoSameFolderIsNoOp() {
        TempTree tree;
        const QString source = tree.file("here/a.txt", "a");
        const TransferPlan plan = TransferEngine::plan({source}, true, tree.path("here"));
        QVERIFY(!plan.refused() && plan.jobs.empty());
        TransferEngine engine;
        QVERIFY(!engine.start(plan.jobs, true));
        QVERIFY(!engine.running());
        QCOMPARE(QDir(tree.path("here")).entryList(QDir::Files), QStringList{"a.txt"});
        // Copying there is not a no-op.
        QCOMPARE(TransferEngine::plan({source}, false, tree.path("here")).jobs.size(), size_t(1));
    }

    void intoItselfRefusesWholeBatch_data() {
        QTest::addColumn<bool>("moving");
        QTest::addColumn<QString>("target"); // relative to the tree
        QTest::newRow("copy into itself") << false << "box";
        QTest::newRow("copy below itself") << false << "box/inner";
        QTest::newRow("move below itself") << true << "box/inner";
        QTest::newRow("copy through a link") << false << "alias/inner";
        QTest::newRow("copy through a bind mount") << false << "mounted/inner";
    }
    void intoItselfRefusesWholeBatch() {
        QFETCH(bool, moving);
        QFETCH(QString, target);
        TempTree tree;
        const QString good = tree.file("good.txt", "g");
        tree.folder("box/inner");
        QVERIFY(QFile::link(tree.path("box"), tree.path("alias")));
        BindMount mounted(tree.path("box"), tree.folder("mounted"));
        if (target.startsWith("mounted") && !mounted.error.isEmpty()) QSKIP(qPrintable(mounted.error));
        const TransferPlan plan = TransferEngine::plan({good, tree.path("box")}, moving, tree.path(target));
        QVERIFY(plan.refused() && plan.jobs.empty());
        QCOMPARE(plan.refusedSource, tree.path("box"));
        QVERIFY(present(good) && !present(tree.path(target) + "/good.txt"));
    }

    // Past the plan, the copy itself stops where it meets its own top through a bind mount.
    void copyMeetingItselfStops() {
        TempTree tree;
        tree.file("box/inner/a.txt", "a");
        BindMount mounted(tree.path("box"), tree.folder("mounted"));
        if (!mounted.error.isEmpty()) QSKIP(qPrintable(mounted.error));
        const FileTree::Outcome outcome =
            FileTree::copyItem(tree.path("box"), tree.path("mounted/inner/box"));
        QVERIFY(outcome.arrived);
        QCOMPARE(outcome.lines("box"), QStringList{"box/inner/box: Cannot copy a folder into itself"});
        QCOMPARE(contents(tree.path("box/inner/box/inner/a.txt")), QByteArray("a"));
    }

    // Depth costs no stack: a tower far deeper than a small thread stack could recurse copies whole,
    // and is removed whole.
    void deepTowerOnASmallStack() {
        TempTree tree;
        const int depth = 3000;
        QCOMPARE(chain(tree.folder("tower"), depth, true), depth);
        const TransferPlan plan = TransferEngine::plan({tree.path("tower")}, false, tree.folder("target"));
        TransferResult result;
        QString error;
        bool removed = false;
        QThread* thread = QThread::create([&] {
            result = TransferEngine::run(plan.jobs, false, {});
            removed = chain(tree.path("target/tower"), depth + 1, false) == depth &&
                      FileTree::remove(tree.path("tower"), error);
        });
        thread->setStackSize(256 * 1024);
        thread->start();
        QVERIFY(thread->wait());
        delete thread;
        QVERIFY2(result.failures.isEmpty(), qPrintable(result.failureDetail()));
        QVERIFY2(removed, qPrintable(error)); // the copy was whole, and the source goes as deep
        QVERIFY(!present(tree.path("tower")));
    }

    void mixedSourcesOneReportOneUndo() {
        TempTree tree;
        const QString one = tree.file("src/one.txt", "1");
        const QString two = tree.file("src/two.txt", "2");
        const QString socket = makeSocket(tree.path("src/sock"));
        QVERIFY(!socket.isEmpty());
        QStringList sources{one, tree.path("src/gone.txt"), socket, two};
        const bool root = geteuid() == 0; // permissions do not stop root
        const QString locked = tree.file("src/locked.txt", "x");
        if (!root) {
            QVERIFY(chmod(QFile::encodeName(locked).constData(), 0) == 0);
            sources << locked;
        }
        const QString target = tree.folder("target");
        const TransferResult result = transfer(sources, false, target);
        QCOMPARE(result.finished.size(), size_t(2));
        QCOMPARE(result.failures.size(), root ? 2 : 3);
        QVERIFY(result.failures.at(0).startsWith("gone.txt: ") && result.failures.at(0).size() > 10);
        QVERIFY(result.failures.at(1).startsWith("sock: "));
        QCOMPARE(result.failureDetail().count('\n'), result.failures.size() - 1);
        QVERIFY(!present(target + "/locked.txt")); // a failed copy leaves no half file behind
        tree.file("target/unrelated.txt", "u");
        QVERIFY(undo(result));
        QCOMPARE(QDir(target).entryList(QDir::Files), QStringList{"unrelated.txt"});
        QVERIFY(present(one) && present(two));
    }

    void destinationTakenByAnotherProcessIsKept_data() {
        QTest::addColumn<bool>("folder");
        QTest::addColumn<bool>("moving");
        QTest::newRow("file copy") << false << false;
        QTest::newRow("folder copy") << true << false;
        QTest::newRow("file move") << false << true;
    }
    // The plan found a free name; another program takes it before the run. Its item must survive whole.
    void destinationTakenByAnotherProcessIsKept() {
        QFETCH(bool, folder);
        QFETCH(bool, moving);
        TempTree tree;
        const QString source = folder ? tree.folder("src/item") : tree.file("src/item", "ours");
        if (folder) tree.file("src/item/inside", "ours");
        const TransferPlan plan = TransferEngine::plan({source}, moving, tree.folder("target"));
        QCOMPARE(plan.jobs.at(0).destination, tree.path("target/item"));
        QCOMPARE(QProcess::execute("/bin/sh", {"-c", "printf theirs > \"$0\"", tree.path("target/item")}), 0);
        const TransferResult result = runPlan(plan, moving);
        QVERIFY(result.finished.empty());
        // Nothing arrived, so there is nothing to undo and no undo is offered.
        QCOMPARE(result.statusText(), QString(moving ? "0 items moved" : "0 items copied"));
        QCOMPARE(result.failures, QStringList{"item: " + QString::fromLocal8Bit(strerror(EEXIST))});
        QCOMPARE(contents(tree.path("target/item")), QByteArray("theirs"));
        QVERIFY(present(source));
    }

    void sameNamesFromTwoFoldersGetTwoPlaces() {
        TempTree tree;
        const TransferResult result =
            transfer({tree.file("a/x.txt", "a"), tree.file("b/x.txt", "b")}, false, tree.folder("target"));
        QVERIFY(result.failures.isEmpty());
        QCOMPARE(contents(tree.path("target/x.txt")), QByteArray("a"));
        QCOMPARE(contents(tree.path("target/x - Copy.txt")), QByteArray("b"));
    }

    void movedFolderReportedForPins() {
        TempTree tree;
        const QString pinned = tree.folder("a/Pinned");
        const QString stays = tree.file("a/stays.txt");
        const TransferResult result = transfer({pinned, tree.path("missing")}, true, tree.folder("b"));
        QCOMPARE(result.movedSources(), QStringList{pinned});
        QCOMPARE(result.finished.at(0).destination, tree.path("b/Pinned"));
        QCOMPARE(result.statusText(), QString("1 items moved · Ctrl+Z to undo"));
        QVERIFY(present(stays));
    }

    // /dev/shm is a volume of its own on Linux: the move becomes a copy, and the source goes only afterwards.
    void moveAcrossVolumes() {
        struct stat shm, tmp;
        TempTree tree;
        if (stat("/dev/shm", &shm) != 0 || stat(QFile::encodeName(tree.path()).constData(), &tmp) != 0 ||
            shm.st_dev == tmp.st_dev || access("/dev/shm", W_OK) != 0)
            QSKIP("no second writable volume");
        QTemporaryDir other("/dev/shm/orvane-move-XXXXXX");
        QVERIFY(QDir().mkpath(other.path() + "/box/sub"));
        QFile f(other.path() + "/box/sub/f.txt");
        QVERIFY(f.open(QIODevice::WriteOnly) && f.write("far") == 3);
        f.close();
        QVERIFY(QFile::link("sub/f.txt", other.path() + "/box/link"));
        const TransferResult result = transfer({other.path() + "/box"}, true, tree.path());
        QVERIFY2(result.failures.isEmpty(), qPrintable(result.failureDetail()));
        QVERIFY(!present(other.path() + "/box"));
        QCOMPARE(contents(tree.path("box/sub/f.txt")), QByteArray("far"));
        QCOMPARE(QFileInfo(tree.path("box/link")).symLinkTarget(), tree.path("box/sub/f.txt"));
        QVERIFY(undo(result));
        QCOMPARE(contents(other.path() + "/box/sub/f.txt"), QByteArray("far"));
        QVERIFY(!present(tree.path("box")));
    }

    // A stop seen inside a file removes that part; nothing is reported as a failure.
    void aCancelLeavesNoPartialFile() {
        TempTree tree;
        tree.sizedFile("src/big.bin", 8 << 20);
        tree.file("src/a.txt", "a");
        const std::atomic<bool> stop{true};
        const TransferPlan plan = TransferEngine::plan({tree.path("src")}, false, tree.folder("t"));
        const TransferResult result = TransferEngine::run(plan.jobs, false, {}, &stop);
        QVERIFY(result.cancelled && result.failures.isEmpty() && result.finished.empty());
        QVERIFY(!present(tree.path("t/src")));
        QCOMPARE(result.statusText(), QStringLiteral("Cancelled · 0 items copied"));
    }

    void progressSaysHowFar_data() {
        QTest::addColumn<int>("seconds");
        QTest::addColumn<QString>("text");
        const QString far = QStringLiteral("Copying 3 of 10 items · 2 KB of 4 KB");
        QTest::newRow("not yet known") << -1 << far;
        QTest::newRow("seconds") << 40 << far + QStringLiteral(" · About 40 seconds left");
        QTest::newRow("one minute") << 70 << far + QStringLiteral(" · About 1 minute left");
        QTest::newRow("hours") << 7200 << far + QStringLiteral(" · About 2 hours left");
    }
    void progressSaysHowFar() {
        QFETCH(int, seconds);
        QFETCH(QString, text);
        const TransferEngine::Measure m{2, 10, 2000, 4000};
        QCOMPARE(TransferEngine::progressText(false, m,
                                              seconds < 0 ? std::nullopt : std::optional<qint64>(seconds)),
                 text);
    }

    void oneRunAtATime() {
        TempTree tree;
        tree.sizedFile("src/big.bin", 8 << 20);
        TransferEngine engine;
        QSignalSpy done(&engine, &TransferEngine::finished);
        const TransferPlan plan = TransferEngine::plan({tree.path("src")}, false, tree.folder("t"));
        QVERIFY(engine.start(plan.jobs, false));
        QVERIFY(engine.running());
        QVERIFY(!engine.start(plan.jobs, false));
        QVERIFY(done.wait(60000));
        QVERIFY(!engine.running());
        QCOMPARE(contents(tree.path("t/src/big.bin")).size(), 8 << 20);
    }
};

ORVANE_TEST_MAIN(TransferEngineTest)
#include "TransferEngineTest.moc"
