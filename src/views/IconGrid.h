#pragma once

#include <QRectF>
#include <QSizeF>
#include <functional>
#include <optional>

namespace orvane {

// The arithmetic of the icon views: where each item stands in a given mode and viewport. Nothing
// here is stored per item; every frame is computed when asked.

struct GridColumns {
    int count = 1;
    double width = 1;
};

// How many cells of about `preferredWidth` fit in `available`, and their exact width so that the
// cells and gaps fill it. Flexible cells may shrink by up to a tenth to make room for one more.
GridColumns explorerGridColumns(double available, double preferredWidth, double gap, bool flexibleIcons);

namespace IconGrid {
constexpr double inset = 10;
constexpr double gap = 4;
constexpr double initialExtraLargeSize = 160;
// Modes are numbered as the view menu shows them; 6 is the details table and has no grid.
constexpr int details = 6;
constexpr int list = 5;

bool isIconMode(int mode);
// Modes whose name stands under a centred icon (1 to 3).
bool iconAbove(int mode);
// The cell a mode starts from before the viewport has its say; mode 8 takes the content width.
QSizeF baseCellSize(int mode, double contentWidth, double extraLargeSize);
// The side of the icon square in a cell of that width.
double iconSide(int mode, double cellWidth, double extraLargeSize);
} // namespace IconGrid

// The grid of one mode over one listing and viewport.
struct IconGridLayout {
    int mode = 3;
    int count = 0;
    double extraLargeSize = IconGrid::initialExtraLargeSize;
    QSizeF viewport{600, 400};
    QSizeF cell{102, 102};
    int columns = 1;
    int rowsPerColumn = 1;
    QSizeF canvas{600, 400};

    // Mode 5 fills columns top to bottom and scrolls sideways; the others fill rows.
    bool runsInColumns() const { return mode == IconGrid::list; }
    double iconSide() const { return IconGrid::iconSide(mode, cell.width(), extraLargeSize); }
    QRectF frame(int index) const;
    // The square the icon is fitted into, within a cell's frame.
    QRectF iconRect(const QRectF& frame) const;
    // The item under a point of the canvas; the gaps and the margins hit nothing.
    std::optional<int> itemAt(const QPointF& point) const;
    // Calls `visit` in order for every index whose frame meets `rect`.
    void forEachIndexIn(const QRectF& rect, const std::function<void(int)>& visit) const;
    // Rows of cells that fit in the viewport's height, at least one.
    int pageRows() const;
};

IconGridLayout layoutIconGrid(int mode, int count, QSizeF viewport, double extraLargeSize);

// Where the inline name editor stands over item `index`: on the name line of the cell, one text
// line of `lineHeight` high.
QRectF renamePlacement(const IconGridLayout& layout, int index, double lineHeight);

enum class GridKey { Left, Right, Up, Down, Home, End, PageUp, PageDown };

// The index a movement key lands on from `current`, clamped to the listing.
int gridKeyTarget(const IconGridLayout& layout, GridKey key, int current);

} // namespace orvane
