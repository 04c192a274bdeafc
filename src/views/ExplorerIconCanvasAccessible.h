#pragma once

#include <QAccessibleWidget>

namespace orvane {

class ExplorerIconCanvas;

// The canvas as a list whose children are its items, though no widget stands behind any of them.
class ExplorerIconCanvasAccessible : public QAccessibleWidget {
public:
    explicit ExplorerIconCanvasAccessible(ExplorerIconCanvas* canvas);
    // Registers the factory once per process.
    static void install();

    int childCount() const override;
    QAccessibleInterface* child(int index) const override;
    int indexOfChild(const QAccessibleInterface* child) const override;
    QAccessibleInterface* childAt(int x, int y) const override;
    QAccessibleInterface* focusChild() const override;

private:
    ExplorerIconCanvas* canvas() const;
};

} // namespace orvane
