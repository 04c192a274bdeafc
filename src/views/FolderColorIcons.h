#pragma once

#include <QHash>
#include <QIcon>
#include <QObject>

namespace orvane {

class BrowserWindow;
struct Entry;
class ExplorerIconView;
class FolderColors;

// Draws coloured folders in a window's table and icon view, and redraws them when a colour changes.
class FolderColorIcons : public QObject {
    Q_OBJECT
public:
    FolderColorIcons(BrowserWindow& window, ExplorerIconView& icons);

private:
    QIcon iconFor(const QString& location);
    QStringList chosenFolders() const;
    void choose();

    BrowserWindow& w;
    FolderColors& colors;
    QHash<QString, QIcon> tints; // by colour, a few at most
};

} // namespace orvane
