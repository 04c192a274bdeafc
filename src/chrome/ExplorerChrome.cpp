#include "chrome/ExplorerChrome.h"
#include "chrome/ExplorerTabStrip.h"
#include "core/Job.h"
#include "core/Jobs.h"
#include "core/ShortcutRows.h"
#include "core/TabList.h"
#include "kit/CommandBinding.h"
#include "kit/TransferProgressEdge.h"
#include "kit/WindowWidgets.h"

#include "chrome/DetailsPane.h"
#include "chrome/ExplorerMenus.h"
#include "chrome/ExplorerSidebarSplit.h"
#include "chrome/ShortcutGuideWindow.h"
#include "core/BrowserWindow.h"
#include "core/EntryText.h"
#include "core/ExplorerEvents.h"
#include "core/Services.h"
#include "core/Settings.h"
#include "core/TabContent.h"
#include "core/WindowCommands.h"
#include "fileops/FileClipboard.h"
#include "kit/EditablePathBox.h"
#include "platform/Platform.h"
#include "preview/PreviewPane.h"
#include "preview/QuickLookPanel.h"
#include "views/ExplorerColumns.h"
#include "views/FileTable.h"

#include <QClipboard>
#include <QEvent>
#include <QGuiApplication>
#include <QLabel>
#include <QLayout>
#include <QLineEdit>
#include <QMenu>
#include <QMimeData>
#include <QToolButton>

