#pragma once

#include "browsing/Entry.h"

#include <QAbstractTableModel>
#include <vector>

namespace orvane {

// A view onto the window's entries, never a copy: a row costs nothing until it is painted.
class EntryTableModel : public QAbstractTableModel {
    Q_OBJECT
public:
    enum Role { EntryLocationRole = Qt::UserRole + 1, DirectoryRole };

    explicit EntryTableModel(const std::vector<Entry>* entries, QObject* parent = nullptr);

    int rowCount(const QModelIndex& parent = {}) const override;
    int columnCount(const QModelIndex& parent = {}) const override;
    QVariant data(const QModelIndex& index, int role) const override;
    QVariant headerData(int section, Qt::Orientation orientation, int role) const override;

    // The entries were replaced wholesale.
    void reload();

private:
    const std::vector<Entry>* entries;
};

} // namespace orvane
