#pragma once

#include <QObject>

namespace orvane {

class Explorer;
class ExplorerViewModes;

// Items that were cut and not yet pasted show faint in the table and the icon views, and come back
// when the cut is pasted, cleared by Escape or replaced on the clipboard by any program.
class CutMarks : public QObject {
    Q_OBJECT
public:
    CutMarks(Explorer& window, ExplorerViewModes& views);

private:
    void repaint();

    Explorer& w;
    ExplorerViewModes& views;
};

} // namespace orvane
