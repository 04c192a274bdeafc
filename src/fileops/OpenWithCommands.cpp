#include "fileops/OpenWithCommands.h"

#include "core/BrowserWindow.h"
#include "core/Services.h"
#include "core/WindowCommands.h"
#include "fileops/ApplicationChooser.h"

#include <QApplication>
#include <QIcon>
#include <QMenu>
#include <QPointer>

namespace orvane {

namespace {
QIcon iconOf(const QString& name) {
    if (name.startsWith(u'/')) return QIcon(name);
    return QIcon::fromTheme(name);
}

// Only files qualify: a folder in the selection leaves nothing to open with.
QStringList openable(const BrowserWindow& w) {
    QStringList paths;
    if (!w.current().isLocalFile()) return {};
    for (const Entry& e : w.selected()) {
        if (e.directory) return {};
        paths << e.location;
    }
    return paths;
}
} // namespace

OpenWithCommands::OpenWithCommands(BrowserWindow& window, QObject* parent) : QObject(parent), w(window) {
    w.commands().add(
        QStringLiteral("openTerminalHere"), QStringLiteral("Open Terminal Here"),
        [this] { openTerminalHere(); }, [this] { return w.current().isLocalFile(); });
}

QMenu* OpenWithCommands::menuFor(BrowserWindow& w, QMenu* parent) {
    auto* menu = new QMenu(QStringLiteral("Open with"), parent);
    menu->setObjectName(QStringLiteral("openWithMenu"));
    const QStringList paths = openable(w);
    parent->addMenu(menu)->setEnabled(!paths.isEmpty());
    if (paths.isEmpty()) return menu;
    const Applications::Choice choice = w.services().applications().choicesFor(paths);
    QPointer<QWidget> window = w.widget();
    for (qsizetype i = 0; i < choice.applications.size(); ++i) {
        const Applications::Application& app = choice.applications[i];
        const QString title =
            app.name + (i == 0 && choice.hasDefault ? QStringLiteral(" (Default)") : QString());
        QAction* item = menu->addAction(iconOf(app.icon), title);
        item->setToolTip(app.path);
        connect(item, &QAction::triggered, menu, [&w, window, paths, id = app.id] {
            if (window) openWith(w, paths, id);
        });
    }
    if (!choice.applications.isEmpty()) menu->addSeparator();
    connect(menu->addAction(QStringLiteral("Other…")), &QAction::triggered, menu, [&w, window, paths] {
        if (window) chooseOther(w, paths);
    });
    return menu;
}

void OpenWithCommands::openWith(BrowserWindow& w, const QStringList& paths, const QString& id) {
    QString error;
    if (!w.services().applications().open(paths, id, error))
        w.showError(QStringLiteral("Cannot open with this application"), error);
}

void OpenWithCommands::chooseOther(BrowserWindow& w, const QStringList& paths) {
    auto* chooser = new ApplicationChooser(w.services().applications().all(), w.widget());
    chooser->setAttribute(Qt::WA_DeleteOnClose);
    QPointer<QWidget> window = w.widget();
    connect(chooser, &QDialog::accepted, chooser, [&w, window, chooser, paths] {
        if (window && !chooser->chosen().isEmpty()) openWith(w, paths, chooser->chosen());
    });
    chooser->open();
}

void OpenWithCommands::openTerminalHere() {
    QString error;
    if (!w.current().isLocalFile()) {
        QApplication::beep();
        return;
    }
    if (!w.services().applications().openTerminal(w.current().toLocalFile(), error))
        w.showError(QStringLiteral("Cannot open a terminal"), error);
}

} // namespace orvane
