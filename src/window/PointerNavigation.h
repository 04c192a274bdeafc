#pragma once

#include <QObject>

namespace orvane {

class Explorer;

// What the other mouse buttons do in a window: Back and Forward go through the tab's history, and
// a middle click on a folder opens it in a new tab.
class PointerNavigation : public QObject {
    Q_OBJECT
public:
    explicit PointerNavigation(Explorer& window);
    ~PointerNavigation() override;

protected:
    bool eventFilter(QObject* watched, QEvent* event) override;

private:
    void openInNewTab(QObject* watched, const QPoint& at);

    Explorer& w;
};

} // namespace orvane
