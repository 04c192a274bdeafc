#pragma once

#include "preview/PreviewContent.h"

#include <QSize>
#include <memory>
#include <vector>

namespace orvane {

class PreviewRenderer;

// The renderers one pane asks in turn, the first that accepts a file's type and makes something of
// it wins. Copied for each request, so the list may grow while a file loads.
class PreviewRenderers {
public:
    // Pictures, PDF, text.
    PreviewRenderers();

    // Asked before the others: the hook for renderers of the layers above (the players).
    void prepend(std::shared_ptr<const PreviewRenderer> renderer);

    // On a worker thread: opens the file by its exact bytes and asks each renderer. A null content
    // when the file cannot be opened; an empty card when none could show it.
    PreviewContent load(const QString& path, QSize bound) const;

private:
    std::vector<std::shared_ptr<const PreviewRenderer>> list;
};

} // namespace orvane
