#pragma once

#include "core/FileDropPlan.h"
#include "kit/DropStatus.h"

#include <QObject>
#include <optional>

class QDropEvent;

namespace orvane {

class BrowserWindow;

// Files dropped on the file list: onto a folder row or tile, or onto empty space for the folder
// shown. Each drag event asks the one plan, which the drop then carries out through "dropFiles".
// Phone items are the phone's to take; it stands in front of this.
class FileDrop : public QObject {
    Q_OBJECT
public:
    explicit FileDrop(BrowserWindow& window);

    // What a drag over `row` of the listing (or over no row) would do.
    std::optional<FileDropPlan> plan(const QDropEvent& event, std::optional<int> row,
                                     QString* refusal = nullptr) const;

protected:
    bool eventFilter(QObject* watched, QEvent* event) override;

private:
    Qt::DropAction hover(const QDropEvent& event, std::optional<int> row);
    bool drop(QDropEvent& event, std::optional<int> row);
    void leave();
    void attachIcons();

    BrowserWindow& w;
    DropStatus status;
};

} // namespace orvane
