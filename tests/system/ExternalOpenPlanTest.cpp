#include "system/ExternalOpenPlan.h"
#include "platform/NativePath.h"
#include "support/TempTree.h"
#include "support/TestEnvironment.h"

#include <QFile>

using namespace orvane;
using orvane::test::TempTree;

class ExternalOpenPlanTest : public QObject {
    Q_OBJECT
    std::unique_ptr<TempTree> tree;

    QUrl at(const QString& relative) const { return QUrl::fromLocalFile(tree->path(relative)); }
    // Where the plan points: the temporary folder itself may lie behind a link.
    QUrl real(const QString& relative = {}) const {
        return QUrl::fromLocalFile(NativePath::canonical(tree->path(relative)));
    }

private slots:
    void init() {
        tree = std::make_unique<TempTree>();
        tree->file(QStringLiteral("Docs/a.txt"));
        tree->file(QStringLiteral("Docs/b.txt"));
        tree->folder(QStringLiteral("Other"));
        QVERIFY(QFile::link(tree->path(QStringLiteral("Docs")), tree->path(QStringLiteral("link1"))));
        QVERIFY(QFile::link(tree->path(QStringLiteral("Docs")), tree->path(QStringLiteral("link2"))));
    }

    // Files of one folder and the folder itself, however spelled, make one request with the files
    // selected in the order asked.
    void oneFolderIsOneRequest() {
        const ExternalOpenPlan plan(
            {at("Docs/b.txt"), at("Docs"), at("link1/a.txt"), at("Docs/./b.txt"), at("Other"), at("link2/")},
            false);
        QCOMPARE(plan.folders.size(), 2);
        QCOMPARE(plan.folders[0].folder, real("Docs"));
        QCOMPARE(plan.folders[0].selection, QList<QUrl>({real("Docs/b.txt"), real("Docs/a.txt")}));
        QCOMPARE(plan.folders[1].folder, real("Other"));
        QVERIFY(plan.folders[1].selection.isEmpty());
        QVERIFY(plan.unavailable.isEmpty());
    }

    void missingAndForeignItemsAreUnavailable() {
        const QUrl web(QStringLiteral("https://example.org/x")),
            phone(QStringLiteral("android://phone/DCIM"));
        const ExternalOpenPlan plan({web, at("gone.txt"), at("Docs/a.txt"), phone}, false);
        QCOMPARE(plan.unavailable, QList<QUrl>({web, at("gone.txt"), phone}));
        QCOMPARE(plan.folders.size(), 1);
    }

    void revealSelectsAFolderInItsParent() {
        const ExternalOpenPlan plan({at("Other"), at("link1")}, true);
        QCOMPARE(plan.folders.size(), 1);
        QCOMPARE(plan.folders[0].folder, real());
        QCOMPARE(plan.folders[0].selection, QList<QUrl>({real("Other"), real("Docs")}));
    }

    // A name that is not UTF-8 is selected by its exact bytes.
    void namesThatAreNotUtf8KeepTheirBytes() {
        const QString raw = tree->rawFile("Raw/bad\xff.txt");
        const ExternalOpenPlan plan({QUrl::fromLocalFile(raw)}, false);
        QCOMPARE(plan.folders.size(), 1);
        QCOMPARE(NativePath::encode(plan.folders[0].selection.value(0).toLocalFile()),
                 NativePath::encode(NativePath::canonical(tree->path(QStringLiteral("Raw")))) +
                     "/bad\xff.txt");
    }
};

ORVANE_TEST_MAIN(ExternalOpenPlanTest)
#include "ExternalOpenPlanTest.moc"
