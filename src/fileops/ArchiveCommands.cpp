#include "fileops/ArchiveCommands.h"

#include "core/BrowserWindow.h"
#include "core/Job.h"
#include "core/Jobs.h"
#include "core/WindowCommands.h"
#include "fileops/Compression.h"
#include "fileops/Extraction.h"
#include "fileops/FileTrash.h"
#include "platform/NativePath.h"

#include <QApplication>
#include <QDir>
#include <QFileInfo>
#include <QThread>
#include <QWidget>
#include <memory>

namespace orvane {

namespace {
// Runs `work` on a thread of its own and hands its answer to `done` on the main thread, unless
// `context` has gone by then.
template <typename Result>
void offThread(QObject* context, std::function<Result()> work, std::function<void(const Result&)> done) {
    QThread* thread = QThread::create([context = QPointer<QObject>(context), work, done] {
        const Result result = work();
        if (context)
            QMetaObject::invokeMethod(
                context, [done, result] { done(result); }, Qt::QueuedConnection);
    });
    QObject::connect(thread, &QThread::finished, thread, &QObject::deleteLater);
    thread->start();
}

FileUndo trashStep(const QString& path) {
    return [path](QString& error) {
        QString trashed;
        return FileTrash::moveToTrash(path, trashed, error);
    };
}
} // namespace

ArchiveCommands::ArchiveCommands(BrowserWindow& window, FileUndo& undo, QObject* parent)
    : QObject(parent), w(window), fileUndo(undo) {
    w.commands().add(
        QStringLiteral("compressAction"), QStringLiteral("Compress"), [this] { compressAction(); },
        [this] { return w.current().isLocalFile() && !w.busy(); });
    w.commands().add(
        QStringLiteral("extractHere"), QStringLiteral("Extract here"), [this] { extractHere(); },
        [this] { return !w.busy() && !selectedArchive().isEmpty(); });
}

QString ArchiveCommands::selectedArchive() const {
    const std::vector<Entry> items = w.selected();
    if (items.size() != 1 || items.front().directory || !w.current().isLocalFile()) return {};
    return Extraction::handles(items.front().name()) ? items.front().location : QString();
}

void ArchiveCommands::compressAction() {
    if (w.busy()) {
        QApplication::beep();
        return;
    }
    QStringList paths;
    for (const Entry& e : w.selected())
        paths << e.location;
    if (paths.isEmpty() || !w.current().isLocalFile()) return;
    auto zip = std::make_shared<Compression>();
    QPointer<Job> job = w.jobs().start(Compression::startText(int(paths.size())), w.widget());
    job->setCanceller([zip] { zip->cancel(); });
    w.setStatus(Compression::startText(int(paths.size())));
    offThread<Compression::Outcome>(
        this, [zip, paths] { return zip->run(paths); },
        [this, job](const Compression::Outcome& out) {
            if (job) job->finish();
            if (!out.error.isEmpty()) {
                w.refresh();
                w.showError(Compression::errorTitle(), out.error);
            } else if (out.cancelled) {
                w.setStatus(QStringLiteral("Compression cancelled"));
            } else {
                land(out.archive, Compression::doneText(out.archive));
            }
            emit finished();
        });
}

void ArchiveCommands::extractHere() {
    const QString archive = selectedArchive();
    if (w.busy() || archive.isEmpty()) {
        QApplication::beep();
        return;
    }
    auto unpack = std::make_shared<Extraction>();
    const QString title =
        QStringLiteral("Extracting ") + NativePath::display(QFileInfo(archive).fileName()) + u'…';
    QPointer<Job> job = w.jobs().start(title, w.widget());
    job->setCanceller([unpack] { unpack->cancel(); });
    unpack->progress = [job](double share) {
        QMetaObject::invokeMethod(
            qApp,
            [job, share] {
                if (job) job->setProgress(share);
            },
            Qt::QueuedConnection);
    };
    w.setStatus(title);
    const QString into = QFileInfo(archive).path();
    offThread<Extraction::Outcome>(
        this, [unpack, archive, into] { return unpack->run(archive, into); },
        [this, job](const Extraction::Outcome& out) {
            if (job) job->finish();
            if (!out.error.isEmpty()) {
                w.refresh();
                w.showError(Extraction::errorTitle(), out.error);
            } else if (out.cancelled) {
                w.setStatus(QStringLiteral("Extraction cancelled"));
            } else {
                land(out.result, QStringLiteral("Extracted ") +
                                     NativePath::display(QFileInfo(out.result).fileName()) +
                                     QStringLiteral(" · Ctrl+Z to undo"));
            }
            emit finished();
        });
}

// The sources are never touched, so undoing removes only what was made.
void ArchiveCommands::land(const QString& made, const QString& status) {
    fileUndo = trashStep(made);
    w.refresh();
    if (QDir::cleanPath(w.current().toLocalFile()) == QFileInfo(made).path())
        w.selectWhenListed({QUrl::fromLocalFile(made)});
    w.setStatus(status);
}

} // namespace orvane
