#include "properties/PropertiesSizeScanner.h"
#include "support/TempTree.h"
#include "support/TestEnvironment.h"

#include <QDir>
#include <QFile>
#include <cstring>
#include <linux/capability.h>
#include <sys/mount.h>
#include <sys/stat.h>
#include <sys/syscall.h>
#include <unistd.h>

using namespace orvane;
using orvane::test::TempTree;

namespace {

// Lines of "f path size", "d path", "l path target" or "h path existing" (a hard link).
void build(TempTree& tree, const QStringList& lines) {
    for (const QString& line : lines) {
        const QStringList p = line.split(u' ');
        const QByteArray path = QFile::encodeName(tree.path(p[1]));
        QDir().mkpath(QFileInfo(tree.path(p[1])).path());
        if (p[0] == "f") tree.file(p[1], QByteArray(p[2].toInt(), 'x'));
        if (p[0] == "d") tree.folder(p[1]);
        if (p[0] == "l") QVERIFY(symlink(QFile::encodeName(p[2]).constData(), path.constData()) == 0);
        if (p[0] == "h") QVERIFY(link(QFile::encodeName(tree.path(p[2])).constData(), path.constData()) == 0);
    }
}

QList<QUrl> urls(const TempTree& tree, const QStringList& relative) {
    QList<QUrl> list;
    for (const QString& r : relative)
        list << QUrl::fromLocalFile(tree.path(r));
    return list;
}

PropertiesSizeSummary scan(const QList<QUrl>& urls) {
    return PropertiesSizeScanner::scan(urls, [] { return false; });
}

// Root reads every folder whatever its mode; this drops that for the test's thread and the threads
// it starts, so an unreadable folder is unreadable here too. Restored on destruction.
class NoFileAccessOverride {
public:
    NoFileAccessOverride() {
        if (geteuid() != 0 || syscall(SYS_capget, &header, saved) != 0) return;
        __user_cap_data_struct reduced[2] = {saved[0], saved[1]};
        for (int bit : {CAP_DAC_OVERRIDE, CAP_DAC_READ_SEARCH})
            reduced[bit / 32].effective &= ~(1u << (bit % 32));
        active = syscall(SYS_capset, &header, reduced) == 0;
    }
    ~NoFileAccessOverride() {
        if (active) syscall(SYS_capset, &header, saved);
    }
    bool works() const { return geteuid() != 0 || active; }

private:
    __user_cap_header_struct header{_LINUX_CAPABILITY_VERSION_3, 0};
    __user_cap_data_struct saved[2] = {};
    bool active = false;
};

} // namespace

