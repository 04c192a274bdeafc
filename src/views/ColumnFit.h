#pragma once

#include <QHash>
#include <QList>
#include <QString>

namespace orvane {

// Which of the chosen columns a table of a given width shows, and how wide. Rather than cut a column
// at the edge or scroll sideways, a narrow table first narrows columns down to their minimum, then
// leaves out whole columns, the least needed first, and brings both back when there is room. The name
// always shows; it takes whatever width is left beyond its minimum.
class ColumnFit {
public:
    struct Column {
        QString key;
        int width;   // the width the column would have with room enough
        int minimum; // below this its content is cut
    };
    struct Fit {
        QList<QString> leftOut;
        QHash<QString, int> widths; // of the columns shown; the name's at its minimum
    };

    // `columns` in table order.
    static Fit fit(const QList<Column>& columns, int available);
    // The order in which columns give way: the first narrows and goes first.
    static const QList<QString>& yieldOrder();
};

} // namespace orvane
