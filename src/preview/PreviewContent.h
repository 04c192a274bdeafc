#pragma once

#include "preview/PreviewCard.h"

#include <QImage>
#include <QString>
#include <memory>
#include <optional>

namespace orvane {

class PreviewRenderer;

// What a renderer made of one file, handed from the worker to the main thread: a picture, a text,
// or a card; a renderer of its own (`renderer` set) presents what it made itself.
struct PreviewContent {
    QString path;
    QImage picture;
    QString text;
    std::optional<PreviewCard> card;
    std::shared_ptr<const PreviewRenderer> renderer;

    bool isNull() const { return picture.isNull() && text.isNull() && !card && !renderer; }
};

} // namespace orvane