class PropertiesSizeScannerTest : public QObject {
    Q_OBJECT

private slots:
    void counts_data() {
        QTest::addColumn<QStringList>("make");
        QTest::addColumn<QStringList>("select");
        QTest::addColumn<qint64>("files");
        QTest::addColumn<qint64>("folders");
        QTest::addColumn<qint64>("unreadable");
        QTest::addColumn<qint64>("bytes");
        QTest::newRow("a file inside a selected folder counts once")
            << QStringList{"f a/x 10", "f a/y 5"} << QStringList{"a/x", "a"} << 2ll << 0ll << 0ll << 15ll;
        QTest::newRow("a folder inside a selected folder counts once")
            << QStringList{"f p/q/r 5"} << QStringList{"p/q", "p"} << 1ll << 1ll << 0ll << 5ll;
        QTest::newRow("one file by two spellings")
            << QStringList{"f a/x 10"} << QStringList{"a/./x", "a/x"} << 1ll << 0ll << 0ll << 10ll;
        QTest::newRow("a file reached through a linked parent")
            << QStringList{"f a/x 10", "l la a"} << QStringList{"a", "la/x"} << 1ll << 0ll << 0ll << 10ll;
        QTest::newRow("a link to a folder is one file, not entered")
            << QStringList{"f d/1 100", "f d/2 100", "l ld d"} << QStringList{"ld"} << 1ll << 0ll << 0ll
            << 1ll;
        QTest::newRow("two files and one subfolder")
            << QStringList{"f f/1 3", "f f/2 4", "d f/sub"} << QStringList{"f"} << 2ll << 1ll << 0ll << 7ll;
        QTest::newRow("an empty folder")
            << QStringList{"d e"} << QStringList{"e"} << 0ll << 0ll << 0ll << 0ll;
        QTest::newRow("hidden files and dangling links count")
            << QStringList{"f h/.secret 8", "l h/dangling nowhere"} << QStringList{"h"} << 2ll << 0ll << 0ll
            << 15ll;
        QTest::newRow("hard links count once") << QStringList{"f k/a 50", "h k/b k/a", "h k/c k/a"}
                                               << QStringList{"k"} << 1ll << 0ll << 0ll << 50ll;
        QTest::newRow("a hard link selected beside its folder")
            << QStringList{"f k/a 50", "h b k/a"} << QStringList{"b", "k"} << 1ll << 0ll << 0ll << 50ll;
        QTest::newRow("a missing item is unreadable")
            << QStringList{"f s 1"} << QStringList{"gone", "s"} << 1ll << 0ll << 1ll << 1ll;
    }
    void counts() {
        QFETCH(QStringList, make);
        QFETCH(QStringList, select);
        TempTree tree;
        build(tree, make);
        const PropertiesSizeSummary s = scan(urls(tree, select));
        QFETCH(qint64, files);
        QFETCH(qint64, folders);
        QFETCH(qint64, unreadable);
        QFETCH(qint64, bytes);
        QCOMPARE(s.files, files);
        QCOMPARE(s.folders, folders);
        QCOMPARE(s.unreadable, unreadable);
        QCOMPARE(s.logicalBytes, bytes);
        QVERIFY(!s.cancelled);
    }

    // A folder that cannot be entered, and one whose names can be listed but not looked up.
    void unreadableFolders_data() {
        QTest::addColumn<QString>("locked");
        QTest::addColumn<int>("mode");
        QTest::addColumn<qint64>("files");
        QTest::addColumn<qint64>("folders");
        QTest::addColumn<qint64>("unreadable");
        QTest::newRow("not readable") << "u/locked" << 0 << 1ll << 1ll << 1ll;
        QTest::newRow("readable, not searchable") << "u" << 0444 << 0ll << 0ll << 2ll;
    }
    void unreadableFolders() {
        QFETCH(QString, locked);
        QFETCH(int, mode);
        TempTree tree;
        build(tree, {"f u/ok 4", "f u/locked/in 9"});
        const QByteArray path = QFile::encodeName(tree.path(locked));
        QVERIFY(chmod(path.constData(), mode_t(mode)) == 0);
        PropertiesSizeSummary s;
        {
            NoFileAccessOverride limited;
            QVERIFY(limited.works());
            s = scan(urls(tree, {"u"}));
        }
        chmod(path.constData(), 0755);
        QFETCH(qint64, files);
        QFETCH(qint64, folders);
        QFETCH(qint64, unreadable);
        QCOMPARE(s.files, files);
        QCOMPARE(s.folders, folders);
        QCOMPARE(s.unreadable, unreadable);
        QVERIFY(s.sizeText().startsWith("At least "));
        QVERIFY(s.allocatedText().startsWith("At least "));
        QCOMPARE(s.statusText(true), QString("Partial size · %1 items could not be read").arg(unreadable));
    }

