#include "views/EntryTableModel.h"

#include "browsing/EntryText.h"
#include "views/ExplorerColumns.h"
#include "views/FileIcons.h"

namespace orvane {

EntryTableModel::EntryTableModel(const std::vector<Entry>* entries, QObject* parent)
    : QAbstractTableModel(parent), entries(entries) {}

int EntryTableModel::rowCount(const QModelIndex& parent) const {
    return parent.isValid() ? 0 : int(entries->size());
}

int EntryTableModel::columnCount(const QModelIndex& parent) const {
    return parent.isValid() ? 0 : int(explorerColumns().size());
}

QVariant EntryTableModel::data(const QModelIndex& index, int role) const {
    if (!index.isValid() || size_t(index.row()) >= entries->size()) return {};
    const Entry& entry = (*entries)[size_t(index.row())];
    const QString& key = explorerColumns()[index.column()].key;
    switch (role) {
    case Qt::DisplayRole:
        return columnText(key, entry);
    case Qt::DecorationRole:
        return key == QLatin1String("name") ? QVariant(FileIcons::shared().icon(entry)) : QVariant();
    case Qt::TextAlignmentRole:
        return key == QLatin1String("size") ? QVariant(int(Qt::AlignRight | Qt::AlignVCenter))
                                            : QVariant(int(Qt::AlignLeft | Qt::AlignVCenter));
    case Qt::ToolTipRole:
        return key == QLatin1String("name") ? QVariant(entry.name()) : QVariant();
    case EntryLocationRole:
        return entry.location;
    case DirectoryRole:
        return entry.directory;
    }
    return {};
}

QVariant EntryTableModel::headerData(int section, Qt::Orientation orientation, int role) const {
    if (orientation != Qt::Horizontal || role != Qt::DisplayRole || section < 0 ||
        section >= explorerColumns().size())
        return {};
    return explorerColumns()[section].title;
}

void EntryTableModel::reload() {
    beginResetModel();
    endResetModel();
}

} // namespace orvane
