#pragma once

#include "core/Entry.h"

#include <vector>

namespace orvane::bench {

// Folders, text, pictures and PDFs in turn; with `longNames`, every third name is long enough to
// wrap onto a second line under an icon.
std::vector<Entry> syntheticEntries(int count, bool longNames = false);

// Bytes in use on the heap, after handing freed pages back.
qint64 liveHeap();

} // namespace orvane::bench
