#pragma once

#include "core/TabContent.h"

#include <QHash>
#include <QObject>
#include <QUuid>

namespace orvane {

class AndroidBrowser;
class BrowserWindow;
class PhoneConnectionWatch;

// What a phone tab shows, for every android:// address of a window: one AndroidBrowser per phone
// tab, kept while the tab lives. It also owns the window's phone commands ("Send files…" and the
// platform's "Copy to Mac…") and the connection watch that shows the phone in the navigation pane.
class AndroidContent : public QObject, public TabContent {
    Q_OBJECT
public:
    explicit AndroidContent(BrowserWindow& window);

    bool handles(const QUrl& url) const override { return url.scheme() == QLatin1String("android"); }
    void reload() override;
    void leave() override;
    QUrl parent(const QUrl& url) const override;
    bool answers(const QString& name) const override;
    bool open(const std::vector<Entry>& items) override;
    bool goTo(const QString& typed) override;
    bool reading() const override;
    bool takesFileKeys() const override { return active() != nullptr; }
    QUrl address(const Entry& folder) const override;
    bool run(const QString& name) override;
    bool contextMenu(QMenu* menu) override;
    bool rename(const Entry& item, const QString& name) override;

    // The browser of the active tab when it shows a phone, else null.
    AndroidBrowser* active() const;
    PhoneConnectionWatch& watch() const { return *connection; }

private:
    void registerCommands();
    void prune();

    BrowserWindow& w;
    QHash<QUuid, AndroidBrowser*> browsers;
    PhoneConnectionWatch* connection;
};

} // namespace orvane
