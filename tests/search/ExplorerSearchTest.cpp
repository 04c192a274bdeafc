// The window's search engine: the debounce, the generation that silences late runs, results that
// stream while a walk goes on, and the whole-computer scope against a private plocate index.
#include "search/ExplorerSearch.h"
#include "core/Job.h"
#include "core/Jobs.h"
#include "support/TempTree.h"
#include "support/TestEnvironment.h"

#include <QProcess>
#include <QSignalSpy>
#include <sys/stat.h>
#include <unistd.h>

using namespace orvane;
using namespace orvane::test;

namespace {
struct Outcome {
    QStringList names;
    QString note;
    QString problem;
    int completions = 0;
};

ExplorerSearch::Completion recordInto(Outcome& outcome) {
    return [&outcome](std::vector<Entry> results, QString note, QString problem) {
        ++outcome.completions;
        outcome.note = note;
        outcome.problem = problem;
        outcome.names.clear();
        for (const Entry& e : results)
            outcome.names << e.name();
        outcome.names.sort();
    };
}

// Indexes `tree` into a private database, as a person would with plocate's own tool.
QString buildIndex(const TempTree& tree, const QString& db) {
    const int code = QProcess::execute(QStringLiteral("updatedb"),
                                       {QStringLiteral("-o"), db, QStringLiteral("-U"), tree.path(),
                                        QStringLiteral("--require-visibility"), QStringLiteral("0")});
    return code == 0 ? db : QString();
}

class ScopedVariable {
public:
    ScopedVariable(const char* name, const QByteArray& value)
        : name(name), old(qgetenv(name)), had(qEnvironmentVariableIsSet(name)) {
        qputenv(name, value);
    }
    ~ScopedVariable() {
        if (had)
            qputenv(name, old);
        else
            qunsetenv(name);
    }

private:
    const char* name;
    QByteArray old;
    bool had;
};
} // namespace

class ExplorerSearchTest : public QObject {
    Q_OBJECT

    std::unique_ptr<TempTree> tree;

private slots:
    void init() {
        tree = std::make_unique<TempTree>();
        tree->file(QStringLiteral("Projects/2024/Report Final.pdf"));
        tree->file(QStringLiteral("Projects/notes.txt"));
        tree->file(QStringLiteral("Menus/Café Menu.txt"));
        tree->file(QStringLiteral("Menus/CAFE\u0301 decomposed.txt"));
        tree->file(QStringLiteral(".secret/report hidden.txt"));
    }

    void folderSearchFindsNestedNames() {
        ExplorerSearch search;
        Outcome outcome;
        search.start(QStringLiteral("report"), tree->path(), false, false, recordInto(outcome));
        QVERIFY(search.running());
        QTRY_COMPARE(outcome.completions, 1);
        QCOMPARE(outcome.names, QStringList{"Report Final.pdf"});
        QCOMPARE(outcome.note, QStringLiteral("Folder + subfolders"));
        QVERIFY(!search.running());
    }

    // Only the text that stood for the debounce is searched, once.
    void typingRestartsTheWait() {
        ExplorerSearch search;
        Outcome first, second, last;
        search.start(QStringLiteral("n"), tree->path(), false, false, recordInto(first));
        search.start(QStringLiteral("no"), tree->path(), false, false, recordInto(second));
        search.start(QStringLiteral("not"), tree->path(), false, false, recordInto(last));
        QTRY_COMPARE(last.completions, 1);
        QCOMPARE(last.names, QStringList{"notes.txt"});
        QCOMPARE(first.completions + second.completions, 0);
    }

    // A cancel right after start, and one of the listed job while a walk runs: neither completion ever
    // comes, though a later search in the same engine does, and no job is left over.
    void cancelledRunsStaySilent() {
        for (int i = 0; i < 300; ++i)
            tree->file(QStringLiteral("big/f%1/g%1/item%1.txt").arg(i));
        Jobs jobs;
        QObject window;
        ExplorerSearch search;
        search.listIn(jobs, &window);
        Outcome cancelledAtOnce, cancelledRunning, later;
        search.start(QStringLiteral("item"), tree->path(), false, false, recordInto(cancelledAtOnce));
        search.cancel();
        QVERIFY(!search.running());
        int batches = 0;
        search.start(QStringLiteral("item"), tree->path(), false, false, recordInto(cancelledRunning),
                     [&](std::vector<Entry>, FolderWalk::Progress) {
                         if (++batches == 1 && jobs.running().size() == 1) jobs.running().front()->cancel();
                     });
        QTRY_VERIFY(batches > 0);
        search.start(QStringLiteral("notes"), tree->path(), false, false, recordInto(later));
        QTRY_COMPARE(later.completions, 1);
        QCOMPARE(batches, 1);
        QCOMPARE(cancelledAtOnce.completions + cancelledRunning.completions, 0);
        QVERIFY(jobs.running().isEmpty() && !jobs.holds(&window));
    }

    void resultsStreamBeforeTheEnd() {
        for (int i = 0; i < 400; ++i)
            tree->file(QStringLiteral("many/f%1/match%1.txt").arg(i));
        ExplorerSearch search;
        Outcome outcome;
        QStringList streamed;
        qint64 folders = 0;
        search.start(QStringLiteral("match"), tree->path(), false, false, recordInto(outcome),
                     [&](std::vector<Entry> found, FolderWalk::Progress progress) {
                         QCOMPARE(outcome.completions, 0);
                         for (const Entry& e : found)
                             streamed << e.name();
                         folders = progress.folders;
                     });
        QTRY_COMPARE(outcome.completions, 1);
        QVERIFY(!streamed.isEmpty());
        QVERIFY(folders > 0);
        QCOMPARE(outcome.names.size(), 400);
        for (const QString& name : streamed)
            QVERIFY(outcome.names.contains(name));
    }

