#pragma once

#include "views/RowDragGesture.h"

#include <QObject>

class QMimeData;

namespace orvane {

class BrowserWindow;

// Local files dragged out of the details table, as other programs and a phone tab take them: a press
// on a selected row that moves far enough carries the whole selection. A drag never ends in a
// click-to-rename.
class FileDrag : public QObject {
    Q_OBJECT
public:
    explicit FileDrag(BrowserWindow& window);

    // The selected local files as a drag carries them; null when there are none.
    QMimeData* dragData() const;

protected:
    bool eventFilter(QObject* watched, QEvent* event) override;

private:
    BrowserWindow& w;
    RowDragGesture gesture;
};

} // namespace orvane
