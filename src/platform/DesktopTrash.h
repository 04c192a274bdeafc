#pragma once

#include <QDateTime>
#include <QString>
#include <vector>

namespace orvane {

// The desktop's own Trash, by the exact bytes of a path.
namespace DesktopTrash {

// One item in a Trash, as its record tells it.
struct Record {
    QString trashed;   // the item itself, inside the Trash's "files" folder
    QString original;  // where it was deleted from; empty when the record does not say
    QDateTime deleted; // invalid when the record does not say
};

// Moves the item in, never replacing anything there; `trashed` is its path inside the Trash.
bool moveIn(const QString& path, QString& trashed, QString& error);
// After the item has been moved back out or removed: drops what the Trash kept about it.
void forget(const QString& trashed);

// A Trash folder, holding "files" and "info".
struct Folder {
    QString trash;
    QString top; // the volume whose Trash it is; empty for the home Trash
};

// Every Trash of this user that exists: the home one first, then each mounted volume's.
std::vector<Folder> folders();
// What one Trash holds. `top` is the volume whose Trash it is, against which relative records are
// read; empty for the home Trash. Items without a record, and records without an item, are left out.
std::vector<Record> read(const QString& trash, const QString& top);
// Everything in every Trash of this user.
std::vector<Record> contents();
bool isEmpty();

} // namespace DesktopTrash

} // namespace orvane
