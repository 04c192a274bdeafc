#include "views/ExplorerColumns.h"

namespace orvane {

const QList<ExplorerColumn>& explorerColumns() {
    static const QList<ExplorerColumn> columns = {
        {QStringLiteral("name"), QStringLiteral("Name"), 355, 160, true},
        {QStringLiteral("modified"), QStringLiteral("Date modified"), 200, 180, true},
        {QStringLiteral("dimensions"), QStringLiteral("Dimensions"), 155, 85, false},
        {QStringLiteral("kind"), QStringLiteral("Type"), 160, 85, true},
        {QStringLiteral("size"), QStringLiteral("Size"), 90, 85, true},
        {QStringLiteral("created"), QStringLiteral("Date created"), 200, 180, true},
        // Shown only while search results stand in for a folder's listing.
        {QStringLiteral("folder"), QStringLiteral("Folder"), 260, 120, true},
        // Shown only in the Trash.
        {QStringLiteral("origin"), QStringLiteral("Original location"), 260, 120, true},
        {QStringLiteral("deleted"), QStringLiteral("Date deleted"), 200, 180, true},
    };
    return columns;
}

int explorerColumnIndex(const QString& key) {
    const auto& columns = explorerColumns();
    for (int i = 0; i < columns.size(); ++i)
        if (columns[i].key == key) return i;
    return -1;
}

} // namespace orvane
