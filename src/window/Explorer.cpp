#include "window/Explorer.h"

#include "core/Jobs.h"
#include "core/Services.h"

#include "chrome/ExplorerChrome.h"
#include "chrome/ExplorerTabStrip.h"
#include "core/Applications.h"
#include "core/ExplorerEvents.h"
#include "core/Settings.h"
#include "core/WindowCommands.h"
#include "core/WindowListing.h"
#include "fileops/ExplorerFileOps.h"
#include "kit/EditablePathBox.h"
#include "kit/ExplorerAlert.h"
#include "platform/NativePath.h"
#include "views/EntryTableModel.h"
#include "views/FileTable.h"
#include "window/AppDelegate.h"
#include "window/ExplorerKeyboard.h"
#include "window/ExplorerShortcuts.h"
#include "window/ListingCommands.h"
#include "window/LocalFolderContent.h"
#include "window/WindowPlugins.h"

#include <QClipboard>
#include <QCloseEvent>
#include <QDesktopServices>
#include <QDir>
#include <QFileInfo>
#include <QGuiApplication>
#include <QItemSelection>
#include <QLabel>
#include <QLineEdit>
#include <QMimeData>
#include <QToolButton>

namespace orvane {

QUrl Explorer::startURL(const Settings& settings, const std::optional<QUrl>& initialURL) {
    QString path;
    if (initialURL) {
        if (!initialURL->isLocalFile()) return *initialURL;
        path = initialURL->toLocalFile();
    } else {
        path = settings.lastFolder();
    }
    if (path.isEmpty() || !QFileInfo::exists(path)) path = QDir::homePath();
    return QUrl::fromLocalFile(QDir::cleanPath(path));
}

Explorer::Explorer(AppDelegate* app, const std::optional<QUrl>& initialURL)
    : tabList(startURL(app->services().settings(), initialURL)), app(app),
      ui(this, app->services().settings()), commandSet(std::make_unique<WindowCommands>()),
      eventHub(std::make_unique<ExplorerEvents>()),
      listed(new WindowListing(*new EntryTableModel(this), this)) {
    setWindowFlags(windowFlags() | Qt::FramelessWindowHint);
    resize(1250, 710);
    setMinimumSize(600, 320);
    ui.table->setModel(dynamic_cast<EntryTableModel*>(&listed->rows()));
    connect(ui.table->selectionModel(), &QItemSelectionModel::selectionChanged, eventHub.get(),
            &ExplorerEvents::selectionChanged);
    connect(eventHub.get(), &ExplorerEvents::listingChanged, this, &Explorer::applyPendingSelection);
    connect(&jobs(), &Jobs::holdingChanged, this, [this](QObject* window, bool held) {
        if (window == this) emit eventHub->busyChanged(held);
    });
    connect(eventHub.get(), &ExplorerEvents::locationChanged, this, [this] {
        pendingSelection.clear();
        afterPendingSelection = nullptr;
    });
    addContent(new LocalFolderContent(*this));
    new ListingCommands(*this);
    chromeParts = new ExplorerChrome(*this);
    fileCommands = new ExplorerFileOps(*this);
    keys = new ExplorerKeyboard(*this);
    registerCommands();
    commandSet->setGate([this](const QString& name) {
        const TabContent* content = contentFor(current());
        return !content || content->answers(name);
    });
    commandSet->setRoute([this](const QString& name) {
        TabContent* content = contentFor(current());
        return content && content->run(name);
    });
    WindowPlugins::attach(*this);
    showLocation(false);
    ui.table->setFocus();
}

// The file commands watch widgets of this window; they go first, before the window is half gone.
Explorer::~Explorer() {
    delete fileCommands;
}

void Explorer::registerCommands() {
    WindowCommands& c = *commandSet;
    c.add(
        QStringLiteral("back"), QStringLiteral("Back"), [this] { back(); },
        [this] { return tabList.current().canGoBack(); });
    c.add(
        QStringLiteral("forward"), QStringLiteral("Forward"), [this] { forward(); },
        [this] { return tabList.current().canGoForward(); });
    c.add(
        QStringLiteral("up"), QStringLiteral("Up"), [this] { up(); },
        [this] { return contentFor(current()) && contentFor(current())->parent(current()).isValid(); });
    c.add(QStringLiteral("refreshAction"), QStringLiteral("Refresh"), [this] { refresh(); });
    c.add(QStringLiteral("newTab"), QStringLiteral("New tab"), [this] { newTab(); });
    c.add(QStringLiteral("closeTab"), QStringLiteral("Close tab"), [this] { closeTab(); });
    c.add(Command{QStringLiteral("activateTab"),
                  QStringLiteral("Show tab"),
                  [this](const QVariant& arg) { activateTab(arg.toInt()); },
                  {},
                  {}});
    c.add(QStringLiteral("closeWindow"), QStringLiteral("Close window"), [this] { close(); });
    c.add(
        QStringLiteral("openSelected"), QStringLiteral("Open"), [this] { openSelected(); },
        [this] { return !selected().empty(); });
    c.add(QStringLiteral("openNewTabSelected"), QStringLiteral("Open in new tab"), [this] {
        const std::vector<Entry> items = selected();
        if (items.empty() || !items.front().isPlainFolder()) return;
        const TabContent* content = contentFor(current());
        const QUrl folder = content ? content->address(items.front()) : items.front().url();
        newTab();
        navigate(folder);
    });
    c.add(QStringLiteral("showPackageContents"), QStringLiteral("Show Package Contents"), [this] {
        const std::vector<Entry> items = selected();
        if (items.size() == 1 && items.front().directory && items.front().package)
            navigate(items.front().url());
    });
    c.add(QStringLiteral("newWindowAction"), QStringLiteral("New window"), [this] {
        if (app) app->newWindow();
    });
    connect(ui.backButton, &QToolButton::clicked, this, &Explorer::back);
    connect(ui.forwardButton, &QToolButton::clicked, this, &Explorer::forward);
    connect(ui.upButton, &QToolButton::clicked, this, &Explorer::up);
    connect(ui.refreshButton, &QToolButton::clicked, this, &Explorer::refresh);
    connect(ui.tabStrip, &ExplorerTabStrip::newTabRequested, this, &Explorer::newTab);
    connect(ui.tabStrip, &ExplorerTabStrip::activateRequested, this,
            [this](const QUuid& id) { activateTab(tabList.indexOf(id)); });
    connect(ui.tabStrip, &ExplorerTabStrip::closeRequested, this, [this](const QUuid& id) {
        if (tabList.indexOf(id) >= 0) closeTab(tabList.indexOf(id));
    });
    connect(ui.pathBox, &EditablePathBox::addressEntered, this, &Explorer::addressGo);
    connect(ui.pathBox, &EditablePathBox::elementClicked, this, [this](int, const QUrl& url) {
        if (url.isValid()) navigate(url);
    });
    connect(ui.table, &QTableView::doubleClicked, this, [this] { openSelected(); });
}

const std::vector<Entry>& Explorer::entries() const {
    return listed->entries();
}

std::vector<Entry> Explorer::selected() const {
    std::vector<Entry> result;
    QModelIndexList rows = ui.table->selectionModel()->selectedRows();
    std::sort(rows.begin(), rows.end(),
              [](const QModelIndex& a, const QModelIndex& b) { return a.row() < b.row(); });
    for (const QModelIndex& index : rows)
        if (size_t(index.row()) < entries().size()) result.push_back(entries()[size_t(index.row())]);
    return result;
}

SelectionFacts Explorer::selectionFacts() const {
    const std::vector<Entry> chosen = selected();
    SelectionFacts f;
    f.count = int(chosen.size());
    f.busy = busy();
    const QMimeData* clip = QGuiApplication::clipboard()->mimeData();
    f.canPaste = clip && (clip->hasUrls() || clip->hasFormat(QStringLiteral("local.belcove.phone-items")));
    f.singlePlainFolder = chosen.size() == 1 && chosen.front().isPlainFolder();
    f.singlePackage = chosen.size() == 1 && chosen.front().directory && chosen.front().package;
    return f;
}

bool Explorer::busy() const {
    return jobs().holds(this);
}

KeyHooks& Explorer::keyHooks() {
    return keys->hooks;
}

InlineRename* Explorer::inlineRename() const {
    return fileCommands;
}

Services& Explorer::services() const {
    return app->services();
}

Jobs& Explorer::jobs() const {
    return services().jobs();
}

void Explorer::addContent(TabContent* content) {
    contents.insert(contents.begin(), content);
}

TabContent* Explorer::contentFor(const QUrl& url) const {
    for (TabContent* content : contents)
        if (content->handles(url)) return content;
    return nullptr;
}

// ---------------------------------------------------------------- navigation

void Explorer::refresh() {
    TabContent* content = contentFor(current());
    if (content != shown && shown) shown->leave();
    shown = content;
    if (content) content->reload();
}

// The active tab moved: the listing is read again and everything around it follows.
void Explorer::showLocation(bool history) {
    TabState& tab = tabList.current();
    if (history) tab.push(tab.url);
    statusReport.clear();
    ui.table->clearSelection();
    ui.table->setKeyboardFocusRow(std::nullopt);
    listed->setQuery(tab.query);
    ui.tabStrip->setTabs(tabList.all(), tabList.active());
    emit eventHub->locationChanged(current());
    refresh();
    commandSet->refresh();
}

bool Explorer::navigate(const QUrl& url, bool history) {
    TabState& tab = tabList.current();
    QUrl place = url;
    if (url.isLocalFile()) {
        const QString path = QDir::cleanPath(url.toLocalFile());
        if (path.isEmpty() || !NativePath::isDir(path)) {
            showError(QStringLiteral("Folder not found"), path.isEmpty() ? url.toString() : path);
            return false;
        }
        place = QUrl::fromLocalFile(path);
        services().settings().setLastFolder(path);
    } else if (!contentFor(url)) {
        showError(QStringLiteral("Folder not found"), url.toString());
        return false;
    }
    tab.query.clear();
    tab.url = place;
    showLocation(history);
    focusFileList();
    return true;
}

void Explorer::visitHistory(int index) {
    TabState& tab = tabList.current();
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
    visitHistory(tabList.current().index - 1);
}

void Explorer::forward() {
    visitHistory(tabList.current().index + 1);
}

// The folder we came from is selected in its parent, as in every file manager.
void Explorer::up() {
    TabContent* content = contentFor(current());
    const QUrl parent = content ? content->parent(current()) : QUrl();
    if (!parent.isValid()) return;
    const QUrl child = current();
    if (navigate(parent)) selectWhenListed({child});
}

void Explorer::addressGo() {
    QString text = ui.pathBox->addressField()->text().trimmed();
    // The place shown reads the text first; then another kind of place may know it as its own.
    TabContent* here = contentFor(current());
    if (here && here->goTo(text)) return;
    for (TabContent* other : contents)
        if (other != here && other->goTo(text)) return;
    if (text == QLatin1String("~"))
        text = QDir::homePath();
    else if (text.startsWith(QLatin1String("~/")))
        text = QDir::homePath() + text.mid(1);
    if (!text.startsWith(u'/')) text = current().toLocalFile() + u'/' + text;
    const QString path = QDir::cleanPath(text);
    // A file's path opens the folder it lies in, with the file chosen.
    if (!NativePath::isDir(path) && NativePath::exists(path)) {
        const QUrl file = QUrl::fromLocalFile(path);
        if (navigate(file.adjusted(QUrl::RemoveFilename | QUrl::StripTrailingSlash)))
            selectWhenListed({file});
        return;
    }
    if (!navigate(QUrl::fromLocalFile(path))) ui.pathBox->showAddress();
}

void Explorer::activateTab(int index) {
    if (!tabList.contains(index)) return;
    tabList.setActive(index);
    showLocation(false);
    focusFileList();
}

void Explorer::newTab() {
    activateTab(tabList.append(TabState::at(current())));
}

void Explorer::closeTab(std::optional<int> index) {
    const int i = index.value_or(tabList.active());
    if (!tabList.contains(i)) return;
    if (tabList.count() == 1) {
        close();
        return;
    }
    activateTab(tabList.remove(i));
}

void Explorer::openSelected() {
    const std::vector<Entry> items = selected();
    if (TabContent* content = contentFor(current()); content && content->open(items)) return;
    if (items.size() == 1 && items.front().isPlainFolder()) {
        navigate(items.front().url());
        return;
    }
    for (const Entry& item : items)
        openFile(item);
}

// Through the same default the Open with menu marks; a file nothing opens is told so, and a program or
// script is handed to its application like any file, never run.
void Explorer::openFile(const Entry& item) {
    if (item.directory) {
        QDesktopServices::openUrl(item.url());
        return;
    }
    const Applications& apps = services().applications();
    const Applications::Application app = apps.defaultFor(item.location);
    if (app.id.isEmpty()) {
        const QMimeType type = Applications::typeOf(item.location);
        showError(QStringLiteral("No application opens \"") + item.name() + u'"',
                  QStringLiteral("No application is set to open ") +
                      (type.comment().isEmpty() ? type.name() : type.comment()) + QStringLiteral(" files."));
        return;
    }
    QString error;
    if (!apps.open({item.location}, app.id, error))
        showError(QStringLiteral("Cannot open \"") + item.name() + u'"', error);
}

void Explorer::selectURL(const QUrl& url) {
    selectURLs({url}, true);
}

// Paths are compared as they are; with `resolveLinks`, items not found so are looked for again with the
// links of both sides resolved, which reads every row's path from the disk.
bool Explorer::selectURLs(const QList<QUrl>& urls, bool resolveLinks) {
    QSet<QString> wanted;
    for (const QUrl& url : urls)
        wanted.insert(QDir::cleanPath(url.toLocalFile()));
    const std::vector<Entry>& rows = entries();
    QList<int> found;
    for (size_t row = 0; row < rows.size() && found.size() < wanted.size(); ++row)
        if (wanted.contains(rows[row].location)) found << int(row);
    if (found.size() < wanted.size() && resolveLinks) {
        QSet<QString> resolved;
        for (const QString& path : wanted)
            resolved.insert(NativePath::canonical(path));
        resolved.remove(QString());
        found.clear();
        for (size_t row = 0; row < rows.size() && !resolved.isEmpty(); ++row)
            if (resolved.contains(NativePath::canonical(rows[row].location))) found << int(row);
    }
    if (found.isEmpty()) return false;
    QItemSelection selection;
    for (int row : found)
        selection.select(ui.table->model()->index(row, 0), ui.table->model()->index(row, 0));
    QItemSelectionModel* model = ui.table->selectionModel();
    model->select(selection, QItemSelectionModel::ClearAndSelect | QItemSelectionModel::Rows);
    const QModelIndex first = ui.table->model()->index(found.front(), 0);
    model->setCurrentIndex(first, QItemSelectionModel::NoUpdate);
    ui.table->scrollTo(first);
    return found.size() >= wanted.size();
}

void Explorer::selectWhenListed(const QList<QUrl>& urls, std::function<void()> then) {
    pendingSelection.clear();
    afterPendingSelection = nullptr;
    const bool reading = shown && shown->reading();
    const bool all = selectURLs(urls, !reading);
    if (!all && reading) {
        pendingSelection = urls;
        afterPendingSelection = std::move(then);
        return;
    }
    if (then && !selected().empty()) then();
}

void Explorer::applyPendingSelection() {
    if (pendingSelection.isEmpty()) return;
    const QList<QUrl> urls = std::exchange(pendingSelection, {});
    const std::function<void()> then = std::exchange(afterPendingSelection, nullptr);
    selectURLs(urls, true);
    if (then && !selected().empty()) then();
}

void Explorer::focusFileList() {
    (keys ? keys->fileList() : ui.table)->setFocus();
}

bool Explorer::focusIsInside(const QWidget* view) const {
    return keys->focusIsInside(view);
}

// ---------------------------------------------------------------- reports

void Explorer::showError(const QString& title, const QString& detail) {
    alert = ExplorerAlert::showError(this, title, detail);
}

void Explorer::setStatus(const QString& text) {
    ui.status->setText(text);
    statusReport = text;
}

// The disk catches up with an operation after it reported; its report stays until the next move.
void Explorer::showListingStatus() {
    ui.status->setText(statusReport.isEmpty() ? QString::number(entries().size()) + QStringLiteral(" items")
                                              : statusReport);
    ui.emptyLabel->setText(listed->query().isEmpty() ? QStringLiteral("This folder is empty")
                                                     : QStringLiteral("No matching items in this folder"));
    ui.emptyLabel->setVisible(entries().empty());
}

bool Explorer::handleExplorerShortcut(QKeyEvent* event) {
    return orvane::handleExplorerShortcut(*this, event);
}

void Explorer::closeEvent(QCloseEvent* event) {
    if (busy()) {
        showError(QStringLiteral("Transfer in progress"),
                  QStringLiteral("Wait for the current transfer to finish before closing this window."));
        event->ignore();
        return;
    }
    if (shown) shown->leave();
    event->accept();
    emit closing(this);
}

} // namespace orvane
