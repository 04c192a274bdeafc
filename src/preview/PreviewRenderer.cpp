#include "preview/PreviewRenderer.h"

namespace orvane {

QWidget* PreviewRenderer::present(const PreviewContent&, QWidget*) const {
    return nullptr;
}

} // namespace orvane
