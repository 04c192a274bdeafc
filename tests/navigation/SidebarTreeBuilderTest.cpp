#include "navigation/SidebarTreeBuilder.h"
#include "support/TempTree.h"
#include "support/TestEnvironment.h"

#include <QDir>
#include <QFile>
#include <sys/mount.h>
#include <unistd.h>

using namespace orvane;
using orvane::test::TempTree;

namespace {

SidebarPlace folder(const QString& path, const QString& title = {}) {
    return {title.isEmpty() ? path.section(u'/', -1) : title, path, QStringLiteral("folder")};
}

// Each row as "depth title", so a whole tree compares in one line.
QStringList outline(const SidebarTreeSnapshot& tree) {
    QStringList rows;
    for (int row = 0; row < tree.count(); ++row)
        rows << QString::number(tree.depths[row]) + u' ' + tree.places[row].title;
    return rows;
}

} // namespace

class SidebarTreeBuilderTest : public QObject {
    Q_OBJECT
    std::unique_ptr<TempTree> tree;

private slots:
    void init() {
        tree = std::make_unique<TempTree>();
        for (const char* f : {"Top/a10", "Top/a2/deep", "Top/B", "Top/.secret/inner", "Other"})
            tree->folder(QLatin1String(f));
        tree->file("Top/file.txt");
        QFile::link(tree->path("Other"), tree->path("Top/link"));
    }

    void withoutExpansionTheTreeIsExactlyTheRoots() {
        const QList<SidebarPlace> roots = {folder(tree->path("Top")),
                                           SidebarPlace::section("Quick access"),
                                           folder(tree->path("Other")),
                                           {"Phone", "android://phone", "iphone"}};
        const SidebarTreeSnapshot built = SidebarTreeBuilder::build(roots, {}, true);
        QCOMPARE(built.places, roots);
        QCOMPARE(built.depths, QList<int>(4, 0));
        QCOMPARE(built.parents, QList<int>(4, -1));
    }

    // Subfolders only, in natural order, links and files left out; hidden ones on request or when
    // they are expanded themselves; one folder expanded in two places opens in both.
    void expansion_data() {
        QTest::addColumn<QStringList>("expanded");
        QTest::addColumn<bool>("showHidden");
        QTest::addColumn<QStringList>("expected");
        QTest::newRow("one level") << QStringList{"Top"} << false
                                   << QStringList{"0 Top", "1 a2", "1 a10", "1 B", "0 a2"};
        QTest::newRow("hidden shown") << QStringList{"Top"} << true
                                      << QStringList{"0 Top", "1 .secret", "1 a2", "1 a10", "1 B", "0 a2"};
        QTest::newRow("hidden but expanded")
            << QStringList{"Top", "Top/.secret"} << false
            << QStringList{"0 Top", "1 .secret", "2 inner", "1 a2", "1 a10", "1 B", "0 a2"};
        QTest::newRow("same folder in two places")
            << QStringList{"Top", "Top/a2"} << false
            << QStringList{"0 Top", "1 a2", "2 deep", "1 a10", "1 B", "0 a2", "1 deep"};
    }
    void expansion() {
        QFETCH(QStringList, expanded);
        QFETCH(bool, showHidden);
        QFETCH(QStringList, expected);
        QSet<QString> paths;
        for (const QString& e : expanded)
            paths.insert(tree->path(e));
        const auto built = SidebarTreeBuilder::build(
            {folder(tree->path("Top")), folder(tree->path("Top/a2"))}, paths, showHidden);
        QCOMPARE(outline(built), expected);
        for (int row = 1; row < built.count(); ++row)
            if (built.depths[row] > 0) QCOMPARE(built.depths[built.parents[row]], built.depths[row] - 1);
    }

    void depthStopsAt48WithANote() {
        QString path = tree->path("Deep");
        QSet<QString> expanded;
        for (int level = 0; level <= SidebarTreeBuilder::maximumDepth + 1; ++level) {
            QDir().mkpath(path);
            expanded.insert(path);
            path += QStringLiteral("/d");
        }
        const auto built = SidebarTreeBuilder::build({folder(tree->path("Deep"))}, expanded, false);
        QCOMPARE(built.count(), SidebarTreeBuilder::maximumDepth + 2);
        const int last = built.count() - 1;
        QCOMPARE(built.places[last].title, QStringLiteral("Open this folder to browse deeper"));
        QVERIFY(built.places[last].isSection());
        QCOMPARE(built.depths[last], SidebarTreeBuilder::maximumDepth + 1);
        QCOMPARE(built.parents[last], last - 1);
        QCOMPARE(built.places[last].location, built.places[last - 1].location);
    }

    void anUnreadableFolderSaysSo() {
        const QString locked = tree->folder("Locked/inside");
        QFile::setPermissions(tree->path("Locked"), QFileDevice::WriteOwner);
        if (QDir(tree->path("Locked")).isReadable()) {
            QFile::setPermissions(tree->path("Locked"),
                                  QFileDevice::ReadOwner | QFileDevice::WriteOwner | QFileDevice::ExeOwner);
            QSKIP("this user reads any folder");
        }
        const auto built =
            SidebarTreeBuilder::build({folder(tree->path("Locked"))}, {tree->path("Locked")}, false);
        QFile::setPermissions(tree->path("Locked"),
                              QFileDevice::ReadOwner | QFileDevice::WriteOwner | QFileDevice::ExeOwner);
        QCOMPARE(outline(built), QStringList({"0 Locked", "1 Folder access unavailable"}));
    }

    // A folder mounted inside itself reaches the same directory under ever longer paths.
    void aLoopStopsAtTheAncestor() {
        const QString inner = tree->folder("Loop/a/inner");
        const QByteArray source = QFile::encodeName(tree->path("Loop"));
        if (geteuid() != 0 ||
            mount(source.constData(), QFile::encodeName(inner).constData(), nullptr, MS_BIND, nullptr) != 0)
            QSKIP("needs a bind mount");
        const QSet<QString> expanded = {tree->path("Loop"), tree->path("Loop/a"), inner};
        const auto built = SidebarTreeBuilder::build({folder(tree->path("Loop"))}, expanded, false);
        umount2(QFile::encodeName(inner).constData(), MNT_DETACH);
        QCOMPARE(outline(built), QStringList({"0 Loop", "1 a", "2 inner"}));
    }

    void identityTellsPlacesApart() {
        const QList<SidebarPlace> roots = {folder(tree->path("Top")), folder(tree->path("Top/a2"), "Pin")};
        const auto built = SidebarTreeBuilder::build(roots, {tree->path("Top"), tree->path("Top/a2")}, false);
        // "deep" shows under Top > a2 (row 2) and under the pin (row 6).
        QCOMPARE(built.places[2].title, QStringLiteral("deep"));
        QCOMPARE(built.places[6].title, QStringLiteral("deep"));
        QCOMPARE(sidebarIdentity(built, 6),
                 QStringList({"Pin", tree->path("Top/a2"), tree->path("Top/a2/deep")}));
        QCOMPARE(sidebarRow(built, sidebarIdentity(built, 2)), 2);
        QCOMPARE(sidebarRow(built, sidebarIdentity(built, 6)), 6);
        QVERIFY(sidebarIdentity(built, 99).isEmpty());
        SidebarTreeSnapshot broken = built;
        broken.parents[2] = 5; // pointing down: refused rather than followed
        QVERIFY(sidebarIdentity(broken, 2).isEmpty());
    }
};

ORVANE_TEST_MAIN(SidebarTreeBuilderTest)
#include "SidebarTreeBuilderTest.moc"
