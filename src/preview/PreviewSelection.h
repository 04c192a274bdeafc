#pragma once

#include "core/Entry.h"
#include "preview/PreviewCard.h"

#include <optional>
#include <vector>

namespace orvane {

// What the preview makes of a selection before it reads any file: the local files it stands for, the
// lines under the preview, and the card when there is nothing to load. A phone item is no file here.
struct PreviewSelection {
    std::vector<Entry> files;
    QString fileName;
    QString fileToolTip;
    QString metadata;
    std::optional<PreviewCard> card; // absent: load `files.front()`

    static PreviewSelection of(const std::vector<Entry>& selected);
    // The card of a readable file no renderer shows.
    PreviewCard summary() const;
};

} // namespace orvane
