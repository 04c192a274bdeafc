#include "kit/GlassSurfaces.h"

#include "kit/ExplorerCorners.h"

namespace orvane {

namespace {
const QColor ink(240, 240, 240), secondary(189, 189, 189), accent(166, 161, 255);

} // namespace

QString GlassSurfaces::css(const QColor& c) {
    return QStringLiteral("rgba(%1, %2, %3, %4)").arg(c.red()).arg(c.green()).arg(c.blue()).arg(c.alpha());
}

// Dark enough that light text keeps its contrast even when a white page shines through the glass.
QColor GlassSurfaces::backdrop(bool translucent) {
    return QColor(22, 23, 31, translucent ? 225 : 255);
}

const std::vector<GlassSurface>& GlassSurfaces::all() {
    static const std::vector<GlassSurface> surfaces = {
        {QStringLiteral("#titleRow"), QColor(38, 27, 33, 235), {ink, secondary}},
        {QStringLiteral("#navigationRow, #actionRow"), QColor(255, 255, 255, 6), {ink}},
        {QStringLiteral("#navigationPane"), QColor(0, 0, 0, 40), {ink, secondary, accent}},
        {QStringLiteral("#detailsPane, #previewPane"), QColor(255, 255, 255, 5), {ink, secondary}},
        {QStringLiteral("#statusRow"), QColor(0, 0, 0, 30), {secondary}},
        {QStringLiteral("QHeaderView::section"), QColor(255, 255, 255, 6), {secondary}},
        {QStringLiteral("QToolButton:hover"), QColor(255, 255, 255, 22), {ink}},
        {QStringLiteral("QToolButton:checked"), QColor(166, 161, 255, 50), {ink}},
        {QStringLiteral("#pathBox, #searchField, #pathBox QLineEdit"),
         QColor(255, 255, 255, 14),
         {ink, secondary}},
        {QStringLiteral("QMenu"), QColor(30, 31, 40), {ink}, false},
        {QStringLiteral("QMenu::item:selected"), QColor(166, 161, 255, 60), {ink}, false},
        {QStringLiteral("#auxiliaryWindow"), QColor(30, 31, 40), {ink, secondary}, false},
        {QStringLiteral("#storageCard"), QColor(255, 255, 255, 14), {ink, secondary}, false},
    };
    return surfaces;
}

QColor GlassSurfaces::over(const QColor& fill, const QColor& beneath) {
    const double a = fill.alphaF();
    const auto mix = [a](double top, double bottom) { return top * a + bottom * (1 - a); };
    return QColor::fromRgbF(float(mix(fill.redF(), beneath.redF())),
                            float(mix(fill.greenF(), beneath.greenF())),
                            float(mix(fill.blueF(), beneath.blueF())), 1.0f);
}

QColor GlassSurfaces::fill(const QString& selector) {
    for (const GlassSurface& s : all())
        if (s.selector == selector) return s.fill;
    return {};
}

// A window on glass carries the property glass=true; its shell is then translucent and rounded.
QString GlassSurfaces::styleSheet() {
    QString rules = QStringLiteral("#explorerShell { background: %1; }\n").arg(css(backdrop(false)));
    rules += QStringLiteral("#explorerShell[glass=\"true\"] { background: %1; border-radius: %2px; }\n")
                 .arg(css(backdrop(true)))
                 .arg(ExplorerCorners::window);
    for (const GlassSurface& s : all())
        rules += s.selector + QStringLiteral(" { background: %1; }\n").arg(css(s.fill));
    return rules;
}

} // namespace orvane
