#pragma once

#include "core/Entry.h"

#include <vector>

namespace orvane {

// Reading one local folder into entries: the part of a refresh that touches the disk.
namespace FolderListing {

// Case-insensitive containment in the name; an empty query keeps everything.
bool matches(const QString& name, const QString& query);

// Lists `folder` one level deep, filtered by the hidden rule and the query, unsorted.
// Returns false with the system's text in `error` when the folder cannot be read.
bool read(const QString& folder, bool showHidden, const QString& query, std::vector<Entry>& out,
          QString& error);

} // namespace FolderListing

} // namespace orvane
