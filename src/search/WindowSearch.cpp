#include "search/WindowSearch.h"
#include "core/TabList.h"
#include "kit/CommandBinding.h"
#include "kit/WindowWidgets.h"

#include "core/BrowserWindow.h"
#include "core/ExplorerEvents.h"
#include "core/Job.h"
#include "core/Jobs.h"
#include "core/WindowCommands.h"
#include "core/WindowListing.h"
#include "phone/AndroidBrowser.h"
#include "phone/AndroidContent.h"
#include "phone/PhoneEntry.h"
#include "phone/PhoneLocation.h"
#include "platform/Platform.h"
#include "views/EntryTableModel.h"
#include "views/FileTable.h"

#include <QDir>
#include <QLabel>
#include <QLineEdit>
#include <QMenu>
#include <QToolButton>

namespace orvane {

WindowSearch::WindowSearch(BrowserWindow& window) : QObject(window.widget()), w(window) {
    const WindowWidgets& ui = w.widgets();
    ui.searchField->setAccessibleName(QStringLiteral("Search"));
    ui.clearSearchButton->setAccessibleName(QStringLiteral("Clear search"));
    ui.searchScopeButton->setAccessibleName(QStringLiteral("Search scope"));
    engine.listIn(w.jobs(), w.widget());
    registerCommands();
    CommandBinding::bind(w.commands(), ui.searchScopeButton, QStringLiteral("searchScopeMenu"));
    // The phone's words differ for the third scope.
    connect(&w.events(), &ExplorerEvents::locationChanged, this, [this] {
        updateScopeButton();
        endPhoneSearch();
    });
    w.addContent(this);
}

void WindowSearch::registerCommands() {
    WindowCommands& c = w.commands();
    c.add(QStringLiteral("searchScopeMenu"), QStringLiteral("Search scope"), [this] { searchScopeMenu(); });
    c.add(Command{QStringLiteral("changeSearchScope"),
                  QStringLiteral("Search scope"),
                  [this](const QVariant& scope) { changeSearchScope(scope.toInt()); },
                  {},
                  [this](const QVariant& scope) { return searchScope == scope.toInt(); }});
    // The listing's filter asks this first; it is enabled whenever the search is not the filter.
    c.add(
        QStringLiteral("searchChanged"), QStringLiteral("Search"), [this] { searchChanged(); },
        [this] { return searchScope != 0 || showing || showingPhone; });
}

QString WindowSearch::scopeTitle(int scope, bool phone) {
    switch (scope) {
    case 0:
        return QStringLiteral("This folder only");
    case 1:
        return QStringLiteral("This folder and subfolders");
    default:
        return phone ? QStringLiteral("This phone (all storage)")
                     : Platform::instance().word(PlatformWord::ThisComputer) +
                           QStringLiteral(" (indexed locations)");
    }
}

QString WindowSearch::scopeToolTip(int scope, bool phone) {
    switch (scope) {
    case 0:
        return QStringLiteral("Search: this folder only");
    case 1:
        return QStringLiteral("Search: folder and subfolders");
    default:
        return phone ? QStringLiteral("Search: this phone (all storage)")
                     : QStringLiteral("Search: ") +
                           Platform::instance().word(PlatformWord::ThisComputerInText) +
                           QStringLiteral(" (indexed locations)");
    }
}

bool WindowSearch::onPhone() const {
    return w.current().scheme() == QLatin1String("android");
}

void WindowSearch::searchScopeMenu() {
    QMenu menu(w.widget());
    for (int scope = 0; scope < 3; ++scope)
        CommandBinding::addTo(w.commands(), &menu, QStringLiteral("changeSearchScope"), scope,
                              scopeTitle(scope, onPhone()));
    QToolButton* button = w.widgets().searchScopeButton;
    menu.exec(button->mapToGlobal(QPoint(0, button->height())));
}

// With text in the field the search runs again at once in the new scope; otherwise only the
// button's words change.
void WindowSearch::changeSearchScope(int scope) {
    if (scope < 0 || scope > 2) return;
    searchScope = scope;
    scopeChosen = true;
    updateScopeButton();
    const QString text = w.tabs().current().query;
    if (!text.isEmpty()) w.commands().run(QStringLiteral("setSearchText"), text);
}

void WindowSearch::updateScopeButton() {
    QToolButton* button = w.widgets().searchScopeButton;
    const QString words = scopeChosen ? scopeToolTip(searchScope, onPhone()) : QStringLiteral("Search scope");
    button->setToolTip(words);
    button->setAccessibleName(words);
}

void WindowSearch::searchChanged() {
    if (onPhone()) {
        startPhoneSearch();
        return;
    }
    // Back to the filter: the folder is listed again and narrowed in memory.
    if (!handles(w.current())) w.listing().setQuery(w.tabs().current().query);
    w.refresh();
}

bool WindowSearch::handles(const QUrl& url) const {
    return url.isLocalFile() && searchScope != 0 && !w.tabs().current().query.isEmpty();
}

void WindowSearch::startScopedSearch() {
    const WindowWidgets& ui = w.widgets();
    const bool computer = searchScope == 2;
    showing = true;
    w.widget()->setWindowTitle(
        QStringLiteral("Search — ") +
        (computer ? Platform::instance().word(PlatformWord::ThisComputer) : folderName(w.current())));
    ui.clearSearchButton->show();
    showFolderColumn(computer ? QString() : w.current().toLocalFile());
    streamed.clear();
    w.listing().setQuery(QString());
    w.listing().clear();
    ui.status->setText(QStringLiteral("Searching…"));
    ui.emptyLabel->hide();
    emit w.events().listingChanged();
    engine.start(
        w.tabs().current().query, w.current().toLocalFile(), computer, w.listing().showHidden(),
        [this](std::vector<Entry> results, QString note, QString problem) {
            finish(std::move(results), note, problem);
        },
        [this](std::vector<Entry> found, FolderWalk::Progress progress) {
            stream(std::move(found), progress);
        });
}

// Matches join the listing as they come, a few times a second, with the counts so far.
void WindowSearch::stream(std::vector<Entry> found, FolderWalk::Progress progress) {
    w.widgets().status->setText(QStringLiteral("Searching… ") + QString::number(progress.folders) +
                                QStringLiteral(" folders · ") + QString::number(progress.matches) +
                                QStringLiteral(" matches"));
    if (found.empty()) return;
    std::move(found.begin(), found.end(), std::back_inserter(streamed));
    w.listing().setSource(streamed);
    emit w.events().listingChanged();
}

// A search that could not run says why, not that nothing matched.
void WindowSearch::finish(std::vector<Entry> results, const QString& note, const QString& problem) {
    const WindowWidgets& ui = w.widgets();
    streamed.clear();
    const bool empty = results.empty();
    const QString count = QString::number(results.size());
    w.listing().setSource(std::move(results));
    ui.status->setText(problem.isEmpty() ? count + QStringLiteral(" results · ") + note : note);
    ui.emptyLabel->setText(problem.isEmpty() ? QStringLiteral("No matching items") : problem);
    ui.emptyLabel->setVisible(empty);
    emit w.events().listingChanged();
}

void WindowSearch::leave() {
    engine.cancel();
    streamed.clear();
    if (!showing) return;
    showing = false;
    w.table()->setFolderColumn(false);
    w.widget()->setWindowTitle(folderName(w.current()) + QStringLiteral(" — Orvane"));
}

// Names found far apart look alike: each row says where it lies, beneath the folder searched.
void WindowSearch::showFolderColumn(const QString& base) {
    if (auto* rows = qobject_cast<EntryTableModel*>(w.table()->model())) rows->setFolderBase(base);
    w.table()->setFolderColumn(true);
}

// ---------------------------------------------------------------- a phone tab without its browser

// A walk cut short by the window's end leaves no job listed behind it.
WindowSearch::~WindowSearch() {
    phone.cancel();
    if (Job* ended = std::exchange(phoneJob, nullptr)) ended->finish();
}

void WindowSearch::startPhoneSearch() {
    const QString text = w.tabs().current().query;
    const std::optional<QList<PhoneItem>> chain = PhoneLocation::decode(w.current());
    endPhoneSearch();
    if (text.isEmpty() || searchScope == 0 || !chain) {
        w.listing().setQuery(text);
        w.refresh();
        return;
    }
    showingPhone = true;
    w.listing().setQuery(QString());
    w.listing().clear();
    w.widgets().emptyLabel->hide();
    w.widgets().status->setText(QStringLiteral("Searching phone…"));
    phone.progress = [this](int folders, int matches) {
        w.widgets().status->setText(QStringLiteral("Searching phone… ") + QString::number(folders) +
                                    QStringLiteral(" folders · ") + QString::number(matches) +
                                    QStringLiteral(" matches"));
    };
    phone.batch = [this](const QList<PhoneItem>& found, const PhoneSearch::Parents& parents) {
        phoneStreamed << found;
        phoneParents.insert(parents);
        showPhoneResults(phoneStreamed, w.widgets().status->text());
    };
    // Listed among the jobs without holding the window; cancelling it ends the walk.
    phoneJob = w.jobs().start(QStringLiteral("Search"), w.widget(), false);
    phoneJob->setCanceller([this] { endPhoneSearch(); });
    phone.start(
        text, searchScope, *chain, {}, w.listing().showHidden(),
        [this](const QList<PhoneItem>& results, const PhoneSearch::Parents& parents, const QString& summary) {
            if (Job* done = std::exchange(phoneJob, nullptr)) done->finish();
            phoneParents = parents;
            phoneStreamed.clear();
            showPhoneResults(results,
                             QString::number(results.size()) + QStringLiteral(" results · ") + summary);
            w.widgets().emptyLabel->setText(QStringLiteral("No matching items"));
            w.widgets().emptyLabel->setVisible(results.isEmpty());
        });
}

// The tab's browser learns the hits first, so each row is a phone item it can open, copy and rename.
void WindowSearch::showPhoneResults(const QList<PhoneItem>& results, const QString& status) {
    if (AndroidBrowser* browser = phoneBrowser()) browser->showFound(results, phoneParents);
    std::vector<Entry> entries;
    entries.reserve(size_t(results.size()));
    for (const PhoneItem& item : results)
        entries.push_back(phoneEntry(item));
    w.listing().setSource(std::move(entries));
    w.widgets().status->setText(status);
    emit w.events().listingChanged();
}

void WindowSearch::endPhoneSearch() {
    phone.cancel();
    if (Job* ended = std::exchange(phoneJob, nullptr)) ended->finish();
    phoneStreamed.clear();
    phoneParents.clear();
    showingPhone = false;
    if (AndroidBrowser* browser = phoneBrowser()) browser->showFound({}, {});
}

AndroidBrowser* WindowSearch::phoneBrowser() const {
    const auto* phones = dynamic_cast<const AndroidContent*>(w.contentFor(w.current()));
    return phones ? phones->active() : nullptr;
}

QUrl WindowSearch::parent(const QUrl& url) const {
    const QString path = QDir::cleanPath(url.toLocalFile());
    if (path == QLatin1String("/") || path.isEmpty()) return {};
    const qsizetype slash = path.lastIndexOf(u'/');
    return QUrl::fromLocalFile(slash <= 0 ? QStringLiteral("/") : path.left(slash));
}

} // namespace orvane
