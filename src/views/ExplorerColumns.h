#pragma once

#include <QList>
#include <QString>

namespace orvane {

// One column of the details table, in the fixed order of the table.
struct ExplorerColumn {
    QString key;
    QString title;
    int width;
    int minimumWidth;
    bool sortable;
};

const QList<ExplorerColumn>& explorerColumns();
int explorerColumnIndex(const QString& key); // -1 when unknown

} // namespace orvane
