#pragma once

#include "core/Entry.h"

namespace orvane {

// Byte counts in decimal units as a file browser shows them: "Zero KB", "512 bytes", "2 KB", "1.5 MB", "1.25
// GB".
QString byteCountText(qint64 bytes);
// Dates by one fixed pattern whatever the locale: "3/14/2025 9:05 PM"; "—" when absent.
QString dateText(const QDateTime& date);
// The display text of one attribute of an entry, for the columns of a listing.
QString columnText(const QString& key, const Entry& entry);
// The folder a local entry lies in, as its path; empty for a phone item.
QString folderOf(const Entry& entry);
// The folder an item in the Trash was deleted from, as its path; empty when unknown.
QString originFolderOf(const Entry& entry);

} // namespace orvane
