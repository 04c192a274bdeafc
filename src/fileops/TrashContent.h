#pragma once

#include "core/TabContent.h"
#include "fileops/TrashItems.h"

#include <QFileSystemWatcher>
#include <QHash>
#include <QObject>
#include <QTimer>

namespace orvane {

class BrowserWindow;
class ExplorerFileOps;

// The Trash as a place, trash:///: what every Trash of the user holds, home and mounted volumes alike,
// with where each item came from and when it was deleted. Restore, Delete permanently and Empty Trash
// are its commands; restoring and removing run as jobs.
class TrashContent : public QObject, public TabContent {
    Q_OBJECT
public:
    TrashContent(BrowserWindow& window, ExplorerFileOps& fileOps);

    static QUrl place() { return QUrl(QStringLiteral("trash:///")); }

    bool handles(const QUrl& url) const override { return url.scheme() == QLatin1String("trash"); }
    void reload() override;
    void leave() override;
    QUrl parent(const QUrl& url) const override;
    bool answers(const QString& name) const override;
    bool run(const QString& name) override;
    bool contextMenu(QMenu* menu) override;
    bool goTo(const QString& typed) override;

    void restoreSelection();
    void deleteSelection();
    void emptyTrash();

private:
    bool shown() const;
    std::vector<DesktopTrash::Record> chosen() const;
    void registerCommands();
    void report(const QString& text);
    void watch();
    void erase(const std::vector<DesktopTrash::Record>& items, const QString& title);

    BrowserWindow& w;
    ExplorerFileOps& ops;
    QHash<QString, DesktopTrash::Record> records; // by the item's path in the Trash, from the last read
    QString reported;
    QFileSystemWatcher watcher;
    QTimer burst;
};

} // namespace orvane
