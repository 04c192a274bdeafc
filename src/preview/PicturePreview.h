#pragma once

#include "preview/PreviewRenderer.h"

namespace orvane {

// Pictures of any format the image plugins read, upright by their EXIF orientation, decoded no
// larger than the bound (a JPEG at a fraction of its size).
class PicturePreview : public PreviewRenderer {
public:
    bool accepts(const QMimeType& type) const override;
    PreviewContent load(const Source& source) const override;
};

} // namespace orvane
