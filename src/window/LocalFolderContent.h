#pragma once

#include "core/TabContent.h"

#include <QFileSystemWatcher>
#include <QObject>
#include <QTimer>
#include <memory>

namespace orvane {

class Explorer;
struct FolderRead;

// A local folder in a tab: read off the main thread (waited for briefly, so a quick read shows at
// once and a hung mount never freezes the window), watched, and re-read once per burst of changes.
class LocalFolderContent : public QObject, public TabContent {
    Q_OBJECT
public:
    explicit LocalFolderContent(Explorer& window);
    ~LocalFolderContent() override;

    bool handles(const QUrl& url) const override { return url.isLocalFile(); }
    void reload() override;
    void leave() override;
    bool reading() const override { return readPending; }
    QUrl parent(const QUrl& url) const override;

    // While set (an open rename editor), changes on disk wait; the hold's end re-reads.
    void hold(bool on);
    bool changesWaiting() const { return changedWhileHeld; }
    // How long a read may take before the window says it is reading.
    static constexpr int quickReadMs = 500;
    // Changes on disk closer together than this become one refresh.
    static constexpr int burstMs = 60;

private:
    void watch(const QString& path);
    void finish(const std::shared_ptr<FolderRead>& read);
    void onChanged();

    Explorer& w;
    QFileSystemWatcher watcher;
    QTimer burst;
    quint64 generation = 0;
    bool held = false;
    bool readPending = false;
    bool changedWhileHeld = false;
};

} // namespace orvane
