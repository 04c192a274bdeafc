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
        for (bool folder : {false, true})
            for (const char* taken : {"", "file", "folder", "empty folder"})
                QTest::addRow("%s onto %s", folder ? "folder" : "file", *taken ? taken : "a free name")
                    << folder << QString(taken);
    }
    void onFat() {
        QFETCH(bool, folder);
        QFETCH(QString, taken);
        FatMount fat;
        ORVANE_REQUIRE_FAT(fat);
        // fusefat itself drops what a renamed folder holds (plain mv too), so the folder moved is empty.
        const QString from = fat.path("from"), to = fat.path("to");
        folder ? void(QDir().mkpath(from)) : void(TempTree::writeFile(from, "ours"));
        if (taken == "file") TempTree::writeFile(to, "theirs");
        if (taken == "folder") TempTree::writeFile(to + "/theirs.txt", "theirs");
        if (taken == "empty folder") QDir().mkpath(to);
        const int code = renameNoReplace(from.toUtf8().constData(), to.toUtf8().constData());
        QCOMPARE(code, taken.isEmpty() ? 0 : EEXIST);
        const QString arrived = taken.isEmpty() ? to : from;
        QVERIFY(folder ? NativePath::isDir(arrived) : TempTree::contents(arrived) == "ours");
        QCOMPARE(TempTree::present(from), !taken.isEmpty());
        if (taken == "file" || taken == "folder")
            QCOMPARE(TempTree::contents(taken == "file" ? to : to + "/theirs.txt"), "theirs");
    }
};

ORVANE_TEST_MAIN(NoReplaceRenameTest)
#include "NoReplaceRenameTest.moc"
