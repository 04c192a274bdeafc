#include "window/LocalFolderContent.h"

#include "core/ExplorerEvents.h"
#include "core/FolderListing.h"
#include "core/WindowListing.h"
#include "window/Explorer.h"

#include <QDir>
#include <QLabel>
#include <QPointer>
#include <QSemaphore>
#include <QThreadPool>

namespace orvane {

// One read of a folder, shared by the worker that fills it and the window that waits for it.
struct FolderRead {
    QString path;
    bool showHidden = false;
    quint64 generation = 0;
    std::vector<Entry> entries;
    QString error;
    bool ok = false;
    bool applied = false;
    QSemaphore done;
};

LocalFolderContent::LocalFolderContent(Explorer& window) : QObject(&window), w(window) {
    burst.setSingleShot(true);
    burst.setInterval(burstMs);
    connect(&burst, &QTimer::timeout, this, &LocalFolderContent::onChanged);
    // Not restarted by later events: a steady stream of changes still shows every burstMs.
    connect(&watcher, &QFileSystemWatcher::directoryChanged, this, [this] {
        if (!burst.isActive()) burst.start();
    });
    connect(&w.events(), &ExplorerEvents::editingChanged, this, &LocalFolderContent::hold);
}

LocalFolderContent::~LocalFolderContent() = default;

void LocalFolderContent::reload() {
    const QString path = w.current().toLocalFile();
    watch(path);
    auto read = std::make_shared<FolderRead>();
    read->path = path;
    read->showHidden = w.listing().showHidden();
    read->generation = ++generation;
    readPending = true;
    QPointer<LocalFolderContent> self(this);
    QThreadPool::globalInstance()->start([read, self] {
        read->ok = FolderListing::read(read->path, read->showHidden, {}, read->entries, read->error);
        read->done.release();
        QMetaObject::invokeMethod(
            self,
            [read, self] {
                if (self) self->finish(read);
            },
            Qt::QueuedConnection);
    });
    if (read->done.tryAcquire(1, quickReadMs)) {
        finish(read);
        return;
    }
    w.widgets().status->setText(QStringLiteral("Reading…"));
}

void LocalFolderContent::finish(const std::shared_ptr<FolderRead>& read) {
    if (read->applied || read->generation != generation) return;
    read->applied = true;
    readPending = false;
    const WindowWidgets& ui = w.widgets();
    if (!read->ok) {
        w.listing().clear();
        ui.emptyLabel->setText(QStringLiteral("Cannot read this folder"));
        ui.emptyLabel->setVisible(true);
        ui.status->setText(read->error.isEmpty() ? QStringLiteral("Cannot read this folder") : read->error);
        emit w.events().listingChanged();
        return;
    }
    w.listing().setSource(std::move(read->entries));
    w.showListingStatus();
    emit w.events().listingChanged();
}

void LocalFolderContent::leave() {
    ++generation;
    readPending = false;
    burst.stop();
    const QStringList watched = watcher.directories();
    if (!watched.isEmpty()) watcher.removePaths(watched);
}

QUrl LocalFolderContent::parent(const QUrl& url) const {
    const QString path = QDir::cleanPath(url.toLocalFile());
    if (path == QLatin1String("/") || path.isEmpty()) return {};
    const qsizetype slash = path.lastIndexOf(u'/');
    return QUrl::fromLocalFile(slash <= 0 ? QStringLiteral("/") : path.left(slash));
}

void LocalFolderContent::hold(bool on) {
    held = on;
    if (!on && changedWhileHeld) {
        changedWhileHeld = false;
        onChanged();
    }
}

// A folder that was removed and made again is a new inode: watching is renewed at every read.
void LocalFolderContent::watch(const QString& path) {
    const QStringList watched = watcher.directories();
    if (watched.size() == 1 && watched.front() == path) return;
    if (!watched.isEmpty()) watcher.removePaths(watched);
    watcher.addPath(path);
}

void LocalFolderContent::onChanged() {
    if (held) {
        changedWhileHeld = true;
        return;
    }
    if (!w.current().isLocalFile() || w.contentFor(w.current()) != this) return;
    reload();
}

} // namespace orvane
