#pragma once

#include "core/Entry.h"
#include "core/ListingRows.h"

#include <QAbstractTableModel>
#include <QHash>
#include <QIcon>
#include <functional>
#include <vector>

namespace orvane {

// The rows of one window's listing. A new listing is merged in by identity (the location), in
// ranges, so the selection, the current row and the scroll position stay with their items.
class EntryTableModel : public QAbstractTableModel, public ListingRows {
    Q_OBJECT
public:
    enum Role { EntryLocationRole = Qt::UserRole + 1, DirectoryRole };

    explicit EntryTableModel(QObject* parent = nullptr);

    int rowCount(const QModelIndex& parent = {}) const override;
    int columnCount(const QModelIndex& parent = {}) const override;
    QVariant data(const QModelIndex& index, int role) const override;
    QVariant headerData(int section, Qt::Orientation orientation, int role) const override;

    const std::vector<Entry>& entries() const override { return rows; }
    // Becomes `next`: a few rows coming and going are signalled as ranges, anything larger as one
    // layout change; the model is never reset.
    void setEntries(std::vector<Entry> next) override;
    // Rows whose entry changed without its identity, re-read by the views.
    void entriesChanged();
    // The folder column names each row's folder from beneath `base`; empty names it in full.
    void setFolderBase(const QString& base);

    // Pictures and sizes read from the files, when the media services are there. A null image or an
    // empty text means none yet; the rows are repainted when they arrive.
    std::function<QImage(const Entry&)> thumbnail;
    std::function<QString(const Entry&)> dimensions;
    std::function<QIcon(const Entry&)> folderIcon; // a plain folder's, coloured or not

private:
    void removeMissing(const QHash<QString, int>& wanted);
    void replaceInOneLayout(std::vector<Entry> next, const QHash<QString, int>& wanted);
    void insertNew(std::vector<Entry>& next);

    QVariant icon(const Entry& entry) const;
    QVariant dimensionsTip(const Entry& entry) const;

    std::vector<Entry> rows;
    mutable QHash<QString, QIcon> thumbnailIcons; // made from thumbnails, by their media key
    QString folderBase;
};

} // namespace orvane
