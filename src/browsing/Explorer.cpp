#include "browsing/Explorer.h"

#include "browsing/AppDelegate.h"
#include "browsing/DetailsPane.h"
#include "browsing/EditablePathBox.h"
#include "browsing/EntryText.h"
#include "browsing/ExplorerMenus.h"
#include "browsing/FolderListing.h"
#include "browsing/NotificationCenter.h"
#include "browsing/Preferences.h"
#include "chrome/ExplorerTabStrip.h"
#include "chrome/TitleRow.h"
#include "fileops/ExplorerFileOps.h"
#include "fileops/FileClipboard.h"
#include "navigation/PinnedStore.h"
#include "platform/NativePath.h"
#include "views/EntryTableModel.h"
#include "views/FileIcons.h"
#include "views/FileTable.h"

#include <QClipboard>
#include <QCloseEvent>
#include <QDesktopServices>
#include <QDir>
#include <QFileInfo>
#include <QGuiApplication>
#include <QHeaderView>
#include <QItemSelection>
#include <QLabel>
#include <QLineEdit>
#include <QListWidget>
#include <QMenu>
#include <QMessageBox>
#include <QMimeData>
#include <QSplitter>
#include <QTableView>
#include <QToolButton>

namespace orvane {

QUrl Explorer::startURL(const std::optional<QUrl>& initialURL) {
    QString path;
    if (initialURL) {
        if (!initialURL->isLocalFile()) return *initialURL;
        path = initialURL->toLocalFile();
    } else {
        path = Preferences::standard()->value(QStringLiteral("lastFolder")).toString();
    }
    if (path.isEmpty() || !QFileInfo::exists(path)) path = QDir::homePath();
    return QUrl::fromLocalFile(QDir::cleanPath(path));
}

Explorer::Explorer(AppDelegate* app, const std::optional<QUrl>& initialURL)
    : tabs(startURL(initialURL)), pins(std::make_unique<PinnedStore>(Preferences::pins())), app(app),
      ui(this) {
    sort.groupByType = Preferences::standard()->value(QStringLiteral("sort.groupByType.v1"), false).toBool();
    setWindowFlags(windowFlags() | Qt::FramelessWindowHint);
    resize(1250, 710);
    setMinimumSize(600, 320);
    buildUI();
    setupPlaces();
    refresh();
    rebuildTabs();
    watchDirectory();
    installKeyboardHandling();
    ui.table->setFocus();
}

// The file commands watch widgets of this window; they go first, before the window is half gone.
Explorer::~Explorer() {
    delete fileCommands;
}

void Explorer::buildUI() {
    tableModel = new EntryTableModel(&entries, this);
    ui.table->setModel(tableModel);
    fileCommands = new ExplorerFileOps(*this);
    ui.table->isCutRow = [this](int row) {
        return size_t(row) < entries.size() && FileClipboard::shared().isCut(entries[size_t(row)].url());
    };
    ui.table->setSortIndicator(sort.key, sort.ascending);
    ui.table->contextMenuProvider = [this] {
        auto* menu = new QMenu(this);
        ExplorerMenus::fillContextMenu(menu, this);
        return menu;
    };
    connectUI();
    connectChrome();
    ui.split->setSizes({sidebarWidth(), 1250 - sidebarWidth(), 0});
    registerOperation(QStringLiteral("copyPathAction"), [this] { copyPathAction(); });
    registerOperation(QStringLiteral("pinAction"), [this] { pinAction(); });
    connect(ui.action("pin"), &QToolButton::clicked, this, &Explorer::pinAction);
    connect(&NotificationCenter::shared(), &NotificationCenter::posted, this, [this](const QString& name) {
        if (name != QLatin1String(PinnedStore::panePinsChanged)) return;
        pins->reload();
        setupPlaces();
        updateActionState();
    });
    connect(ui.places, &QListWidget::itemActivated, this, [this](QListWidgetItem* item) {
        const QUrl url = item->data(Qt::UserRole).toUrl();
        if (url.isValid()) navigate(url);
    });
    connect(ui.places, &QListWidget::itemClicked, ui.places, &QListWidget::itemActivated);
    connect(&watcher, &QFileSystemWatcher::directoryChanged, this, &Explorer::onDirectoryChanged);
}

void Explorer::connectUI() {
    connect(ui.backButton, &QToolButton::clicked, this, &Explorer::back);
    connect(ui.forwardButton, &QToolButton::clicked, this, &Explorer::forward);
    connect(ui.upButton, &QToolButton::clicked, this, &Explorer::up);
    connect(ui.refreshButton, &QToolButton::clicked, this, &Explorer::refreshAction);
    connect(ui.tabStrip, &ExplorerTabStrip::newTabRequested, this, &Explorer::newTab);
    connect(ui.pathBox, &EditablePathBox::addressEntered, this, &Explorer::addressGo);
    connect(ui.pathBox, &EditablePathBox::elementClicked, this, &Explorer::pathClicked);
    connect(ui.searchField, &QLineEdit::textEdited, this, &Explorer::setSearchText);
    connect(ui.table, &QTableView::doubleClicked, this, [this] { openSelected(); });
    connect(ui.table, &FileTable::selectionStatusChanged, this, &Explorer::updateSelectionStatus);
    connect(ui.table, &FileTable::sortRequested, this, &Explorer::setSort);
    connect(ui.tabStrip, &ExplorerTabStrip::activateRequested, this, &Explorer::activateTabID);
    connect(ui.tabStrip, &ExplorerTabStrip::closeRequested, this, &Explorer::closeTabID);
}

std::vector<Entry> Explorer::selected() const {
    std::vector<Entry> result;
    QModelIndexList rows = ui.table->selectionModel()->selectedRows();
    std::sort(rows.begin(), rows.end(),
              [](const QModelIndex& a, const QModelIndex& b) { return a.row() < b.row(); });
    for (const QModelIndex& index : rows)
        if (size_t(index.row()) < entries.size()) result.push_back(entries[size_t(index.row())]);
    return result;
}

std::vector<Entry> Explorer::commandSelection() const {
    return selected();
}

// ---------------------------------------------------------------- listing

void Explorer::refresh() {
    if (current().scheme() == QLatin1String("android")) {
        refreshPhone();
        return;
    }
    ui.table->setVisible(viewMode == 6);
    ui.detailsPane->setVisible(detailsVisible);
    ui.action("send")->hide();
    ui.action("save")->hide();
    pendingRenameRefresh = false;
    fileCommands->cancelPendingRename();
    fileCommands->finishInlineRename(false);
    ui.table->setKeyboardFocusRow(std::nullopt);
    QSet<QString> remembered;
    for (const Entry& e : selected())
        remembered.insert(e.location);
    blockedFolder.clear();
    const QString path = current().toLocalFile();
    if (listLocal(path)) restoreSelection(remembered);
    updateLocalChrome(path);
}

bool Explorer::listLocal(const QString& path) {
    std::vector<Entry> listed;
    QString error;
    const QString& query = tabs.current().query;
    if (!FolderListing::read(path, showHidden, query, listed, error)) {
        entries.clear();
        tableModel->reload();
        ui.emptyLabel->setText(QStringLiteral("Cannot read this folder"));
        ui.emptyLabel->setVisible(true);
        ui.status->setText(error);
        return false;
    }
    entries = std::move(listed);
    sortEntries(entries, sort);
    tableModel->reload();
    ui.emptyLabel->setText(query.isEmpty() ? QStringLiteral("This folder is empty")
                                           : QStringLiteral("No matching items in this folder"));
    ui.emptyLabel->setVisible(entries.empty());
    ui.status->setText(QString::number(entries.size()) + QStringLiteral(" items"));
    ui.countLabel->clear();
    ui.clearSearchButton->setVisible(!query.isEmpty());
    return true;
}

// One selection change for the whole set, in contiguous ranges, so a large re-read stays cheap.
void Explorer::restoreSelection(const QSet<QString>& paths) {
    QItemSelection selection;
    if (!paths.isEmpty()) {
        int start = -1;
        for (int row = 0; row <= int(entries.size()); ++row) {
            const bool keep = row < int(entries.size()) && paths.contains(entries[size_t(row)].location);
            if (keep && start < 0) start = row;
            if (!keep && start >= 0) {
                selection.select(tableModel->index(start, 0),
                                 tableModel->index(row - 1, tableModel->columnCount() - 1));
                start = -1;
            }
        }
    }
    ui.table->selectionModel()->select(selection, QItemSelectionModel::ClearAndSelect);
}

void Explorer::updateLocalChrome(const QString& path) {
    const QString name = folderName(current());
    ui.pathBox->addressField()->setText(path);
    ui.pathBox->setPath(current());
    ui.searchField->setPlaceholderText(QStringLiteral("Search ") + name);
    setWindowTitle(name + QStringLiteral(" — Orvane"));
    const TabState& tab = tabs.current();
    ui.backButton->setEnabled(tab.canGoBack());
    ui.forwardButton->setEnabled(tab.canGoForward());
    ui.upButton->setEnabled(path != QLatin1String("/"));
    updateSelectionStatus();
}

// Phone folders are listed by the phone browser; until it is there the tab shows the phone alone.
void Explorer::refreshPhone() {
    entries.clear();
    tableModel->reload();
    ui.emptyLabel->hide();
    ui.detailsPane->hide();
    ui.action("send")->show();
    ui.action("save")->show();
    ui.pathBox->showPathBar();
    ui.pathBox->setElements({QStringLiteral("Android USB")});
    ui.searchField->setPlaceholderText(QStringLiteral("Search phone"));
    setWindowTitle(QStringLiteral("Android USB — Orvane"));
    ui.status->setText(QStringLiteral("Android USB"));
    ui.backButton->setEnabled(tabs.current().canGoBack());
    ui.forwardButton->setEnabled(tabs.current().canGoForward());
    ui.upButton->setEnabled(true);
    updateActionState();
}

void Explorer::watchDirectory() {
    const QStringList watched = watcher.directories();
    if (!watched.isEmpty()) watcher.removePaths(watched);
    if (current().isLocalFile()) watcher.addPath(current().toLocalFile());
}

void Explorer::onDirectoryChanged() {
    // An open rename editor must survive changes in its folder; the edit's end re-reads.
    if (renameEditor) {
        pendingRenameRefresh = true;
        return;
    }
    // The disk catches up with an operation after it reported; its report stays until the next move.
    const QString report = statusReport;
    refresh();
    if (!report.isEmpty()) ui.status->setText(report);
    // A folder that was removed and made again is a new inode; keep watching the name.
    if (watcher.directories().isEmpty()) watchDirectory();
}

void Explorer::sortChoice(int tag) {
    if (tag >= 0 && tag < sortKeys().size()) setSort(sortKeys()[tag], sort.ascending);
}

void Explorer::reverseSort() {
    setSort(sort.key, !sort.ascending);
}

void Explorer::setSort(const QString& key, bool ascending) {
    sort.key = key;
    sort.ascending = ascending;
    ui.table->setSortIndicator(key, ascending);
    refresh();
}

void Explorer::groupChoice(bool group) {
    sort.groupByType = group;
    Preferences::standard()->setValue(QStringLiteral("sort.groupByType.v1"), group);
    refresh();
}

void Explorer::toggleHidden() {
    showHidden = !showHidden;
    refresh();
}

void Explorer::refreshAction() {
    refresh();
}

void Explorer::setSearchText(const QString& text) {
    tabs.current().query = text;
    if (ui.searchField->text() != text) ui.searchField->setText(text);
    refresh();
}

void Explorer::clearSearch() {
    setSearchText(QString());
    ui.searchField->setFocus();
}

// ---------------------------------------------------------------- navigation

bool Explorer::navigate(const QUrl& url, bool history) {
    TabState& tab = tabs.current();
    if (url.scheme() == QLatin1String("android")) {
        tab.query.clear();
        ui.searchField->clear();
        tab.url = url;
        if (history) tab.push(url);
        refresh();
        rebuildTabs();
        watchDirectory();
        return true;
    }
    const QString path = QDir::cleanPath(url.toLocalFile());
    if (path.isEmpty() || !NativePath::isDir(path)) {
        showError(QStringLiteral("Folder not found"), path.isEmpty() ? url.toString() : path);
        return false;
    }
    const QUrl place = QUrl::fromLocalFile(path);
    tab.query.clear();
    ui.searchField->clear();
    tab.url = place;
    if (history) tab.push(place);
    ui.pathBox->showPathBar();
    ui.table->clearSelection();
    statusReport.clear();
    refresh();
    rebuildTabs();
    watchDirectory();
    focusFileList();
    if (!Preferences::selfTest()) Preferences::standard()->setValue(QStringLiteral("lastFolder"), path);
    return true;
}

void Explorer::visitHistory(int index) {
    TabState& tab = tabs.current();
    if (index < 0 || index >= tab.history.size()) return;
    const QUrl item = tab.history[index];
    if (item.isLocalFile() && !NativePath::isDir(item.toLocalFile())) {
        showError(QStringLiteral("Folder unavailable"), item.toLocalFile());
        return;
    }
    tab.index = index;
    navigate(item, false);
}

void Explorer::back() {
    visitHistory(tabs.current().index - 1);
}

void Explorer::forward() {
    visitHistory(tabs.current().index + 1);
}

void Explorer::up() {
    if (!current().isLocalFile()) return;
    const QString path = current().toLocalFile();
    if (path == QLatin1String("/")) return;
    const qsizetype slash = path.lastIndexOf(u'/');
    navigate(QUrl::fromLocalFile(slash <= 0 ? QStringLiteral("/") : path.left(slash)));
}

void Explorer::addressGo() {
    QString text = ui.pathBox->addressField()->text().trimmed();
    if (text == QLatin1String("~"))
        text = QDir::homePath();
    else if (text.startsWith(QLatin1String("~/")))
        text = QDir::homePath() + text.mid(1);
    if (!text.startsWith(u'/')) text = current().toLocalFile() + u'/' + text;
    if (!navigate(QUrl::fromLocalFile(QDir::cleanPath(text)))) ui.pathBox->showAddress();
}

void Explorer::pathClicked(int, const QUrl& url) {
    if (url.isValid()) navigate(url);
}

void Explorer::focusAddress() {
    ui.pathBox->showAddress();
}

void Explorer::activateTab(int index) {
    if (!tabs.contains(index)) return;
    tabs.setActive(index);
    statusReport.clear();
    ui.table->clearSelection();
    ui.searchField->setText(tabs.current().query);
    ui.pathBox->showPathBar();
    refresh();
    rebuildTabs();
    watchDirectory();
    focusFileList();
}

void Explorer::activateTabID(const QUuid& id) {
    activateTab(tabs.indexOf(id));
}

void Explorer::closeTabID(const QUuid& id) {
    const int index = tabs.indexOf(id);
    if (index >= 0) closeTab(index);
}

void Explorer::newTab() {
    activateTab(tabs.append(TabState::at(current())));
}

void Explorer::closeTab(std::optional<int> index) {
    const int i = index.value_or(tabs.active());
    if (!tabs.contains(i)) return;
    if (tabs.count() == 1) {
        close();
        return;
    }
    activateTab(tabs.remove(i));
}

void Explorer::openSelected() {
    const std::vector<Entry> items = commandSelection();
    if (items.size() == 1 && items.front().isPlainFolder()) {
        navigate(items.front().url());
        return;
    }
    for (const Entry& item : items)
        QDesktopServices::openUrl(item.url());
}

void Explorer::openNewTabSelected() {
    const std::vector<Entry> items = selected();
    if (items.empty() || !items.front().isPlainFolder()) return;
    newTab();
    navigate(items.front().url());
}

void Explorer::showPackageContents() {
    const std::vector<Entry> items = selected();
    if (items.size() == 1 && items.front().directory && items.front().package) navigate(items.front().url());
}

void Explorer::selectURL(const QUrl& url) {
    const QString wanted = NativePath::canonical(url.toLocalFile());
    if (wanted.isEmpty()) return;
    for (size_t row = 0; row < entries.size(); ++row) {
        if (NativePath::canonical(entries[row].location) != wanted) continue;
        const QModelIndex index = tableModel->index(int(row), 0);
        ui.table->selectionModel()->select(index,
                                           QItemSelectionModel::ClearAndSelect | QItemSelectionModel::Rows);
        ui.table->scrollTo(index);
        return;
    }
}

void Explorer::focusFileList() {
    ui.table->setFocus();
}

void Explorer::rebuildTabs() {
    ui.tabStrip->setTabs(tabs.all(), tabs.active());
}

void Explorer::showError(const QString& title, const QString& detail) {
    auto* box = new QMessageBox(QMessageBox::Warning, title, title, QMessageBox::Ok, this);
    box->setInformativeText(detail);
    box->setAttribute(Qt::WA_DeleteOnClose);
    box->setWindowModality(Qt::WindowModal);
    alert = box;
    box->open();
}

// ---------------------------------------------------------------- window state and chrome

void Explorer::connectChrome() {
    connect(ui.minimizeButton, &QToolButton::clicked, this, &QWidget::showMinimized);
    auto zoom = [this] { zoomWindow(); };
    connect(ui.zoomButton, &QToolButton::clicked, this, zoom);
    connect(ui.titleRow, &TitleRow::zoomRequested, this, zoom);
    connect(ui.closeButton, &QToolButton::clicked, this, &QWidget::close);
    connect(ui.editAddressButton, &QToolButton::clicked, this, &Explorer::focusAddress);
    connect(ui.clearSearchButton, &QToolButton::clicked, this, &Explorer::clearSearch);
    connect(ui.action("details"), &QToolButton::clicked, this, &Explorer::toggleDetails);
    connect(ui.detailsPane, &DetailsPane::closeRequested, this, &Explorer::toggleDetails);
    connect(ui.split, &QSplitter::splitterMoved, this, [this] {
        Preferences::standard()->setValue(QStringLiteral("sidebar.width.v2"), ui.split->sizes().value(0));
    });
    const struct {
        const char* key;
        void (*fill)(QMenu*, Explorer*);
    } menus[] = {{"new", ExplorerMenus::fillNewMenu},
                 {"sort", ExplorerMenus::fillSortMenu},
                 {"view", ExplorerMenus::fillViewMenu},
                 {"more", ExplorerMenus::fillMoreMenu}};
    for (const auto& m : menus) {
        auto* menu = new QMenu(this);
        connect(menu, &QMenu::aboutToShow, this, [this, menu, fill = m.fill] { fill(menu, this); });
        ui.action(m.key)->setMenu(menu);
        ui.action(m.key)->setPopupMode(QToolButton::InstantPopup);
    }
    connect(QGuiApplication::clipboard(), &QClipboard::dataChanged, this, [this] {
        updateActionState();
        ui.table->viewport()->update(); // a cut ends when anything else is copied
    });
    for (const char* key : {"cut", "copy", "paste", "rename", "trash"}) {
        const QString name = QLatin1String(key) + QStringLiteral("Action");
        connect(ui.action(key), &QToolButton::clicked, this, [this, name] {
            if (const Operation run = operation(name)) run();
        });
    }
}

int Explorer::sidebarWidth() const {
    const int stored = Preferences::standard()->value(QStringLiteral("sidebar.width.v2"), 0).toInt();
    return stored > 0 ? qBound(180, stored, 480) : 240;
}

bool Explorer::isPinned(const QUrl& url) const {
    return pins->contains(url);
}

QString Explorer::pinActionTitle() const {
    return ActionState::pinTitle(selectionFacts());
}

// Unpins when every target is pinned, otherwise pins the ones that are not.
void Explorer::pinAction() {
    const std::vector<Entry> targets = pinTargets();
    if (targets.empty()) return;
    const bool unpinning = pinActionTitle().startsWith(QLatin1String("Unpin"));
    for (const Entry& target : targets) {
        if (unpinning)
            pins->unpin(target.url());
        else if (!pins->contains(target.url()))
            pins->pin(target.url());
    }
}

// Until the navigation tree arrives, the pane is a plain list: Home, then the pins.
void Explorer::setupPlaces() {
    ui.places->clear();
    auto add = [this](const QString& title, const QUrl& url) {
        auto* item = new QListWidgetItem(FileIcons::shared().folder(), title, ui.places);
        item->setData(Qt::UserRole, url);
        item->setToolTip(url.isLocalFile() ? url.toLocalFile() : title);
    };
    add(QStringLiteral("Home"), QUrl::fromLocalFile(QDir::homePath()));
    auto* header = new QListWidgetItem(QStringLiteral("Quick access"), ui.places);
    header->setFlags(Qt::NoItemFlags);
    for (const QUrl& url : pins->urls())
        add(folderName(url), url);
}

// Selected plain folders, or the current folder when none is selected.
std::vector<Entry> Explorer::pinTargets() const {
    std::vector<Entry> targets;
    for (const Entry& e : commandSelection())
        if (e.isPlainFolder()) targets.push_back(e);
    if (targets.empty() && commandSelection().empty()) targets.push_back(Entry::fromUrl(current()));
    return targets;
}

SelectionFacts Explorer::selectionFacts() const {
    const std::vector<Entry> chosen = selected();
    SelectionFacts f;
    f.count = int(chosen.size());
    f.busy = busy;
    const QMimeData* clip = QGuiApplication::clipboard()->mimeData();
    f.canPaste = clip && (clip->hasUrls() || clip->hasFormat(QStringLiteral("local.belcove.phone-items")));
    f.singlePlainFolder = chosen.size() == 1 && chosen.front().isPlainFolder();
    f.singlePackage = chosen.size() == 1 && chosen.front().directory && chosen.front().package;
    const std::vector<Entry> targets = pinTargets();
    f.pinTargets = int(targets.size());
    f.allTargetsPinned =
        std::all_of(targets.begin(), targets.end(), [this](const Entry& e) { return isPinned(e.url()); });
    return f;
}

void Explorer::updateActionState() {
    const SelectionFacts f = selectionFacts();
    const struct {
        const char* key;
        bool on;
    } states[] = {{"cut", ActionState::cut(f)},     {"copy", ActionState::copy(f)},
                  {"trash", ActionState::trash(f)}, {"rename", ActionState::rename(f)},
                  {"paste", ActionState::paste(f)}, {"new", ActionState::create(f)},
                  {"pin", ActionState::pin(f)}};
    for (const auto& s : states)
        ui.action(s.key)->setEnabled(s.on);
    ui.action("pin")->setText(ActionState::pinButtonTitle(f));
    ui.action("pin")->setToolTip(ActionState::pinTitle(f));
    ui.action("details")->setChecked(detailsVisible);
    ui.action("trash")->setToolTip(QStringLiteral("Move to Trash · Delete"));
}

void Explorer::updateSelectionStatus() {
    updateActionState();
    updateDetails();
    const std::vector<Entry> chosen = selected();
    if (chosen.empty()) {
        ui.countLabel->setText(QStringLiteral("Ctrl+L  Path    •    F1  Shortcuts"));
        return;
    }
    qint64 total = 0;
    for (const Entry& e : chosen)
        total += e.size;
    ui.countLabel->setText(QString::number(chosen.size()) + QStringLiteral(" selected  ·  ") +
                           byteCountText(total));
}

void Explorer::updateDetails() {
    if (!detailsVisible) return;
    std::vector<Entry> items = selected();
    if (items.empty()) items.push_back(Entry::fromUrl(current()));
    ui.detailsPane->showItems(items, current().toLocalFile());
}

void Explorer::toggleDetails() {
    detailsVisible = !detailsVisible;
    if (detailsVisible) previewVisible = false;
    ui.detailsPane->setVisible(detailsVisible);
    if (detailsVisible) {
        QList<int> sizes = ui.split->sizes();
        const int pane = qMax(260, sizes.value(2));
        sizes[1] = qMax(200, sizes[1] - pane);
        sizes[2] = pane;
        ui.split->setSizes(sizes);
    }
    updateDetails();
    updateActionState();
}

// The preview pane itself comes with media; the flag already excludes the details pane.
void Explorer::togglePreview() {
    previewVisible = !previewVisible;
    if (previewVisible && detailsVisible) {
        detailsVisible = false;
        ui.detailsPane->hide();
    }
    updateActionState();
}

void Explorer::setCompact(bool on) {
    compact = on;
    ui.table->setCompact(on);
}

void Explorer::copyPathAction() {
    std::vector<Entry> items = commandSelection();
    if (items.empty()) items.push_back(Entry::fromUrl(current()));
    QStringList lines;
    for (const Entry& e : items)
        lines << u'"' + e.location + u'"';
    QGuiApplication::clipboard()->setText(lines.join(u'\n'));
}

void Explorer::setStatus(const QString& text) {
    ui.status->setText(text);
    statusReport = text;
}

void Explorer::closeEvent(QCloseEvent* event) {
    if (busy) {
        showError(QStringLiteral("Transfer in progress"),
                  QStringLiteral("Wait for the current transfer to finish before closing this window."));
        event->ignore();
        return;
    }
    watcher.removePaths(watcher.directories());
    event->accept();
    emit closing(this);
}

} // namespace orvane
