#pragma once

#include "navigation/SidebarTreeSnapshot.h"

#include <QColor>
#include <QIcon>
#include <QRect>

class QPainter;

namespace orvane {

// How one row of the navigation pane looks: heights, indents and what is drawn where.
class SidebarRowPainter {
public:
    static constexpr int sectionHeight = 30;
    static constexpr int rowHeight = 34;
    static constexpr int indentStep = 14;
    static constexpr int contentInset = 22;   // from the indent to the icon, room for the disclosure
    static constexpr int disclosureInset = 4; // from the indent to the disclosure button
    static constexpr int disclosureWidth = 18;
    static constexpr int keptWidth = 146; // deep rows stop indenting before they leave less than this
    static constexpr int indicatorSize = 18;
    static constexpr int iconSize = 18;

    static int height(const SidebarPlace& place) { return place.isSection() ? sectionHeight : rowHeight; }
    // depth × 14, but never so deep that the title loses its room, and never negative.
    static int indent(int depth, int width);
    // The colour of a place's symbol; the accent for the ones without their own.
    static QColor tint(const QString& symbol);

    struct State {
        bool selected = false;
        bool hovered = false;
        bool pinned = false;
        bool focused = false; // the pane has the keyboard
    };
    // `icon` is what stands for a folder row: its symbol, or a coloured folder.
    static void paint(QPainter& p, const QRect& rect, const SidebarPlace& place, int depth,
                      const State& state, const QIcon& icon);
    static void paintDropLine(QPainter& p, int y, int left, int right);
};

} // namespace orvane