    // A folder mounted inside itself is the same folder again: not entered, not counted.
    void bindMountedLoopCountsOnce() {
        TempTree tree;
        build(tree, {"f b/x 10", "f b/sub/y 5", "d b/loop"});
        const QByteArray from = QFile::encodeName(tree.path("b"));
        const QByteArray loop = QFile::encodeName(tree.path("b/loop"));
        if (mount(from.constData(), loop.constData(), nullptr, MS_BIND, nullptr) != 0)
            QSKIP(qPrintable(QString("cannot bind-mount here: ") + strerror(errno)));
        const PropertiesSizeSummary s = scan(urls(tree, {"b", "b/loop/sub"}));
        umount2(loop.constData(), MNT_DETACH);
        QCOMPARE(s.logicalBytes, 15ll);
        QCOMPARE(s.files, 2ll);
        QCOMPARE(s.folders, 1ll);
    }

    void cancelReturnsAtTheNextItem() {
        TempTree tree;
        for (int f = 0; f < 40; ++f)
            for (int i = 0; i < 25; ++i)
                tree.file(QString("big/f%1/i%2").arg(f).arg(i), "x");
        std::atomic<int> calls = 0;
        const int stopAt = 50;
        const PropertiesSizeSummary s =
            PropertiesSizeScanner::scan(urls(tree, {"big"}), [&] { return ++calls >= stopAt; });
        QVERIFY(s.cancelled);
        // Each of the two threads asks before its next item, and neither goes on after the answer.
        QVERIFY(calls >= stopAt && calls <= stopAt + 1);
        QVERIFY(s.files + s.folders <= stopAt);

        calls = 0;
        const PropertiesSizeSummary before =
            PropertiesSizeScanner::scan(urls(tree, {"big", "big/f1"}), [&] { return ++calls > 0; });
        QVERIFY(before.cancelled);
        QCOMPARE(before.files + before.folders, 0ll);
    }

    void partialsGrowTowardsTheResult() {
        TempTree tree;
        for (int f = 0; f < 20; ++f)
            for (int i = 0; i < 20; ++i)
                tree.file(QString("t/f%1/i%2").arg(f).arg(i), "abc");
        QList<qint64> seen;
        const PropertiesSizeSummary s = PropertiesSizeScanner::scan(
            urls(tree, {"t"}), [] { return false; },
            [&](const PropertiesSizeSummary& partial) { seen << partial.files + partial.folders; }, 0);
        QVERIFY(!seen.isEmpty());
        QVERIFY(std::is_sorted(seen.begin(), seen.end()));
        QVERIFY(seen.last() <= s.files + s.folders);
        QCOMPARE(s.files, 400ll);
        QCOMPARE(s.folders, 20ll);
        QCOMPARE(s.logicalBytes, 1200ll);
        QVERIFY(s.allocatedBytes >= 0 && s.unavailableAllocation == 0);
    }

    void texts_data() {
        QTest::addColumn<qint64>("value");
        QTest::addColumn<QString>("text");
        QTest::newRow("zero") << 0ll << "Zero KB (0 bytes)";
        QTest::newRow("one") << 1ll << "1 byte";
        QTest::newRow("alike") << 512ll << "512 bytes";
        QTest::newRow("kilobytes") << 1000ll << "1 KB (1,000 bytes)";
        QTest::newRow("megabytes") << 1234567ll << "1.2 MB (1,234,567 bytes)";
    }
    void texts() {
        QFETCH(qint64, value);
        QFETCH(QString, text);
        QCOMPARE(bytes(value), text);
    }

    void summaryTexts() {
        PropertiesSizeSummary s;
        s.files = 1;
        s.folders = 1234;
        QCOMPARE(s.containsText(), QString("1 file, 1,234 subfolders"));
        QCOMPARE(s.statusText(false), QString("Calculating… 1235 items checked"));
        QCOMPARE(s.statusText(true), QString("Properties are read-only"));
        s.unavailableAllocation = 3;
        QCOMPARE(s.statusText(true), QString("Disk allocation unavailable for 3 items"));
        QVERIFY(!s.sizeText().startsWith("At least") && s.allocatedText().startsWith("At least "));
    }
};

ORVANE_TEST_MAIN(PropertiesSizeScannerTest)
#include "PropertiesSizeScannerTest.moc"
