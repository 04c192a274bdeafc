#include "core/FileDropPlan.h"
#include "support/TestEnvironment.h"

using namespace orvane;

namespace {
QUrl at(const QString& path) {
    return QUrl::fromLocalFile(path);
}
constexpr Qt::KeyboardModifiers none = Qt::NoModifier;
constexpr Qt::DropActions all = Qt::CopyAction | Qt::MoveAction | Qt::LinkAction;
} // namespace

Q_DECLARE_METATYPE(DropSource)

class FileDropPlanTest : public QObject {
    Q_OBJECT
private slots:
    void operationFollowsKeysThenSource_data() {
        QTest::addColumn<Qt::KeyboardModifiers>("keys");
        QTest::addColumn<DropSource>("source");
        QTest::addColumn<Qt::DropAction>("expected");
        const Qt::KeyboardModifiers ctrl = Qt::ControlModifier, shift = Qt::ShiftModifier,
                                    alt = Qt::AltModifier;
        for (const DropSource source : {DropSource::SameFileSystem, DropSource::OtherProgram}) {
            const QByteArray from = source == DropSource::SameFileSystem ? " same disk" : " other program";
            QTest::newRow("Alt links" + from) << alt << source << Qt::LinkAction;
            QTest::newRow("Ctrl+Shift links, not copies" + from)
                << (ctrl | shift) << source << Qt::LinkAction;
            QTest::newRow("Alt wins over Ctrl" + from) << (alt | ctrl) << source << Qt::LinkAction;
            QTest::newRow("Ctrl copies" + from) << ctrl << source << Qt::CopyAction;
            QTest::newRow("Shift moves" + from) << shift << source << Qt::MoveAction;
        }
        QTest::newRow("no keys, same file system moves")
            << none << DropSource::SameFileSystem << Qt::MoveAction;
        QTest::newRow("no keys, other file system copies")
            << none << DropSource::OtherFileSystem << Qt::CopyAction;
        QTest::newRow("no keys, phone copies") << none << DropSource::Phone << Qt::CopyAction;
        QTest::newRow("no keys, other program copies") << none << DropSource::OtherProgram << Qt::CopyAction;
        QTest::newRow("Shift moves across file systems")
            << Qt::KeyboardModifiers(Qt::ShiftModifier) << DropSource::OtherFileSystem << Qt::MoveAction;
    }
    void operationFollowsKeysThenSource() {
        QFETCH(Qt::KeyboardModifiers, keys);
        QFETCH(DropSource, source);
        QFETCH(Qt::DropAction, expected);
        QCOMPARE(FileDropPlan::operationFor(keys, source), expected);
    }

    void refusesWhatCannotHappen_data() {
        QTest::addColumn<QStringList>("items");
        QTest::addColumn<QString>("folder");
        QTest::addColumn<Qt::KeyboardModifiers>("keys");
        QTest::addColumn<Qt::DropActions>("offered");
        QTest::addColumn<DropSource>("source");
        QTest::addColumn<int>("expected"); // -1 refused, else the operation
        QTest::addColumn<QString>("refusal");
        const Qt::KeyboardModifiers shift = Qt::ShiftModifier, alt = Qt::AltModifier;
        const QStringList docs{"/h/docs"};
        const auto same = DropSource::SameFileSystem;
        QTest::newRow("folder onto itself")
            << docs << "/h/docs" << none << all << same << -1 << "A folder cannot go into itself";
        QTest::newRow("folder onto itself, copying")
            << docs << "/h/docs/" << Qt::KeyboardModifiers(Qt::ControlModifier) << all << same << -1
            << "A folder cannot go into itself";
        QTest::newRow("folder into its subfolder") << docs << "/h/docs/a/b" << none << all << same << -1
                                                   << "A folder cannot go into its own subfolder";
        QTest::newRow("a sibling sharing the prefix is no subfolder")
            << docs << "/h/docs2" << none << all << same << int(Qt::MoveAction) << "";
        QTest::newRow("the root holds everything") << QStringList{"/"} << "/tmp" << none << all << same << -1
                                                   << "A folder cannot go into its own subfolder";
        QTest::newRow("moving to where it is") << QStringList{"/h/docs/a.txt"} << "/h/docs" << none << all
                                               << same << -1 << "Already in this folder";
        QTest::newRow("copying to where it is makes a copy")
            << QStringList{"/h/docs/a.txt"} << "/h/docs" << Qt::KeyboardModifiers(Qt::ControlModifier) << all
            << same << int(Qt::CopyAction) << "";
        QTest::newRow("a shortcut beside its item")
            << QStringList{"/h/docs/a.txt"} << "/h/docs" << alt << all << same << int(Qt::LinkAction) << "";
        QTest::newRow("one bad item spoils the drop")
            << QStringList{"/h/a.txt", "/h/docs"} << "/h/docs/x" << none << all << same << -1
            << "A folder cannot go into its own subfolder";
        QTest::newRow("copy-only source refuses Shift")
            << QStringList{"/h/a.txt"} << "/h/docs" << shift << Qt::DropActions(Qt::CopyAction)
            << DropSource::OtherProgram << -1 << "These items cannot be dropped that way";
        QTest::newRow("copy-only source copies without keys")
            << QStringList{"/h/a.txt"} << "/h/docs" << none << Qt::DropActions(Qt::CopyAction)
            << DropSource::OtherProgram << int(Qt::CopyAction) << "";
        QTest::newRow("phone items are only copied")
            << QStringList{"/h/a.txt"} << "/h/docs" << alt << all << DropSource::Phone << -1
            << "These items cannot be dropped that way";
        QTest::newRow("name that is not UTF-8") << QStringList{QString::fromUtf16(u"/h/\xDCFFx")} << "/h/docs"
                                                << none << all << same << int(Qt::MoveAction) << "";
        QTest::newRow("no files on the drag")
            << QStringList{} << "/h/docs" << none << all << same << -1 << "Only files can be dropped here";
    }
    void refusesWhatCannotHappen() {
        QFETCH(QStringList, items);
        QFETCH(QString, folder);
        QFETCH(Qt::KeyboardModifiers, keys);
        QFETCH(Qt::DropActions, offered);
        QFETCH(DropSource, source);
        QFETCH(int, expected);
        QFETCH(QString, refusal);
        FileDropPlan::Drag drag;
        for (const QString& item : items)
            drag.urls << at(item);
        drag.folder = at(folder);
        drag.keys = keys;
        drag.offered = offered;
        drag.source = source;
        QString why = QStringLiteral("unchanged");
        const std::optional<FileDropPlan> plan = FileDropPlan::make(drag, &why);
        QCOMPARE(plan ? int(plan->operation) : -1, expected);
        QCOMPARE(why, refusal);
        if (plan) QCOMPARE(plan->urls, drag.urls);
    }

