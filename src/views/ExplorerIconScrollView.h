#pragma once

#include <QAbstractScrollArea>

namespace orvane {

class ExplorerIconCanvas;
class ExplorerIconView;

// Scrolls the canvas over a grid of any size: the canvas is the viewport and paints at the scroll
// position, so no widget ever grows to the grid's full height. List mode scrolls sideways, and a
// plain wheel there moves sideways too.
class ExplorerIconScrollView : public QAbstractScrollArea {
    Q_OBJECT
public:
    explicit ExplorerIconScrollView(ExplorerIconView* owner);
    ExplorerIconCanvas* canvas() const { return fileCanvas; }
    // Brings a rectangle of the grid into view, scrolling as little as it can.
    void ensureVisible(const QRectF& gridRect);
    void updateBars();

protected:
    bool viewportEvent(QEvent* event) override;
    void wheelEvent(QWheelEvent* event) override;
    void scrollContentsBy(int dx, int dy) override;
    void keyPressEvent(QKeyEvent* event) override;

private:
    ExplorerIconView* owner;
    ExplorerIconCanvas* fileCanvas;
};

} // namespace orvane
