#pragma once

#include "preview/PreviewRenderer.h"

namespace orvane {

// Text and source files: the first 256 KiB, shown in a fixed-width font. A file that holds a zero
// byte there is no text, whatever its name says.
class TextPreview : public PreviewRenderer {
public:
    static constexpr qint64 limit = 256 * 1024;

    bool accepts(const QMimeType& type) const override;
    PreviewContent load(const Source& source) const override;
};

} // namespace orvane
