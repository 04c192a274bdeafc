#include "views/ColumnFit.h"

namespace orvane {

namespace {
const QString nameKey = QStringLiteral("name");
}

const QList<QString>& ColumnFit::yieldOrder() {
    static const QList<QString> order = {QStringLiteral("created"), QStringLiteral("dimensions"),
                                         QStringLiteral("kind"), QStringLiteral("modified"),
                                         QStringLiteral("size")};
    return order;
}

ColumnFit::Fit ColumnFit::fit(const QList<Column>& columns, int available) {
    Fit result;
    int needed = 0;
    for (const Column& c : columns)
        needed += c.minimum;
    for (const QString& key : yieldOrder()) {
        if (needed <= available) break;
        for (const Column& c : columns)
            if (c.key == key) {
                result.leftOut << key;
                needed -= c.minimum;
            }
    }
    int total = 0;
    for (const Column& c : columns) {
        if (result.leftOut.contains(c.key)) continue;
        const int width = c.key == nameKey ? c.minimum : qMax(c.width, c.minimum);
        result.widths.insert(c.key, width);
        total += width;
    }
    // What is still too wide comes off the columns least needed first, each down to its minimum.
    for (const QString& key : yieldOrder()) {
        if (total <= available) break;
        for (const Column& c : columns) {
            if (c.key != key || !result.widths.contains(key)) continue;
            const int cut = qMin(total - available, result.widths[key] - c.minimum);
            result.widths[key] -= cut;
            total -= cut;
        }
    }
    return result;
}

} // namespace orvane
