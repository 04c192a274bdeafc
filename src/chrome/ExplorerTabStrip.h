#pragma once

#include "chrome/TabStripLayout.h"
#include "core/TabState.h"

#include <QHash>
#include <QIcon>
#include <QList>
#include <QUuid>
#include <QWidget>
#include <functional>

class QDropEvent;
class QMimeData;
class QTimer;
class QToolButton;
class QVariantAnimation;

namespace orvane {

class ExplorerTabView;

// The window's tabs in its title row. Tabs share the row's free width between the maximum and the
// minimum tab width; past that they scroll inside a viewport with two overflow buttons, so the
// window never grows for its tabs. The plus button follows the last visible tab.
class ExplorerTabStrip : public QWidget {
    Q_OBJECT
public:
    // What the plus button takes beside the tabs, its margins included.
    static constexpr int plusSlot = 36;

    explicit ExplorerTabStrip(QWidget* parent = nullptr);

    // Views are kept by tab id, so a tab that stays keeps its view and its hover state.
    void setTabs(const QList<TabState>& tabs, int active);
    // Lays the tabs out for the strip's width and scrolls the active one into view.
    void revealActiveTab();
    void updateTabScrollButtons();
    void scrollTabs(int direction);
    void scrollTabsLeft() { scrollTabs(-1); }
    void scrollTabsRight() { scrollTabs(+1); }

    QList<ExplorerTabView*> orderedTabViews() const;
    const TabStripLayout& tabLayout() const { return layoutNow; }
    // The left edge of the visible part of the document, in document coordinates.
    qreal scrollOrigin() const { return origin; }
    QWidget* viewport() const { return clip; }
    QToolButton* tabBackButton() const { return backButton; }
    QToolButton* tabForwardButton() const { return forwardButton; }
    QToolButton* newTabButton() const { return plusButton; }

    // The tab under a point of the strip, or none.
    QUuid tabAt(const QPoint& pos) const;
    // Where a tab dropped at this point of the strip goes: the number of tabs whose middle is left of it.
    int insertionAt(const QPoint& pos) const;

    // Files dragged over a tab: what a drop into its folder would do (IgnoreAction refuses), the
    // drop, and the drag leaving. A drag that rests on a tab opens it.
    std::function<Qt::DropAction(const QDropEvent& event, const QUuid& tabID)> fileDropOperation;
    std::function<bool(QDropEvent& event, const QUuid& tabID)> performFileDrop;
    std::function<void()> fileDropExit;
    // Whether the window takes a dragged tab now.
    std::function<bool()> takesTabs;

    static QString tabMimeType() { return QStringLiteral("local.tevrin.quilland.tab"); }

    QSize sizeHint() const override;
    QSize minimumSizeHint() const override;

signals:
    void activateRequested(const QUuid& tabID);
    void closeRequested(const QUuid& tabID);
    void newTabRequested();
    void tabDragRequested(const QUuid& tabID);
    void tabMenuRequested(const QUuid& tabID, const QPoint& globalPos);
    // A dragged tab was let go over the strip at `insertion`.
    void tabDropped(const QMimeData* data, int insertion);

protected:
    void resizeEvent(QResizeEvent* event) override;
    void wheelEvent(QWheelEvent* event) override;
    void dragEnterEvent(QDragEnterEvent* event) override;
    void dragMoveEvent(QDragMoveEvent* event) override;
    void dragLeaveEvent(QDragLeaveEvent* event) override;
    void dropEvent(QDropEvent* event) override;

private:
    ExplorerTabView* makeTabView(const QUuid& id);
    void removeStaleViews(const QList<TabState>& tabs);
    void layoutTabs();
    void placeControls();
    void setOrigin(qreal value);
    void updateSeparators();
    void scheduleHoverRefresh();
    void refreshHover();
    bool animateTabs() const;
    Qt::DropAction dragOver(QDropEvent* event);
    void endDrag();

    QHash<QUuid, ExplorerTabView*> tabViews;
    QList<QUuid> order;
    QUuid activeID;
    TabStripLayout layoutNow;
    qreal origin = 0;
    bool hoverRefreshQueued = false;
    QWidget* clip;
    QWidget* tabBar;
    QWidget* overflowControls;
    QToolButton* backButton;
    QToolButton* forwardButton;
    QToolButton* plusButton;
    QVariantAnimation* scrollAnimation;
    QIcon folderIcon;
    QWidget* insertionMarker;
    QTimer* springTimer; // a file drag resting on a tab opens it
    QUuid springTab;
};

} // namespace orvane
