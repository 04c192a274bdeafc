#pragma once

#include <QColor>
#include <QList>
#include <QString>
#include <vector>

namespace orvane {

// One surface of the dark glass: where the style sheet paints it, its fill (often a wash over what
// lies beneath) and the texts drawn on it.
struct GlassSurface {
    QString selector;
    QColor fill;
    QList<QColor> texts;
    bool onWindow = true; // lies on the window's own backdrop, not on a window of its own
};

// The surfaces of a browser window and of its menus and secondary windows, the one source of their
// colours: the style sheet is written from them and the contrast test reads them.
namespace GlassSurfaces {
// The window's backdrop: translucent where a compositor blurs what is behind, else opaque.
QColor backdrop(bool translucent);
const std::vector<GlassSurface>& all();
// What the eye sees of `fill` laid over `beneath`.
QColor over(const QColor& fill, const QColor& beneath);
QColor fill(const QString& selector);
// A colour as the style sheet spells it.
QString css(const QColor& color);
// The background rules of every surface.
QString styleSheet();
} // namespace GlassSurfaces

} // namespace orvane
