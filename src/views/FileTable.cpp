#include "views/FileTable.h"

#include "kit/ExplorerFont.h"
#include "views/ColumnFit.h"
#include "views/ColumnSettings.h"
#include "views/ExplorerColumns.h"
#include "views/ExplorerHeaderView.h"
#include "views/ExplorerRowDelegate.h"

#include <QAbstractButton>
#include <QApplication>
#include <QContextMenuEvent>
#include <QCursor>
#include <QHeaderView>
#include <QMenu>
#include <QPainter>
#include <QScrollBar>
#include <QTimer>

namespace orvane {

namespace {

const QString nameKey = QStringLiteral("name");

int nameColumn() {
    static const int column = explorerColumnIndex(nameKey);
    return column;
}

} // namespace

FileTable::FileTable(Settings& settings, QWidget* parent)
    : QTableView(parent), columns(std::make_unique<ColumnSettings>(settings)),
      headerView(new ExplorerHeaderView(this)), delegate(new ExplorerRowDelegate(this)) {
    setHorizontalHeader(headerView);
    setItemDelegate(delegate);
    delegate->primaryColumn = nameColumn();
    delegate->isDimmedRow = [this](int row) { return isCutRow && isCutRow(row); };
    setFont(explorerFont());
    setSelectionBehavior(SelectRows);
    setSelectionMode(ExtendedSelection);
    setShowGrid(false);
    setWordWrap(false);
    setAlternatingRowColors(false);
    setEditTriggers(NoEditTriggers);
    // Tab leaves the list; walking its cells would move the selection from item to item.
    setTabKeyNavigation(false);
    setFrameShape(QFrame::NoFrame);
    setMouseTracking(true);
    setHorizontalScrollMode(ScrollPerPixel);
    setVerticalScrollMode(ScrollPerPixel);
    // Rows draw their own rounded selection; the style's square one must not show under it.
    QPalette clear = palette();
    for (auto group : {QPalette::Active, QPalette::Inactive})
        clear.setColor(group, QPalette::Highlight, Qt::transparent);
    setPalette(clear);
    verticalHeader()->hide();
    headerView->setAccessibleName(QStringLiteral("Columns"));
    verticalHeader()->setAccessibleName(QStringLiteral("Rows"));
    setCornerButtonEnabled(false);
    if (auto* corner = findChild<QAbstractButton*>()) corner->setAccessibleName(QStringLiteral("Select all"));
    verticalHeader()->setMinimumSectionSize(1);
    verticalHeader()->setSectionResizeMode(QHeaderView::Fixed);
    verticalHeader()->setDefaultSectionSize(standardRowHeight);
    setSortIndicator(nameKey, true);
    connect(headerView, &QHeaderView::sectionClicked, this, &FileTable::headerClicked);
    connect(headerView, &QHeaderView::sectionResized, this, &FileTable::sectionResized);
    connect(headerView, &ExplorerHeaderView::columnsMenuRequested, this, [this](const QPoint& at) {
        QMenu* menu = columnsMenu(this);
        connect(menu, &QMenu::aboutToHide, menu, &QObject::deleteLater);
        menu->popup(at);
    });
}

FileTable::~FileTable() = default;

void FileTable::setModel(QAbstractItemModel* model) {
    QTableView::setModel(model);
    if (model) configureColumns();
}

// Widths come from the saved header when there is one; which columns show comes from the
// visible list, which is the truth even if the two disagree.
void FileTable::configureColumns() {
    preferred.clear();
    adjustingColumns = true;
    const auto& all = explorerColumns();
    for (int i = 0; i < all.size() && i < headerView->count(); ++i)
        headerView->resizeSection(i, all[i].width);
    const QByteArray state = columns->headerState();
    if (!state.isEmpty()) headerView->restoreState(state);
    headerView->setSectionsMovable(false);
    headerView->setStretchLastSection(false);
    headerView->setSortIndicatorShown(false);
    for (int i = 0; i < all.size() && i < headerView->count(); ++i) {
        setColumnHidden(i, !isColumnVisible(all[i].key));
        if (!isColumnHidden(i) && headerView->sectionSize(i) < all[i].minimumWidth)
            headerView->resizeSection(i, all[i].minimumWidth);
    }
    adjustingColumns = false;
    fillSpareWidth();
}

bool FileTable::isColumnVisible(const QString& key) const {
    return isPlaceColumn(key) ? placeColumns.contains(key) : columns->isVisible(key);
}

bool FileTable::isPlaceColumn(const QString& key) {
    return key == QLatin1String("folder") || key == QLatin1String("origin") ||
           key == QLatin1String("deleted");
}

void FileTable::setPlaceColumn(const QString& key, bool shown) {
    if (placeColumns.contains(key) == shown) return;
    if (shown)
        placeColumns << key;
    else
        placeColumns.removeAll(key);
    const int column = explorerColumnIndex(key);
    if (column < 0 || column >= headerView->count()) return;
    preferred.remove(column);
    setColumnHidden(column, !shown);
    if (shown && columnWidth(column) < explorerColumns()[column].minimumWidth)
        setColumnWidth(column, explorerColumns()[column].width);
    fillSpareWidth();
}

void FileTable::toggleColumn(const QString& key) {
    if (!columns->toggle(key)) return;
    applyColumnVisibility(key, columns->isVisible(key));
}

void FileTable::applyColumnVisibility(const QString& key, bool visible) {
    const int column = explorerColumnIndex(key);
    if (column < 0 || column >= headerView->count()) return;
    preferred.remove(column);
    setColumnHidden(column, !visible);
    if (visible) {
        const ExplorerColumn& info = explorerColumns()[column];
        if (columnWidth(column) < info.minimumWidth) setColumnWidth(column, info.width);
        fillSpareWidth();
        // A column just shown is brought into view.
        const int left = headerView->sectionPosition(column);
        const int right = left + columnWidth(column);
        QScrollBar* bar = horizontalScrollBar();
        if (right > bar->value() + viewport()->width()) bar->setValue(right - viewport()->width());
        if (left < bar->value()) bar->setValue(left);
    } else {
        fillSpareWidth();
    }
    saveHeaderState();
    emit columnVisibilityChanged(key, visible);
}

QMenu* FileTable::columnsMenu(QWidget* parent) {
    auto* menu = new QMenu(QStringLiteral("Columns"), parent);
    for (const ExplorerColumn& column : explorerColumns()) {
        if (isPlaceColumn(column.key)) continue;
        QAction* item = menu->addAction(column.title);
        item->setCheckable(true);
        item->setChecked(isColumnVisible(column.key));
        item->setData(column.key);
        item->setEnabled(column.key != nameKey);
        const QString key = column.key;
        connect(item, &QAction::triggered, this, [this, key] { toggleColumn(key); });
    }
    menu->addSeparator();
    QAction* fit = menu->addAction(QStringLiteral("Size columns to fit"));
    fit->setEnabled(detailsMode);
    connect(fit, &QAction::triggered, this, [this] { autosizeColumns(); });
    return menu;
}

void FileTable::autosizeColumns() {
    autosizeColumns([this](const QString& key) {
        QStringList texts;
        const int column = explorerColumnIndex(key);
        if (!model() || column < 0) return texts;
        const int rows = model()->rowCount();
        texts.reserve(rows);
        for (int row = 0; row < rows; ++row)
            texts << model()->index(row, column).data(Qt::DisplayRole).toString();
        return texts;
    });
}

void FileTable::autosizeColumns(const std::function<QStringList(const QString& key)>& textsForColumn) {
    if (!detailsMode) return;
    const auto& all = explorerColumns();
    for (int column = 0; column < all.size() && column < headerView->count(); ++column) {
        if (isColumnHidden(column)) continue;
        // Sizes are read from the files as rows show; asking for all would read every file.
        const QStringList texts =
            all[column].key == QLatin1String("dimensions") ? QStringList() : textsForColumn(all[column].key);
        setColumnWidth(column, fittedWidth(all[column].key, texts));
    }
    fillSpareWidth();
    saveHeaderState();
}

int FileTable::fittedWidth(const QString& key, const QStringList& texts) {
    const int column = explorerColumnIndex(key);
    if (column < 0) return 0;
    const ExplorerColumn& info = explorerColumns()[column];
    const QFontMetrics metrics(explorerFont());
    int widest = metrics.horizontalAdvance(info.title);
    for (const QString& text : texts)
        widest = qMax(widest, metrics.horizontalAdvance(text));
    return qMax(widest + (key == nameKey ? 48 : 28), info.minimumWidth);
}

void FileTable::setCompact(bool compact) {
    compactRows = compact;
    verticalHeader()->setDefaultSectionSize(compact ? compactRowHeight : standardRowHeight);
    scheduleHoverRefresh();
}

std::optional<int> FileTable::keyboardFocusRow() const {
    if (!focusIndex.isValid()) return std::nullopt;
    return focusIndex.row();
}

void FileTable::setKeyboardFocusRow(std::optional<int> row) {
    if (row == keyboardFocusRow()) return;
    updateRow(keyboardFocusRow());
    focusIndex = row && model() ? QPersistentModelIndex(model()->index(*row, 0)) : QPersistentModelIndex();
    updateRow(keyboardFocusRow());
}

void FileTable::setSortIndicator(const QString& key, bool ascending) {
    const int column = explorerColumnIndex(key);
    if (column < 0) return;
    headerView->setSortColumn(column, ascending);
}

QString FileTable::sortKey() const {
    const int column = headerView->sortColumn();
    return column >= 0 && column < explorerColumns().size() ? explorerColumns()[column].key : QString();
}

bool FileTable::sortAscending() const {
    return headerView->sortAscending();
}

void FileTable::headerClicked(int logicalIndex) {
    if (logicalIndex < 0 || logicalIndex >= explorerColumns().size()) return;
    const ExplorerColumn& column = explorerColumns()[logicalIndex];
    if (!column.sortable) return;
    const bool ascending = logicalIndex == headerView->sortColumn() ? !sortAscending() : true;
    setSortIndicator(column.key, ascending);
    emit sortRequested(column.key, ascending);
}

// No column gets narrower than its minimum, whoever resized it.
void FileTable::sectionResized(int logicalIndex, int, int newSize) {
    // Hiding a column resizes it to nothing; that is no resize to correct.
    if (logicalIndex < 0 || logicalIndex >= explorerColumns().size() || newSize == 0 ||
        isColumnHidden(logicalIndex))
        return;
    // A width the person sets is the one to come back to.
    if (!adjustingColumns) preferred.remove(logicalIndex);
    const int minimum = explorerColumns()[logicalIndex].minimumWidth;
    if (newSize < minimum) {
        headerView->resizeSection(logicalIndex, minimum);
        return;
    }
    if (!adjustingColumns) saveHeaderState();
}

// Only the name column follows the table's width, and it takes whatever room is left over.
void FileTable::viewportResized(int oldWidth, int newWidth) {
    const int name = nameColumn();
    if (!model() || name >= headerView->count()) return;
    if (oldWidth > 0) {
        adjustingColumns = true;
        const int width = columnWidth(name) + newWidth - oldWidth;
        setColumnWidth(name, qMax(explorerColumns()[name].minimumWidth, width));
        adjustingColumns = false;
    }
    fillSpareWidth();
}

// A narrow table narrows its columns and then leaves whole ones out, so no column is ever cut at the
// edge; the widths and the visible list the person chose come back when there is room.
void FileTable::fitColumns() {
    const auto& all = explorerColumns();
    QList<ColumnFit::Column> chosen;
    for (int i = 0; i < all.size() && i < headerView->count(); ++i) {
        if (!isColumnVisible(all[i].key)) continue;
        const int width = i == nameColumn() ? all[i].minimumWidth : preferred.value(i, columnWidth(i));
        chosen.append({all[i].key, width, all[i].minimumWidth});
    }
    const ColumnFit::Fit fit = ColumnFit::fit(chosen, viewport()->width());
    adjustingColumns = true;
    for (const ColumnFit::Column& c : chosen) {
        const int i = explorerColumnIndex(c.key);
        if (i == nameColumn()) continue;
        if (fit.leftOut.contains(c.key)) {
            if (!isColumnHidden(i)) preferred.insert(i, c.width);
            setColumnHidden(i, true);
            continue;
        }
        const int target = fit.widths.value(c.key);
        if (target < c.width)
            preferred.insert(i, c.width);
        else
            preferred.remove(i);
        setColumnHidden(i, false);
        if (columnWidth(i) != target) setColumnWidth(i, target);
    }
    adjustingColumns = false;
}

int FileTable::comfortableWidth() const {
    const auto& all = explorerColumns();
    int total = verticalScrollBar()->sizeHint().width();
    for (int i = 0; i < all.size() && i < headerView->count(); ++i)
        if (isColumnVisible(all[i].key))
            total += i == nameColumn() ? all[i].minimumWidth
                                       : preferred.value(i, qMax(columnWidth(i), all[i].minimumWidth));
    return total;
}

bool FileTable::columnShown(const QString& key) const {
    const int column = explorerColumnIndex(key);
    return column >= 0 && column < headerView->count() && !isColumnHidden(column);
}

void FileTable::fillSpareWidth() {
    const int name = nameColumn();
    if (!model() || name >= headerView->count()) return;
    fitColumns();
    // The name column alone absorbs the table's width, in both directions, down to its minimum.
    const int spare = viewport()->width() - headerView->length();
    if (spare == 0) return;
    const int width = qMax(explorerColumns()[name].minimumWidth, columnWidth(name) + spare);
    if (width == columnWidth(name)) return;
    adjustingColumns = true;
    setColumnWidth(name, width);
    adjustingColumns = false;
}

void FileTable::saveHeaderState() {
    columns->saveHeaderState(headerView->saveState());
}

bool FileTable::isToggleClick(const QMouseEvent* event) const {
    const Qt::KeyboardModifiers mods = event->modifiers();
    if (event->button() == Qt::LeftButton && (mods & Qt::ControlModifier)) return true;
#ifdef Q_OS_MACOS
    // The Control key is Meta to Qt on a Mac, and a Control-click may arrive as a right click.
    if ((event->button() == Qt::LeftButton || event->button() == Qt::RightButton) &&
        (mods & Qt::MetaModifier))
        return true;
#endif
    return false;
}

void FileTable::mousePressEvent(QMouseEvent* event) {
    setKeyboardFocusRow(std::nullopt);
    const QModelIndex index = indexAt(event->position().toPoint());
    if (!index.isValid()) emit clickedOnNoRow();
    if (index.isValid() && isToggleClick(event)) {
        // A toggle, never a context menu: that is why Control-click has no menu here.
        setFocus(Qt::MouseFocusReason);
        selectionModel()->select(index, QItemSelectionModel::Toggle | QItemSelectionModel::Rows);
        selectionModel()->setCurrentIndex(index, QItemSelectionModel::NoUpdate);
        toggleClickInProgress = true;
        suppressContextMenu = event->button() == Qt::RightButton;
        event->accept();
        return;
    }
    QTableView::mousePressEvent(event);
}

void FileTable::mouseReleaseEvent(QMouseEvent* event) {
    if (toggleClickInProgress) {
        toggleClickInProgress = false;
        event->accept();
        return;
    }
    QTableView::mouseReleaseEvent(event);
}

void FileTable::mouseMoveEvent(QMouseEvent* event) {
    const int row = rowAt(event->position().toPoint().y());
    setHoverRow(row >= 0 ? std::optional<int>(row) : std::nullopt);
    if (!toggleClickInProgress) QTableView::mouseMoveEvent(event);
}

void FileTable::leaveEvent(QEvent* event) {
    setHoverRow(std::nullopt);
    QTableView::leaveEvent(event);
}

void FileTable::keyPressEvent(QKeyEvent* event) {
    if (keyHandler && keyHandler(event)) {
        event->accept();
        return;
    }
    QTableView::keyPressEvent(event);
}

void FileTable::contextMenuEvent(QContextMenuEvent* event) {
    event->accept();
    if (std::exchange(suppressContextMenu, false)) return;
    if (event->reason() != QContextMenuEvent::Keyboard) {
        const int row = rowAt(event->pos().y());
        if (row < 0)
            clearSelection();
        else if (!selectionModel()->isRowSelected(row, QModelIndex()))
            selectOnly(row);
    }
    QMenu* menu = contextMenuProvider ? contextMenuProvider() : nullptr;
    if (!menu) return;
    connect(menu, &QMenu::aboutToHide, menu, &QObject::deleteLater);
    menu->popup(event->globalPos());
}

void FileTable::selectOnly(int row) {
    const QModelIndex index = model()->index(row, 0);
    selectionModel()->setCurrentIndex(index, QItemSelectionModel::ClearAndSelect | QItemSelectionModel::Rows);
}

void FileTable::selectionChanged(const QItemSelection& selected, const QItemSelection& deselected) {
    QTableView::selectionChanged(selected, deselected);
    if (!extendingKeyboardSelection) setKeyboardFocusRow(std::nullopt);
    emit selectionStatusChanged();
}

QRect FileTable::rowRect(int row) const {
    const int width = qMax(viewport()->width(), headerView->length() - horizontalOffset());
    return QRect(0, rowViewportPosition(row), width, rowHeight(row));
}

void FileTable::setDropRow(std::optional<int> row) {
    if (row == dropTargetRow) return;
    updateRow(dropTargetRow);
    dropTargetRow = row;
    updateRow(dropTargetRow);
}

void FileTable::updateRow(std::optional<int> row) {
    if (row && model() && *row >= 0 && *row < model()->rowCount()) viewport()->update(rowRect(*row));
}

void FileTable::setHoverRow(std::optional<int> row) {
    if (row == hoveredRow) return;
    updateRow(hoveredRow);
    hoveredRow = row;
    updateRow(hoveredRow);
}

// After a scroll or a change of row height the row under a still pointer changes; look again
// once, after the layout settles, however many changes came in between.
void FileTable::scheduleHoverRefresh() {
    if (hoverRefreshQueued) return;
    hoverRefreshQueued = true;
    QTimer::singleShot(0, this, [this] {
        hoverRefreshQueued = false;
        const QPoint at = viewport()->mapFromGlobal(QCursor::pos());
        const int row = viewport()->rect().contains(at) ? rowAt(at.y()) : -1;
        setHoverRow(row >= 0 ? std::optional<int>(row) : std::nullopt);
    });
}

void FileTable::scrollContentsBy(int dx, int dy) {
    QTableView::scrollContentsBy(dx, dy);
    if (dy != 0) scheduleHoverRefresh();
}

bool FileTable::selectionEmphasised() const {
    const QWidget* focus = QApplication::focusWidget();
    return isActiveWindow() && focus && (focus == this || isAncestorOf(focus));
}

// The selection shows whether the keys act on it.
void FileTable::focusInEvent(QFocusEvent* event) {
    QTableView::focusInEvent(event);
    viewport()->update();
}

void FileTable::focusOutEvent(QFocusEvent* event) {
    QTableView::focusOutEvent(event);
    viewport()->update();
}

void FileTable::changeEvent(QEvent* event) {
    QTableView::changeEvent(event);
    if (event->type() == QEvent::ActivationChange) viewport()->update();
}

bool FileTable::viewportEvent(QEvent* event) {
    if (event->type() == QEvent::Resize) {
        const auto* resize = static_cast<QResizeEvent*>(event);
        const bool handled = QTableView::viewportEvent(event);
        if (resize->oldSize().width() != resize->size().width())
            viewportResized(resize->oldSize().width(), resize->size().width());
        return handled;
    }
    return QTableView::viewportEvent(event);
}

void FileTable::paintEvent(QPaintEvent* event) {
    paintRows(event->rect());
    QTableView::paintEvent(event);
}

// The row marks go down first, once per row, so the cells draw over one unbroken shape.
void FileTable::paintRows(const QRect& area) {
    if (!model() || model()->rowCount() == 0) return;
    const int first = qMax(0, rowAt(area.top()));
    int last = rowAt(area.bottom());
    if (last < 0) last = model()->rowCount() - 1;
    QPainter painter(viewport());
    ExplorerRowDelegate::RowState state;
    state.emphasised = selectionEmphasised();
    const std::optional<int> focusRow = keyboardFocusRow();
    for (int row = first; row <= last; ++row) {
        state.selected = selectionModel()->isRowSelected(row, QModelIndex()) || dropTargetRow == row;
        state.hovering = hoveredRow == row;
        state.keyboardFocused = focusRow == row;
        if (state.selected || state.hovering || state.keyboardFocused)
            ExplorerRowDelegate::paintRow(&painter, rowRect(row), state);
    }
}

} // namespace orvane
