#include "chrome/ExplorerTabView.h"

#include "core/ShortcutRows.h"
#include <QContextMenuEvent>

#include "chrome/TabStripLayout.h"
#include "kit/Palette.h"
#include "kit/Symbols.h"

#include <QMouseEvent>
#include <QPainter>
#include <QPainterPath>
#include <QToolButton>

namespace orvane {

namespace {

// The active tab stands on two small concave feet that flow into the row below.
constexpr qreal foot = 6;
constexpr qreal radius = 10;
constexpr int iconSize = 16;
constexpr int closeSize = 26;
// Below this width a plain tab gives its close button's room to the title until the pointer comes.
constexpr int roomyWidth = 150;

// The navigation row lays a faint white over the canvas; the active tab wears the same colour.
QColor rowBelowColor() {
    const QColor canvas = Palette::canvas();
    const qreal veil = 6.0 / 255.0;
    auto mix = [veil](qreal c) { return float(c + (1.0 - c) * veil); };
    return QColor::fromRgbF(mix(canvas.redF()), mix(canvas.greenF()), mix(canvas.blueF()));
}

QPainterPath activeShape(qreal w, qreal h, bool closed) {
    QPainterPath path(QPointF(0, h));
    path.arcTo(QRectF(-foot, h - 2 * foot, 2 * foot, 2 * foot), 270, 90);
    path.lineTo(foot, radius);
    path.arcTo(QRectF(foot, 0, 2 * radius, 2 * radius), 180, -90);
    path.lineTo(w - foot - radius, 0);
    path.arcTo(QRectF(w - foot - 2 * radius, 0, 2 * radius, 2 * radius), 90, -90);
    path.lineTo(w - foot, h - foot);
    path.arcTo(QRectF(w - foot, h - 2 * foot, 2 * foot, 2 * foot), 180, 90);
    if (closed) path.closeSubpath();
    return path;
}

QFont tabFont(const QFont& base) {
    QFont font = base;
    font.setPixelSize(13);
    return font;
}

} // namespace

ExplorerTabView::ExplorerTabView(const QUuid& tabID, QWidget* parent)
    : QWidget(parent), id(tabID), closer(new QToolButton(this)),
      closeIcon(symbolIcon(QStringLiteral("xmark"), Palette::fromWhite(0.94, 0.65))),
      closeIconHovered(symbolIcon(QStringLiteral("xmark"))) {
    setObjectName(QStringLiteral("explorerTab"));
    setFixedHeight(TabStripLayout::tabHeight);
    setFocusPolicy(Qt::NoFocus);
    setFont(tabFont(font()));
    closer->setObjectName(QStringLiteral("tabCloseButton"));
    closer->setFocusPolicy(Qt::NoFocus);
    closer->setAutoRaise(true);
    closer->setFixedSize(closeSize, closeSize);
    closer->setIconSize(QSize(12, 12));
    closer->setIcon(closeIcon);
    closer->setToolTip(
        toolTipWithKey(QStringLiteral("Close tab"), QStringLiteral("closeTab"), PhysicalKey::W));
    closer->setStyleSheet(QStringLiteral("QToolButton { padding: 0; margin: 3px; border-radius: 10px; }"
                                         "QToolButton:hover { background: rgba(255, 255, 255, 30); }"
                                         "QToolButton:pressed { background: rgba(255, 255, 255, 45); }"));
    connect(closer, &QToolButton::clicked, this, [this] { emit closeRequested(id); });
}

void ExplorerTabView::updateTab(bool isActive, const QString& name, const QString& path, const QIcon& icon) {
    active = isActive;
    title = name;
    folderIcon = icon;
    setToolTip(path);
    setAccessibleName(name);
    closer->setAccessibleName(QStringLiteral("Close ") + name);
    updateCloseButton();
    update();
}

void ExplorerTabView::updateCloseButton() {
    closer->setVisible(active || hovered || width() >= roomyWidth);
}

void ExplorerTabView::setSeparatorVisible(bool visible) {
    if (separator == visible) return;
    separator = visible;
    update();
}

QRect ExplorerTabView::titleRect() const {
    const int left = int(foot) + 10 + iconSize + 8;
    const int right = closer->isVisibleTo(this) ? closer->x() - 2 : width() - int(foot) - 8;
    return QRect(left, 0, qMax(0, right - left), height());
}

void ExplorerTabView::paintBackground(QPainter& painter) const {
    const qreal w = width(), h = height();
    if (active) {
        painter.fillPath(activeShape(w, h, true), rowBelowColor());
        painter.setPen(QPen(Palette::fromWhite(1.0, 0.07), 1));
        painter.drawPath(activeShape(w, h, false).translated(0, 0.5));
    } else if (hovered) {
        painter.setPen(Qt::NoPen);
        painter.setBrush(Palette::fromWhite(1.0, 0.07));
        painter.drawRoundedRect(QRectF(foot, 4, w - 2 * foot, h - 8), 8, 8);
    }
    if (separator) {
        painter.setPen(QPen(Palette::fromWhite(1.0, 0.13), 1));
        painter.drawLine(QPointF(w - 0.5, 12), QPointF(w - 0.5, h - 12));
    }
}

void ExplorerTabView::paintEvent(QPaintEvent*) {
    QPainter painter(this);
    painter.setRenderHint(QPainter::Antialiasing);
    paintBackground(painter);
    const QRect iconRect(int(foot) + 10, (height() - iconSize) / 2, iconSize, iconSize);
    folderIcon.paint(&painter, iconRect);
    const QRect text = titleRect();
    painter.setPen(active || hovered ? Palette::ink() : Palette::muted());
    painter.drawText(text, Qt::AlignLeft | Qt::AlignVCenter,
                     fontMetrics().elidedText(title, Qt::ElideRight, text.width()));
}

void ExplorerTabView::mousePressEvent(QMouseEvent* event) {
    if (event->button() == Qt::LeftButton) {
        dragStart = event->position().toPoint();
        emit activateRequested(id);
        event->accept();
    } else if (event->button() == Qt::MiddleButton) {
        event->accept();
    } else {
        QWidget::mousePressEvent(event);
    }
}

void ExplorerTabView::mouseMoveEvent(QMouseEvent* event) {
    if (!dragStart || !(event->buttons() & Qt::LeftButton)) return QWidget::mouseMoveEvent(event);
    if ((event->position().toPoint() - *dragStart).manhattanLength() < 5) return;
    dragStart.reset();
    emit dragRequested(id);
}

void ExplorerTabView::contextMenuEvent(QContextMenuEvent* event) {
    emit contextMenuRequested(id, event->globalPos());
}

// A middle click closes only when it is let go over the tab, so a slip aside cancels it.
void ExplorerTabView::mouseReleaseEvent(QMouseEvent* event) {
    dragStart.reset();
    if (event->button() == Qt::MiddleButton && rect().contains(event->position().toPoint())) {
        event->accept();
        emit closeRequested(id);
        return;
    }
    QWidget::mouseReleaseEvent(event);
}

// A double click on a tab is two clicks on it, never a zoom of the window behind.
void ExplorerTabView::mouseDoubleClickEvent(QMouseEvent* event) {
    event->accept();
}

void ExplorerTabView::enterEvent(QEnterEvent*) {
    setHovering(true);
}

void ExplorerTabView::leaveEvent(QEvent*) {
    setHovering(false);
}

void ExplorerTabView::refreshHover(const QPoint& globalPointer, bool pointerInStrip) {
    setHovering(pointerInStrip && isVisible() && rect().contains(mapFromGlobal(globalPointer)));
}

void ExplorerTabView::setHovering(bool on) {
    if (hovered == on) return;
    hovered = on;
    closer->setIcon(on ? closeIconHovered : closeIcon);
    updateCloseButton();
    update();
    emit hoverChanged();
}

void ExplorerTabView::resizeEvent(QResizeEvent*) {
    closer->move(width() - int(foot) - 4 - closeSize, (height() - closeSize) / 2);
    updateCloseButton();
}

} // namespace orvane
