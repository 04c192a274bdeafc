#pragma once

#include "phone/PhoneItem.h"
#include "views/RowDragGesture.h"

#include <QObject>
#include <QPoint>
#include <optional>

class QMimeData;

namespace orvane {

class AndroidContent;
class BrowserWindow;

// Phone items dragged out of a phone tab, and dropped on a window that shows a local folder: they
// are copied from the phone into the folder under the pointer, or the window's folder. With no
// browser there to hold a status line, the one failure comes as a dialog. On a window that shows a
// phone folder, the phone tab takes drops: its own items move, local files are sent.
class PhoneDrop : public QObject {
    Q_OBJECT
public:
    PhoneDrop(BrowserWindow& window, AndroidContent& phones);

    // The local folder phone items dropped on `row` (or on no row) would land in, if any.
    std::optional<QString> target(const QMimeData* data, std::optional<int> row) const;
    void perform(const QList<PhoneItem>& items, const QString& folder);

protected:
    bool eventFilter(QObject* watched, QEvent* event) override;

private:
    bool dropEvent(QEvent* event);
    bool phoneDropEvent(QEvent* event);
    bool dragOut(QEvent* event);
    std::optional<int> rowAt(const QPoint& point) const;

    BrowserWindow& w;
    AndroidContent& phones;
    RowDragGesture gesture;
};

} // namespace orvane
