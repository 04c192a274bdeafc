#include "kit/Symbols.h"

#include <QIconEngine>
#include <QImage>
#include <QPainter>
#include <QPainterPath>
#include <QPainterPathStroker>
#include <QtMath>
#include <vector>

namespace orvane {

namespace {

// Every symbol is drawn on a 24 by 24 grid with the pen and colour already set.
using Draw = void (*)(QPainter&);

void line(QPainter& p, qreal x1, qreal y1, qreal x2, qreal y2) {
    p.drawLine(QPointF(x1, y1), QPointF(x2, y2));
}

void polyline(QPainter& p, std::initializer_list<QPointF> points) {
    p.drawPolyline(points.begin(), int(points.size()));
}

void dot(QPainter& p, qreal x, qreal y, qreal r) {
    const QColor color = p.pen().color();
    p.save();
    p.setPen(Qt::NoPen);
    p.setBrush(color);
    p.drawEllipse(QPointF(x, y), r, r);
    p.restore();
}

void circle(QPainter& p, qreal x, qreal y, qreal r) {
    p.drawEllipse(QPointF(x, y), r, r);
}

// A sheet with a folded top right corner.
QPainterPath docOutline(const QRectF& r, qreal fold) {
    const qreal rad = 2.25;
    QPainterPath path;
    path.moveTo(r.left() + rad, r.top());
    path.lineTo(r.right() - fold, r.top());
    path.lineTo(r.right(), r.top() + fold);
    path.lineTo(r.right(), r.bottom() - rad);
    path.quadTo(r.right(), r.bottom(), r.right() - rad, r.bottom());
    path.lineTo(r.left() + rad, r.bottom());
    path.quadTo(r.left(), r.bottom(), r.left(), r.bottom() - rad);
    path.lineTo(r.left(), r.top() + rad);
    path.quadTo(r.left(), r.top(), r.left() + rad, r.top());
    return path;
}

QPainterPath docFold(const QRectF& r, qreal fold) {
    QPainterPath path;
    path.moveTo(r.right() - fold, r.top());
    path.lineTo(r.right() - fold, r.top() + fold - 1.5);
    path.quadTo(r.right() - fold, r.top() + fold, r.right() - fold + 1.5, r.top() + fold);
    path.lineTo(r.right(), r.top() + fold);
    return path;
}

void drawDoc(QPainter& p, const QRectF& r, qreal fold) {
    p.drawPath(docOutline(r, fold));
    p.drawPath(docFold(r, fold));
}

// Draws `behind` everywhere except near `front`, so stacked shapes read as stacked.
template <typename Fn> void behind(QPainter& p, const QRectF& front, Fn draw) {
    QPainterPath clip;
    clip.addRect(QRectF(0, 0, 24, 24));
    QPainterPath hole;
    hole.addRoundedRect(front.adjusted(-1.75, -1.75, 1.75, 1.75), 3.5, 3.5);
    p.save();
    p.setClipPath(clip.subtracted(hole));
    draw();
    p.restore();
}

void minus(QPainter& p) {
    line(p, 5, 12, 19, 12);
}
void square(QPainter& p) {
    p.drawRoundedRect(QRectF(5.5, 5.5, 13, 13), 2.5, 2.5);
}
void xmark(QPainter& p) {
    line(p, 6.5, 6.5, 17.5, 17.5);
    line(p, 17.5, 6.5, 6.5, 17.5);
}
void plus(QPainter& p) {
    line(p, 12, 5, 12, 19);
    line(p, 5, 12, 19, 12);
}
void chevronLeft(QPainter& p) {
    polyline(p, {{14.5, 5.5}, {8, 12}, {14.5, 18.5}});
}
void chevronRight(QPainter& p) {
    polyline(p, {{9.5, 5.5}, {16, 12}, {9.5, 18.5}});
}
void chevronDown(QPainter& p) {
    polyline(p, {{5.5, 9}, {12, 15.5}, {18.5, 9}});
}
void arrowLeft(QPainter& p) {
    line(p, 19, 12, 5.5, 12);
    polyline(p, {{11.5, 6}, {5.5, 12}, {11.5, 18}});
}
void arrowRight(QPainter& p) {
    line(p, 5, 12, 18.5, 12);
    polyline(p, {{12.5, 6}, {18.5, 12}, {12.5, 18}});
}
void arrowUp(QPainter& p) {
    line(p, 12, 19, 12, 5.5);
    polyline(p, {{6, 11.5}, {12, 5.5}, {18, 11.5}});
}
void arrowClockwise(QPainter& p) {
    // A ring open at the upper right, ending in a corner that points the way it turns.
    const QRectF ring(4, 4, 16, 16);
    QPainterPath path;
    path.arcMoveTo(ring, 0);
    path.arcTo(ring, 0, -315);
    path.lineTo(19.75, 8.25);
    p.drawPath(path);
    polyline(p, {{19.75, 3.5}, {19.75, 8.25}, {15, 8.25}});
}
void xmarkCircleFill(QPainter& p) {
    QPainterPath disc;
    disc.addEllipse(QPointF(12, 12), 9.25, 9.25);
    QPainterPath cross;
    cross.moveTo(8.75, 8.75);
    cross.lineTo(15.25, 15.25);
    cross.moveTo(15.25, 8.75);
    cross.lineTo(8.75, 15.25);
    QPainterPathStroker stroker(p.pen());
    p.fillPath(disc.subtracted(stroker.createStroke(cross)), p.pen().color());
}
void sliderHorizontal3(QPainter& p) {
    const qreal rows[3] = {6.5, 12, 17.5};
    const qreal knobs[3] = {15, 9, 13.5};
    for (int i = 0; i < 3; ++i) {
        line(p, 4, rows[i], knobs[i] - 2.25, rows[i]);
        line(p, knobs[i] + 2.25, rows[i], 20, rows[i]);
        circle(p, knobs[i], rows[i], 2.25);
    }
}
void plusCircle(QPainter& p) {
    circle(p, 12, 12, 8.75);
    line(p, 12, 8, 12, 16);
    line(p, 8, 12, 16, 12);
}
void scissors(QPainter& p) {
    circle(p, 6.5, 6.5, 2.75);
    circle(p, 6.5, 17.5, 2.75);
    line(p, 8.5, 15.5, 20, 4.5);
    line(p, 8.5, 8.5, 12.25, 12.1);
    line(p, 14.4, 14.2, 20, 19.5);
}
void squareOnSquare(QPainter& p) {
    const QRectF front(9, 9, 11, 11);
    behind(p, front, [&] { p.drawRoundedRect(QRectF(4, 4, 11, 11), 2.25, 2.25); });
    p.drawRoundedRect(front, 2.25, 2.25);
}
void docOnClipboard(QPainter& p) {
    const QRectF clip(8.75, 2.75, 6.5, 3.75);
    behind(p, clip, [&] { p.drawRoundedRect(QRectF(5, 4.75, 14, 16.5), 2.5, 2.5); });
    p.drawRoundedRect(clip, 1.25, 1.25);
    line(p, 9, 11.5, 15, 11.5);
    line(p, 9, 15.25, 13.25, 15.25);
}
void characterCursorIbeam(QPainter& p) {
    QPainterPath path;
    path.moveTo(8.5, 4.5);
    path.quadTo(12, 4.5, 12, 7.5);
    path.quadTo(12, 4.5, 15.5, 4.5);
    path.moveTo(12, 7.5);
    path.lineTo(12, 16.5);
    path.moveTo(8.5, 19.5);
    path.quadTo(12, 19.5, 12, 16.5);
    path.quadTo(12, 19.5, 15.5, 19.5);
    p.drawPath(path);
}
void trash(QPainter& p) {
    line(p, 4, 6.5, 20, 6.5);
    QPainterPath path;
    path.moveTo(9, 6.5);
    path.lineTo(9, 5);
    path.quadTo(9, 3.75, 10.25, 3.75);
    path.lineTo(13.75, 3.75);
    path.quadTo(15, 3.75, 15, 5);
    path.lineTo(15, 6.5);
    path.moveTo(6, 6.5);
    path.lineTo(6.85, 18.25);
    path.quadTo(7, 20.25, 9, 20.25);
    path.lineTo(15, 20.25);
    path.quadTo(17, 20.25, 17.15, 18.25);
    path.lineTo(18, 6.5);
    p.drawPath(path);
    line(p, 10, 10.5, 10, 16.25);
    line(p, 14, 10.5, 14, 16.25);
}
// The same can with something in it: its body tinted with the stroke's colour.
void trashFull(QPainter& p) {
    trash(p);
    QColor fill = p.pen().color();
    fill.setAlphaF(fill.alphaF() * 0.6);
    QPainterPath body;
    body.moveTo(6.6, 9);
    body.lineTo(7.2, 18.2);
    body.quadTo(7.3, 19.8, 9, 19.8);
    body.lineTo(15, 19.8);
    body.quadTo(16.7, 19.8, 16.8, 18.2);
    body.lineTo(17.4, 9);
    body.closeSubpath();
    p.fillPath(body, fill);
}
void arrowUpArrowDown(QPainter& p) {
    line(p, 8, 19, 8, 5);
    polyline(p, {{4.5, 8.5}, {8, 5}, {11.5, 8.5}});
    line(p, 16, 5, 16, 19);
    polyline(p, {{12.5, 15.5}, {16, 19}, {19.5, 15.5}});
}
void listBullet(QPainter& p) {
    for (qreal y : {6.5, 12.0, 17.5}) {
        dot(p, 5, y, 1.35);
        line(p, 9, y, 20, y);
    }
}
void squareGrid2x2(QPainter& p) {
    for (qreal x : {4.5, 13.5})
        for (qreal y : {4.5, 13.5})
            p.drawRoundedRect(QRectF(x, y, 6, 6), 1.5, 1.5);
}
void ellipsis(QPainter& p) {
    for (qreal x : {5.5, 12.0, 18.5})
        dot(p, x, 12, 1.6);
}
void gearshape(QPainter& p) {
    const int teeth = 8;
    const qreal outer = 9.5, inner = 7.1, step = 360.0 / teeth;
    QPolygonF gear;
    auto at = [](qreal r, qreal degrees) {
        const qreal a = qDegreesToRadians(degrees);
        return QPointF(12 + r * qCos(a), 12 + r * qSin(a));
    };
    for (int i = 0; i < teeth; ++i) {
        const qreal c = i * step;
        gear << at(inner, c - step * 0.32) << at(outer, c - step * 0.17) << at(outer, c + step * 0.17)
             << at(inner, c + step * 0.32);
    }
    p.drawPolygon(gear);
    circle(p, 12, 12, 3);
}
void sidebarRight(QPainter& p) {
    p.drawRoundedRect(QRectF(3, 4.5, 18, 15), 3, 3);
    line(p, 14.5, 4.5, 14.5, 19.5);
}
void pin(QPainter& p) {
    line(p, 8, 3.5, 16, 3.5);
    QPainterPath body;
    body.moveTo(9.5, 3.5);
    body.lineTo(9.5, 9.25);
    body.lineTo(6.5, 14.5);
    body.lineTo(17.5, 14.5);
    body.lineTo(14.5, 9.25);
    body.lineTo(14.5, 3.5);
    p.drawPath(body);
    line(p, 12, 14.5, 12, 20.5);
}
const QRectF docRect(5, 2.75, 14, 18.5);
void doc(QPainter& p) {
    p.fillPath(docOutline(docRect, 4.5), QColor(p.pen().color().red(), p.pen().color().green(),
                                                p.pen().color().blue(), p.pen().color().alpha() / 8));
    drawDoc(p, docRect, 4.5);
}
void arrowUpDoc(QPainter& p) {
    drawDoc(p, docRect, 4.5);
    line(p, 12, 17.25, 12, 10.75);
    polyline(p, {{9.25, 13.5}, {12, 10.75}, {14.75, 13.5}});
}
void arrowDownDoc(QPainter& p) {
    drawDoc(p, docRect, 4.5);
    line(p, 12, 10.25, 12, 16.75);
    polyline(p, {{9.25, 14}, {12, 16.75}, {14.75, 14}});
}
void docOnDoc(QPainter& p) {
    const QRectF front(8.5, 6.5, 11.5, 15);
    behind(p, front, [&] { drawDoc(p, QRectF(4, 2.5, 11.5, 15), 3.5); });
    drawDoc(p, front, 3.5);
}
void internaldrive(QPainter& p) {
    p.drawRoundedRect(QRectF(2.75, 7.25, 18.5, 9.5), 2.5, 2.5);
    line(p, 6.25, 12, 10.5, 12);
    dot(p, 17, 12, 1.2);
}
void magnifyingglass(QPainter& p) {
    circle(p, 10.5, 10.5, 6.25);
    line(p, 15.2, 15.2, 19.75, 19.75);
}

void docText(QPainter& p) {
    drawDoc(p, docRect, 4.5);
    for (qreal y : {10.5, 13.75, 17.0})
        line(p, 8.5, y, y < 11 ? 12.5 : 15.5, y);
}
void photo(QPainter& p) {
    p.drawRoundedRect(QRectF(3, 4.5, 18, 15), 2.5, 2.5);
    circle(p, 8.25, 9.5, 1.75);
    polyline(p, {{3.5, 17.5}, {9.5, 12.5}, {13, 15.5}, {15.5, 13}, {20.5, 17.5}});
}
void musicNote(QPainter& p) {
    polyline(p, {{10, 17.5}, {10, 5}, {19, 3.5}, {19, 15.5}});
    line(p, 10, 8.5, 19, 7);
    dot(p, 7.5, 17.5, 2.75);
    dot(p, 16.5, 15.5, 2.75);
}
void film(QPainter& p) {
    p.drawRoundedRect(QRectF(3.5, 3.5, 17, 17), 2.5, 2.5);
    line(p, 7.5, 3.5, 7.5, 20.5);
    line(p, 16.5, 3.5, 16.5, 20.5);
    for (qreal y : {8.0, 12.0, 16.0}) {
        line(p, 3.5, y, 7.5, y);
        line(p, 16.5, y, 20.5, y);
    }
}
void archivebox(QPainter& p) {
    p.drawRoundedRect(QRectF(3, 4, 18, 4.5), 1.5, 1.5);
    QPainterPath body;
    body.moveTo(4.5, 8.5);
    body.lineTo(4.5, 18.5);
    body.quadTo(4.5, 20, 6, 20);
    body.lineTo(18, 20);
    body.quadTo(19.5, 20, 19.5, 18.5);
    body.lineTo(19.5, 8.5);
    p.drawPath(body);
    line(p, 10, 12, 14, 12);
}
void exclamationTriangle(QPainter& p) {
    QPainterPath path;
    path.moveTo(12, 3.5);
    path.lineTo(21, 19.5);
    path.lineTo(3, 19.5);
    path.closeSubpath();
    p.drawPath(path);
    line(p, 12, 9.5, 12, 14);
    dot(p, 12, 16.75, 1.1);
}
// The places of the navigation pane.
void house(QPainter& p) {
    polyline(p, {{3, 11.5}, {12, 3.75}, {21, 11.5}});
    QPainterPath body;
    body.moveTo(5.5, 9.75);
    body.lineTo(5.5, 20.25);
    body.lineTo(18.5, 20.25);
    body.lineTo(18.5, 9.75);
    p.drawPath(body);
    polyline(p, {{10, 20.25}, {10, 14.5}, {14, 14.5}, {14, 20.25}});
}
void desktopcomputer(QPainter& p) {
    p.drawRoundedRect(QRectF(2.75, 4, 18.5, 12.5), 2, 2);
    line(p, 12, 16.5, 12, 20);
    line(p, 8, 20.25, 16, 20.25);
}
void arrowDownCircle(QPainter& p) {
    circle(p, 12, 12, 9);
    line(p, 12, 7.25, 12, 16.25);
    polyline(p, {{8.25, 12.5}, {12, 16.25}, {15.75, 12.5}});
}
void externaldrive(QPainter& p) {
    p.drawRoundedRect(QRectF(2.75, 7.25, 18.5, 9.5), 2.5, 2.5);
    line(p, 2.75, 12, 21.25, 12);
    dot(p, 17, 14.4, 1);
    line(p, 7, 4.25, 17, 4.25);
}
void network(QPainter& p) {
    circle(p, 12, 12, 9);
    p.drawEllipse(QRectF(8, 3, 8, 18));
    line(p, 3, 12, 21, 12);
}
void iphone(QPainter& p) {
    p.drawRoundedRect(QRectF(6.5, 2.5, 11, 19), 2.5, 2.5);
    line(p, 10.5, 5, 13.5, 5);
    dot(p, 12, 18.5, 0.9);
}
void pinFill(QPainter& p) {
    line(p, 8, 3.5, 16, 3.5);
    QPainterPath body;
    body.moveTo(9.5, 3.5);
    body.lineTo(9.5, 9.25);
    body.lineTo(6.5, 14.5);
    body.lineTo(17.5, 14.5);
    body.lineTo(14.5, 9.25);
    body.lineTo(14.5, 3.5);
    body.closeSubpath();
    p.fillPath(body, p.pen().color());
    p.drawPath(body);
    line(p, 12, 14.5, 12, 20.5);
}

void drawFolder(QPainter& p, const QColor& tint) {
    QPainterPath back;
    back.moveTo(2.5, 18);
    back.lineTo(2.5, 6);
    back.quadTo(2.5, 4, 4.5, 4);
    back.lineTo(8.8, 4);
    back.quadTo(9.8, 4, 10.5, 4.7);
    back.lineTo(11.8, 6);
    back.lineTo(19.5, 6);
    back.quadTo(21.5, 6, 21.5, 8);
    back.lineTo(21.5, 18);
    back.quadTo(21.5, 20, 19.5, 20);
    back.lineTo(4.5, 20);
    back.quadTo(2.5, 20, 2.5, 18);
    p.fillPath(back, tint.darker(150));
    QPainterPath front;
    front.addRoundedRect(QRectF(2.5, 8.5, 19, 11.5), 2, 2);
    QLinearGradient shade(0, 8.5, 0, 20);
    shade.setColorAt(0, tint.lighter(112));
    shade.setColorAt(1, tint);
    p.fillPath(front, shade);
    QColor rim = Qt::white;
    rim.setAlphaF(0.28f);
    p.setPen(QPen(rim, 0.6));
    p.drawLine(QPointF(4, 9), QPointF(20, 9));
}

struct Symbol {
    const char* name;
    Draw draw;
};

const Symbol symbols[] = {
    {"minus", minus},
    {"square", square},
    {"xmark", xmark},
    {"plus", plus},
    {"chevron.left", chevronLeft},
    {"chevron.right", chevronRight},
    {"chevron.down", chevronDown},
    {"arrow.left", arrowLeft},
    {"arrow.right", arrowRight},
    {"arrow.up", arrowUp},
    {"arrow.clockwise", arrowClockwise},
    {"xmark.circle.fill", xmarkCircleFill},
    {"slider.horizontal.3", sliderHorizontal3},
    {"plus.circle", plusCircle},
    {"scissors", scissors},
    {"square.on.square", squareOnSquare},
    {"doc.on.clipboard", docOnClipboard},
    {"character.cursor.ibeam", characterCursorIbeam},
    {"trash", trash},
    {"trash.full", trashFull},
    {"arrow.up.arrow.down", arrowUpArrowDown},
    {"list.bullet", listBullet},
    {"square.grid.2x2", squareGrid2x2},
    {"ellipsis", ellipsis},
    {"gearshape", gearshape},
    {"sidebar.right", sidebarRight},
    {"pin", pin},
    {"arrow.up.doc", arrowUpDoc},
    {"arrow.down.doc", arrowDownDoc},
    {"internaldrive", internaldrive},
    {"doc.on.doc", docOnDoc},
    {"magnifyingglass", magnifyingglass},
    {"doc", doc},
    {"doc.text", docText},
    {"photo", photo},
    {"music.note", musicNote},
    {"film", film},
    {"archivebox", archivebox},
    {"exclamationmark.triangle", exclamationTriangle},
    {"house", house},
    {"desktopcomputer", desktopcomputer},
    {"arrow.down.circle", arrowDownCircle},
    {"externaldrive", externaldrive},
    {"network", network},
    {"iphone", iphone},
    {"pin.fill", pinFill},
};

Draw findSymbol(const QString& name) {
    for (const Symbol& s : symbols)
        if (name == QLatin1String(s.name)) return s.draw;
    return nullptr;
}

// Lines are 1.5 pixels up to 20 pixels and grow in proportion beyond, so large icons keep their weight.
qreal strokeWidth(qreal logicalSize) {
    return 1.5 * qMax<qreal>(1.0, logicalSize / 20.0);
}

constexpr qreal disabledOpacity = 0.35;

// Draws one symbol, or the folder when `draw` is null, into `target` in logical pixels.
void render(QPainter& p, const QRectF& target, Draw draw, const QColor& color, QIcon::Mode mode) {
    const qreal side = qMin(target.width(), target.height());
    p.save();
    p.setRenderHint(QPainter::Antialiasing);
    p.translate(target.center() - QPointF(side / 2, side / 2));
    p.scale(side / 24.0, side / 24.0);
    if (mode == QIcon::Disabled) p.setOpacity(p.opacity() * disabledOpacity);
    if (draw) {
        p.setPen(QPen(color, strokeWidth(side) * 24.0 / side, Qt::SolidLine, Qt::RoundCap, Qt::RoundJoin));
        p.setBrush(Qt::NoBrush);
        draw(p);
    } else {
        drawFolder(p, color);
    }
    p.restore();
}

// Paints from pixmaps made once per size, pixel ratio and mode, so that a view painting
// thousands of rows allocates nothing after the first.
class SymbolEngine : public QIconEngine {
public:
    SymbolEngine(const QString& name, Draw draw, const QColor& color)
        : name(name), draw(draw), color(color) {}

