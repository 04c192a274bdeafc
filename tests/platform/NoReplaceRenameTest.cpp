#include "platform/NoReplaceRename.h"
#include "platform/NativePath.h"
#include "support/FatMount.h"
#include "support/TempTree.h"
#include "support/TestEnvironment.h"

#include <QDir>
#include <cerrno>

using namespace orvane;
using orvane::test::FatMount;
using orvane::test::TempTree;

class NoReplaceRenameTest : public QObject {
    Q_OBJECT

private slots:
    // FAT answers the no-replace flag with EINVAL and refuses hard links; the rename must still work and
    // still refuse every taken name.
    void onFat_data() {
        QTest::addColumn<bool>("folder");
        QTest::addColumn<QString>("taken"); // what already lies at the new name
        QTest::addColumn<int>("expected");
        for (bool folder : {false, true}) {
            const char* kind = folder ? "folder" : "file";
            QTest::addRow("%s to a free name", kind) << folder << "" << 0;
            QTest::addRow("%s onto a file", kind) << folder << "file" << EEXIST;
            QTest::addRow("%s onto an empty folder", kind) << folder << "empty folder" << EEXIST;
            QTest::addRow("%s onto a folder", kind) << folder << "folder" << EEXIST;
        }
    }
    void onFat() {
        QFETCH(bool, folder);
        QFETCH(QString, taken);
        QFETCH(int, expected);
        FatMount fat;
        ORVANE_REQUIRE_FAT(fat);
        // fusefat itself drops what a renamed folder holds (plain mv too), so the folder moved is empty.
        const QString from = folder ? fat.path("from") : fat.path("from.txt");
        if (folder)
            QVERIFY(QDir().mkpath(from));
        else
            TempTree::writeFile(from, "ours");
        if (taken == "file") TempTree::writeFile(fat.path("to"), "theirs");
        if (taken.endsWith("folder")) QVERIFY(QDir().mkpath(fat.path("to")));
        if (taken == "folder") TempTree::writeFile(fat.path("to/theirs.txt"), "theirs");
        const int code =
            renameNoReplace(NativePath::encode(from).constData(), fat.path("to").toUtf8().constData());
        QCOMPARE(code, expected);
        const QString arrived = expected ? from : fat.path("to");
        if (folder)
            QVERIFY(NativePath::isDir(arrived));
        else
            QCOMPARE(TempTree::contents(arrived), QByteArray("ours"));
        QCOMPARE(TempTree::present(from), expected != 0);
        if (taken == "file") QCOMPARE(TempTree::contents(fat.path("to")), QByteArray("theirs"));
        if (taken == "folder") QCOMPARE(TempTree::contents(fat.path("to/theirs.txt")), QByteArray("theirs"));
        if (!expected)
            QCOMPARE(QDir(fat.path()).entryList(QDir::AllEntries | QDir::NoDotAndDotDot).size(), 1);
    }
};

ORVANE_TEST_MAIN(NoReplaceRenameTest)
#include "NoReplaceRenameTest.moc"
