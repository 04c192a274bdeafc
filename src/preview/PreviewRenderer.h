#pragma once

#include "preview/PreviewContent.h"

#include <QMimeType>
#include <QSize>

class QIODevice;
class QWidget;

namespace orvane {

// One kind of file shown inside the preview. `accepts` and `load` run on a worker thread, so a
// renderer keeps no state that they change; `present` runs on the main thread.
//
// Audio and video plug in here: a renderer backed by the players accepts their types, answers a
// content with itself as `renderer` from `load`, and makes its player widget in `present`. It is
// put first in the pane's list by `PreviewRenderers::prepend`.
class PreviewRenderer {
public:
    struct Source {
        QString path; // exact bytes, as NativePath keeps them
        QMimeType type;
        QIODevice* file; // opened for reading at its start
        QSize bound;     // the largest picture worth making, in pixels
    };

    virtual ~PreviewRenderer() = default;
    virtual bool accepts(const QMimeType& type) const = 0;
    // A null content when this file cannot be shown after all; the next renderer or the card follows.
    virtual PreviewContent load(const Source& source) const = 0;
    // A live view of what `load` made, or null to show its picture or text; the caller owns it.
    virtual QWidget* present(const PreviewContent& content, QWidget* parent) const;
};

} // namespace orvane
