#include "properties/PropertiesSelection.h"
#include "support/TestEnvironment.h"

using namespace orvane;

namespace {

PropertiesFileFacts item(const QString& path, const QString& kind, const QString& owner,
                         bool folder = false) {
    PropertiesFileFacts f;
    f.url = QUrl::fromLocalFile(path);
    f.kind = kind;
    f.owner = owner;
    f.isDirectory = folder;
    return f;
}

QList<QUrl> local(const QStringList& paths) {
    QList<QUrl> urls;
    for (const QString& p : paths)
        urls << QUrl::fromLocalFile(p);
    return urls;
}

} // namespace

class PropertiesSelectionTest : public QObject {
    Q_OBJECT

private slots:
    void titles_data() {
        QTest::addColumn<QStringList>("paths");
        QTest::addColumn<QString>("title");
        QTest::addColumn<QString>("header");
        QTest::newRow("one file") << QStringList{"/a/b.txt"} << "b.txt Properties"
                                  << "b.txt";
        QTest::newRow("a folder with a trailing slash") << QStringList{"/a/dir/"} << "dir Properties"
                                                        << "dir";
        QTest::newRow("the root") << QStringList{"/"} << "File System Properties"
                                  << "File System";
        QTest::newRow("duplicates by path") << QStringList{"/a/x", "/a/y", "/a/./x"} << "2 Items Properties"
                                            << "2 items selected";
    }
    void titles() {
        QFETCH(QStringList, paths);
        const PropertiesSelection selection(local(paths));
        QTEST(selection.windowTitle(), "title");
        QTEST(selection.headerText(), "header");
        QCOMPARE(selection.pathsText().count(u'\n'), selection.urls().size() - 1);
    }

    void sharedRows() {
        const std::vector<PropertiesFileFacts> two = {item("/d/a.txt", "plain text document", "ann"),
                                                      item("/d/b.png", "PNG image", "ann")};
        const QHash<QString, QString> rows = PropertiesSelection::factRows(two);
        QCOMPARE(rows.value("owner"), QString("ann"));
        QCOMPARE(rows.value("type"), QString("Multiple values"));
        QCOMPARE(rows.value("location"), QString("/d"));
        QCOMPARE(PropertiesSelection::factRows({}).value("owner"), QString("Unavailable"));
    }

    void opensWith_data() {
        QTest::addColumn<QList<bool>>("folders");
        QTest::addColumn<bool>("failed");
        QTest::addColumn<QString>("application");
        QTest::addColumn<QString>("text");
        QTest::newRow("a file and its application") << QList<bool>{false} << false << "Text Editor"
                                                    << "Text Editor";
        QTest::newRow("a file without one") << QList<bool>{false} << false << ""
                                            << "No default application";
        QTest::newRow("an unreadable item") << QList<bool>{false} << true << ""
                                            << "Unavailable";
        QTest::newRow("one folder") << QList<bool>{true} << false << ""
                                    << "Not applicable to folders";
        QTest::newRow("folders only") << QList<bool>{true, true} << false << ""
                                      << "Not applicable to folders";
        QTest::newRow("mixed") << QList<bool>{true, false} << false << ""
                               << "Multiple file types";
        QTest::newRow("two files") << QList<bool>{false, false} << false << ""
                                   << "Multiple file types";
    }
    void opensWith() {
        QFETCH(QList<bool>, folders);
        QFETCH(bool, failed);
        QFETCH(QString, application);
        std::vector<PropertiesFileFacts> facts;
        for (bool folder : folders)
            facts.push_back(item("/x", "k", "o", folder));
        if (failed) facts.front().error = QStringLiteral("No such file or directory");
        QTEST(PropertiesSelection::opensText(facts, application), "text");
    }
};

ORVANE_TEST_MAIN(PropertiesSelectionTest)
#include "PropertiesSelectionTest.moc"
