#pragma once

#include "chrome/AuxiliaryWindow.h"

#include <functional>

class QScrollArea;

namespace orvane {

// The list of keyboard shortcuts, in an auxiliary window of its own over the browser window it
// belongs to, that Escape closes. Rows whose command has not arrived yet say so.
class ShortcutGuideWindow : public AuxiliaryWindow {
    Q_OBJECT
public:
    // `available` answers whether the window has a command of that name yet.
    ShortcutGuideWindow(QWidget* owner, std::function<bool(const QString& command)> available);

    static QString unavailableText() { return QStringLiteral("Not available yet"); }
    QScrollArea* scrollArea() const { return scroll; }

private:
    QWidget* buildList();

    std::function<bool(const QString&)> available;
    QScrollArea* scroll;
};

} // namespace orvane
