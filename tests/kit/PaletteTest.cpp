#include "kit/Palette.h"

#include "kit/GlassSurfaces.h"

#include "support/TestEnvironment.h"
#include "views/ExplorerRowDelegate.h"

#include <QImage>
#include <QPainter>
#include <cmath>

using namespace orvane;

namespace {

// WCAG 2 relative luminance and contrast ratio.
double luminance(const QColor& c) {
    auto channel = [](double v) { return v <= 0.03928 ? v / 12.92 : std::pow((v + 0.055) / 1.055, 2.4); };
    return 0.2126 * channel(c.redF()) + 0.7152 * channel(c.greenF()) + 0.0722 * channel(c.blueF());
}

double contrast(const QColor& a, const QColor& b) {
    const double la = luminance(a), lb = luminance(b);
    return (qMax(la, lb) + 0.05) / (qMin(la, lb) + 0.05);
}

// The colour a row mark really has on screen: painted over the window's canvas, read back.
QColor paintedRow(bool selected, bool emphasised, bool hovering) {
    QImage image(200, 32, QImage::Format_ARGB32);
    image.fill(Palette::canvas());
    QPainter painter(&image);
    ExplorerRowDelegate::RowState state;
    state.selected = selected;
    state.emphasised = emphasised;
    state.hovering = hovering;
    ExplorerRowDelegate::paintRow(&painter, image.rect(), state);
    painter.end();
    return image.pixelColor(100, 16);
}

} // namespace

class PaletteTest : public QObject {
    Q_OBJECT

private slots:
    // Both texts of a row, the name in ink and the other columns muted, stay readable on the
    // selection with and without the focus (WCAG AA: 4.5 to 1 for normal text).
    void selectedTextPassesAA_data() {
        QTest::addColumn<bool>("emphasised");
        QTest::addColumn<QColor>("text");
        QTest::newRow("focused, name") << true << Palette::ink();
        QTest::newRow("focused, other columns") << true << Palette::muted();
        QTest::newRow("unfocused, name") << false << Palette::ink();
        QTest::newRow("unfocused, other columns") << false << Palette::muted();
    }
    void selectedTextPassesAA() {
        QFETCH(bool, emphasised);
        QFETCH(QColor, text);
        const QColor fill = paintedRow(true, emphasised, false);
        QVERIFY2(contrast(text, fill) >= 4.5, qPrintable(QString::number(contrast(text, fill))));
    }

    // A selection must never pass for the hover light: it stands apart from a hovered row and from
    // the canvas, and it carries a hue where the hover is grey.
    void selectionStandsApartFromHover_data() {
        QTest::addColumn<bool>("emphasised");
        QTest::newRow("focused") << true;
        QTest::newRow("unfocused") << false;
    }
    void selectionStandsApartFromHover() {
        QFETCH(bool, emphasised);
        const QColor selected = paintedRow(true, emphasised, false);
        const QColor hovered = paintedRow(false, true, true);
        QVERIFY2(contrast(selected, hovered) >= 1.35,
                 qPrintable(QString::number(contrast(selected, hovered))));
        QVERIFY(contrast(selected, Palette::canvas()) >= 1.5);
        QVERIFY(selected.hsvSaturationF() > hovered.hsvSaturationF() + 0.15);
        // Focused and unfocused differ too, so the focus shows.
        QVERIFY(paintedRow(true, true, false) != paintedRow(true, false, false));
    }

    // Every text on every surface of the glass stays readable, whether the window is opaque or a
    // black or a white page shines through its translucent backdrop.
    void glassTextPassesAA_data() {
        QTest::addColumn<QColor>("seen");
        QTest::addColumn<QColor>("text");
        const struct {
            const char* name;
            QColor window;
        } cases[] = {{"opaque", GlassSurfaces::backdrop(false)},
                     {"glass over black", GlassSurfaces::over(GlassSurfaces::backdrop(true), Qt::black)},
                     {"glass over white", GlassSurfaces::over(GlassSurfaces::backdrop(true), Qt::white)}};
        for (const auto& c : cases) {
            for (const GlassSurface& s : GlassSurfaces::all()) {
                // Menus and secondary windows are opaque windows of their own.
                const QColor own = GlassSurfaces::fill(QStringLiteral("#auxiliaryWindow"));
                const QColor seen = GlassSurfaces::over(s.fill, s.onWindow ? c.window : own);
                for (const QColor& text : s.texts)
                    QTest::addRow("%s, %s, %s", c.name, qPrintable(s.selector), qPrintable(text.name()))
                        << seen << text;
            }
        }
    }
    void glassTextPassesAA() {
        QFETCH(QColor, seen);
        QFETCH(QColor, text);
        QVERIFY2(contrast(text, seen) >= 4.5, qPrintable(QString::number(contrast(text, seen))));
    }
};

ORVANE_TEST_MAIN(PaletteTest)
#include "PaletteTest.moc"
