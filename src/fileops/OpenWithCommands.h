#pragma once

#include "core/Applications.h"

#include <QObject>

class QMenu;

namespace orvane {

class BrowserWindow;

// Open with and Open Terminal Here for one window. Opening with a chosen application is one-off: the
// desktop's default stays as it is.
class OpenWithCommands : public QObject {
    Q_OBJECT
public:
    OpenWithCommands(BrowserWindow& window, QObject* parent);

    // The "Open with" item for the selection, disabled when a folder is among it or nothing is chosen.
    static QMenu* menuFor(BrowserWindow& window, QMenu* parent);
    static void openWith(BrowserWindow& window, const QStringList& paths, const QString& id);
    // The chooser of every installed application; opens the files with the one chosen.
    static void chooseOther(BrowserWindow& window, const QStringList& paths);
    void openTerminalHere();

private:
    BrowserWindow& w;
};

} // namespace orvane
