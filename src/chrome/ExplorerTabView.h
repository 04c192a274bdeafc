#pragma once

#include <QIcon>
#include <QUuid>
#include <QWidget>
#include <optional>

class QToolButton;

namespace orvane {

// One tab of the strip: the folder's icon and name and a close button. The active tab is drawn in the
// colour of the row below and joins it, as browsers draw theirs; the others stay transparent and
// light up under the pointer. A click activates, a middle click or the close button closes.
class ExplorerTabView : public QWidget {
    Q_OBJECT
public:
    explicit ExplorerTabView(const QUuid& tabID, QWidget* parent = nullptr);

    QUuid tabID() const { return id; }
    bool activeTab() const { return active; }
    bool hovering() const { return hovered; }
    QString name() const { return title; }
    QToolButton* closeButton() const { return closer; }

    void updateTab(bool active, const QString& name, const QString& path, const QIcon& icon);
    // The hairline at the right edge that parts two plain tabs; hidden beside a lit tab.
    void setSeparatorVisible(bool visible);
    // Hover as the pointer stands now, for when the tab moved under a still pointer.
    void refreshHover(const QPoint& globalPointer, bool pointerInStrip);

signals:
    void activateRequested(const QUuid& tabID);
    void closeRequested(const QUuid& tabID);
    void hoverChanged();
    // The pointer moved far enough from a press on the tab to drag it.
    void dragRequested(const QUuid& tabID);
    void contextMenuRequested(const QUuid& tabID, const QPoint& globalPos);

protected:
    void paintEvent(QPaintEvent* event) override;
    void mousePressEvent(QMouseEvent* event) override;
    void mouseReleaseEvent(QMouseEvent* event) override;
    void mouseMoveEvent(QMouseEvent* event) override;
    void contextMenuEvent(QContextMenuEvent* event) override;
    void mouseDoubleClickEvent(QMouseEvent* event) override;
    void enterEvent(QEnterEvent* event) override;
    void leaveEvent(QEvent* event) override;
    void resizeEvent(QResizeEvent* event) override;

private:
    void setHovering(bool on);
    void updateCloseButton();
    QRect titleRect() const;
    void paintBackground(QPainter& painter) const;

    QUuid id;
    std::optional<QPoint> dragStart;
    bool active = false;
    bool hovered = false;
    bool separator = false;
    QString title;
    QIcon folderIcon;
    QToolButton* closer;
    QIcon closeIcon;
    QIcon closeIconHovered;
};

} // namespace orvane
