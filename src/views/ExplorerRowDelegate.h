#pragma once

#include <QFont>
#include <QHash>
#include <QPen>
#include <QPixmap>
#include <QStyledItemDelegate>
#include <functional>

namespace orvane {

// Draws the cells of the details table: an 18 point image, one line of text cut at the tail, an
// optional slot for a play button. The row behind the cells (hover, selection, keyboard ring) is
// drawn once per row by paintRow, so its rounded shape spans all columns.
//
// Painting allocates nothing of its own: pens, brushes and the font are made once.
class ExplorerRowDelegate : public QStyledItemDelegate {
    Q_OBJECT
public:
    struct RowState {
        bool selected = false;
        bool emphasised = true; // the list has the keyboard focus in the active window
        bool hovering = false;
        bool hoverEnabled = true;
        bool keyboardFocused = false;
        bool glassBackground = false;
    };

    static constexpr int imageSize = 18;
    static constexpr int imageLeft = 7;
    static constexpr int textAfterImage = 8;
    static constexpr int textLeftWithoutImage = 8;
    static constexpr int textRight = 10;
    static constexpr int accessorySize = 26;
    static constexpr int accessoryRight = 12;
    static constexpr qreal dimmedOpacity = 0.45;

    explicit ExplorerRowDelegate(QObject* parent = nullptr);

    // The row's shape and its hover, selection and keyboard-focus marks.
    static void paintRow(QPainter* painter, const QRect& rowRect, const RowState& state);
    // Where a 26 by 26 accessory (the play button) sits in a cell.
    static QRect accessoryRect(const QRect& cellRect);
    // Where the text of a cell goes, given whether it has an image and an accessory.
    static QRect textRect(const QRect& cellRect, bool hasImage, bool hasAccessory);

    void paint(QPainter* painter, const QStyleOptionViewItem& option,
               const QModelIndex& index) const override;
    QSize sizeHint(const QStyleOptionViewItem& option, const QModelIndex& index) const override;

    // Rows drawn at reduced opacity (cut items).
    std::function<bool(int row)> isDimmedRow;
    // Cells that keep the accessory slot free; the text then ends before it.
    std::function<bool(const QModelIndex& index)> hasAccessory;
    // The column whose text is drawn in ink; the others are muted.
    int primaryColumn = 0;

private:
    void drawText(QPainter* painter, const QRect& rect, const QString& text, Qt::Alignment alignment) const;
    QPixmap iconPixmap(const QIcon& icon, qreal ratio) const;

    QFont font;
    mutable QHash<qint64, QPixmap> pixmaps;
    mutable qreal pixmapRatio = 0;
    QPen inkPen;
    QPen mutedPen;
};

} // namespace orvane
