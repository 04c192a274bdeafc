#pragma once

#include <QRect>
#include <QString>
#include <functional>
#include <utility>

class QLineEdit;
class QWidget;

namespace orvane {

// The window's one inline name editor, as other parts reach it.
class InlineRename {
public:
    virtual ~InlineRename() = default;
    // Opens the editor on the one selected item, holding `text` instead of its name when given.
    virtual void beginInlineRename(const QString& text = {}) = 0;
    virtual void finishInlineRename(bool commit) = 0;
    virtual void cancelPendingRename() = 0;
    virtual QLineEdit* renameEditor() const = 0;

    // Where the editor of a row goes while another view shows the files: the widget that holds it
    // and the rectangle in it. No widget, or no hook, means the table's name cell.
    std::function<std::pair<QWidget*, QRect>(int row)> renameSpot;
};

} // namespace orvane
