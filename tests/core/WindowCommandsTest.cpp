#include "core/WindowCommands.h"
#include "chrome/ExplorerMenus.h"
#include "kit/CommandBinding.h"
#include "support/TempTree.h"
#include "support/TestEnvironment.h"
#include "support/WindowDriver.h"
#include "views/FileTable.h"
#include "window/AppDelegate.h"
#include "window/Explorer.h"
#include "window/ExplorerShortcuts.h"

#include <QKeyEvent>
#include <QMenu>
#include <QMenuBar>
#include <QPushButton>
#include <QSignalSpy>

using namespace orvane;
using namespace orvane::test;

namespace {

void collectMenu(const QMenu* menu, QSet<QString>& names) {
    for (QAction* action : menu->actions()) {
        if (action->menu()) collectMenu(action->menu(), names);
        const QString name = action->property("command").toString();
        if (!name.isEmpty()) names.insert(name);
    }
}

// Every command that any key of the tables asks for, found by pressing every key with every
// modifier while the commands only announce themselves.
QSet<QString> namesReachedByKeys(Explorer& w) {
    QSet<QString> names;
    QObject::connect(&w.commands(), &WindowCommands::requested, &w,
                     [&names](const QString& name) { names.insert(name); });
    w.commands().setSuspended(true);
    const Qt::KeyboardModifiers each[] = {Qt::ControlModifier, Qt::AltModifier, Qt::ShiftModifier,
                                          Qt::MetaModifier};
    for (QWidget* focus : {static_cast<QWidget*>(w.table()), w.widgets().navigationPane->focusProxy()}) {
        focus->setFocus();
        for (quint32 code = 8; code < 256; ++code) {
            for (int combination = 0; combination < 16; ++combination) {
                Qt::KeyboardModifiers modifiers;
                for (int bit = 0; bit < 4; ++bit)
                    if (combination & (1 << bit)) modifiers |= each[bit];
                QKeyEvent event(QEvent::KeyPress, Qt::Key_unknown, modifiers, code, 0, 0);
                w.handleExplorerShortcut(&event);
            }
        }
    }
    w.commands().setSuspended(false);
    return names;
}

} // namespace

class WindowCommandsTest : public QObject {
    Q_OBJECT

private slots:
    void everyNamedCommandIsRegisteredOrKnownToBeComing() {
        TempTree tree;
        tree.folder("Sub");
        AppDelegate app;
        Explorer* w = app.newWindow(QUrl::fromLocalFile(tree.path()));
        QSet<QString> names = namesReachedByKeys(*w);
        QVERIFY(names.contains(QStringLiteral("copyAction")));
        QVERIFY(names.contains(QStringLiteral("setViewMode")));
        QMenu menu;
        for (auto fill :
             {ExplorerMenus::fillNewMenu, ExplorerMenus::fillSortMenu, ExplorerMenus::fillViewMenu,
              ExplorerMenus::fillMoreMenu, ExplorerMenus::fillContextMenu}) {
            menu.clear();
            fill(&menu, w);
            collectMenu(&menu, names);
        }
        for (QMenu* bar : w->findChildren<QMenu*>())
            collectMenu(bar, names);
        for (const ShortcutRow& row : explorerShortcutRows())
            if (!row.command.isEmpty()) names.insert(row.command);
        for (const QString& name : names)
            QVERIFY2(w->commands().contains(name) || WindowCommands::notYetBuilt().contains(name),
                     qPrintable(name));
        // The list of commands to come shrinks as they arrive.
        for (const QString& coming : WindowCommands::notYetBuilt())
            QVERIFY2(!w->commands().contains(coming), qPrintable(coming));
    }

    void absentAndDisabledCommandsShowGreyAndDoNothing() {
        WindowCommands commands;
        int runs = 0;
        bool allowed = false;
        commands.add(
            QStringLiteral("go"), QStringLiteral("Go"), [&runs] { ++runs; }, [&allowed] { return allowed; });
        QMenu menu;
        QAction* absent =
            CommandBinding::addTo(commands, &menu, QStringLiteral("missing"), {}, QStringLiteral("Missing"));
        QAction* go = CommandBinding::addTo(commands, &menu, QStringLiteral("go"));
        QVERIFY(!absent->isEnabled());
        QVERIFY(!go->isEnabled());
        QCOMPARE(go->text(), QStringLiteral("Go"));
        QVERIFY(!commands.run(QStringLiteral("missing")));
        QVERIFY(!commands.run(QStringLiteral("go")));
        QPushButton button;
        CommandBinding::bind(commands, &button, QStringLiteral("go"));
        QVERIFY(!button.isEnabled());
        allowed = true;
        commands.refresh();
        QVERIFY(button.isEnabled());
        button.click();
        QCOMPARE(runs, 1);
    }

    void argumentsAndChecksTravelWithTheCommand() {
        WindowCommands commands;
        QVariant last;
        commands.add(Command{QStringLiteral("mode"),
                             QStringLiteral("Mode"),
                             [&last](const QVariant& arg) { last = arg; },
                             {},
                             [&last](const QVariant& arg) { return last == arg; }});
        QMenu menu;
        QAction* three =
            CommandBinding::addTo(commands, &menu, QStringLiteral("mode"), 3, QStringLiteral("Three"));
        QVERIFY(three->isCheckable() && !three->isChecked());
        three->trigger();
        QCOMPARE(last.toInt(), 3);
        QVERIFY(commands.isChecked(QStringLiteral("mode"), 3));
        QVERIFY(!commands.isChecked(QStringLiteral("mode"), 4));
    }
};

ORVANE_TEST_MAIN(WindowCommandsTest)
#include "WindowCommandsTest.moc"