    void paint(QPainter* painter, const QRect& rect, QIcon::Mode mode, QIcon::State) override {
        const qreal ratio = painter->device() ? painter->device()->devicePixelRatioF() : 1.0;
        painter->drawPixmap(rect, cached(rect.size(), ratio, mode));
    }
    QPixmap pixmap(const QSize& size, QIcon::Mode mode, QIcon::State) override {
        return cached(size, 1.0, mode);
    }
    QPixmap scaledPixmap(const QSize& size, QIcon::Mode mode, QIcon::State, qreal scale) override {
        return cached(size / qMax<qreal>(scale, 1.0), scale, mode);
    }
    QSize actualSize(const QSize& size, QIcon::Mode, QIcon::State) override { return size; }
    QList<QSize> availableSizes(QIcon::Mode, QIcon::State) override {
        return {QSize(16, 16), QSize(20, 20), QSize(24, 24), QSize(32, 32)};
    }
    QString iconName() override { return name; }
    QString key() const override { return QStringLiteral("orvane.symbol"); }
    QIconEngine* clone() const override { return new SymbolEngine(name, draw, color); }

private:
    struct Cached {
        QSize size;
        qreal ratio;
        QIcon::Mode mode;
        QPixmap pixmap;
    };

    QPixmap cached(const QSize& size, qreal ratio, QIcon::Mode mode) {
        if (mode != QIcon::Disabled) mode = QIcon::Normal;
        for (const Cached& c : pixmaps)
            if (c.size == size && c.ratio == ratio && c.mode == mode) return c.pixmap;
        QImage image(size * ratio, QImage::Format_ARGB32_Premultiplied);
        image.fill(Qt::transparent);
        {
            QPainter p(&image);
            p.scale(ratio, ratio);
            render(p, QRectF(QPointF(0, 0), QSizeF(size)), draw, color, mode);
        }
        QPixmap pixmap = QPixmap::fromImage(std::move(image));
        pixmap.setDevicePixelRatio(ratio);
        pixmaps.push_back({size, ratio, mode, pixmap});
        return pixmap;
    }

    QString name;
    Draw draw;
    QColor color;
    std::vector<Cached> pixmaps;
};

} // namespace

QColor symbolFolderColor() {
    return QColor(122, 134, 236);
}

QIcon tintedFolderIcon(const QColor& tint) {
    return QIcon(new SymbolEngine(QStringLiteral("folder"), nullptr, tint));
}

QIcon symbolIcon(const QString& symbolName, const QColor& color) {
    if (symbolName == QLatin1String("folder")) return tintedFolderIcon(symbolFolderColor());
    const Draw draw = findSymbol(symbolName);
    if (!draw) return {};
    return QIcon(new SymbolEngine(symbolName, draw, color));
}

QStringList symbolNames() {
    QStringList names;
    for (const Symbol& s : symbols)
        names << QLatin1String(s.name);
    names << QStringLiteral("folder");
    return names;
}

} // namespace orvane
