#pragma once

#include <QWidget>

namespace orvane {

// The list of keyboard shortcuts, in a window of its own that Escape closes.
class ShortcutGuideWindow : public QWidget {
    Q_OBJECT
public:
    explicit ShortcutGuideWindow(QWidget* owner);

protected:
    void keyPressEvent(QKeyEvent* event) override;

private:
    QWidget* buildList();
};

} // namespace orvane
