#include "fileops/OpenWithCommands.h"
#include "core/Services.h"
#include "core/WindowCommands.h"
#include "fileops/ApplicationChooser.h"
#include "platform/NativePath.h"
#include "support/TempTree.h"
#include "support/TestEnvironment.h"
#include "support/WindowFixture.h"
#include "window/AppDelegate.h"
#include "window/Explorer.h"

#include <QDir>
#include <QLineEdit>
#include <QListWidget>
#include <QMenu>
#include <QProcess>
#include <sys/stat.h>

using namespace orvane;
using namespace orvane::test;

namespace {
// A test application: a desktop file whose program writes its name and its arguments, one a line.
void install(const QString& id, const QString& name, const QString& types, const QString& log) {
    const QString data = qEnvironmentVariable("XDG_DATA_HOME");
    const QString program = data + "/" + id + ".sh";
    TempTree::writeFile(program, "#!/bin/sh\n{ echo " + name.toUtf8() +
                                     "; for a in \"$@\"; do echo \"$a\"; done; } > '" + log.toUtf8() + "'\n");
    ::chmod(program.toUtf8(), 0755);
    TempTree::writeFile(data + "/applications/" + id + ".desktop",
                        "[Desktop Entry]\nType=Application\nName=" + name.toUtf8() +
                            "\nExec=" + program.toUtf8() + " %F\nMimeType=" + types.toUtf8() + "\n");
}

} // namespace

class OpenWithCommandsTest : public QObject, WindowFixture {
    Q_OBJECT
    QString log;

    QStringList menuTitles(QMenu* menu) {
        QStringList titles;
        for (QAction* a : menu->actions())
            if (!a->isSeparator() && (a->text().startsWith("Orvane") || a->text() == "Other…"))
                titles << a->text();
        return titles;
    }

    void choose(const QList<QUrl>& urls) {
        bool done = false;
        w->selectWhenListed(urls, [&done] { done = true; });
        QTRY_VERIFY(done);
    }

private slots:
    void initTestCase() {
        log = qEnvironmentVariable("XDG_DATA_HOME") + "/launched.log";
        install("orvane-alpha", "Orvane Alpha", "text/plain;image/png;", log);
        install("orvane-beta", "Orvane Beta", "text/plain;", log);
        install("orvane-gamma", "Orvane Gamma", "image/png;", log);
        // As an installer does: GIO reads a folder's types from its cache.
        QCOMPARE(QProcess::execute("update-desktop-database",
                                   {qEnvironmentVariable("XDG_DATA_HOME") + "/applications"}),
                 0);
        TempTree::writeFile(qEnvironmentVariable("XDG_CONFIG_HOME") + "/mimeapps.list",
                            "[Default Applications]\ntext/plain=orvane-beta.desktop;\n"
                            "image/png=orvane-gamma.desktop;\n");
        // The terminal is whatever x-terminal-emulator is found first.
        const QString bin = qEnvironmentVariable("XDG_DATA_HOME") + "/bin";
        TempTree::writeFile(bin + "/x-terminal-emulator",
                            "#!/bin/sh\n{ echo terminal; pwd; } > '" + log.toUtf8() + "'\n");
        ::chmod((bin + "/x-terminal-emulator").toUtf8(), 0755);
        qputenv("PATH", bin.toUtf8() + ":" + qgetenv("PATH"));
    }
    void init() {
        startProgram();
        tree->file("a.txt", "a");
        tree->file("b.txt", "b");
        tree->file("p.png", QByteArray::fromHex("89504e470d0a1a0a"));
        tree->rawFile("odd\xFF.txt", "odd");
        tree->folder("Box");
        openWindow();
        QFile::remove(log);
    }
    void cleanup() { stopProgram(); }

