#pragma once

#include <QIcon>
#include <QString>

namespace orvane {

// The short card shown where no file's inside can be: a symbol (or an icon of the item), a title and
// a sentence.
struct PreviewCard {
    QString symbol;
    QString title;
    QString text;
    QIcon icon; // the item's own icon, shown instead of the symbol when set

    static PreviewCard start();
    static PreviewCard several(int count);
    static PreviewCard folder(const QIcon& icon);
    static PreviewCard unavailable();
    // A readable file that no renderer shows.
    static PreviewCard summary(const QString& kind, const QIcon& icon);

    bool operator==(const PreviewCard& other) const {
        return symbol == other.symbol && title == other.title && text == other.text;
    }
};

} // namespace orvane
