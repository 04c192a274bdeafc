#include "views/ExplorerIconCanvasAccessible.h"

#include "views/ExplorerIconAccessibilityItem.h"
#include "views/ExplorerIconCanvas.h"

namespace orvane {

namespace {
QAccessibleInterface* canvasFactory(const QString&, QObject* object) {
    if (auto* canvas = qobject_cast<ExplorerIconCanvas*>(object))
        return new ExplorerIconCanvasAccessible(canvas);
    return nullptr;
}
} // namespace

ExplorerIconCanvasAccessible::ExplorerIconCanvasAccessible(ExplorerIconCanvas* canvas)
    : QAccessibleWidget(canvas, QAccessible::List) {}

void ExplorerIconCanvasAccessible::install() {
    static const bool installed = [] {
        QAccessible::installFactory(canvasFactory);
        return true;
    }();
    Q_UNUSED(installed);
}

ExplorerIconCanvas* ExplorerIconCanvasAccessible::canvas() const {
    return static_cast<ExplorerIconCanvas*>(widget());
}

int ExplorerIconCanvasAccessible::childCount() const {
    return canvas()->count();
}

QAccessibleInterface* ExplorerIconCanvasAccessible::child(int index) const {
    return canvas()->accessibleItem(index);
}

int ExplorerIconCanvasAccessible::indexOfChild(const QAccessibleInterface* child) const {
    const auto* item = dynamic_cast<const ExplorerIconAccessibilityItem*>(child);
    return item && item->isValid() ? item->index() : -1;
}

QAccessibleInterface* ExplorerIconCanvasAccessible::childAt(int x, int y) const {
    const std::optional<int> item = canvas()->itemAt(canvas()->mapFromGlobal(QPoint(x, y)));
    return item ? canvas()->accessibleItem(*item) : nullptr;
}

QAccessibleInterface* ExplorerIconCanvasAccessible::focusChild() const {
    const std::optional<int> focus = canvas()->selectionState().focus;
    return canvas()->hasFocus() && focus ? canvas()->accessibleItem(*focus) : nullptr;
}

} // namespace orvane