namespace orvane {

ExplorerChrome::ExplorerChrome(BrowserWindow& window)
    : QObject(window.widget()), w(window), tabFiles(window) {
    connectButtons();
    acceptTabDrops();
    connectMenus();
    registerCommands();
    followJobs();
    const ExplorerEvents& events = w.events();
    connect(&events, &ExplorerEvents::locationChanged, this, &ExplorerChrome::updateLocation);
    connect(&events, &ExplorerEvents::listingChanged, this, &ExplorerChrome::updateSelectionStatus);
    connect(&events, &ExplorerEvents::selectionChanged, this, &ExplorerChrome::updateSelectionStatus);
    connect(&events, &ExplorerEvents::busyChanged, this, &ExplorerChrome::updateActionState);
    connect(&w.commands(), &WindowCommands::statesChanged, this, [this] {
        w.widgets().backButton->setEnabled(w.commands().isEnabled(QStringLiteral("back")));
        w.widgets().forwardButton->setEnabled(w.commands().isEnabled(QStringLiteral("forward")));
        w.widgets().upButton->setEnabled(w.commands().isEnabled(QStringLiteral("up")));
    });
    const WindowWidgets& ui = w.widgets();
    ui.split->filesComfortable = [this] { return w.table()->comfortableWidth(); };
    ui.action("new")->parentWidget()->installEventFilter(this);
    fitActionRow();
    ui.split->setNavigationPreferred(sidebarWidth());
}

// Files dropped on a tab go into the folder it shows; a phone tab takes none here.
void ExplorerChrome::acceptTabDrops() {
    ExplorerTabStrip* strip = w.widgets().tabStrip;
    strip->fileDropOperation = [this](const QDropEvent& event, const QUuid& id) {
        const int index = w.tabs().indexOf(id);
        return index < 0 ? Qt::IgnoreAction : tabFiles.hover(event, w.tabs().at(index).url);
    };
    strip->performFileDrop = [this](QDropEvent& event, const QUuid& id) {
        const int index = w.tabs().indexOf(id);
        return index >= 0 && tabFiles.drop(event, w.tabs().at(index).url);
    };
    strip->fileDropExit = [this] { tabFiles.leave(); };
    strip->takesTabs = [this] { return !w.busy(); };
}

// The edge shows the jobs that hold this window: a fall to 0 is the next part (a phone's next file).
void ExplorerChrome::followJobs() {
    TransferProgressEdge* edge = w.widgets().transferProgress;
    connect(&w.jobs(), &Jobs::started, this, [this, edge](Job* job) {
        if (job->window() != w.widget() || !job->holdsWindow()) return;
        edge->begin();
        connect(job, &Job::progressed, edge, [edge](double f) { f == 0 ? edge->begin() : edge->update(f); });
    });
    connect(&w.jobs(), &Jobs::holdingChanged, this, [this, edge](QObject* window, bool held) {
        if (window != w.widget()) return;
        w.widgets().cancelJobButton->setVisible(held);
        if (!held) edge->finish();
    });
    w.commands().add(
        QStringLiteral("cancelJob"), QStringLiteral("Cancel"),
        [this] {
            for (Job* job : w.jobs().runningFor(w.widget()))
                if (job->holdsWindow()) job->cancel();
        },
        [this] { return w.busy(); });
    CommandBinding::bind(w.commands(), w.widgets().cancelJobButton, QStringLiteral("cancelJob"));
}

void ExplorerChrome::connectButtons() {
    const WindowWidgets& ui = w.widgets();
    connect(ui.minimizeButton, &QToolButton::clicked, w.widget(), &QWidget::showMinimized);
    connect(ui.closeButton, &QToolButton::clicked, w.widget(), &QWidget::close);
    ui.editAddressButton->setToolTip(QStringLiteral("Recent places"));
    ui.editAddressButton->setAccessibleName(QStringLiteral("Recent places"));
    connect(ui.editAddressButton, &QToolButton::clicked, this, [this] {
        QMenu* menu = recentPlacesMenu();
        connect(menu, &QMenu::aboutToHide, menu, &QObject::deleteLater);
        QToolButton* button = w.widgets().editAddressButton;
        menu->popup(button->mapToGlobal(QPoint(0, button->height())));
    });
    connect(ui.action("details"), &QToolButton::clicked, this, &ExplorerChrome::toggleDetails);
    connect(ui.detailsPane, &DetailsPane::closeRequested, this, &ExplorerChrome::toggleDetails);
    connect(ui.previewPane, &PreviewPane::closeRequested, this, &ExplorerChrome::togglePreview);
    connect(ui.split, &ExplorerSidebarSplit::navigationWidthChosen, &w.services().settings(),
            &Settings::setSidebarWidth);
    connect(QGuiApplication::clipboard(), &QClipboard::dataChanged, this, [this] {
        updateActionState();
        w.table()->viewport()->update(); // a cut ends when anything else is copied
    });
    for (const char* key : {"cut", "copy", "paste", "rename", "trash"})
        CommandBinding::bind(w.commands(), ui.action(key), QLatin1String(key) + QStringLiteral("Action"));
}

void ExplorerChrome::connectMenus() {
    const struct {
        const char* key;
        void (*fill)(QMenu*, BrowserWindow*);
    } menus[] = {{"new", ExplorerMenus::fillNewMenu},
                 {"sort", ExplorerMenus::fillSortMenu},
                 {"view", ExplorerMenus::fillViewMenu},
                 {"more", ExplorerMenus::fillMoreMenu}};
    for (const auto& m : menus) {
        auto* menu = new QMenu(w.widget());
        connect(menu, &QMenu::aboutToShow, this, [this, menu, fill = m.fill] { fill(menu, &w); });
        w.widgets().action(m.key)->setMenu(menu);
        w.widgets().action(m.key)->setPopupMode(QToolButton::InstantPopup);
    }
    w.table()->contextMenuProvider = [this] {
        auto* menu = new QMenu(w.widget());
        ExplorerMenus::fillContextMenu(menu, &w);
        return menu;
    };
}

void ExplorerChrome::registerCommands() {
    WindowCommands& c = w.commands();
    c.add(Command{QStringLiteral("toggleDetails"),
                  QStringLiteral("Details pane"),
                  [this](const QVariant&) { toggleDetails(); },
                  {},
                  [this](const QVariant&) { return detailsVisible; }});
    c.add(Command{QStringLiteral("togglePreview"),
                  QStringLiteral("Preview pane"),
                  [this](const QVariant&) { togglePreview(); },
                  {},
                  [this](const QVariant&) { return previewVisible; }});
    c.add(QStringLiteral("quickLook"), Platform::instance().word(PlatformWord::QuickLook),
          [this] { quickLook(); });
    c.add(Command{QStringLiteral("setCompact"),
                  QStringLiteral("Compact view"),
                  [this](const QVariant& on) { setCompact(on.toBool()); },
                  {},
                  [this](const QVariant& on) { return compact == on.toBool(); }});
    c.add(QStringLiteral("copyPathAction"), QStringLiteral("Copy as path"), [this] { copyPathAction(); });
    c.add(QStringLiteral("helpAction"), QStringLiteral("Keyboard shortcuts"),
          [this] { showShortcutGuide(); });
    c.add(QStringLiteral("autosizeColumns"), QStringLiteral("Size columns to fit"),
          [this] { w.table()->autosizeColumns(); });
    c.add(QStringLiteral("selectAll"), QStringLiteral("Select all"), [this] { w.table()->selectAll(); });
}

// ---------------------------------------------------------------- following the window

QMenu* ExplorerChrome::recentPlacesMenu() {
    auto* menu = new QMenu(QStringLiteral("Recent places"), w.widget());
    for (const QUrl& place : recent) {
        QAction* go = menu->addAction(folderName(place), this, [this, place] { w.navigate(place); });
        go->setToolTip(place.isLocalFile() ? place.toLocalFile() : place.toString());
    }
    menu->addSeparator();
    menu->addAction(QStringLiteral("Edit address"), w.widgets().pathBox, &EditablePathBox::showAddress);
    return menu;
}

void ExplorerChrome::updateLocation() {
    const WindowWidgets& ui = w.widgets();
    const QUrl url = w.current();
    recent.removeAll(url);
    recent.prepend(url);
    if (recent.size() > 12) recent.removeLast();
    const QString name = folderName(url);
    ui.pathBox->showPathBar();
    if (url.isLocalFile()) {
        ui.pathBox->addressField()->setText(url.toLocalFile());
        ui.pathBox->setPath(url);
    }
    ui.searchField->setPlaceholderText(QStringLiteral("Search ") + name);
    w.widget()->setWindowTitle(name + QStringLiteral(" — Orvane"));
    ui.detailsPane->setVisible(detailsVisible);
    ui.previewPane->setVisible(previewVisible);
    ui.split->relayout();
    updateSelectionStatus();
}

void ExplorerChrome::updateActionState() {
    // Before the states go round: a place of another kind may retitle the button as they do.
    w.widgets().action("trash")->setToolTip(toolTipWithKey(
        QStringLiteral("Move to Trash"), QStringLiteral("trashAction"), PhysicalKey::ForwardDelete));
    w.commands().refresh();
    // The New menu holds commands; a place that answers none of them (a phone tab) greys it.
    w.widgets().action("new")->setEnabled(ActionState::create(w.selectionFacts()) &&
                                          (w.commands().isEnabled(QStringLiteral("newFolder")) ||
                                           w.commands().isEnabled(QStringLiteral("newTextDocument"))));
    w.widgets().action("details")->setChecked(detailsVisible);
}

void ExplorerChrome::updateSelectionStatus() {
    updateActionState();
    updateDetails();
    if (previewVisible) w.widgets().previewPane->update(w.selected());
    if (panel && panel->isVisible()) panel->follow(w.selected());
    const std::vector<Entry> chosen = w.selected();
    QLabel* count = w.widgets().countLabel;
    if (chosen.empty()) {
        count->setText(QStringLiteral("Ctrl+L  Path    •    F1  Shortcuts"));
        return;
    }
    qint64 total = 0;
    for (const Entry& e : chosen)
        total += e.size;
    count->setText(QString::number(chosen.size()) + QStringLiteral(" selected  ·  ") + byteCountText(total));
}

void ExplorerChrome::updateDetails() {
    if (!detailsVisible) return;
    const bool local = w.current().isLocalFile();
    std::vector<Entry> items = w.selected();
    if (items.empty() && !local) return;
    if (items.empty()) items.push_back(Entry::fromUrl(w.current()));
    // While search results show, one of them is told by the folder it lies in.
    QString folder;
    const int column = explorerColumnIndex(QStringLiteral("folder"));
    const QModelIndexList rows = w.table()->selectionModel()->selectedRows(column);
    if (rows.size() == 1 && w.table()->isColumnVisible(QStringLiteral("folder")))
        folder = rows.front().data().toString();
    if (folder.isEmpty() && rows.size() == 1 && w.table()->isColumnVisible(QStringLiteral("folder")))
        folder = folderName(w.current());
    w.widgets().detailsPane->showItems(
        items, local ? w.current().toLocalFile() : w.widgets().pathBox->addressField()->text(), folder);
}

// ---------------------------------------------------------------- view commands

void ExplorerChrome::toggleDetails() {
    const WindowWidgets& ui = w.widgets();
    detailsVisible = !detailsVisible;
    if (detailsVisible && previewVisible) {
        previewVisible = false;
        ui.previewPane->hide();
        ui.previewPane->clear();
    }
    ui.detailsPane->setVisible(detailsVisible);
    ui.split->relayout();
    updateDetails();
    updateActionState();
}

void ExplorerChrome::togglePreview() {
    const WindowWidgets& ui = w.widgets();
    previewVisible = !previewVisible;
    if (previewVisible) {
        detailsVisible = false;
        ui.detailsPane->hide();
    }
    ui.previewPane->setVisible(previewVisible);
    ui.split->relayout();
    if (previewVisible)
        ui.previewPane->update(w.selected());
    else
        ui.previewPane->clear();
    updateActionState();
}

void ExplorerChrome::quickLook() {
    if (panel && panel->isVisible()) return panel->hide();
    const std::vector<Entry> chosen = w.selected();
    if (chosen.empty()) return;
    if (!panel) panel = new QuickLookPanel(w.widget());
    panel->open(chosen, w.widgets().previewPane->renderers());
}

void ExplorerChrome::setCompact(bool on) {
    compact = on;
    w.table()->setCompact(on);
}

void ExplorerChrome::copyPathAction() {
    std::vector<Entry> items = w.selected();
    if (items.empty()) items.push_back(Entry::fromUrl(w.current()));
    QStringList lines;
    for (const Entry& e : items)
        lines << u'"' + e.location + u'"';
    QGuiApplication::clipboard()->setText(lines.join(u'\n'));
}

void ExplorerChrome::showShortcutGuide() {
    if (!guide)
        guide = new ShortcutGuideWindow(w.widget(),
                                        [this](const QString& name) { return w.commands().contains(name); });
    guide->show();
    guide->raise();
    guide->activateWindow();
}

bool ExplorerChrome::eventFilter(QObject* watched, QEvent* event) {
    if (event->type() == QEvent::Resize && watched == w.widgets().action("new")->parentWidget())
        fitActionRow();
    return QObject::eventFilter(watched, event);
}

void ExplorerChrome::fitActionRow() {
    static const char* const leastNeededFirst[] = {"pin", "details", "save", "send", "view", "sort", "new"};
    QWidget* row = w.widgets().action("new")->parentWidget();
    // The row's own minimum is the one with no titles left, so the window can narrow that far.
    if (row->minimumWidth() == 0) {
        for (const char* key : leastNeededFirst)
            w.widgets().action(key)->setToolButtonStyle(Qt::ToolButtonIconOnly);
        row->layout()->invalidate();
        row->setMinimumWidth(row->layout()->minimumSize().width());
    }
    for (const char* key : leastNeededFirst)
        w.widgets().action(key)->setToolButtonStyle(Qt::ToolButtonTextBesideIcon);
    for (const char* key : leastNeededFirst) {
        row->layout()->invalidate();
        if (row->layout()->sizeHint().width() <= row->width()) return;
        w.widgets().action(key)->setToolButtonStyle(Qt::ToolButtonIconOnly);
    }
}

int ExplorerChrome::sidebarWidth() const {
    const int stored = w.services().settings().sidebarWidth();
    return stored > 0 ? qBound(180, stored, 480) : 240;
}

} // namespace orvane
