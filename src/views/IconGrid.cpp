#include "views/IconGrid.h"

#include <QtMath>
#include <algorithm>

namespace orvane {

using namespace IconGrid;

GridColumns explorerGridColumns(double available, double preferredWidth, double gap, bool flexibleIcons) {
    const double smallest = preferredWidth * (flexibleIcons ? 0.9 : 1.0);
    GridColumns grid;
    grid.count = std::max(1, int((available + gap) / (smallest + gap)));
    grid.width = std::max(1.0, (available - (grid.count - 1) * gap) / grid.count);
    return grid;
}

bool IconGrid::isIconMode(int mode) {
    return mode >= 1 && mode <= 8 && mode != details;
}

bool IconGrid::iconAbove(int mode) {
    return mode >= 1 && mode <= 3;
}

QSizeF IconGrid::baseCellSize(int mode, double contentWidth, double extraLargeSize) {
    switch (mode) {
    case 1:
        return {std::min(contentWidth, extraLargeSize + 24), extraLargeSize + 56};
    case 2:
        return {120, 118};
    case 4:
        return {218, 44};
    case 5:
        return {238, 28};
    case 7:
        return {278, 82};
    case 8:
        return {contentWidth, 76};
    default:
        return {102, 102};
    }
}

double IconGrid::iconSide(int mode, double cellWidth, double extraLargeSize) {
    switch (mode) {
    case 1:
        return std::min(extraLargeSize, std::max(32.0, cellWidth - 16));
    case 2:
        return 64;
    case 4:
        return 32;
    case 5:
        return 20;
    case 8:
        return 40;
    default:
        return 48;
    }
}

IconGridLayout layoutIconGrid(int mode, int count, QSizeF viewport, double extraLargeSize) {
    IconGridLayout layout;
    layout.mode = isIconMode(mode) ? mode : 3;
    layout.count = std::max(0, count);
    layout.extraLargeSize = extraLargeSize;
    layout.viewport = viewport;
    const double content = std::max(1.0, viewport.width() - 2 * inset);
    layout.cell = baseCellSize(layout.mode, content, extraLargeSize);
    if (layout.runsInColumns()) {
        const double height = std::max(1.0, viewport.height() - 2 * inset);
        layout.rowsPerColumn = std::max(1, int((height + gap) / (layout.cell.height() + gap)));
        layout.columns = std::max(1, int(std::ceil(double(layout.count) / layout.rowsPerColumn)));
        const double width = 2 * inset + layout.columns * (layout.cell.width() + gap) - gap;
        layout.canvas = QSizeF(std::max(viewport.width(), width), std::max(1.0, viewport.height()));
        return layout;
    }
    const GridColumns grid = explorerGridColumns(content, layout.cell.width(), gap, iconAbove(layout.mode));
    layout.columns = layout.mode == 8 ? 1 : grid.count;
    layout.cell.setWidth(layout.mode == 8 ? content : grid.width);
    if (layout.mode == 1) layout.cell.setHeight(layout.iconSide() + 56);
    layout.rowsPerColumn = std::max(1, int(std::ceil(double(layout.count) / layout.columns)));
    const double height = 2 * inset + layout.rowsPerColumn * (layout.cell.height() + gap) - gap;
    layout.canvas = QSizeF(std::max(1.0, viewport.width()), std::max(viewport.height(), height));
    return layout;
}

QRectF IconGridLayout::frame(int index) const {
    const int column = runsInColumns() ? index / rowsPerColumn : index % columns;
    const int row = runsInColumns() ? index % rowsPerColumn : index / columns;
    return QRectF(inset + column * (cell.width() + gap), inset + row * (cell.height() + gap), cell.width(),
                  cell.height());
}

QRectF IconGridLayout::iconRect(const QRectF& frame) const {
    const double side = iconSide();
    if (iconAbove(mode)) return QRectF(frame.center().x() - side / 2, frame.top() + 8, side, side);
    return QRectF(frame.left() + 8, frame.center().y() - side / 2, side, side);
}

std::optional<int> IconGridLayout::itemAt(const QPointF& point) const {
    if (point.x() < inset || point.y() < inset) return std::nullopt;
    const int column = int((point.x() - inset) / (cell.width() + gap));
    const int row = int((point.y() - inset) / (cell.height() + gap));
    if (column >= columns || (runsInColumns() && row >= rowsPerColumn)) return std::nullopt;
    const qint64 index =
        runsInColumns() ? qint64(column) * rowsPerColumn + row : qint64(row) * columns + column;
    if (index >= count || !frame(int(index)).contains(point)) return std::nullopt;
    return int(index);
}

namespace {
// The first and last line of cells (of `lines`) meeting the span from `from` to `to`.
std::pair<int, int> linesMeeting(double from, double to, double step, int lines) {
    const int first = std::max(0, int(std::floor((from - inset) / step)));
    const int last = std::min(lines - 1, int(std::floor((to - inset) / step)));
    return {first, last};
}
} // namespace

void IconGridLayout::forEachIndexIn(const QRectF& rect, const std::function<void(int)>& visit) const {
    if (count == 0 || rect.isEmpty()) return;
    const int rows = runsInColumns() ? rowsPerColumn : int(std::ceil(double(count) / columns));
    const auto [firstColumn, lastColumn] =
        linesMeeting(rect.left(), rect.right(), cell.width() + gap, columns);
    const auto [firstRow, lastRow] = linesMeeting(rect.top(), rect.bottom(), cell.height() + gap, rows);
    const auto visitCell = [&](int column, int row) {
        const qint64 index =
            runsInColumns() ? qint64(column) * rowsPerColumn + row : qint64(row) * columns + column;
        if (index < count && frame(int(index)).intersects(rect)) visit(int(index));
    };
    if (runsInColumns()) {
        for (int column = firstColumn; column <= lastColumn; ++column)
            for (int row = firstRow; row <= lastRow; ++row)
                visitCell(column, row);
    } else {
        for (int row = firstRow; row <= lastRow; ++row)
            for (int column = firstColumn; column <= lastColumn; ++column)
                visitCell(column, row);
    }
}

int IconGridLayout::pageRows() const {
    return std::max(1, int(viewport.height() / (cell.height() + gap)));
}

QRectF renamePlacement(const IconGridLayout& layout, int index, double lineHeight) {
    const QRectF frame = layout.frame(index);
    const QRectF icon = layout.iconRect(frame);
    if (iconAbove(layout.mode))
        return QRectF(frame.left() + 6, icon.bottom() + 1, std::max(1.0, frame.width() - 12), lineHeight);
    const double left = icon.right() + 9;
    const double width = std::max(1.0, frame.right() - left - 8);
    // Centred on the name line the mode draws.
    const double nameTop = layout.mode >= 7 ? frame.top() + 10 : frame.center().y() - 8;
    const double nameHeight = layout.mode >= 7 ? 19 : 18;
    return QRectF(left, nameTop + (nameHeight - lineHeight) / 2, width, lineHeight);
}

int gridKeyTarget(const IconGridLayout& layout, GridKey key, int current) {
    const bool columnsFirst = layout.runsInColumns();
    const int rowStep = columnsFirst ? 1 : layout.columns;
    const int columnStep = columnsFirst ? layout.rowsPerColumn : 1;
    const int pageStep = columnsFirst ? layout.rowsPerColumn : layout.pageRows() * layout.columns;
    qint64 target = current;
    switch (key) {
    case GridKey::Left:
        target -= columnStep;
        break;
    case GridKey::Right:
        target += columnStep;
        break;
    case GridKey::Up:
        target -= rowStep;
        break;
    case GridKey::Down:
        target += rowStep;
        break;
    case GridKey::Home:
        target = 0;
        break;
    case GridKey::End:
        target = layout.count - 1;
        break;
    case GridKey::PageUp:
        target -= pageStep;
        break;
    case GridKey::PageDown:
        target += pageStep;
        break;
    }
    return int(std::clamp<qint64>(target, 0, std::max(0, layout.count - 1)));
}

} // namespace orvane
