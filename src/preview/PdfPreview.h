#pragma once

#include "preview/PreviewRenderer.h"

namespace orvane {

// The first page of a PDF through Qt PDF, a little faster here than Poppler on the first page and
// read from the file already opened.
class PdfPreview : public PreviewRenderer {
public:
    bool accepts(const QMimeType& type) const override;
    PreviewContent load(const Source& source) const override;
};

} // namespace orvane