    void unreadableSubfolderOnlyAddsANote() {
        tree->file(QStringLiteral("locked/report inside.txt"));
        QVERIFY(chmod(QFile::encodeName(tree->path()).constData(), 0755) == 0);
        QVERIFY(chmod(QFile::encodeName(tree->path(QStringLiteral("locked"))).constData(), 0) == 0);
        const bool root = geteuid() == 0;
        if (root) QVERIFY(seteuid(65534) == 0); // root reads every folder
        ExplorerSearch search;
        Outcome outcome;
        search.start(QStringLiteral("report"), tree->path(), false, false, recordInto(outcome));
        QTRY_COMPARE(outcome.completions, 1);
        if (root) QVERIFY(seteuid(0) == 0);
        chmod(QFile::encodeName(tree->path(QStringLiteral("locked"))).constData(), 0755);
        QCOMPARE(outcome.names, QStringList{"Report Final.pdf"});
        QCOMPARE(outcome.note, QStringLiteral("Folder + subfolders · some locations unavailable"));
    }

    void aFolderInsideAHiddenOneShowsNothingUnlessHiddenAreShown_data() {
        QTest::addColumn<bool>("hidden");
        QTest::addColumn<QStringList>("expected");
        QTest::newRow("hidden off") << false << QStringList{};
        QTest::newRow("hidden on") << true << QStringList{"report hidden.txt"};
    }
    void aFolderInsideAHiddenOneShowsNothingUnlessHiddenAreShown() {
        QFETCH(bool, hidden);
        QFETCH(QStringList, expected);
        ExplorerSearch search;
        Outcome outcome;
        search.start(QStringLiteral("report"), tree->path(QStringLiteral(".secret")), false, hidden,
                     recordInto(outcome));
        QTRY_COMPARE(outcome.completions, 1);
        QCOMPARE(outcome.names, expected);
    }

    void wholeComputerAsksThePrivateIndex_data() {
        QTest::addColumn<QString>("text");
        QTest::addColumn<bool>("hidden");
        QTest::addColumn<QStringList>("expected");
        QTest::newRow("diacritics folded")
            << "cafe" << false << QStringList{"CAFE\u0301 decomposed.txt", "Café Menu.txt"};
        QTest::newRow("accented text")
            << "CAFÉ" << false << QStringList{"CAFE\u0301 decomposed.txt", "Café Menu.txt"};
        QTest::newRow("names only, not folders above") << "projects" << false << QStringList{"Projects"};
        QTest::newRow("hidden dropped") << "report" << false << QStringList{"Report Final.pdf"};
        QTest::newRow("hidden shown")
            << "report" << true << QStringList{"Report Final.pdf", "report hidden.txt"};
        QTest::newRow("nothing") << "zebra" << false << QStringList{};
    }
    void wholeComputerAsksThePrivateIndex() {
        QFETCH(QString, text);
        QFETCH(bool, hidden);
        QFETCH(QStringList, expected);
        TempTree dbFolder;
        const QString db = buildIndex(*tree, dbFolder.path(QStringLiteral("index.db")));
        QVERIFY2(!db.isEmpty(), "updatedb of plocate must be installed");
        ScopedVariable variable("ORVANE_LOCATE_DB", QFile::encodeName(db));
        ExplorerSearch search;
        Outcome outcome;
        search.start(text, tree->path(QStringLiteral("Menus")), true, hidden, recordInto(outcome));
        QTRY_COMPARE(outcome.completions, 1);
        QCOMPARE(outcome.names, expected);
        QCOMPARE(outcome.note, QStringLiteral("This Computer · indexed locations"));
    }

    // Unavailable says why, in plocate's words, and how to build the index; never that nothing matched.
    void wholeComputerWithoutAnIndexIsUnavailable_data() {
        QTest::addColumn<QString>("database"); // "index" for a good one
        QTest::addColumn<bool>("noProgram");
        QTest::addColumn<QString>("reason");
        QTest::newRow("database missing") << QString() << false << "index.db: No such file or directory";
        QTest::newRow("database empty") << QString("") << false << "index.db: the database is empty";
        QTest::newRow("database corrupt") << QString(300, 'x') << false << "index.db: database is corrupt";
        QTest::newRow("program missing") << QString("index") << true << "plocate is not installed";
    }
    void wholeComputerWithoutAnIndexIsUnavailable() {
        QFETCH(QString, database);
        QFETCH(bool, noProgram);
        QFETCH(QString, reason);
        TempTree empty;
        const QString file = empty.path(QStringLiteral("index.db"));
        if (database == "index")
            QVERIFY(!buildIndex(*tree, file).isEmpty());
        else if (!database.isNull())
            TempTree::writeFile(file, database.toUtf8());
        ScopedVariable db("ORVANE_LOCATE_DB", QFile::encodeName(file));
        std::optional<ScopedVariable> path;
        if (noProgram) path.emplace("PATH", QFile::encodeName(empty.path()));
        ExplorerSearch search;
        Outcome outcome;
        search.start(QStringLiteral("report"), tree->path(), true, false, recordInto(outcome));
        QTRY_COMPARE(outcome.completions, 1);
        QVERIFY(outcome.names.isEmpty());
        QCOMPARE(outcome.note, QStringLiteral("Search index unavailable"));
        QVERIFY2(outcome.problem.contains(reason), qPrintable(outcome.problem));
        QVERIFY(outcome.problem.endsWith("To build it, run: updatedb -o " + file));
    }
};

ORVANE_TEST_MAIN(ExplorerSearchTest)
#include "ExplorerSearchTest.moc"
