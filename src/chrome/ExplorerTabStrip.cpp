#include "chrome/ExplorerTabStrip.h"
#include "core/ShortcutRows.h"

#include "chrome/TabAccessibility.h"
#include "kit/AccessibleName.h"

#include "chrome/ExplorerTabView.h"
#include "core/Entry.h"
#include "kit/Symbols.h"

#include <QApplication>
#include <QCursor>
#include <QDropEvent>
#include <QMimeData>
#include <QSet>
#include <QStyle>
#include <QTimer>
#include <QToolButton>
#include <QVariantAnimation>
#include <QWheelEvent>

namespace orvane {

namespace {

constexpr int buttonHeight = 28;

QToolButton* stripButton(QWidget* parent, const char* symbol, const QString& tip, int width) {
    auto* button = new QToolButton(parent);
    button->setIcon(symbolIcon(QLatin1String(symbol)));
    button->setIconSize(QSize(14, 14));
    button->setAutoRaise(true);
    button->setFocusPolicy(Qt::NoFocus);
    button->setToolTip(tip);
    button->setFixedSize(width, buttonHeight);
    AccessibleName::name(button);
    return button;
}

QString tabPath(const QUrl& url) {
    return url.isLocalFile() ? url.toLocalFile() : url.toString();
}

} // namespace

ExplorerTabStrip::ExplorerTabStrip(QWidget* parent)
    : QWidget(parent), clip(new QWidget(this)), tabBar(new QWidget(clip)),
      overflowControls(new QWidget(this)),
      backButton(stripButton(overflowControls, "chevron.left", "Scroll tabs left", 24)),
      forwardButton(stripButton(overflowControls, "chevron.right", "Scroll tabs right", 24)),
      plusButton(stripButton(
          this, "plus", toolTipWithKey(QStringLiteral("New tab"), QStringLiteral("newTab"), PhysicalKey::T),
          buttonHeight)),
      scrollAnimation(new QVariantAnimation(this)), folderIcon(symbolIcon(QStringLiteral("folder"))),
      insertionMarker(new QWidget(this)), springTimer(new QTimer(this)) {
    setAcceptDrops(true);
    insertionMarker->setFixedSize(3, TabStripLayout::tabHeight - 10);
    insertionMarker->setAutoFillBackground(true);
    insertionMarker->setStyleSheet(QStringLiteral("background: palette(highlight);"));
    insertionMarker->hide();
    springTimer->setSingleShot(true);
    springTimer->setInterval(600);
    connect(springTimer, &QTimer::timeout, this, [this] {
        if (tabViews.contains(springTab) && springTab != activeID) emit activateRequested(springTab);
    });
    setObjectName(QStringLiteral("tabStrip"));
    clip->setObjectName(QStringLiteral("tabViewport"));
    tabBar->setObjectName(QStringLiteral("tabBar"));
    TabAccessibility::install();
    plusButton->setObjectName(QStringLiteral("newTabButton"));
    plusButton->setIconSize(QSize(16, 16));
    setStyleSheet(QStringLiteral("QToolButton { padding: 0; border-radius: 8px; }"));
    setSizePolicy(QSizePolicy::Expanding, QSizePolicy::Preferred);
    backButton->move(2, (TabStripLayout::tabHeight - buttonHeight) / 2);
    forwardButton->move(26, (TabStripLayout::tabHeight - buttonHeight) / 2);
    overflowControls->hide();
    scrollAnimation->setDuration(160);
    scrollAnimation->setEasingCurve(QEasingCurve::OutCubic);
    connect(scrollAnimation, &QVariantAnimation::valueChanged, this,
            [this](const QVariant& value) { setOrigin(value.toReal()); });
    connect(scrollAnimation, &QVariantAnimation::finished, this, [this] {
        updateTabScrollButtons();
        scheduleHoverRefresh();
    });
    connect(backButton, &QToolButton::clicked, this, &ExplorerTabStrip::scrollTabsLeft);
    connect(forwardButton, &QToolButton::clicked, this, &ExplorerTabStrip::scrollTabsRight);
    connect(plusButton, &QToolButton::clicked, this, &ExplorerTabStrip::newTabRequested);
    layoutTabs();
}

void ExplorerTabStrip::setTabs(const QList<TabState>& tabs, int active) {
    removeStaleViews(tabs);
    order.clear();
    for (int i = 0; i < tabs.size(); ++i) {
        const TabState& tab = tabs[i];
        ExplorerTabView* view = tabViews.value(tab.id);
        if (!view) view = makeTabView(tab.id);
        view->updateTab(i == active, folderName(tab.url), tabPath(tab.url), folderIcon);
        order.append(tab.id);
    }
    activeID = active >= 0 && active < tabs.size() ? tabs[active].id : QUuid();
    revealActiveTab();
}

ExplorerTabView* ExplorerTabStrip::makeTabView(const QUuid& id) {
    auto* view = new ExplorerTabView(id, tabBar);
    connect(view, &ExplorerTabView::activateRequested, this, &ExplorerTabStrip::activateRequested);
    connect(view, &ExplorerTabView::closeRequested, this, &ExplorerTabStrip::closeRequested);
    connect(view, &ExplorerTabView::hoverChanged, this, &ExplorerTabStrip::updateSeparators);
    connect(view, &ExplorerTabView::dragRequested, this, &ExplorerTabStrip::tabDragRequested);
    connect(view, &ExplorerTabView::contextMenuRequested, this, &ExplorerTabStrip::tabMenuRequested);
    view->show();
    tabViews.insert(id, view);
    return view;
}

// A closed tab's view may be the sender of the click that closed it, so it goes later.
void ExplorerTabStrip::removeStaleViews(const QList<TabState>& tabs) {
    QSet<QUuid> live;
    for (const TabState& tab : tabs)
        live.insert(tab.id);
    for (auto it = tabViews.begin(); it != tabViews.end();) {
        if (live.contains(it.key())) {
            ++it;
            continue;
        }
        it.value()->hide();
        it.value()->deleteLater();
        it = tabViews.erase(it);
    }
}

QList<ExplorerTabView*> ExplorerTabStrip::orderedTabViews() const {
    QList<ExplorerTabView*> views;
    for (const QUuid& id : order)
        if (ExplorerTabView* view = tabViews.value(id)) views.append(view);
    return views;
}

void ExplorerTabStrip::revealActiveTab() {
    scrollAnimation->stop();
    layoutTabs();
    const int index = order.indexOf(activeID);
    if (index >= 0) {
        const QRect frame = layoutNow.frame(index);
        setOrigin(layoutNow.revealOrigin(origin, frame.left(), frame.left() + frame.width()));
    }
    updateTabScrollButtons();
    scheduleHoverRefresh();
}

void ExplorerTabStrip::layoutTabs() {
    layoutNow = TabStripLayout::compute(int(order.size()), width(), plusSlot);
    const QList<ExplorerTabView*> views = orderedTabViews();
    for (int i = 0; i < views.size(); ++i)
        views[i]->setGeometry(layoutNow.frame(i));
    tabBar->resize(qRound(layoutNow.documentWidth), TabStripLayout::tabHeight);
    placeControls();
    setOrigin(layoutNow.clampOrigin(origin));
    updateSeparators();
}

// The tabs stand on the row's lower edge so the active one joins the row below.
void ExplorerTabStrip::placeControls() {
    const int top = height() - TabStripLayout::tabHeight;
    const int viewportWidth = qRound(layoutNow.viewportWidth);
    clip->setGeometry(0, top, viewportWidth, TabStripLayout::tabHeight);
    overflowControls->setVisible(layoutNow.overflow);
    overflowControls->setGeometry(viewportWidth, top, layoutNow.reserve, TabStripLayout::tabHeight);
    plusButton->move(viewportWidth + layoutNow.reserve + 4,
                     top + (TabStripLayout::tabHeight - buttonHeight) / 2);
}

void ExplorerTabStrip::setOrigin(qreal value) {
    origin = value;
    tabBar->move(-qRound(origin), 0);
}

void ExplorerTabStrip::updateTabScrollButtons() {
    backButton->setEnabled(layoutNow.canScrollBack(origin));
    forwardButton->setEnabled(layoutNow.canScrollForward(origin));
}

void ExplorerTabStrip::scrollTabs(int direction) {
    const bool running = scrollAnimation->state() == QAbstractAnimation::Running;
    const qreal from = running ? scrollAnimation->endValue().toReal() : origin;
    const qreal target = layoutNow.scrollTarget(from, direction);
    scrollAnimation->stop();
    if (!animateTabs()) {
        setOrigin(target);
        updateTabScrollButtons();
        scheduleHoverRefresh();
        return;
    }
    scrollAnimation->setStartValue(origin);
    scrollAnimation->setEndValue(target);
    scrollAnimation->start();
}

bool ExplorerTabStrip::animateTabs() const {
    return isVisible() && style()->styleHint(QStyle::SH_Widget_Animation_Duration, nullptr, this) > 0;
}

// A plain mouse wheel scrolls the strip sideways too: the larger of the two deltas decides.
void ExplorerTabStrip::wheelEvent(QWheelEvent* event) {
    QPointF delta = event->pixelDelta();
    if (delta.isNull()) delta = QPointF(event->angleDelta()) / 120.0 * QApplication::wheelScrollLines() * 16;
    const qreal step = qAbs(delta.x()) >= qAbs(delta.y()) ? delta.x() : delta.y();
    if (!layoutNow.overflow || step == 0) {
        event->ignore();
        return;
    }
    scrollAnimation->stop();
    setOrigin(layoutNow.clampOrigin(origin - step));
    updateTabScrollButtons();
    scheduleHoverRefresh();
    event->accept();
}

// A lit tab needs no hairline on either side.
void ExplorerTabStrip::updateSeparators() {
    const QList<ExplorerTabView*> views = orderedTabViews();
    auto lit = [](const ExplorerTabView* v) { return v->activeTab() || v->hovering(); };
    for (int i = 0; i < views.size(); ++i)
        views[i]->setSeparatorVisible(i + 1 < views.size() && !lit(views[i]) && !lit(views[i + 1]));
}

// Qt tells a widget of the pointer only when the pointer moves; a tab that slid under a still pointer,
// after a close or a scroll, must light up and show its close button so the next click closes it.
void ExplorerTabStrip::scheduleHoverRefresh() {
    if (hoverRefreshQueued) return;
    hoverRefreshQueued = true;
    QMetaObject::invokeMethod(this, &ExplorerTabStrip::refreshHover, Qt::QueuedConnection);
}

void ExplorerTabStrip::refreshHover() {
    hoverRefreshQueued = false;
    const QPoint pointer = QCursor::pos();
    const QWidget* under = QApplication::widgetAt(pointer);
    const bool inStrip = under && (under == clip || clip->isAncestorOf(under));
    for (ExplorerTabView* view : orderedTabViews())
        view->refreshHover(pointer, inStrip);
}

void ExplorerTabStrip::resizeEvent(QResizeEvent*) {
    revealActiveTab();
}

QSize ExplorerTabStrip::sizeHint() const {
    return minimumSizeHint();
}

// Tabs never widen the window: the strip asks for no more than the narrowest layout needs.
QSize ExplorerTabStrip::minimumSizeHint() const {
    return QSize(TabStripLayout::minimumAvailable + plusSlot, TabStripLayout::tabHeight);
}

// ---------------------------------------------------------------- drops

QUuid ExplorerTabStrip::tabAt(const QPoint& pos) const {
    for (ExplorerTabView* view : orderedTabViews())
        if (view->rect().contains(view->mapFrom(this, pos))) return view->tabID();
    return {};
}

int ExplorerTabStrip::insertionAt(const QPoint& pos) const {
    int slot = 0;
    for (ExplorerTabView* view : orderedTabViews())
        if (view->mapTo(this, view->rect().center()).x() < pos.x()) ++slot;
    return slot;
}

// A tab shows where it would go; files show what a drop into the tab's folder would do.
Qt::DropAction ExplorerTabStrip::dragOver(QDropEvent* event) {
    const QPoint at = event->position().toPoint();
    if (event->mimeData()->hasFormat(tabMimeType())) {
        if (takesTabs && !takesTabs()) return Qt::IgnoreAction;
        const int slot = insertionAt(at);
        const QList<ExplorerTabView*> views = orderedTabViews();
        const int x = views.isEmpty()       ? 0
                      : slot < views.size() ? views[slot]->mapTo(this, QPoint(0, 0)).x()
                                            : views.back()->mapTo(this, QPoint(views.back()->width(), 0)).x();
        insertionMarker->move(qBound(0, x - 1, width() - 3), 5);
        insertionMarker->show();
        insertionMarker->raise();
        return Qt::MoveAction;
    }
    const QUuid tab = tabAt(at);
    if (tab != springTab) {
        springTab = tab;
        springTimer->start();
    }
    return fileDropOperation && !tab.isNull() ? fileDropOperation(*event, tab) : Qt::IgnoreAction;
}

void ExplorerTabStrip::endDrag() {
    insertionMarker->hide();
    springTimer->stop();
    springTab = QUuid();
    if (fileDropExit) fileDropExit();
}

void ExplorerTabStrip::dragEnterEvent(QDragEnterEvent* event) {
    event->setDropAction(dragOver(event));
    // Taken while it may still come over a tab that would take it.
    event->setAccepted(event->mimeData()->hasFormat(tabMimeType()) || event->mimeData()->hasUrls());
}

void ExplorerTabStrip::dragMoveEvent(QDragMoveEvent* event) {
    const Qt::DropAction action = dragOver(event);
    event->setDropAction(action);
    event->setAccepted(action != Qt::IgnoreAction);
}

void ExplorerTabStrip::dragLeaveEvent(QDragLeaveEvent*) {
    endDrag();
}

void ExplorerTabStrip::dropEvent(QDropEvent* event) {
    const QPoint at = event->position().toPoint();
    const bool tab = event->mimeData()->hasFormat(tabMimeType());
    endDrag();
    if (tab && (!takesTabs || takesTabs())) {
        event->setDropAction(Qt::MoveAction);
        event->accept();
        emit tabDropped(event->mimeData(), insertionAt(at));
        return;
    }
    const QUuid onto = tabAt(at);
    if (!tab && performFileDrop && !onto.isNull() && performFileDrop(*event, onto)) return;
    event->ignore();
}

} // namespace orvane
