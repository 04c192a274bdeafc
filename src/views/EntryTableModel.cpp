#include "views/EntryTableModel.h"

#include "core/EntryText.h"
#include "media/MediaThumbnails.h"
#include "platform/NativePath.h"
#include "views/ExplorerColumns.h"
#include "views/FileIcons.h"

namespace orvane {

EntryTableModel::EntryTableModel(QObject* parent) : QAbstractTableModel(parent) {}

int EntryTableModel::rowCount(const QModelIndex& parent) const {
    return parent.isValid() ? 0 : int(rows.size());
}

int EntryTableModel::columnCount(const QModelIndex& parent) const {
    return parent.isValid() ? 0 : int(explorerColumns().size());
}

QVariant EntryTableModel::data(const QModelIndex& index, int role) const {
    if (!index.isValid() || size_t(index.row()) >= rows.size()) return {};
    const Entry& entry = rows[size_t(index.row())];
    const QString& key = explorerColumns()[index.column()].key;
    switch (role) {
    case Qt::DisplayRole:
        if (key == QLatin1String("folder")) {
            // A folder whose name is not UTF-8 shows its stand-in characters, never its raw bytes.
            const QString folder = folderOf(entry);
            if (folderBase.isEmpty()) return NativePath::display(folder);
            return folder.startsWith(folderBase + u'/')
                       ? NativePath::display(folder.mid(folderBase.size() + 1))
                       : QString();
        }
        if (key == QLatin1String("dimensions")) return dimensions ? dimensions(entry) : QString();
        return columnText(key, entry);
    case Qt::DecorationRole:
        return key == QLatin1String("name") ? icon(entry) : QVariant();
    case Qt::TextAlignmentRole:
        return key == QLatin1String("size") ? QVariant(int(Qt::AlignRight | Qt::AlignVCenter))
                                            : QVariant(int(Qt::AlignLeft | Qt::AlignVCenter));
    case Qt::ToolTipRole:
        if (key == QLatin1String("dimensions")) return dimensionsTip(entry);
        return key == QLatin1String("name") ? QVariant(entry.name()) : QVariant();
    case EntryLocationRole:
        return entry.location;
    case DirectoryRole:
        return entry.directory;
    }
    return {};
}

QVariant EntryTableModel::icon(const Entry& entry) const {
    if (folderIcon && entry.directory && (entry.isPhone() || !entry.package)) return folderIcon(entry);
    if (!thumbnail || entry.directory) return FileIcons::shared().icon(entry);
    // Kept here by the media key: the service holds only a few pictures, the table shows more rows.
    const QString key = MediaThumbnails::key(entry);
    if (const auto made = thumbnailIcons.constFind(key); made != thumbnailIcons.constEnd()) return *made;
    const QImage image = thumbnail(entry);
    if (image.isNull()) return FileIcons::shared().icon(entry);
    // Started over rather than aged: the rows on show come back at once.
    if (thumbnailIcons.size() >= 1024) thumbnailIcons.clear();
    return *thumbnailIcons.insert(key, QIcon(QPixmap::fromImage(image)));
}

QVariant EntryTableModel::dimensionsTip(const Entry& entry) const {
    const QString text = dimensions ? dimensions(entry) : QString();
    if (text.isEmpty() || text == QStringLiteral("—")) return text;
    return text + QStringLiteral(" pixels");
}

void EntryTableModel::setFolderBase(const QString& base) {
    folderBase = base == QLatin1String("/") ? QString() : base;
    if (!rows.empty()) emit dataChanged(index(0, 0), index(int(rows.size()) - 1, columnCount() - 1));
}

QVariant EntryTableModel::headerData(int section, Qt::Orientation orientation, int role) const {
    if (orientation != Qt::Horizontal || role != Qt::DisplayRole || section < 0 ||
        section >= explorerColumns().size())
        return {};
    return explorerColumns()[section].title;
}

namespace {

// How many separate runs of rows would come and go, and whether the staying rows keep their order.
struct MergeShape {
    int runs = 0;
    bool ordered = true;
};

MergeShape mergeShape(const std::vector<Entry>& rows, const std::vector<Entry>& next,
                      const QHash<QString, int>& wanted) {
    MergeShape shape;
    int previous = -1;
    bool inGap = false;
    for (const Entry& row : rows) {
        const auto it = wanted.constFind(row.location);
        const bool gone = it == wanted.cend();
        if (gone && !inGap) ++shape.runs;
        inGap = gone;
        if (gone) continue;
        if (*it < previous) shape.ordered = false;
        // A gap between two staying rows in the new order is one run to insert.
        if (*it > previous + 1) ++shape.runs;
        previous = *it;
    }
    if (previous + 1 < int(next.size())) ++shape.runs;
    return shape;
}

} // namespace

void EntryTableModel::setEntries(std::vector<Entry> next) {
    QHash<QString, int> wanted;
    wanted.reserve(qsizetype(next.size()));
    for (size_t i = 0; i < next.size(); ++i)
        wanted.insert(next[i].location, int(i));
    const MergeShape shape = mergeShape(rows, next, wanted);
    // Each run costs a pass over the rows; past a few, one layout change is cheaper.
    if (!shape.ordered || shape.runs > 8) {
        replaceInOneLayout(std::move(next), wanted);
        return;
    }
    removeMissing(wanted);
    insertNew(next);
}

// Like a sort: persistent indexes (selection, current row, the keyboard ring) follow their items,
// and those whose items went become invalid.
void EntryTableModel::replaceInOneLayout(std::vector<Entry> next, const QHash<QString, int>& wanted) {
    emit layoutAboutToBeChanged({}, QAbstractItemModel::VerticalSortHint);
    const QModelIndexList before = persistentIndexList();
    QModelIndexList after;
    after.reserve(before.size());
    for (const QModelIndex& old : before) {
        const auto it = size_t(old.row()) < rows.size() ? wanted.constFind(rows[size_t(old.row())].location)
                                                        : wanted.cend();
        after.append(it == wanted.cend() ? QModelIndex() : createIndex(*it, old.column()));
    }
    rows = std::move(next);
    changePersistentIndexList(before, after);
    emit layoutChanged({}, QAbstractItemModel::VerticalSortHint);
}

// From the bottom up, so the rows still to visit keep their numbers.
void EntryTableModel::removeMissing(const QHash<QString, int>& wanted) {
    int last = int(rows.size()) - 1;
    while (last >= 0) {
        if (wanted.contains(rows[size_t(last)].location)) {
            --last;
            continue;
        }
        int first = last;
        while (first > 0 && !wanted.contains(rows[size_t(first - 1)].location))
            --first;
        beginRemoveRows({}, first, last);
        rows.erase(rows.begin() + first, rows.begin() + last + 1);
        endRemoveRows();
        last = first - 1;
    }
}

// The rows left are in `next`'s order; what is missing between them goes in as runs.
void EntryTableModel::insertNew(std::vector<Entry>& next) {
    size_t row = 0;
    int firstChanged = -1;
    int lastChanged = -1;
    for (size_t k = 0; k < next.size();) {
        if (row < rows.size() && rows[row].location == next[k].location) {
            if (!sameShown(rows[row], next[k])) {
                if (firstChanged < 0) firstChanged = int(row);
                lastChanged = int(row);
            }
            rows[row] = std::move(next[k]);
            ++row, ++k;
            continue;
        }
        size_t end = k + 1;
        while (end < next.size() && (row >= rows.size() || rows[row].location != next[end].location))
            ++end;
        beginInsertRows({}, int(row), int(row + (end - k)) - 1);
        rows.insert(rows.begin() + qsizetype(row), std::make_move_iterator(next.begin() + qsizetype(k)),
                    std::make_move_iterator(next.begin() + qsizetype(end)));
        endInsertRows();
        row += end - k;
        k = end;
    }
    if (firstChanged >= 0) emit dataChanged(index(firstChanged, 0), index(lastChanged, columnCount() - 1));
}

} // namespace orvane
