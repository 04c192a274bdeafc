#pragma once

#include "core/Entry.h"
#include "views/IconGrid.h"

#include <QBrush>
#include <QFont>
#include <QHash>
#include <QPen>
#include <QPixmap>
#include <QStaticText>
#include <functional>

class QPainter;

namespace orvane {

// Draws one cell of the icon canvas: its selection, hover and focus marks, the icon, and the texts
// of the mode. Icons and laid-out texts are kept for the items on show, so a repaint without
// scrolling costs only the drawing; neither store ever grows past `cacheLimit` items.
class ExplorerIconPainter {
public:
    static constexpr int cacheLimit = 1024;
    static constexpr qreal dimmedOpacity = 0.45;

    struct CellState {
        bool selected = false;
        bool hovered = false;
        bool focusRing = false;
        bool dropTarget = false;
        bool dimmed = false; // cut, and not yet pasted
    };

    ExplorerIconPainter();

    void drawCell(QPainter& painter, const Entry& entry, const QRectF& frame, const IconGridLayout& layout,
                  const CellState& state);
    // The image drawn for an entry at a side, for drag cues too.
    QPixmap icon(const Entry& entry, int side, qreal ratio);
    // Drops laid-out texts (a new mode, width or listing) and, with `icons`, the icons too.
    void forget(bool icons);
    // An item changed, or its thumbnail arrived.
    void forgetEntry(const QString& location);

    int cachedIcons() const { return int(iconCache.size()); }

    // Thumbnails and folder colours come from the media and folder-colour parts when they are there;
    // until then the type icon stands in. A null image means "none".
    std::function<QImage(const Entry&)> thumbnail;
    // True while an entry's thumbnail is being made: its stand-in is drawn but not kept, so each
    // repaint asks again and the items on show move ahead of those scrolled past.
    std::function<bool(const Entry&)> thumbnailPending;
    std::function<QImage(const Entry&)> remoteThumbnail;
    std::function<QIcon(const Entry&)> folderIcon;

private:
    struct CellText {
        QStaticText lines[4];
        double width = 0;
    };

    void drawMarks(QPainter& painter, const QRectF& frame, const CellState& state);
    const QPixmap& markPixmap(bool selected, const QSizeF& size, qreal ratio);
    void drawTexts(QPainter& painter, const Entry& entry, const QRectF& frame, const QRectF& iconRect,
                   const IconGridLayout& layout);
    const CellText& texts(const Entry& entry, const QRectF& frame, const QRectF& iconRect,
                          const IconGridLayout& layout);
    QPixmap fittedImage(const QImage& image, int side, qreal ratio) const;
    QPixmap iconPixmap(const QIcon& icon, int side, qreal ratio);
    QPixmap freshIcon(const Entry& entry, int side, qreal ratio, bool& keep);

    QFont nameFont;
    QFont titleFont;
    QFont detailFont;
    QPen namePen;
    QPen detailPen;
    QBrush selectedFill;
    QBrush hoverFill;
    QPen ringPen;
    QBrush dropFill;
    QPen dropPen;
    double nameLineHeight;
    QPixmap selectedMark;
    QPixmap hoverMark;

    QHash<QString, QPixmap> iconCache;  // by location
    QHash<qint64, QPixmap> typePixmaps; // rendered type icons, by icon key
    int pixmapSide = 0;
    qreal pixmapRatio = 0;
    QHash<QString, CellText> textCache; // by location
};

} // namespace orvane
