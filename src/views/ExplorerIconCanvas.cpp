#include "views/ExplorerIconCanvas.h"

#include "core/UriList.h"
#include "kit/Palette.h"
#include "views/ExplorerIconAccessibilityItem.h"
#include "views/ExplorerIconCanvasAccessible.h"
#include "views/ExplorerIconScrollView.h"
#include "views/ExplorerIconView.h"

#include <QApplication>
#include <QDrag>
#include <QElapsedTimer>
#include <QHelpEvent>
#include <QItemSelectionModel>
#include <QKeyEvent>
#include <QMimeData>
#include <QPainter>
#include <QToolTip>

namespace orvane {

namespace {
constexpr int dragDistance = 5;
constexpr int renameDelayMs = 600;

bool isPrimary(Qt::KeyboardModifiers modifiers) {
    return modifiers & (Qt::ControlModifier | Qt::MetaModifier);
}

std::optional<GridKey> gridKey(int key) {
    switch (key) {
    case Qt::Key_Left:
        return GridKey::Left;
    case Qt::Key_Right:
        return GridKey::Right;
    case Qt::Key_Up:
        return GridKey::Up;
    case Qt::Key_Down:
        return GridKey::Down;
    case Qt::Key_Home:
        return GridKey::Home;
    case Qt::Key_End:
        return GridKey::End;
    case Qt::Key_PageUp:
        return GridKey::PageUp;
    case Qt::Key_PageDown:
        return GridKey::PageDown;
    }
    return std::nullopt;
}

// Type-select measures its pauses on one steady clock, whatever time stamps the key events carry.
double secondsNow() {
    static QElapsedTimer clock;
    if (!clock.isValid()) clock.start();
    return double(clock.nsecsElapsed()) / 1e9;
}
} // namespace

ExplorerIconCanvas::ExplorerIconCanvas(ExplorerIconView* view, QWidget* parent)
    : QWidget(parent), owner(view) {
    ExplorerIconCanvasAccessible::install();
    setFocusPolicy(Qt::StrongFocus);
    setMouseTracking(true);
    setAcceptDrops(true);
    setAttribute(Qt::WA_OpaquePaintEvent);
    setAccessibleName(tr("Files"));
    renameClick.setSingleShot(true);
    connect(&renameClick, &QTimer::timeout, this, [this] {
        if (renameCandidate && *renameCandidate < count() && owner->onRenameClick)
            owner->onRenameClick(*renameCandidate);
        renameCandidate.reset();
    });
}

ExplorerIconCanvas::~ExplorerIconCanvas() {
    forgetAccessibleItems();
}

const Entry* ExplorerIconCanvas::entryAt(int index) const {
    return index >= 0 && index < count() ? &(*entries)[size_t(index)] : nullptr;
}

void ExplorerIconCanvas::setListing(const std::vector<Entry>* newEntries, QItemSelectionModel* model,
                                    int mode, double extraLargeSize) {
    const bool newList = newEntries != entries || model != selectionModel;
    const bool newMode = mode != layout.mode || extraLargeSize != layout.extraLargeSize;
    entries = newEntries;
    if (model != selectionModel) connectModel(model);
    layout.mode = mode;
    layout.extraLargeSize = extraLargeSize;
    if (newList) return listingReplaced();
    if (newMode) {
        cells.forget(true);
        selection.reset();
        recalculateLayout();
        if (const auto first = selection.firstSelected()) scrollToItem(*first);
    }
}

void ExplorerIconCanvas::connectModel(QItemSelectionModel* model) {
    for (const QMetaObject::Connection& connection : modelConnections)
        disconnect(connection);
    modelConnections.clear();
    selectionModel = model;
    selection.setSelectionModel(model);
    if (!model || !model->model()) return;
    const QAbstractItemModel* items = model->model();
    // The table's selection is the one truth: the canvas only redraws when it moves.
    modelConnections << connect(model, &QItemSelectionModel::selectionChanged, this, [this] {
        update();
        announce(QAccessible::SelectionWithin);
    });
    modelConnections << connect(items, &QAbstractItemModel::modelReset, this, [this] { listingReplaced(); });
    modelConnections << connect(items, &QAbstractItemModel::layoutChanged, this,
                                [this] { listingReplaced(); });
    modelConnections << connect(items, &QAbstractItemModel::rowsInserted, this, [this] { listingResized(); });
    modelConnections << connect(items, &QAbstractItemModel::rowsRemoved, this, [this] { listingResized(); });
    modelConnections << connect(items, &QAbstractItemModel::dataChanged, this,
                                [this](const QModelIndex& from, const QModelIndex& to) {
                                    for (int row = from.row(); row <= to.row() && row < count(); ++row)
                                        cells.forgetEntry((*entries)[size_t(row)].location);
                                    update();
                                });
}

void ExplorerIconCanvas::listingReplaced() {
    cells.forget(true);
    selection.reset();
    hovered.reset();
    dropTarget.reset();
    pendingSingleClick.reset();
    renameCandidate.reset();
    forgetAccessibleItems();
    recalculateLayout();
    const std::optional<int> first = selection.firstSelected();
    if (first)
        scrollToItem(*first);
    else if (auto* view = owner->scrollView())
        view->ensureVisible(QRectF(0, 0, 1, 1));
    announce(QAccessible::ObjectReorder);
}

void ExplorerIconCanvas::listingResized() {
    cells.forget(true);
    selection.clampTo(count());
    if (hovered && *hovered >= count()) hovered.reset();
    forgetAccessibleItems();
    recalculateLayout();
    announce(QAccessible::ObjectReorder);
}

void ExplorerIconCanvas::recalculateLayout() {
    if (layingOut) return;
    layingOut = true;
    const IconGridLayout next = layoutIconGrid(layout.mode, count(), QSizeF(size()), layout.extraLargeSize);
    if (next.cell != layout.cell) cells.forget(false);
    layout = next;
    lastViewportSize = size();
    emit gridChanged();
    layingOut = false;
    update();
}

void ExplorerIconCanvas::setContentOffset(QPoint point) {
    offset = point;
}

QRect ExplorerIconCanvas::itemRect(int index) const {
    return layout.frame(index).translated(-offset).toAlignedRect();
}

std::optional<int> ExplorerIconCanvas::itemAt(const QPoint& point) const {
    return layout.itemAt(QPointF(point + offset));
}

void ExplorerIconCanvas::scrollToItem(int index) {
    if (index < 0 || index >= count()) return;
    if (auto* view = owner->scrollView()) view->ensureVisible(layout.frame(index));
}

void ExplorerIconCanvas::showDropTarget(std::optional<int> index) {
    if (index == dropTarget) return;
    updateItem(dropTarget);
    dropTarget = index;
    updateItem(dropTarget);
}

void ExplorerIconCanvas::updateItem(std::optional<int> index) {
    if (index && *index < count()) update(itemRect(*index));
}

void ExplorerIconCanvas::resizeEvent(QResizeEvent*) {
    if (size() != lastViewportSize) recalculateLayout();
}

void ExplorerIconCanvas::paintEvent(QPaintEvent* event) {
    QPainter painter(this);
    painter.fillRect(event->rect(), Palette::canvas());
    if (!entries) return;
    painter.translate(-offset);
    const QRectF dirty = QRectF(event->rect()).translated(offset);
    const bool ringShown = hasFocus() && selection.controlFocusMode;
    layout.forEachIndexIn(dirty, [&](int index) {
        ExplorerIconPainter::CellState state;
        state.selected = selection.isSelected(index);
        state.hovered = hovered == index;
        state.focusRing = ringShown && selection.focus == index;
        state.dropTarget = dropTarget == index;
        state.dimmed = isDimmed && isDimmed((*entries)[size_t(index)]);
        cells.drawCell(painter, (*entries)[size_t(index)], layout.frame(index), layout, state);
    });
    paintBand(painter);
}

void ExplorerIconCanvas::paintBand(QPainter& painter) {
    if (!bandOrigin || band.isEmpty()) return;
    QColor fill = Palette::accent();
    fill.setAlphaF(0.15f);
    painter.setPen(QPen(Palette::accent(), 1));
    painter.setBrush(fill);
    painter.drawRect(band.adjusted(0.5, 0.5, -0.5, -0.5));
}

bool ExplorerIconCanvas::handleNavigation(QKeyEvent* event) {
    const Qt::KeyboardModifiers modifiers = event->modifiers();
    if (modifiers & Qt::AltModifier) return false;
    const bool primary = isPrimary(modifiers);
    if (event->key() == Qt::Key_Space) {
        // Without Primary or a ring apart from the selection, Space is the window's (Quick Look).
        if (!selection.pick(primary)) return false;
        update();
        return true;
    }
    const std::optional<GridKey> key = gridKey(event->key());
    if (!key) return false;
    if (const auto target = selection.move(layout, *key, primary, modifiers & Qt::ShiftModifier)) {
        scrollToItem(*target);
        if (QAccessible::isActive()) announce(QAccessible::Focus);
    }
    update();
    return true;
}

bool ExplorerIconCanvas::isTypeSelectKey(const QKeyEvent* event) const {
    if (event->modifiers() & (Qt::ControlModifier | Qt::MetaModifier | Qt::AltModifier)) return false;
    const QString text = event->text();
    if (text.isEmpty()) return false;
    return std::none_of(text.begin(), text.end(), [](QChar c) { return c.isSpace() || !c.isPrint(); });
}

void ExplorerIconCanvas::keyPressEvent(QKeyEvent* event) {
    renameClick.stop();
    if (handleNavigation(event)) return event->accept();
    if (owner->onKeyDown && owner->onKeyDown(event)) return event->accept();
    if (isTypeSelectKey(event)) {
        const auto found = selection.typeSelect(
            event->text(), secondsNow(), [this](int index) { return (*entries)[size_t(index)].name(); });
        if (found) scrollToItem(*found);
        update();
        return event->accept();
    }
    event->ignore(); // on to the window
}

void ExplorerIconCanvas::press(QMouseEvent* event) {
    setFocus(Qt::MouseFocusReason);
    renameClick.stop();
    const Qt::KeyboardModifiers modifiers = event->modifiers();
    const bool primary = isPrimary(modifiers);
    const bool shift = modifiers & Qt::ShiftModifier;
    const std::optional<int> item = itemAt(event->position().toPoint());
    const bool soleSelected = item && selection.isSelected(*item) && !selection.hasMultipleSelected();
    mouseDownLocation = event->position().toPoint();
    draggingFiles = false;
    renameCandidate = soleSelected && !primary && !shift ? item : std::nullopt;
    pendingSingleClick = selection.press(item, primary, shift) ? item : std::nullopt;
    bandOrigin.reset();
    band = QRectF();
    if (!item) {
        bandOrigin = event->position() + offset;
        selection.beginBand(primary || shift);
    }
    update();
}

void ExplorerIconCanvas::mousePressEvent(QMouseEvent* event) {
    if (event->button() != Qt::LeftButton) return QWidget::mousePressEvent(event);
    press(event);
}

void ExplorerIconCanvas::mouseDoubleClickEvent(QMouseEvent* event) {
    if (event->button() != Qt::LeftButton) return QWidget::mouseDoubleClickEvent(event);
    press(event);
    renameCandidate.reset();
    const std::optional<int> item = itemAt(event->position().toPoint());
    if (item && !(event->modifiers() & Qt::ShiftModifier) && owner->onOpen) owner->onOpen(*item);
}

void ExplorerIconCanvas::mouseMoveEvent(QMouseEvent* event) {
    const QPoint point = event->position().toPoint();
    if (!(event->buttons() & Qt::LeftButton) || !mouseDownLocation) return updateHover(itemAt(point));
    if (bandOrigin) {
        band = QRectF(*bandOrigin, QPointF(point + offset)).normalized();
        selection.updateBand(layout, band);
        if (auto* view = owner->scrollView())
            view->ensureVisible(QRectF(QPointF(point + offset), QSizeF(1, 1)));
        update();
        return;
    }
    if (draggingFiles || (point - *mouseDownLocation).manhattanLength() <= dragDistance) return;
    const std::optional<int> pressed = itemAt(*mouseDownLocation);
    if (!pressed || !selection.isSelected(*pressed)) return;
    dragSelection();
}

void ExplorerIconCanvas::mouseReleaseEvent(QMouseEvent* event) {
    if (event->button() != Qt::LeftButton) return QWidget::mouseReleaseEvent(event);
    if (!draggingFiles && pendingSingleClick && *pendingSingleClick < count())
        selection.selectOnly(*pendingSingleClick);
    const bool moved = mouseDownLocation &&
                       (event->position().toPoint() - *mouseDownLocation).manhattanLength() > dragDistance;
    if (renameCandidate && !moved && !draggingFiles)
        renameClick.start(std::max(renameDelayMs, QApplication::doubleClickInterval()));
    else
        renameCandidate.reset();
    mouseDownLocation.reset();
    pendingSingleClick.reset();
    bandOrigin.reset();
    band = QRectF();
    update();
}

std::vector<int> ExplorerIconCanvas::selectedIndexes() const {
    std::vector<int> indexes;
    if (!selectionModel) return indexes;
    for (const QItemSelectionRange& part : selectionModel->selection())
        for (int row = part.top(); row <= part.bottom() && row < count(); ++row)
            indexes.push_back(row);
    std::sort(indexes.begin(), indexes.end());
    indexes.erase(std::unique(indexes.begin(), indexes.end()), indexes.end());
    return indexes;
}

QMimeData* ExplorerIconCanvas::dragData(const std::vector<int>& indexes) const {
    QList<QUrl> urls;
    std::vector<int> phoneItems;
    for (const int index : indexes) {
        const Entry* entry = entryAt(index);
        if (!entry) continue;
        if (entry->isPhone())
            phoneItems.push_back(index);
        else
            urls << QUrl::fromLocalFile(entry->location);
    }
    // Phone items travel only when the phone browser can make their data; a listing holds no others.
    if (!phoneItems.empty() && owner->remoteDragData)
        if (QMimeData* phoneData = owner->remoteDragData(phoneItems)) return phoneData;
    auto* data = new QMimeData;
    if (!urls.isEmpty()) UriList::write(*data, urls);
    return data;
}

void ExplorerIconCanvas::dragSelection() {
    const std::vector<int> indexes = selectedIndexes();
    if (indexes.empty()) return;
    std::unique_ptr<QMimeData> data(dragData(indexes));
    if (data->formats().isEmpty()) return;
    // A small pile of the first few icons, each a little below and right of the one before.
    const int shown = int(std::min<size_t>(indexes.size(), 5));
    const qreal ratio = devicePixelRatioF();
    QPixmap cue(QSize(40 + 3 * (shown - 1), 40 + 3 * (shown - 1)) * ratio);
    cue.setDevicePixelRatio(ratio);
    cue.fill(Qt::transparent);
    {
        QPainter painter(&cue);
        for (int i = shown - 1; i >= 0; --i)
            painter.drawPixmap(QRect(3 * i, 3 * i, 40, 40),
                               cells.icon((*entries)[size_t(indexes[size_t(i)])], 40, ratio));
    }
    pendingSingleClick.reset();
    renameCandidate.reset();
    draggingFiles = true;
    auto* drag = new QDrag(this);
    drag->setMimeData(data.release());
    drag->setPixmap(cue);
    drag->setHotSpot(QPoint(20, 20));
    drag->exec(Qt::CopyAction | Qt::MoveAction | Qt::LinkAction, Qt::CopyAction);
    draggingFiles = false;
    mouseDownLocation.reset();
}

void ExplorerIconCanvas::updateHover(std::optional<int> index) {
    if (index == hovered) return;
    updateItem(hovered);
    hovered = index;
    updateItem(hovered);
}

void ExplorerIconCanvas::leaveEvent(QEvent*) {
    updateHover(std::nullopt);
}

void ExplorerIconCanvas::contextMenuEvent(QContextMenuEvent* event) {
    const std::optional<int> item = itemAt(event->pos());
    if (item && !selection.isSelected(*item))
        selection.selectOnly(*item);
    else if (!item)
        selection.clear();
    if (owner->onContextMenu) owner->onContextMenu(item, event->globalPos());
}

void ExplorerIconCanvas::dragEnterEvent(QDragEnterEvent* event) {
    dragMoveEvent(event);
}

void ExplorerIconCanvas::dragMoveEvent(QDragMoveEvent* event) {
    if (!owner->onDropOperation) return event->ignore();
    const std::optional<int> item = itemAt(event->position().toPoint());
    const Qt::DropAction action = owner->onDropOperation(item, *event);
    showDropTarget(action == Qt::IgnoreAction ? std::nullopt : item);
    event->setDropAction(action);
    // A refused enter would end the moves, and a folder further on could no longer take it.
    event->setAccepted(action != Qt::IgnoreAction || event->type() == QEvent::DragEnter);
}

void ExplorerIconCanvas::dragLeaveEvent(QDragLeaveEvent*) {
    showDropTarget(std::nullopt);
    if (owner->onDropExit) owner->onDropExit();
}

void ExplorerIconCanvas::dropEvent(QDropEvent* event) {
    const std::optional<int> item = itemAt(event->position().toPoint());
    showDropTarget(std::nullopt);
    if (owner->onPerformDrop && owner->onPerformDrop(item, *event))
        event->accept();
    else
        event->ignore();
    if (owner->onDropExit) owner->onDropExit();
}

bool ExplorerIconCanvas::event(QEvent* event) {
    if (event->type() == QEvent::ToolTip) {
        auto* help = static_cast<QHelpEvent*>(event);
        const std::optional<int> item = itemAt(help->pos());
        if (item)
            QToolTip::showText(help->globalPos(), (*entries)[size_t(*item)].name(), this, itemRect(*item));
        else
            QToolTip::hideText();
        return true;
    }
    if (event->type() == QEvent::FocusIn || event->type() == QEvent::FocusOut) update();
    return QWidget::event(event);
}

QAccessibleInterface* ExplorerIconCanvas::accessibleItem(int index) {
    if (index < 0 || index >= count()) return nullptr;
    const auto found = accessibleItems.constFind(index);
    if (found != accessibleItems.constEnd()) return QAccessible::accessibleInterface(*found);
    auto* item = new ExplorerIconAccessibilityItem(this, index);
    accessibleItems.insert(index, QAccessible::registerAccessibleInterface(item));
    return item;
}

void ExplorerIconCanvas::forgetAccessibleItems() {
    for (const QAccessible::Id id : std::as_const(accessibleItems))
        QAccessible::deleteAccessibleInterface(id);
    accessibleItems.clear();
}

void ExplorerIconCanvas::announce(QAccessible::Event kind) {
    if (!QAccessible::isActive()) return;
    if (kind == QAccessible::Focus && selection.focus) {
        QAccessibleEvent event(this, kind);
        event.setChild(*selection.focus);
        QAccessible::updateAccessibility(&event);
        return;
    }
    QAccessibleEvent event(this, kind);
    QAccessible::updateAccessibility(&event);
}

} // namespace orvane
