#pragma once

#include <QObject>

namespace orvane {

class BrowserWindow;
class ExplorerViewModes;

// Items that were cut and not yet pasted show faint in the table and the icon views, and come back
// when the cut is pasted, cleared by Escape or replaced on the clipboard by any program.
class CutMarks : public QObject {
    Q_OBJECT
public:
    CutMarks(BrowserWindow& window, ExplorerViewModes& views);

private:
    void repaint();

    BrowserWindow& w;
    ExplorerViewModes& views;
};

} // namespace orvane
