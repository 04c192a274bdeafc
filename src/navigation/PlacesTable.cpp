#include "navigation/PlacesTable.h"

#include "core/PinnedStore.h"
#include "core/Settings.h"
#include "kit/Palette.h"
#include "kit/Symbols.h"
#include "navigation/PlacesTableAccessible.h"
#include "navigation/SidebarLocations.h"
#include "navigation/SidebarRoots.h"
#include "navigation/SidebarRowPainter.h"
#include "navigation/SidebarTreeBuilder.h"
#include "platform/DesktopTrash.h"
#include "platform/NativePath.h"
#include "platform/VolumeWatch.h"
#include <QStandardPaths>

#include <QApplication>
#include <QDir>
#include <QDrag>
#include <QMenu>
#include <QMimeData>
#include <QMouseEvent>
#include <QPainter>
#include <QPointer>
#include <QScrollBar>
#include <QToolButton>
#include <algorithm>

namespace orvane {

PlacesTable::PlacesTable(PinnedStore& pins, QWidget* parent)
    : QAbstractScrollArea(parent), store(pins), model(new SidebarTree(this)) {
    PlacesTableAccessible::install();
    setObjectName(QStringLiteral("placesTable")); // before any button exists, for the style sheet
    setAccessibleName(QStringLiteral("Navigation pane"));
    setFrameShape(QFrame::NoFrame);
    setFocusPolicy(Qt::StrongFocus);
    setHorizontalScrollBarPolicy(Qt::ScrollBarAlwaysOff);
    setAcceptDrops(true);
    viewport()->setMouseTracking(true);
    viewport()->setAutoFillBackground(false);
    connect(model, &SidebarTree::rebuilt, this, &PlacesTable::treeRebuilt);
    connect(model, &SidebarTree::selectionChanged, viewport(), qOverload<>(&QWidget::update));
    connect(&store.settings(), &Settings::pinsChanged, this, [this] {
        store.reload();
        setupPlaces();
    });
    const auto locationsChanged = [this] {
        if (SidebarLocations::current(phone, phoneState).places() != lastLocations) setupPlaces();
    };
    connect(&VolumeWatch::shared(), &VolumeWatch::changed, this, locationsChanged);
    connect(&trashWatch, &QFileSystemWatcher::directoryChanged, this, [this, locationsChanged] {
        watchTrash();
        locationsChanged();
    });
    setupPlaces();
}

PlacesTable::~PlacesTable() = default;

// ---------------------------------------------------------------- building

void PlacesTable::setupPlaces() {
    lastLocations = SidebarLocations::current(phone, phoneState).places();
    watchTrash();
    pinnedKeys.clear();
    for (const QUrl& url : store.urls())
        pinnedKeys.insert(placeKey(url));
    model->setRoots(SidebarRoots::roots(QDir::homePath(), store.urls(), lastLocations));
}

// A Trash appears on a volume with its first deletion there, so the list is renewed with the places.
void PlacesTable::watchTrash() {
    QStringList folders;
    for (const DesktopTrash::Folder& folder : DesktopTrash::folders())
        folders << folder.trash + QStringLiteral("/files");
    // Until the home Trash is made, the nearest folder on the way to it.
    QString data = QStandardPaths::writableLocation(QStandardPaths::GenericDataLocation);
    if (folders.isEmpty() || !folders.front().startsWith(data + u'/')) {
        while (!NativePath::isDir(data) && data.lastIndexOf(u'/') > 0)
            data.truncate(data.lastIndexOf(u'/'));
        folders.prepend(data);
    }
    const QStringList watched = trashWatch.directories();
    if (watched == folders) return;
    if (!watched.isEmpty()) trashWatch.removePaths(watched);
    if (!folders.isEmpty()) trashWatch.addPaths(folders);
}

void PlacesTable::setPhoneConnected(bool on, const QString& state) {
    if (on == phone && state == phoneState) return;
    phone = on;
    phoneState = state;
    setupPlaces();
}

void PlacesTable::syncSelection(const QUrl& current) {
    shown = current;
    model->follow(current);
}

void PlacesTable::treeRebuilt() {
    expandable.clear();
    layoutRows();
    refreshHover();
}

void PlacesTable::layoutRows() {
    const SidebarTreeSnapshot& tree = model->snapshot();
    tops.assign(size_t(tree.count()) + 1, 0);
    for (int row = 0; row < tree.count(); ++row)
        tops[size_t(row) + 1] = tops[size_t(row)] + SidebarRowPainter::height(tree.places[row]);
    QScrollBar* bar = verticalScrollBar();
    bar->setRange(0, qMax(0, tops.back() - viewport()->height()));
    bar->setPageStep(viewport()->height());
    bar->setSingleStep(SidebarRowPainter::rowHeight);
    layoutDisclosures();
    viewport()->update();
}

bool PlacesTable::canExpandCached(int row) const {
    auto found = expandable.constFind(row);
    if (found != expandable.constEnd()) return *found;
    return *expandable.insert(row, model->canExpand(row));
}

// Buttons only for the rows in sight, reused as the rows scroll past.
void PlacesTable::layoutDisclosures() {
    size_t used = 0;
    const int first = rowAt(QPoint(0, 0));
    const int bottom = rowAt(QPoint(0, viewport()->height()));
    const int last = bottom < 0 ? model->snapshot().count() - 1 : bottom;
    for (int row = first; row >= 0 && row <= last; ++row) {
        if (!canExpandCached(row)) continue;
        if (used == disclosures.size()) {
            auto* button = new QToolButton(viewport());
            button->setAutoRaise(true);
            button->setFocusPolicy(Qt::NoFocus);
            button->setIconSize(QSize(10, 10));
            connect(button, &QToolButton::clicked, this, [this, button] {
                const int at = button->property("row").toInt();
                model->setExpanded(at, !model->isExpanded(at));
            });
            disclosures.push_back(button);
        }
        QToolButton* button = disclosures[used++];
        const bool open = model->isExpanded(row);
        const QString text = disclosureText(row);
        button->setGeometry(disclosureRect(row));
        button->setProperty("row", row);
        button->setIcon(symbolIcon(open ? QStringLiteral("chevron.down") : QStringLiteral("chevron.right"),
                                   Palette::muted()));
        button->setAccessibleName(text);
        button->setToolTip(text);
        button->show();
    }
    for (size_t i = used; i < disclosures.size(); ++i)
        disclosures[i]->hide();
}

// ---------------------------------------------------------------- geometry

int PlacesTable::rowAt(const QPoint& pos) const {
    if (tops.size() < 2) return -1;
    const int y = pos.y() + verticalScrollBar()->value();
    if (y < 0) return -1;
    const auto it = std::upper_bound(tops.begin(), tops.end(), y);
    const int row = int(it - tops.begin()) - 1;
    return row < int(tops.size()) - 1 ? row : -1;
}

QRect PlacesTable::rowRect(int row) const {
    if (row < 0 || size_t(row) + 1 >= tops.size()) return {};
    return QRect(0, tops[size_t(row)] - verticalScrollBar()->value(), viewport()->width(),
                 tops[size_t(row) + 1] - tops[size_t(row)]);
}

QString PlacesTable::disclosureText(int row) const {
    if (!model->snapshot().inRange(row)) return {};
    return (model->isExpanded(row) ? QStringLiteral("Collapse ") : QStringLiteral("Expand ")) +
           model->snapshot().places[row].title;
}

QRect PlacesTable::disclosureRect(int row) const {
    const QRect r = rowRect(row);
    if (r.isNull()) return {};
    const int x = SidebarRowPainter::indent(model->snapshot().depths[row], r.width()) +
                  SidebarRowPainter::disclosureInset;
    return QRect(x, r.center().y() - 8, SidebarRowPainter::disclosureWidth, 18);
}

QAbstractButton* PlacesTable::disclosureButton(int row) const {
    for (QToolButton* button : disclosures)
        if (button->isVisible() && button->property("row").toInt() == row) return button;
    return nullptr;
}

void PlacesTable::scrollToRow(int row) {
    const QRect r = rowRect(row);
    if (r.isNull()) return;
    QScrollBar* bar = verticalScrollBar();
    if (r.top() < 0)
        bar->setValue(bar->value() + r.top());
    else if (r.bottom() > viewport()->height())
        bar->setValue(bar->value() + r.bottom() - viewport()->height() + 1);
}

void PlacesTable::resizeEvent(QResizeEvent* event) {
    QAbstractScrollArea::resizeEvent(event);
    layoutRows();
}

void PlacesTable::scrollContentsBy(int, int) {
    layoutDisclosures();
    viewport()->update();
}

// ---------------------------------------------------------------- drawing

QIcon PlacesTable::iconFor(const SidebarPlace& place) const {
    if (place.symbol == QLatin1String("folder") && folderColourIcon) {
        const QIcon coloured = folderColourIcon(place.url());
        if (!coloured.isNull()) return coloured;
    }
    auto found = icons.constFind(place.symbol);
    if (found != icons.constEnd()) return *found;
    QIcon icon = symbolIcon(place.symbol, SidebarRowPainter::tint(place.symbol));
    if (icon.isNull()) icon = symbolIcon(QStringLiteral("folder"));
    return *icons.insert(place.symbol, icon);
}

void PlacesTable::paintEvent(QPaintEvent*) {
    QPainter p(viewport());
    p.setRenderHint(QPainter::Antialiasing);
    const SidebarTreeSnapshot& tree = model->snapshot();
    const int first = rowAt(QPoint(0, 0));
    for (int row = qMax(first, 0); row < tree.count(); ++row) {
        const QRect r = rowRect(row);
        if (r.top() > viewport()->height()) break;
        const SidebarPlace& place = tree.places[row];
        SidebarRowPainter::State state;
        state.selected = row == model->selectedRow();
        state.hovered = row == hovered;
        state.focused = hasFocus();
        state.pinned = !place.isSection() && pinnedKeys.contains(place.key());
        SidebarRowPainter::paint(p, r, place, tree.depths[row], state,
                                 place.isSection() ? QIcon() : iconFor(place));
    }
    if (dropLine) {
        const int y = dropLine->dropRow < tree.count() ? rowRect(dropLine->dropRow).top()
                                                       : rowRect(tree.count() - 1).bottom() + 1;
        SidebarRowPainter::paintDropLine(p, qMax(y, 2), SidebarRowPainter::contentInset - 6,
                                         viewport()->width() - 10);
    }
}

bool PlacesTable::viewportEvent(QEvent* event) {
    if (event->type() == QEvent::Leave && hovered >= 0) {
        hovered = -1;
        viewport()->update();
    }
    if (event->type() == QEvent::FocusIn || event->type() == QEvent::FocusOut) viewport()->update();
    return QAbstractScrollArea::viewportEvent(event);
}

void PlacesTable::refreshHover() {
    const QPoint at = viewport()->mapFromGlobal(QCursor::pos());
    const int row = viewport()->rect().contains(at) && viewport()->underMouse() ? rowAt(at) : -1;
    if (row == hovered) return;
    hovered = row;
    viewport()->update();
}

// ---------------------------------------------------------------- selection and clicks

void PlacesTable::openRow(int row) {
    const SidebarTreeSnapshot& tree = model->snapshot();
    if (!tree.inRange(row) || tree.places[row].isSection()) return;
    const QUrl url = tree.places[row].url();
    model->select(row);
    emit openRequested(url);
}

void PlacesTable::selectAndReveal(int row) {
    openRow(row);
    scrollToRow(model->selectedRow());
}

void PlacesTable::stepSelection(int delta) {
    const SidebarTreeSnapshot& tree = model->snapshot();
    int row = model->selectedRow() < 0 ? (delta > 0 ? -1 : tree.count()) : model->selectedRow();
    for (row += delta; tree.inRange(row); row += delta) {
        if (tree.places[row].isSection()) continue;
        selectAndReveal(row);
        return;
    }
}

bool PlacesTable::handleKey(PhysicalKey key) {
    switch (key) {
    case PhysicalKey::Up:
    case PhysicalKey::Down:
        stepSelection(key == PhysicalKey::Up ? -1 : 1);
        return true;
    case PhysicalKey::Return:
    case PhysicalKey::Enter:
        openRow(model->selectedRow());
        return true;
    case PhysicalKey::Left:
    case PhysicalKey::Right:
    case PhysicalKey::KeypadPlus:
    case PhysicalKey::KeypadMinus:
        break;
    default:
        return false;
    }
    const SidebarKey sidebarKey = key == PhysicalKey::Left         ? SidebarKey::Left
                                  : key == PhysicalKey::Right      ? SidebarKey::Right
                                  : key == PhysicalKey::KeypadPlus ? SidebarKey::Plus
                                                                   : SidebarKey::Minus;
    const SidebarTree::KeyAction action = model->applyKey(sidebarKey);
    if (action.kind == SidebarTree::KeyAction::Go) selectAndReveal(action.row);
    return true;
}

void PlacesTable::keyPressEvent(QKeyEvent* event) {
    if (!handleKey(physicalKey(*event))) QAbstractScrollArea::keyPressEvent(event);
}

void PlacesTable::mousePressEvent(QMouseEvent* event) {
    pressed = event->button() == Qt::LeftButton ? rowAt(event->position().toPoint()) : -1;
    pressPos = event->position().toPoint();
    setFocus(Qt::MouseFocusReason);
}

void PlacesTable::mouseMoveEvent(QMouseEvent* event) {
    const QPoint at = event->position().toPoint();
    if (pressed >= 0 && (event->buttons() & Qt::LeftButton) &&
        (at - pressPos).manhattanLength() >= QApplication::startDragDistance()) {
        const int row = pressed;
        pressed = -1;
        if (SidebarPinLayout::of(model->snapshot()).rootRows.contains(row)) startPinDrag(row);
        return;
    }
    const int row = rowAt(at);
    if (row != hovered) {
        hovered = row;
        viewport()->update();
    }
}

// Selection goes on release, so that pressing a pin to drag it does not open it first.
void PlacesTable::mouseReleaseEvent(QMouseEvent* event) {
    const int row = rowAt(event->position().toPoint());
    if (event->button() == Qt::LeftButton && row >= 0 && row == pressed) openRow(row);
    pressed = -1;
}

// ---------------------------------------------------------------- the context menu

QMenu* PlacesTable::sidebarMenu(int row) {
    const SidebarTreeSnapshot& tree = model->snapshot();
    if (!tree.inRange(row) || tree.places[row].isSection()) return nullptr;
    contextURL = tree.places[row].url();
    auto* menu = new QMenu(this);
    menu->setAccessibleName(QStringLiteral("Navigation pane menu"));
    const QUrl url = contextURL;
    menu->addAction(QStringLiteral("Open"), this, [this, url] { emit openRequested(url); });
    menu->addAction(QStringLiteral("Open in new tab"), this,
                    [this, url] { emit openInNewTabRequested(url); });
    const bool pinned = store.contains(url);
    menu->addAction(pinned ? QStringLiteral("Unpin from Quick access")
                           : QStringLiteral("Pin to Quick access"),
                    this, [this, url, pinned] { pinned ? store.unpin(url) : store.pin(url); });
    if (addColourMenu) addColourMenu(menu, url);
    if (emptyTrash && url.scheme() == QLatin1String("trash")) {
        menu->addSeparator();
        menu->addAction(QStringLiteral("Empty Trash"), this, [this] { emptyTrash(); })
            ->setEnabled(lastLocations.contains(SidebarPlace{
                QStringLiteral("Trash"), QStringLiteral("trash:///"), QStringLiteral("trash.full")}));
    }
    return menu;
}

void PlacesTable::popupMenu(int row, const QPoint& globalPos) {
    QMenu* menu = sidebarMenu(row);
    if (!menu) return;
    connect(menu, &QMenu::aboutToHide, menu, &QObject::deleteLater);
    menu->popup(globalPos);
}

void PlacesTable::contextMenuEvent(QContextMenuEvent* event) {
    popupMenu(rowAt(event->pos()), event->globalPos());
}

bool PlacesTable::expandToCurrentFolder(const QUrl& current) {
    if (!current.isLocalFile()) return false;
    const int row = model->expandTo(current.toLocalFile());
    if (row < 0) return false;
    scrollToRow(row);
    setFocus(Qt::OtherFocusReason);
    return true;
}

// ---------------------------------------------------------------- reordering pins by drag

void PlacesTable::startPinDrag(int row) {
    const QString path = model->snapshot().places[row].url().path();
    auto* data = new QMimeData;
    data->setData(QLatin1String(pinDragType), path.toUtf8());
    auto* drag = new QDrag(this);
    drag->setMimeData(data);
    drag->setPixmap(dragImage(row));
    drag->setHotSpot(QPoint(-14, -4));
    const QPointer<PlacesTable> alive(this);
    drag->exec(Qt::MoveAction);
    if (!alive) return;
    dropLine.reset();
    syncSelection(shown);
    refreshHover();
}

// The pin's icon and title, lifted off the pane beside the pointer so the drop line stays in sight.
QPixmap PlacesTable::dragImage(int row) {
    const QRect r = rowRect(row);
    const int left = SidebarRowPainter::contentInset - 6;
    const int width =
        qMin(r.width() - left, fontMetrics().horizontalAdvance(model->snapshot().places[row].title) + 52);
    const QRect part(left, r.top(), width, r.height());
    const qreal ratio = devicePixelRatioF();
    QPixmap rowImage(part.size() * ratio);
    rowImage.setDevicePixelRatio(ratio);
    rowImage.fill(Qt::transparent);
    viewport()->render(&rowImage, QPoint(), QRegion(part), QWidget::RenderFlags());
    QPixmap image(rowImage.size());
    image.setDevicePixelRatio(ratio);
    image.fill(Qt::transparent);
    QPainter p(&image);
    p.setRenderHint(QPainter::Antialiasing);
    p.setPen(Qt::NoPen);
    p.setBrush(Palette::canvas().lighter(170));
    p.drawRoundedRect(QRectF(QPointF(0, 3), QSizeF(part.width(), part.height() - 6)), 6, 6);
    p.drawPixmap(0, 0, rowImage);
    return image;
}

// Any navigation pane of this process may send a pin: all windows share one list.
std::optional<QString> PlacesTable::draggedPin(const QDropEvent* event) const {
    if (!qobject_cast<PlacesTable*>(event->source())) return std::nullopt;
    const QMimeData* data = event->mimeData();
    if (!data || data->formats() != QStringList{QLatin1String(pinDragType)}) return std::nullopt;
    const QString path = QString::fromUtf8(data->data(QLatin1String(pinDragType)));
    if (!path.startsWith(u'/') || !store.contains(QUrl::fromLocalFile(path))) return std::nullopt;
    return path;
}

int PlacesTable::pinSlot(const SidebarPinLayout& layout, const QString& path) const {
    for (int slot = 0; slot < layout.rootRows.size(); ++slot)
        if (model->snapshot().places[layout.rootRows[slot]].url().path() == path) return slot;
    return -1;
}

std::optional<SidebarPinLayout::Target> PlacesTable::proposePinDrop(const QString& path, const QPoint& pos) {
    const SidebarPinLayout layout = SidebarPinLayout::of(model->snapshot());
    const int source = pinSlot(layout, path);
    if (source < 0) return std::nullopt;
    int row = rowAt(pos);
    if (row < 0) row = pos.y() < 0 ? 0 : model->snapshot().count();
    const QRect r = rowRect(row);
    return layout.drop(source, row, !r.isNull() && pos.y() > r.center().y());
}

bool PlacesTable::dropPin(const QString& path, const QPoint& pos) {
    const std::optional<SidebarPinLayout::Target> target = proposePinDrop(path, pos);
    dropLine.reset();
    viewport()->update();
    if (!target || !store.move(QUrl::fromLocalFile(path), target->slot)) return false;
    emit statusMessage(QStringLiteral("Quick access order saved"));
    return true;
}

QUrl PlacesTable::placeAt(const QPoint& pos) const {
    const SidebarTreeSnapshot& tree = model->snapshot();
    const int row = rowAt(pos);
    return tree.inRange(row) && !tree.places[row].isSection() ? tree.places[row].url() : QUrl();
}

// Files over a row: the row lights up while its place would take them.
Qt::DropAction PlacesTable::fileDragOver(QDropEvent* event) {
    const QPoint at = event->position().toPoint();
    const QUrl place = placeAt(at);
    const Qt::DropAction action =
        fileDropOperation && !place.isEmpty() ? fileDropOperation(*event, place) : Qt::IgnoreAction;
    hovered = action == Qt::IgnoreAction ? -1 : rowAt(at);
    viewport()->update();
    return action;
}

void PlacesTable::dragEnterEvent(QDragEnterEvent* event) {
    if (draggedPin(event)) return event->acceptProposedAction();
    // Taken even where no row would hold the files, so the moves go on to the rows that would.
    event->setDropAction(fileDragOver(event));
    event->setAccepted(fileDropOperation != nullptr && event->mimeData()->hasUrls());
}

void PlacesTable::dragMoveEvent(QDragMoveEvent* event) {
    const std::optional<QString> path = draggedPin(event);
    const QPoint at = event->position().toPoint();
    dropLine = path ? proposePinDrop(*path, at) : std::nullopt;
    viewport()->update();
    const Qt::DropAction action = path ? (dropLine ? Qt::MoveAction : Qt::IgnoreAction) : fileDragOver(event);
    event->setDropAction(action);
    event->setAccepted(action != Qt::IgnoreAction);
}

void PlacesTable::dragLeaveEvent(QDragLeaveEvent*) {
    dropLine.reset();
    hovered = -1;
    viewport()->update();
    if (fileDropExit) fileDropExit();
}

void PlacesTable::dropEvent(QDropEvent* event) {
    const std::optional<QString> path = draggedPin(event);
    const QPoint at = event->position().toPoint();
    hovered = -1;
    if (path && dropPin(*path, at)) {
        event->setDropAction(Qt::MoveAction);
        event->accept();
        return;
    }
    const QUrl place = placeAt(at);
    if (!path && performFileDrop && !place.isEmpty() && performFileDrop(*event, place)) return;
    event->ignore();
}

} // namespace orvane