    // The identities decide, so a link to a folder is no way into it.
    void identitiesDecideOverTheShownPaths() {
        FileDropPlan::Drag drag;
        drag.urls = {at("/h/link")};
        drag.identities = {at("/h/real")};
        drag.folder = at("/h/link/sub");
        drag.folderIdentity = at("/h/real/sub");
        QVERIFY(!FileDropPlan::make(drag));
        drag.identities.clear();
        drag.folderIdentity = {};
        QVERIFY(!FileDropPlan::make(drag)); // the shown paths say the same
        drag.folder = drag.folderIdentity = at("/h/other");
        QCOMPARE(FileDropPlan::make(drag)->folder, at("/h/other"));
    }

    void busyOrFileRowsRefuse_data() {
        QTest::addColumn<bool>("busy");
        QTest::addColumn<bool>("ontoFile");
        QTest::addColumn<QString>("refusal");
        QTest::newRow("busy") << true << false << "The window is busy";
        QTest::newRow("onto a file's row") << false << true << "";
    }
    void busyOrFileRowsRefuse() {
        QFETCH(bool, busy);
        QFETCH(bool, ontoFile);
        QFETCH(QString, refusal);
        FileDropPlan::Drag drag;
        drag.urls = {at("/h/a")};
        drag.folder = at("/h/b");
        drag.row = 3;
        drag.busy = busy;
        drag.ontoFile = ontoFile;
        QString why;
        QVERIFY(!FileDropPlan::make(drag, &why));
        QCOMPARE(why, refusal);
    }

    void describesThePlan_data() {
        QTest::addColumn<int>("operation");
        QTest::addColumn<QString>("folder");
        QTest::addColumn<QString>("text");
        QTest::newRow("move") << int(Qt::MoveAction) << "/h/Documents"
                              << "Move to Documents";
        QTest::newRow("copy") << int(Qt::CopyAction) << "/h/Documents/"
                              << "Copy to Documents";
        QTest::newRow("link") << int(Qt::LinkAction) << "/h/Documents"
                              << "Create shortcuts in Documents";
        QTest::newRow("root") << int(Qt::CopyAction) << "/"
                              << "Copy to /";
        QTest::newRow("kept byte") << int(Qt::CopyAction) << QString::fromUtf16(u"/h/a\xDCFF")
                                   << QString::fromUtf16(u"Copy to a\xFFFD");
    }
    void describesThePlan() {
        QFETCH(int, operation);
        QFETCH(QString, folder);
        QFETCH(QString, text);
        QCOMPARE((FileDropPlan{{}, at(folder), {}, Qt::DropAction(operation)}.describe()), text);
    }
};

ORVANE_TEST_MAIN(FileDropPlanTest)
#include "FileDropPlanTest.moc"
