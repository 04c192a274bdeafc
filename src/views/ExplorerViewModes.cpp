#include "views/ExplorerViewModes.h"

#include "core/BrowserWindow.h"
#include "core/ExplorerEvents.h"
#include "core/InlineRename.h"
#include "core/KeyHooks.h"
#include "core/WindowCommands.h"
#include "core/WindowListing.h"
#include "kit/Symbols.h"
#include "kit/WindowWidgets.h"
#include "views/ExplorerIconCanvas.h"
#include "views/ExplorerIconView.h"
#include "views/FileTable.h"
#include "views/FolderColorIcons.h"
#include "views/IconGrid.h"
#include "views/MediaFeed.h"
#include "views/ViewModes.h"

#include <QGridLayout>
#include <QHBoxLayout>
#include <QLabel>
#include <QLineEdit>
#include <QMenu>
#include <QMouseEvent>
#include <QSlider>
#include <QStyleOptionSlider>
#include <QWheelEvent>

namespace orvane {

ExplorerViewModes::ExplorerViewModes(BrowserWindow& window)
    : QObject(window.widget()), w(window), icons(new ExplorerIconView(window.widgets().fileArea)),
      extraLarge(IconGrid::initialExtraLargeSize) {
    buildIconView();
    buildSlider();
    registerCommands();
    viewport = w.table()->viewport();
    viewport->installEventFilter(this);
    w.keyHooks().iconFileList = [this]() -> QWidget* {
        return mode() == ViewModes::initial ? nullptr : icons;
    };
    // A new listing reaches the canvas through the model's own signals; only the pointer is given here.
    connect(&w.events(), &ExplorerEvents::listingChanged, this, [this] {
        if (mode() != ViewModes::initial) syncIconView();
    });
    updateViewSizeSlider();
    new MediaFeed(w, *icons);
    new FolderColorIcons(w, *icons);
}

int ExplorerViewModes::mode() const {
    return int(w.viewMode());
}

void ExplorerViewModes::buildIconView() {
    icons->setObjectName(QStringLiteral("iconView"));
    icons->hide();
    auto* grid = static_cast<QGridLayout*>(w.widgets().fileArea->layout());
    grid->addWidget(icons, 0, 0);
    w.widgets().emptyLabel->raise();
    icons->onOpen = [this](int) { w.commands().run(QStringLiteral("openSelected")); };
    icons->onKeyDown = [this](QKeyEvent* event) { return w.handleExplorerShortcut(event); };
    icons->onMouseWheel = [this](QWheelEvent* event) { return handleViewSizeWheel(event); };
    icons->onContextMenu = [this](std::optional<int>, const QPoint& at) { showContextMenu(at); };
    icons->onRenameClick = [this](int index) {
        const std::vector<Entry> chosen = w.selected();
        if (chosen.size() == 1 && size_t(index) < w.entries().size() &&
            chosen.front().location == w.entries()[size_t(index)].location && w.widget()->isActiveWindow())
            w.commands().run(QStringLiteral("renameAction"));
    };
    if (InlineRename* ops = w.inlineRename())
        ops->renameSpot = [this](int row) -> std::pair<QWidget*, QRect> {
            if (mode() == ViewModes::initial) return {nullptr, QRect()};
            icons->scrollToItem(row);
            return {icons->canvas(), icons->renamePlacement(row)};
        };
}

void ExplorerViewModes::buildSlider() {
    QLabel* count = w.widgets().countLabel;
    auto* row = qobject_cast<QHBoxLayout*>(count->parentWidget()->layout());
    if (!row) return;
    const auto symbol = [&](const char* name, const QString& label) {
        auto* image = new QLabel(count->parentWidget());
        image->setPixmap(symbolIcon(QLatin1String(name), Palette::muted()).pixmap(14, 14));
        image->setAccessibleName(label);
        image->setToolTip(label);
        return image;
    };
    slider = new QSlider(Qt::Horizontal, count->parentWidget());
    slider->setObjectName(QStringLiteral("viewSizeSlider"));
    slider->setRange(0, ViewModes::sliderSteps - 1);
    slider->setTickPosition(QSlider::TicksBelow);
    slider->setTickInterval(1);
    slider->setPageStep(1);
    slider->setFixedWidth(140);
    slider->setFocusPolicy(Qt::NoFocus);
    // The dark buttons of the window would hide the knob on the dark status row.
    QPalette colours = slider->palette();
    colours.setColor(QPalette::Button, Palette::fromWhite(0.72));
    colours.setColor(QPalette::Highlight, Palette::accent());
    slider->setPalette(colours);
    slider->setAccessibleName(tr("File view and icon size"));
    const int at = row->indexOf(count) + 1;
    row->insertSpacing(at, 14);
    fewest = symbol("list.bullet", tr("Details"));
    largest = symbol("square.grid.2x2", tr("Largest icons"));
    row->insertWidget(at + 1, fewest);
    row->insertWidget(at + 2, slider);
    row->insertWidget(at + 3, largest);
    for (QWidget* part : std::initializer_list<QWidget*>{slider, fewest, largest})
        part->installEventFilter(this);
    connect(slider, &QSlider::valueChanged, this, &ExplorerViewModes::changeViewSize);
}

void ExplorerViewModes::registerCommands() {
    Command command;
    command.name = QStringLiteral("setViewMode");
    command.title = tr("View");
    command.run = [this](const QVariant& arg) { setViewMode(arg.toInt(), true); };
    command.checked = [this](const QVariant& arg) { return arg.toInt() == mode(); };
    w.commands().add(command);
}

void ExplorerViewModes::setViewMode(int next, bool focus) {
    if (next < ViewModes::first || next > ViewModes::last) return;
    w.recordViewMode(ViewMode(next));
    updateViewSizeSlider();
    const bool details = next == ViewModes::initial;
    // Shown and hidden in one go, so a large folder never shows both or cross-fades.
    w.widgets().fileArea->setUpdatesEnabled(false);
    w.table()->detailsMode = details;
    w.table()->setKeyboardFocusRow(std::nullopt);
    w.table()->setVisible(details);
    icons->setVisible(!details);
    if (!details) syncIconView();
    w.widgets().fileArea->setUpdatesEnabled(true);
    if (focus) w.focusFileList();
    const QModelIndexList chosen = w.table()->selectionModel()->selectedRows();
    if (!chosen.isEmpty()) {
        int first = chosen.front().row();
        for (const QModelIndex& index : chosen)
            first = std::min(first, index.row());
        if (details)
            w.table()->scrollTo(w.table()->model()->index(first, 0));
        else
            icons->scrollToItem(first);
    }
    w.commands().refresh();
    emit modeChanged(next, extraLarge);
}

void ExplorerViewModes::syncIconView() {
    icons->update(&w.entries(), w.table()->selectionModel(), mode(), extraLarge);
}

void ExplorerViewModes::changeViewSize(int position) {
    const ViewModes::SliderChoice choice = ViewModes::modeForSlider(position);
    if (choice.mode == mode() && choice.extraLargeSize.value_or(extraLarge) == extraLarge) return;
    if (choice.extraLargeSize) extraLarge = *choice.extraLargeSize;
    setViewMode(choice.mode, false);
}

void ExplorerViewModes::updateViewSizeSlider() {
    if (!slider) return;
    const QSignalBlocker quiet(slider);
    slider->setValue(ViewModes::sliderForMode(mode(), extraLarge));
    slider->setToolTip(ViewModes::sliderToolTip(mode(), extraLarge));
}

bool ExplorerViewModes::handleViewSizeWheel(QWheelEvent* event) {
    const Qt::KeyboardModifiers modifiers = event->modifiers();
    if (!(modifiers & (Qt::ControlModifier | Qt::MetaModifier)) || (modifiers & Qt::AltModifier))
        return false;
    const QPoint delta = event->angleDelta();
    const double steps = (std::abs(delta.y()) >= std::abs(delta.x()) ? delta.y() : delta.x()) / 120.0;
    const std::optional<int> next = ViewModes::wheelMode(mode(), steps);
    if (!next) return false;
    setViewMode(*next, false);
    return true;
}

// A click on the track goes to the step under the pointer, and one on an end's icon to that end,
// rather than the style's one step at a time or nothing.
bool ExplorerViewModes::clickSlider(QObject* watched, QMouseEvent* event) {
    if (event->button() != Qt::LeftButton) return false;
    if (watched == fewest || watched == largest) {
        slider->setValue(watched == fewest ? slider->minimum() : slider->maximum());
        return true;
    }
    QStyleOptionSlider option;
    option.initFrom(slider);
    option.orientation = slider->orientation();
    option.minimum = slider->minimum();
    option.maximum = slider->maximum();
    option.sliderPosition = slider->sliderPosition();
    option.sliderValue = slider->value();
    option.tickPosition = slider->tickPosition();
    option.subControls = QStyle::SC_All;
    QStyle* style = slider->style();
    const QRect handle = style->subControlRect(QStyle::CC_Slider, &option, QStyle::SC_SliderHandle, slider);
    if (handle.contains(event->position().toPoint())) return false; // a drag of the knob
    const QRect groove = style->subControlRect(QStyle::CC_Slider, &option, QStyle::SC_SliderGroove, slider);
    const int span = groove.width() - handle.width();
    const int x = event->position().toPoint().x() - groove.x() - handle.width() / 2;
    slider->setValue(QStyle::sliderValueFromPosition(slider->minimum(), slider->maximum(), x, span));
    return true;
}

bool ExplorerViewModes::eventFilter(QObject* watched, QEvent* event) {
    // Compared by address: events still come while the window is torn down, past its own type.
    if (watched == viewport && event->type() == QEvent::Wheel)
        return handleViewSizeWheel(static_cast<QWheelEvent*>(event));
    if (slider && event->type() == QEvent::MouseButtonPress &&
        (watched == slider || watched == fewest || watched == largest))
        return clickSlider(watched, static_cast<QMouseEvent*>(event));
    return false;
}

void ExplorerViewModes::showContextMenu(const QPoint& globalPos) {
    QMenu* menu = w.table()->contextMenuProvider ? w.table()->contextMenuProvider() : nullptr;
    if (!menu) return;
    connect(menu, &QMenu::aboutToHide, menu, &QObject::deleteLater);
    menu->popup(globalPos);
}

} // namespace orvane
