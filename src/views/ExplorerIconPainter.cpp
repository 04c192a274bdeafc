#include "views/ExplorerIconPainter.h"

#include "core/EntryText.h"
#include "kit/ExplorerCorners.h"
#include "kit/ExplorerFont.h"
#include "kit/Palette.h"
#include "views/FileIcons.h"

#include <QCoreApplication>
#include <QFontMetricsF>
#include <QPainter>
#include <QTextLayout>

namespace orvane {

namespace {
constexpr qreal itemRadius = ExplorerCorners::item;

QFont fontOfSize(int pixels) {
    QFont font = explorerFont();
    font.setPixelSize(pixels);
    return font;
}

QStaticText staticText(const QString& text) {
    QStaticText prepared(text);
    prepared.setTextFormat(Qt::PlainText);
    return prepared;
}

// A name over at most two lines of `width`, broken at a word where it can be and cut at the tail of
// the second.
std::pair<QString, QString> twoLines(const QString& name, const QFont& font, double width) {
    const QFontMetricsF metrics(font);
    if (metrics.horizontalAdvance(name) <= width) return {name, QString()};
    QTextLayout layout(name, font);
    QTextOption option;
    option.setWrapMode(QTextOption::WrapAtWordBoundaryOrAnywhere);
    layout.setTextOption(option);
    layout.beginLayout();
    QTextLine line = layout.createLine();
    line.setLineWidth(width);
    layout.endLayout();
    const int taken = std::max(1, line.textLength());
    const QString rest = name.mid(taken);
    return {name.left(taken).trimmed(), metrics.elidedText(rest, Qt::ElideRight, width)};
}

QString oneLine(const QString& text, const QFont& font, double width) {
    return QFontMetricsF(font).elidedText(text, Qt::ElideRight, width);
}

// The third line of a tile or a content row.
QString detailLine(const Entry& entry, int mode) {
    const QString size = entry.directory ? QString() : byteCountText(entry.size);
    if (mode == 7) return size;
    QStringList parts;
    if (!size.isEmpty()) parts << size;
    if (entry.modified.isValid())
        parts << QCoreApplication::translate("ExplorerIconPainter", "Modified ") + dateText(entry.modified);
    return parts.join(QStringLiteral("  ·  "));
}
} // namespace

ExplorerIconPainter::ExplorerIconPainter()
    : nameFont(fontOfSize(12)), titleFont(fontOfSize(13)), detailFont(fontOfSize(11)),
      namePen(Palette::fromWhite(1, 0.9)), detailPen(Palette::fromWhite(1, 0.67)),
      selectedFill(Palette::fromWhite(1, 0.23)), hoverFill(QColor(255, 255, 255, 15)),
      ringPen(QBrush(Palette::fromWhite(1, 0.5)), 1, Qt::CustomDashLine),
      dropFill(QColor::fromRgbF(Palette::accent().redF(), Palette::accent().greenF(),
                                Palette::accent().blueF(), 0.22f)),
      dropPen(QBrush(Palette::accent()), 2), nameLineHeight(QFontMetricsF(nameFont).lineSpacing()) {
    ringPen.setDashPattern({2, 2});
}

void ExplorerIconPainter::forget(bool icons) {
    textCache.clear();
    if (!icons) return;
    iconCache.clear();
    typePixmaps.clear();
}

void ExplorerIconPainter::forgetEntry(const QString& location) {
    textCache.remove(location);
    iconCache.remove(location);
}

void ExplorerIconPainter::drawCell(QPainter& painter, const Entry& entry, const QRectF& frame,
                                   const IconGridLayout& layout, const CellState& state) {
    const qreal opacity = painter.opacity();
    if (state.dimmed) painter.setOpacity(opacity * dimmedOpacity);
    drawMarks(painter, frame, state);
    const QRectF square = layout.iconRect(frame);
    const qreal ratio = painter.device()->devicePixelRatioF();
    const QPixmap image = icon(entry, int(square.width()), ratio);
    if (!image.isNull()) {
        QSizeF size = image.deviceIndependentSize();
        const bool exact = size == square.size();
        if (!exact) size.scale(square.size(), Qt::KeepAspectRatio);
        const QPointF origin(std::round(square.center().x() - size.width() / 2),
                             std::round(square.center().y() - size.height() / 2));
        // Most icons are made at the square's size and need no scaling on the way.
        if (exact)
            painter.drawPixmap(origin, image);
        else
            painter.drawPixmap(QRectF(origin, size), image, QRectF(QPointF(), QSizeF(image.size())));
    }
    drawTexts(painter, entry, frame, square, layout);
    painter.setOpacity(opacity);
}

void ExplorerIconPainter::drawMarks(QPainter& painter, const QRectF& frame, const CellState& state) {
    if (!state.selected && !state.hovered && !state.focusRing && !state.dropTarget) return;
    if (state.selected || state.hovered) {
        // A rounded fill costs more than the rest of a cell; it is drawn once per cell size and copied.
        const QPixmap& fill = markPixmap(state.selected, frame.size(), painter.device()->devicePixelRatioF());
        painter.drawPixmap(QPointF(std::round(frame.left()), std::round(frame.top())), fill);
    }
    if (!state.focusRing && !state.dropTarget) return;
    painter.setRenderHint(QPainter::Antialiasing, true);
    painter.setBrush(Qt::NoBrush);
    if (state.focusRing) {
        painter.setPen(ringPen);
        painter.drawRoundedRect(frame.adjusted(0.5, 0.5, -0.5, -0.5), itemRadius, itemRadius);
    }
    if (state.dropTarget) {
        const QRectF inner = frame.adjusted(1, 1, -1, -1);
        painter.setPen(Qt::NoPen);
        painter.setBrush(dropFill);
        painter.drawRoundedRect(inner, itemRadius, itemRadius);
        painter.setPen(dropPen);
        painter.setBrush(Qt::NoBrush);
        painter.drawRoundedRect(inner, itemRadius, itemRadius);
    }
    painter.setRenderHint(QPainter::Antialiasing, false);
}

const QPixmap& ExplorerIconPainter::markPixmap(bool selected, const QSizeF& size, qreal ratio) {
    const QSize whole(int(std::round(size.width())), int(std::round(size.height())));
    QPixmap& mark = selected ? selectedMark : hoverMark;
    if (mark.deviceIndependentSize().toSize() == whole && mark.devicePixelRatio() == ratio) return mark;
    mark = QPixmap(whole * ratio);
    mark.setDevicePixelRatio(ratio);
    mark.fill(Qt::transparent);
    QPainter painter(&mark);
    painter.setRenderHint(QPainter::Antialiasing, true);
    painter.setPen(Qt::NoPen);
    painter.setBrush(selected ? selectedFill : hoverFill);
    painter.drawRoundedRect(QRectF(QPointF(), QSizeF(whole)), itemRadius, itemRadius);
    return mark;
}

const ExplorerIconPainter::CellText& ExplorerIconPainter::texts(const Entry& entry, const QRectF& frame,
                                                                const QRectF& iconRect,
                                                                const IconGridLayout& layout) {
    const auto found = textCache.constFind(entry.location);
    if (found != textCache.constEnd() && found->width == frame.width()) return *found;
    if (textCache.size() >= cacheLimit) textCache.clear();
    CellText made;
    made.width = frame.width();
    const QString name = entry.name();
    if (IconGrid::iconAbove(layout.mode)) {
        const auto [first, second] = twoLines(name, nameFont, std::max(1.0, frame.width() - 12));
        made.lines[0] = staticText(first);
        made.lines[1] = staticText(second);
    } else {
        const double width = std::max(1.0, frame.right() - (iconRect.right() + 9) - 8);
        const bool tiles = layout.mode == 7 || layout.mode == 8;
        made.lines[0] = staticText(oneLine(name, tiles ? titleFont : nameFont, width));
        if (tiles) {
            made.lines[1] = staticText(oneLine(entry.kind, detailFont, width));
            made.lines[2] = staticText(oneLine(detailLine(entry, layout.mode), detailFont, width));
        }
    }
    return *textCache.insert(entry.location, made);
}

void ExplorerIconPainter::drawTexts(QPainter& painter, const Entry& entry, const QRectF& frame,
                                    const QRectF& iconRect, const IconGridLayout& layout) {
    const CellText& cell = texts(entry, frame, iconRect, layout);
    // Each line stands centred in the height of its own band.
    const auto line = [&](const QStaticText& text, const QFont& font, const QPen& pen, double x, double top,
                          double height) {
        if (text.text().isEmpty()) return;
        if (painter.font() != font) painter.setFont(font);
        painter.setPen(pen);
        painter.drawStaticText(QPointF(x, top + (height - text.size().height()) / 2), text);
    };
    if (IconGrid::iconAbove(layout.mode)) {
        const double top = iconRect.bottom() + 1;
        const double middle = frame.center().x();
        const double lineHeight = nameLineHeight;
        for (int i = 0; i < 2; ++i)
            line(cell.lines[i], nameFont, namePen, middle - cell.lines[i].size().width() / 2,
                 top + i * lineHeight, lineHeight);
        return;
    }
    const double left = iconRect.right() + 9;
    if (layout.mode == 7 || layout.mode == 8) {
        line(cell.lines[0], titleFont, namePen, left, frame.top() + 10, 19);
        line(cell.lines[1], detailFont, detailPen, left, frame.top() + 31, 17);
        line(cell.lines[2], detailFont, detailPen, left, frame.top() + 50, 17);
        return;
    }
    line(cell.lines[0], nameFont, namePen, left, frame.center().y() - 8, 18);
}

QPixmap ExplorerIconPainter::fittedImage(const QImage& image, int side, qreal ratio) const {
    QPixmap pixmap = QPixmap::fromImage(
        image.scaled(QSize(side, side) * ratio, Qt::KeepAspectRatio, Qt::SmoothTransformation));
    pixmap.setDevicePixelRatio(ratio);
    return pixmap;
}

QPixmap ExplorerIconPainter::iconPixmap(const QIcon& icon, int side, qreal ratio) {
    const auto found = typePixmaps.constFind(icon.cacheKey());
    if (found != typePixmaps.constEnd()) return *found;
    if (typePixmaps.size() >= cacheLimit) typePixmaps.clear();
    return *typePixmaps.insert(icon.cacheKey(), icon.pixmap(QSize(side, side), ratio));
}

QPixmap ExplorerIconPainter::icon(const Entry& entry, int side, qreal ratio) {
    if (side != pixmapSide || ratio != pixmapRatio) {
        iconCache.clear();
        typePixmaps.clear();
        pixmapSide = side;
        pixmapRatio = ratio;
    }
    if (entry.directory && (entry.isPhone() || !entry.package))
        return iconPixmap(folderIcon ? folderIcon(entry) : FileIcons::shared().folder(), side, ratio);
    const auto cached = iconCache.constFind(entry.location);
    if (cached != iconCache.constEnd()) return *cached;
    // Emptied in one go rather than aged item by item: the icons on show come back at once.
    if (iconCache.size() >= cacheLimit) iconCache.clear();
    bool keep = true;
    QPixmap pixmap = freshIcon(entry, side, ratio, keep);
    if (keep) iconCache.insert(entry.location, pixmap);
    return pixmap;
}

QPixmap ExplorerIconPainter::freshIcon(const Entry& entry, int side, qreal ratio, bool& keep) {
    // A phone item is drawn from what the listing said of it; its file is never opened here.
    const auto& source = entry.isPhone() ? remoteThumbnail : thumbnail;
    if (source) {
        const QImage image = source(entry);
        if (!image.isNull()) return fittedImage(image, side, ratio);
        keep = entry.isPhone() || !thumbnailPending || !thumbnailPending(entry);
    }
    return iconPixmap(FileIcons::shared().icon(entry), side, ratio);
}

} // namespace orvane
