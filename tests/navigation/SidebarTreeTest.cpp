#include "navigation/SidebarTree.h"
#include "support/TempTree.h"
#include "support/TestEnvironment.h"

#include <QSignalSpy>

using namespace orvane;
using orvane::test::TempTree;

Q_DECLARE_METATYPE(orvane::SidebarKey)

namespace {
SidebarPlace folder(const QString& path, const QString& title = {}) {
    return {title.isEmpty() ? path.section(u'/', -1) : title, path, QStringLiteral("folder")};
}
} // namespace

class SidebarTreeTest : public QObject {
    Q_OBJECT
    std::unique_ptr<TempTree> tree;
    std::unique_ptr<SidebarTree> model;

    int rowOf(const QString& title, int from = 0) const {
        const SidebarTreeSnapshot& s = model->snapshot();
        for (int row = from; row < s.count(); ++row)
            if (s.places[row].title == title) return row;
        return -1;
    }
    QString selectedTitle() const {
        const int row = model->selectedRow();
        return row < 0 ? QString() : model->snapshot().places[row].title;
    }

private slots:
    // Rows: 0 Work, 1 Quick access, 2 Pin (= Work/Shared), 3 Empty; Work holds Shared/Inner and Notes.
    void init() {
        tree = std::make_unique<TempTree>();
        for (const char* f : {"Work/Shared/Inner", "Work/Notes", "Empty"})
            tree->folder(QLatin1String(f));
        model = std::make_unique<SidebarTree>();
        model->setRoots({folder(tree->path("Work")), SidebarPlace::section("Quick access"),
                         folder(tree->path("Work/Shared"), "Pin"), folder(tree->path("Empty"))});
    }

    void collapseMovesAHiddenSelectionToTheFolder() {
        model->follow(QUrl::fromLocalFile(tree->path("Work/Shared")));
        model->setExpanded(rowOf("Work"), true);
        model->setExpanded(rowOf("Shared"), true);
        QVERIFY(model->select(rowOf("Inner")));
        model->setExpanded(rowOf("Work"), false);
        QCOMPARE(selectedTitle(), QStringLiteral("Work"));
        // Collapsing something else keeps the selection where it is.
        model->setExpanded(rowOf("Work"), true);
        QVERIFY(model->select(rowOf("Notes")));
        model->setExpanded(rowOf("Pin"), false);
        QCOMPARE(selectedTitle(), QStringLiteral("Notes"));
    }

    // Shared stands under Work and as the pin; expanding it opens both, the selection stays on its own row.
    void oneFolderExpandsEverywhereButSelectionMovesByIdentity() {
        model->setExpanded(rowOf("Work"), true);
        QVERIFY(model->select(rowOf("Pin")));
        model->setExpanded(rowOf("Pin"), true);
        const int underWork = rowOf("Inner");
        const int underPin = rowOf("Inner", underWork + 1);
        QVERIFY(underWork > 0 && underPin > underWork);
        QCOMPARE(selectedTitle(), QStringLiteral("Pin"));
        QVERIFY(model->select(underPin));
        model->setExpanded(rowOf("Notes"), true); // a rebuild that shifts nothing below
        model->setExpanded(rowOf("Pin"), false);
        QCOMPARE(model->selectedRow(), rowOf("Pin")); // the pin's Inner went with the collapse
        QCOMPARE(rowOf("Inner"), -1);                 // and so did the one under Work
        // The window arriving at a folder shown twice selects its first row.
        model->follow(QUrl::fromLocalFile(tree->path("Work/Notes")));
        QCOMPARE(selectedTitle(), QStringLiteral("Notes"));
    }

    void keys_data() {
        QTest::addColumn<QString>("selected");
        QTest::addColumn<bool>("open");
        QTest::addColumn<SidebarKey>("key");
        QTest::addColumn<int>("kind");
        QTest::addColumn<QString>("target");
        using A = SidebarTree::KeyAction;
        QTest::newRow("right opens") << "Work" << false << SidebarKey::Right << int(A::Expand) << "Work";
        QTest::newRow("plus opens") << "Work" << false << SidebarKey::Plus << int(A::Expand) << "Work";
        QTest::newRow("right steps in") << "Work" << true << SidebarKey::Right << int(A::Go) << "Notes";
        QTest::newRow("plus stays") << "Work" << true << SidebarKey::Plus << int(A::None) << "";
        QTest::newRow("left closes") << "Work" << true << SidebarKey::Left << int(A::Collapse) << "Work";
        QTest::newRow("minus closes") << "Work" << true << SidebarKey::Minus << int(A::Collapse) << "Work";
        QTest::newRow("left steps out") << "Notes" << true << SidebarKey::Left << int(A::Go) << "Work";
        QTest::newRow("minus stays") << "Notes" << true << SidebarKey::Minus << int(A::None) << "";
        QTest::newRow("root left") << "Empty" << false << SidebarKey::Left << int(A::None) << "";
        QTest::newRow("empty right") << "Empty" << true << SidebarKey::Right << int(A::None) << "";
        QTest::newRow("no selection") << "" << false << SidebarKey::Right << int(A::None) << "";
    }
    void keys() {
        QFETCH(QString, selected);
        QFETCH(bool, open);
        QFETCH(SidebarKey, key);
        QFETCH(int, kind);
        QFETCH(QString, target);
        if (open) {
            model->setExpanded(rowOf("Work"), true);
            model->setExpanded(rowOf("Empty"), true);
        }
        if (!selected.isEmpty()) QVERIFY(model->select(rowOf(selected)));
        const SidebarTree::KeyAction action = model->keyAction(key);
        QCOMPARE(int(action.kind), kind);
        QCOMPARE(action.row, target.isEmpty() ? -1 : rowOf(target));
    }

    // The root file system wins over a pin showing the same folder.
    void revealPrefersTheRootFileSystem() {
        model->setRoots({folder(tree->path("Work/Shared"), "Pin"), {"File System", "/", "internaldrive"}});
        const int row = model->expandTo(tree->path("Work/Shared/Inner"));
        QVERIFY(row > 0);
        QCOMPARE(model->selectedRow(), row);
        QCOMPARE(model->snapshot().places[model->snapshot().rootOf(row)].location, QStringLiteral("/"));
        QVERIFY(model->expandedPaths().contains(tree->path("Work")));
        QCOMPARE(model->expandTo(QStringLiteral("/nonexistent/place")), -1);
    }
};

ORVANE_TEST_MAIN(SidebarTreeTest)
#include "SidebarTreeTest.moc"
