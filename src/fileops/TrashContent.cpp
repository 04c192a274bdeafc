#include "fileops/TrashContent.h"

#include "core/BrowserWindow.h"
#include "core/ExplorerEvents.h"
#include "core/Job.h"
#include "core/Jobs.h"
#include "core/WindowCommands.h"
#include "core/WindowListing.h"
#include "fileops/ExplorerFileOps.h"
#include "kit/EditablePathBox.h"
#include "kit/ExplorerAlert.h"
#include "kit/WindowWidgets.h"
#include "views/FileTable.h"

#include <QApplication>
#include <QLabel>
#include <QLineEdit>
#include <QMenu>
#include <QPointer>
#include <QThreadPool>

namespace orvane {

namespace {

const QStringList& placeColumns() {
    static const QStringList keys = {QStringLiteral("origin"), QStringLiteral("deleted")};
    return keys;
}

// Nothing is made, renamed or put into the Trash by hand: it only gives back or lets go.
const QStringList& declined() {
    static const QStringList names = {
        QStringLiteral("newFolder"),        QStringLiteral("newTextDocument"),
        QStringLiteral("pasteAction"),      QStringLiteral("cutAction"),
        QStringLiteral("renameAction"),     QStringLiteral("compressAction"),
        QStringLiteral("makeAlias"),        QStringLiteral("pinAction"),
        QStringLiteral("propertiesAction"), QStringLiteral("showPackageContents")};
    return names;
}

QString subject(size_t count, const QString& name) {
    return count == 1 ? name : QString::number(count) + QStringLiteral(" items");
}

// Runs `work` on a pool thread and `done` on the main thread with its result, unless `context` is gone.
template <typename Work, typename Done> void aside(QObject* context, Work work, Done done) {
    QPointer<QObject> guard(context);
    QThreadPool::globalInstance()->start([guard, work = std::move(work), done = std::move(done)] {
        auto result = work();
        QMetaObject::invokeMethod(
            QCoreApplication::instance(),
            [guard, done, result] {
                if (guard) done(result);
            },
            Qt::QueuedConnection);
    });
}

} // namespace

TrashContent::TrashContent(BrowserWindow& window, ExplorerFileOps& fileOps)
    : QObject(window.widget()), w(window), ops(fileOps) {
    burst.setSingleShot(true);
    burst.setInterval(60);
    connect(&burst, &QTimer::timeout, this, [this] {
        if (shown()) w.refresh();
    });
    connect(&watcher, &QFileSystemWatcher::directoryChanged, this, [this] {
        if (!burst.isActive()) burst.start();
    });
    registerCommands();
}

void TrashContent::registerCommands() {
    WindowCommands& c = w.commands();
    c.add(
        QStringLiteral("restoreFromTrash"), QStringLiteral("Restore"), [this] { restoreSelection(); },
        [this] { return shown() && !w.busy() && !w.selected().empty(); });
    c.add(
        QStringLiteral("emptyTrash"), QStringLiteral("Empty Trash"), [this] { emptyTrash(); },
        [this] { return !w.busy() && (shown() ? !records.isEmpty() : !DesktopTrash::isEmpty()); });
    connect(&w.events(), &ExplorerEvents::selectionChanged, &w.commands(), &WindowCommands::refresh);
}

bool TrashContent::shown() const {
    return handles(w.current());
}

void TrashContent::reload() {
    records.clear();
    std::vector<Entry> entries;
    for (DesktopTrash::Record& record : DesktopTrash::contents()) {
        Entry entry = Entry::fromPath(record.trashed);
        entry.origin = record.original;
        entry.added = record.deleted;
        entries.push_back(std::move(entry));
        records.insert(record.trashed, std::move(record));
    }
    const WindowWidgets& ui = w.widgets();
    for (const QString& key : placeColumns())
        w.table()->setPlaceColumn(key, true);
    ui.pathBox->setElements({QStringLiteral("Trash")}, {place()});
    ui.pathBox->addressField()->setText(place().toString());
    ui.emptyLabel->setText(QStringLiteral("Trash is empty"));
    ui.emptyLabel->setVisible(entries.empty());
    w.setStatus(reported.isEmpty() ? QString::number(entries.size()) + QStringLiteral(" items") : reported);
    w.listing().setSource(std::move(entries));
    watch();
    emit w.events().listingChanged();
}

// Something trashed from anywhere shows here at once.
void TrashContent::watch() {
    QStringList folders;
    for (const DesktopTrash::Folder& folder : DesktopTrash::folders())
        folders << folder.trash + QStringLiteral("/files");
    const QStringList watched = watcher.directories();
    if (watched == folders) return;
    if (!watched.isEmpty()) watcher.removePaths(watched);
    if (!folders.isEmpty()) watcher.addPaths(folders);
}

void TrashContent::leave() {
    burst.stop();
    reported.clear();
    for (const QString& key : placeColumns())
        w.table()->setPlaceColumn(key, false);
    const QStringList watched = watcher.directories();
    if (!watched.isEmpty()) watcher.removePaths(watched);
}

// A job's report outlives the re-reads its own changes to the Trash set off, until the place is left.
void TrashContent::report(const QString& text) {
    reported = text;
    w.setStatus(text);
}

QUrl TrashContent::parent(const QUrl&) const {
    return {};
}

bool TrashContent::answers(const QString& name) const {
    return !shown() || !declined().contains(name);
}

bool TrashContent::run(const QString& name) {
    if (!shown()) return false;
    if (name == QLatin1String("trashAction") || name == QLatin1String("permanentlyDeleteAction")) {
        deleteSelection();
        return true;
    }
    return false;
}

bool TrashContent::contextMenu(QMenu* menu) {
    if (!shown()) return false;
    const auto item = [&](const char* name) {
        const QString command = QLatin1String(name);
        QAction* action = menu->addAction(w.commands().title(command), this,
                                          [this, command] { w.commands().run(command); });
        action->setEnabled(w.commands().isEnabled(command));
    };
    item("restoreFromTrash");
    item("permanentlyDeleteAction");
    menu->addSeparator();
    item("emptyTrash");
    return true;
}

bool TrashContent::goTo(const QString& typed) {
    if (!typed.trimmed().startsWith(QLatin1String("trash:"), Qt::CaseInsensitive)) return false;
    w.navigate(place());
    return true;
}

std::vector<DesktopTrash::Record> TrashContent::chosen() const {
    std::vector<DesktopTrash::Record> items;
    for (const Entry& entry : w.selected())
        if (const auto it = records.constFind(entry.location); it != records.cend()) items.push_back(*it);
    return items;
}

void TrashContent::restoreSelection() {
    const std::vector<DesktopTrash::Record> items = chosen();
    if (w.busy() || items.empty()) {
        QApplication::beep();
        return;
    }
    QPointer<Job> job = w.jobs().start(QStringLiteral("Restoring items…"), w.widget());
    report(QStringLiteral("Restoring items…"));
    aside(
        this, [items] { return TrashItems::restore(items); },
        [this, job](const TrashItems::Outcome& outcome) {
            if (job) job->finish();
            if (!outcome.restored.empty()) ops.fileUndo = TrashItems::undoStep(outcome.restored);
            w.refresh();
            report(QString::number(outcome.restored.size()) + QStringLiteral(" items restored"));
            if (!outcome.failures.isEmpty())
                w.showError(TrashItems::restoreFailureTitle(), outcome.failures.join(u'\n'));
        });
}

void TrashContent::deleteSelection() {
    const std::vector<DesktopTrash::Record> items = chosen();
    if (w.busy() || items.empty()) return;
    const std::vector<Entry> entries = w.selected();
    if (!ExplorerAlert::confirm(
            w.widget(), ExplorerAlert::Kind::Destructive,
            QStringLiteral("Permanently delete ") + subject(items.size(), entries.front().name()) + u'?',
            QStringLiteral("These items will be removed from the Trash. This operation cannot be undone."),
            QStringLiteral("Delete permanently"), QStringLiteral("trash")))
        return;
    erase(items, QStringLiteral("Deleting items…"));
}

void TrashContent::emptyTrash() {
    if (w.busy()) return;
    const std::vector<DesktopTrash::Record> items = DesktopTrash::contents();
    if (items.empty()) return;
    if (!ExplorerAlert::confirm(
            w.widget(), ExplorerAlert::Kind::Destructive, QStringLiteral("Empty the Trash?"),
            QStringLiteral("All %1 items in the Trash will be permanently deleted. This operation cannot be "
                           "undone.")
                .arg(items.size()),
            QStringLiteral("Empty Trash"), QStringLiteral("trash")))
        return;
    erase(items, QStringLiteral("Emptying the Trash…"));
}

// Nothing removed for good can be undone, so the window's undo step goes with the first removal.
void TrashContent::erase(const std::vector<DesktopTrash::Record>& items, const QString& title) {
    QStringList paths;
    for (const DesktopTrash::Record& record : items)
        paths << record.trashed;
    QPointer<Job> job = w.jobs().start(title, w.widget());
    report(title);
    aside(
        this, [paths] { return TrashItems::erase(paths); },
        [this, job](const PermanentDelete::Result& result) {
            if (job) job->finish();
            if (result.deleted > 0) ops.fileUndo = nullptr;
            w.refresh();
            report(result.statusText());
            if (!result.failures.isEmpty())
                w.showError(PermanentDelete::Result::failureTitle(), result.failureDetail());
        });
}

} // namespace orvane
