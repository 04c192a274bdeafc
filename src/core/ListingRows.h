#pragma once

#include "core/Entry.h"

#include <vector>

namespace orvane {

// Where a window's listing keeps the rows it shows: the table's model, which merges a new set of
// rows into the old one by identity. The listing holds no second copy.
class ListingRows {
public:
    virtual ~ListingRows() = default;
    virtual const std::vector<Entry>& entries() const = 0;
    virtual void setEntries(std::vector<Entry> next) = 0;
};

} // namespace orvane