    void submenu_data() {
        QTest::addColumn<QStringList>("selection");
        QTest::addColumn<bool>("enabled");
        QTest::addColumn<QStringList>("titles");
        QTest::newRow("a text file") << QStringList{"a.txt"} << true
                                     << QStringList{"Orvane Beta (Default)", "Orvane Alpha", "Other…"};
        QTest::newRow("two text files") << QStringList{"a.txt", "b.txt"} << true
                                        << QStringList{"Orvane Beta (Default)", "Orvane Alpha", "Other…"};
        QTest::newRow("an image") << QStringList{"p.png"} << true
                                  << QStringList{"Orvane Gamma (Default)", "Orvane Alpha", "Other…"};
        QTest::newRow("a text file and an image, defaults differ")
            << QStringList{"a.txt", "p.png"} << true << QStringList{"Orvane Alpha", "Other…"};
        QTest::newRow("a folder among them") << QStringList{"a.txt", "Box"} << false << QStringList{};
    }
    // What opens all the files, the shared default first and marked; a folder leaves nothing to open with.
    void submenu() {
        QFETCH(QStringList, selection);
        QFETCH(bool, enabled);
        QFETCH(QStringList, titles);
        QList<QUrl> urls;
        for (const QString& name : selection)
            urls << QUrl::fromLocalFile(tree->path(name));
        choose(urls);
        QMenu context;
        QMenu* menu = OpenWithCommands::menuFor(*w, &context);
        QCOMPARE(menu->menuAction()->isEnabled(), enabled);
        QCOMPARE(menuTitles(menu), titles);
    }

    void launches_data() {
        QTest::addColumn<QString>("how");
        QTest::addColumn<QByteArray>("expected");
        const QByteArray odd = NativePath::encode(NativePath::decode("odd\xFF.txt"));
        QTest::newRow("chosen in the submenu") << "submenu" << QByteArray("Orvane Alpha\n{a}\n{odd}\n");
        QTest::newRow("chosen among all") << "chooser" << QByteArray("Orvane Gamma\n{a}\n{odd}\n");
        QTest::newRow("opened by double-click") << "default" << QByteArray("Orvane Beta\n{odd}\n");
        QTest::newRow("terminal here") << "terminal" << QByteArray("terminal\n{tree}\n");
    }
    // The application really starts and gets the files by their exact bytes; the default stays.
    void launches() {
        QFETCH(QString, how);
        QFETCH(QByteArray, expected);
        const QString odd = tree->path(NativePath::decode("odd\xFF.txt"));
        if (how == "default") {
            choose({QUrl::fromLocalFile(odd)});
            QVERIFY(w->commands().run("openSelected"));
        } else if (how == "terminal") {
            QVERIFY(w->commands().run("openTerminalHere"));
        } else {
            choose({QUrl::fromLocalFile(tree->path("a.txt")), QUrl::fromLocalFile(odd)});
            QMenu context;
            QMenu* menu = OpenWithCommands::menuFor(*w, &context);
            const QString pick = how == "submenu" ? "Orvane Alpha" : "Other…";
            for (QAction* a : menu->actions())
                if (a->text() == pick) a->trigger();
        }
        if (how == "chooser") {
            auto* chooser = w->findChild<ApplicationChooser*>();
            QVERIFY(chooser);
            QTest::keyClicks(chooser->filterField(), "orvane gam");
            int shown = 0;
            for (int i = 0; i < chooser->list()->count(); ++i)
                shown += !chooser->list()->item(i)->isHidden();
            QCOMPARE(shown, 1);
            QTest::keyClick(chooser->filterField(), Qt::Key_Return);
        }
        expected.replace("{a}", NativePath::encode(tree->path("a.txt")));
        expected.replace("{odd}", NativePath::encode(odd));
        expected.replace("{tree}", NativePath::encode(tree->path()));
        QTRY_COMPARE(TempTree::contents(log), expected);
        const auto app = w->services().applications().defaultFor(tree->path("a.txt"));
        QCOMPARE(app.id, QString("orvane-beta.desktop"));
    }
};

ORVANE_TEST_MAIN(OpenWithCommandsTest)
#include "OpenWithCommandsTest.moc"
