#pragma once

#include "core/TabContent.h"
#include "search/ExplorerSearch.h"
#include "search/PhoneSearch.h"

#include <QObject>
#include <QPointer>

namespace orvane {

class Job;

class AndroidBrowser;
class BrowserWindow;

// The window's search beyond the listing: the scope button and its menu, and the folder-and-
// subfolders and whole-computer searches, whose results stand in for the folder's listing while the
// field holds text. It is a tab content of its own, asked before the local folder, so every refresh
// of a searching window searches again and navigation (which empties the field) ends it. The first
// scope, this folder only, stays the listing's filter in memory. On a phone tab the deeper scopes
// walk the phone from the tab's address and show what they find.
class WindowSearch : public QObject, public TabContent {
    Q_OBJECT
public:
    explicit WindowSearch(BrowserWindow& window);
    ~WindowSearch() override;

    // 0 this folder only, 1 this folder and subfolders, 2 the whole computer or phone. Per window.
    int scope() const { return searchScope; }
    void changeSearchScope(int scope);
    void searchScopeMenu();
    static QString scopeTitle(int scope, bool phone);
    static QString scopeToolTip(int scope, bool phone);

    bool handles(const QUrl& url) const override;
    void reload() override { startScopedSearch(); }
    void leave() override;
    QUrl parent(const QUrl& url) const override;

    // The chain of the folder a phone result was found in, by the result's text key.
    QList<PhoneItem> phoneResultChain(const QString& key) const { return phoneParents.value(key); }

private:
    void registerCommands();
    void searchChanged();
    void startScopedSearch();
    void stream(std::vector<Entry> found, FolderWalk::Progress progress);
    void finish(std::vector<Entry> results, const QString& note, const QString& problem);
    void startPhoneSearch();
    void showPhoneResults(const QList<PhoneItem>& results, const QString& status);
    void endPhoneSearch();
    AndroidBrowser* phoneBrowser() const;
    void updateScopeButton();
    void showFolderColumn(const QString& base);
    bool onPhone() const;

    BrowserWindow& w;
    ExplorerSearch engine;
    PhoneSearch phone;
    QPointer<Job> phoneJob;
    PhoneSearch::Parents phoneParents;
    QList<PhoneItem> phoneStreamed;
    std::vector<Entry> streamed;
    int searchScope = 0;
    bool scopeChosen = false;
    bool showing = false;
    bool showingPhone = false;
};

} // namespace orvane
