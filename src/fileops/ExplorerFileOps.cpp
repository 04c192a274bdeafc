#include "fileops/ExplorerFileOps.h"

#include "core/ActionState.h"
#include "core/BrowserWindow.h"
#include "core/ExplorerEvents.h"
#include "core/FileDropPlan.h"
#include "core/FolderColors.h"
#include "core/Job.h"
#include "core/Jobs.h"
#include "core/PinnedStore.h"
#include "core/Services.h"
#include "core/TabContent.h"
#include "core/WindowCommands.h"
#include "fileops/ArchiveCommands.h"
#include "fileops/FileAliases.h"
#include "fileops/FileClipboard.h"
#include "fileops/FileCommands.h"
#include "fileops/FileNames.h"
#include "fileops/FileTrash.h"
#include "fileops/OpenWithCommands.h"
#include "fileops/PermanentDelete.h"
#include "fileops/TransferEngine.h"
#include "kit/AuxiliaryStyle.h"
#include "kit/EditablePathBox.h"
#include "kit/ExplorerAlert.h"
#include "kit/Palette.h"
#include "kit/TransferProgressEdge.h"
#include "kit/WindowWidgets.h"
#include "views/FileTable.h"

#include <QApplication>
#include <QDir>
#include <QFileInfo>
#include <QInputDialog>
#include <QKeyEvent>
#include <QLineEdit>
#include <QMessageBox>
#include <QStyleHints>
#include <QThreadPool>

namespace orvane {

namespace {
QStringList paths(const std::vector<Entry>& entries) {
    QStringList list;
    for (const Entry& e : entries)
        list << e.location;
    return list;
}

QString subject(const std::vector<Entry>& items, bool quoted) {
    if (items.size() != 1) return QString::number(items.size()) + QStringLiteral(" items");
    return quoted ? u'"' + items.front().name() + u'"' : items.front().name();
}
} // namespace

// Pins and folder colours follow renamed and moved folders in every window, through the one stored
// list and the one map.
PathMoved ExplorerFileOps::followPin() const {
    PinnedStore* pins = &w.services().pins();
    FolderColors* colors = &w.services().folderColors();
    return [pins, colors](const QString& from, const QString& to) {
        pins->replace(QUrl::fromLocalFile(from), QUrl::fromLocalFile(to));
        colors->moved(from, to);
    };
}

ExplorerFileOps::ExplorerFileOps(BrowserWindow& window)
    : QObject(window.widget()), w(window), engine(std::make_unique<TransferEngine>()) {
    renameDelay.setSingleShot(true);
    renameDelay.setInterval(qMax(600, QApplication::styleHints()->mouseDoubleClickInterval()));
    connect(&renameDelay, &QTimer::timeout, this, [this] {
        const std::vector<Entry> chosen = w.selected();
        if (chosen.size() == 1 && chosen.front().url() == renameClickURL && w.widget()->isActiveWindow())
            w.commands().run(QStringLiteral("renameAction"));
    });
    connect(engine.get(), &TransferEngine::progress, this, &ExplorerFileOps::transferProgress);
    connect(engine.get(), &TransferEngine::finished, this, &ExplorerFileOps::finishTransfer);
    viewport = w.table()->viewport();
    viewport->installEventFilter(this);
    registerOperations();
    connect(new ArchiveCommands(w, fileUndo, this), &ArchiveCommands::finished, this,
            &ExplorerFileOps::jobFinished);
    new OpenWithCommands(w, this);
    connect(&w.events(), &ExplorerEvents::locationChanged, this, [this] {
        cancelPendingRename();
        finishInlineRename(false);
    });
    // Another item chosen ends the edit; a name already refused is dropped, not asked again.
    connect(&w.events(), &ExplorerEvents::selectionChanged, this, [this] {
        if (!editor) return;
        const std::vector<Entry> chosen = w.selected();
        if (chosen.size() == 1 && chosen.front().url() == renameURL) return;
        finishInlineRename(editor->text() != refusedText);
    });
}

ExplorerFileOps::~ExplorerFileOps() = default;

void ExplorerFileOps::registerOperations() {
    using Rule = bool (*)(const SelectionFacts&);
    const struct {
        const char* name;
        const char* title;
        void (ExplorerFileOps::*method)();
        Rule enabled;
    } commands[] = {
        {"copyAction", "Copy", &ExplorerFileOps::copyAction, ActionState::copy},
        {"cutAction", "Cut", &ExplorerFileOps::cutAction, ActionState::cut},
        {"pasteAction", "Paste", &ExplorerFileOps::pasteAction, ActionState::paste},
        {"undoAction", "Undo", &ExplorerFileOps::undoAction, nullptr},
        {"newFolder", "New folder", &ExplorerFileOps::newFolder, ActionState::create},
        {"newTextDocument", "New text document", &ExplorerFileOps::newTextDocument, ActionState::create},
        {"renameAction", "Rename", &ExplorerFileOps::renameAction, ActionState::rename},
        {"makeAlias", "Make Alias", &ExplorerFileOps::makeAlias, ActionState::copy},
        {"trashAction", "Move to Trash", &ExplorerFileOps::trashAction, ActionState::trash},
        {"permanentlyDeleteAction", "Delete permanently", &ExplorerFileOps::permanentlyDeleteAction,
         ActionState::trash},
    };
    for (const auto& c : commands) {
        std::function<bool()> enabled;
        if (c.enabled) enabled = [this, rule = c.enabled] { return rule(w.selectionFacts()); };
        w.commands().add(
            QLatin1String(c.name), QLatin1String(c.title), [this, method = c.method] { (this->*method)(); },
            enabled);
    }
    w.commands().add(Command{QStringLiteral("dropFiles"),
                             QStringLiteral("Drop files"),
                             [this](const QVariant& plan) { dropFiles(plan); },
                             [this] { return !w.busy(); },
                             {}});
    w.commands().add(QStringLiteral("cancelInlineRename"), QStringLiteral("Cancel rename"),
                     [this] { finishInlineRename(false); });
    w.commands().add(QStringLiteral("cancelPendingRename"), QStringLiteral("Cancel rename"),
                     [this] { cancelPendingRename(); });
}

// ---------------------------------------------------------------- clipboard and transfers

void ExplorerFileOps::copyAction() {
    setClipboard(false);
}

void ExplorerFileOps::cutAction() {
    setClipboard(true);
}

void ExplorerFileOps::setClipboard(bool cut) {
    if (w.busy()) {
        QApplication::beep();
        return;
    }
    const std::vector<Entry> items = w.selected();
    if (items.empty()) return;
    QList<QUrl> urls;
    for (const Entry& e : items)
        urls << e.url();
    w.services().clipboard().setClipboard(urls, cut);
    w.table()->viewport()->update(); // the cut marks
    w.setStatus(QString::number(urls.size()) + QStringLiteral(" items ") +
                (cut ? QStringLiteral("cut — paste to move") : QStringLiteral("copied")));
}

void ExplorerFileOps::pasteAction() {
    const QList<QUrl> urls = w.services().clipboard().fileUrls();
    if (w.busy() || urls.isEmpty() || !w.current().isLocalFile()) return;
    QStringList sources;
    for (const QUrl& url : urls)
        sources << url.toLocalFile();
    transfer(sources, w.services().clipboard().pasteMoves());
}

void ExplorerFileOps::transfer(const QStringList& sources, bool moving, const QString& into) {
    if (w.busy()) return;
    if (into.isEmpty() && !w.current().isLocalFile()) {
        QApplication::beep();
        return;
    }
    const TransferPlan plan =
        TransferEngine::plan(sources, moving, into.isEmpty() ? w.current().toLocalFile() : into);
    if (plan.refused()) {
        w.showError(TransferPlan::refusalTitle(), plan.refusedSource);
        return;
    }
    if (plan.jobs.empty() || !engine->start(plan.jobs, moving)) return;
    running = w.jobs().start(TransferEngine::startText(moving), w.widget());
    running->setCanceller([this] { engine->cancel(); });
    transferMoving = moving;
    transferClock.start();
    w.setStatus(TransferEngine::startText(moving));
}

// How far, in items and bytes, and once a few seconds tell the pace, how long is left.
void ExplorerFileOps::transferProgress(double fraction) {
    if (!running) return;
    running->setProgress(fraction);
    const qint64 elapsed = transferClock.elapsed();
    std::optional<qint64> left;
    if (fraction >= 0.01 && elapsed >= 2000)
        left = qint64(double(elapsed) * (1 - fraction) / fraction / 1000);
    w.setStatus(TransferEngine::progressText(transferMoving, engine->measure(), left));
}

void ExplorerFileOps::finishTransfer(const TransferResult& result) {
    if (running) running->finish();
    if (result.moving) {
        for (const TransferJob& job : result.finished)
            followPin()(job.source, job.destination);
        w.services().clipboard().finishMove(result.movedSources());
    }
    if (!result.finished.empty()) {
        fileUndo = result.undo(followPin(), [this](const QString& message, const QString& info) {
            return confirm(message, info, QStringLiteral("Move to Trash"), false);
        });
    }
    w.refresh();
    selectArrived(result);
    w.setStatus(result.statusText());
    if (!result.failures.isEmpty()) w.showError(TransferResult::failureTitle(), result.failureDetail());
    emit jobFinished();
}

// What a paste brought into the folder on show ends up selected, as in every file manager.
void ExplorerFileOps::selectArrived(const TransferResult& result) {
    QList<QUrl> arrived;
    const QString here = QDir::cleanPath(w.current().toLocalFile());
    for (const TransferJob& job : result.finished)
        if (w.current().isLocalFile() && QFileInfo(job.destination).path() == here)
            arrived << QUrl::fromLocalFile(job.destination);
    if (!arrived.isEmpty()) w.selectWhenListed(arrived);
}

void ExplorerFileOps::adopt(const FileUndo& step) {
    if (step) fileUndo = step;
}

void ExplorerFileOps::undoAction() {
    if (w.busy() || !fileUndo) {
        QApplication::beep();
        return;
    }
    QString error;
    if (!fileUndo(error)) {
        if (!error.isEmpty()) w.showError(QStringLiteral("Could not undo"), error);
        return;
    }
    fileUndo = nullptr;
    w.refresh();
    w.setStatus(QStringLiteral("Last file operation undone"));
}

// ---------------------------------------------------------------- shortcuts and drops

void ExplorerFileOps::makeAlias() {
    if (w.busy() || !w.current().isLocalFile()) return;
    createAliases(paths(w.selected()));
}

void ExplorerFileOps::createAliases(const QStringList& items, const QString& into) {
    const QString folder = into.isEmpty() && w.current().isLocalFile() ? w.current().toLocalFile() : into;
    if (w.busy() || items.isEmpty() || folder.isEmpty()) return;
    QPointer<Job> job = w.jobs().start(FileAliases::busyText(), w.widget());
    w.commands().refresh();
    w.setStatus(FileAliases::busyText());
    QPointer<ExplorerFileOps> self(this);
    QThreadPool::globalInstance()->start([items, folder, self, job] {
        const FileAliases::Result result = FileAliases::create(items, folder);
        QMetaObject::invokeMethod(
            QCoreApplication::instance(),
            [self, job, result] {
                if (job) job->finish();
                if (self) self->finishAliases(result);
            },
            Qt::QueuedConnection);
    });
}

void ExplorerFileOps::finishAliases(const FileAliases::Result& result) {
    if (!result.created.isEmpty()) fileUndo = FileAliases::undoStep(result.created);
    w.refresh();
    w.setStatus(FileAliases::doneText(result.created.size()));
    if (!result.failures.isEmpty()) w.showError(FileAliases::failureTitle(), result.failures.join(u'\n'));
    emit jobFinished();
}

void ExplorerFileOps::dropFiles(const QVariant& value) {
    const std::optional<FileDropPlan> plan = FileDropPlan::fromVariant(value);
    if (!plan || w.busy()) return;
    QStringList sources;
    for (const QUrl& url : plan->urls)
        sources << url.toLocalFile();
    if (plan->operation == Qt::LinkAction)
        createAliases(sources, plan->folder.toLocalFile());
    else
        transfer(sources, plan->operation == Qt::MoveAction, plan->folder.toLocalFile());
}

// ---------------------------------------------------------------- create

void ExplorerFileOps::newFolder() {
    if (!w.current().isLocalFile() || w.busy()) {
        QApplication::beep();
        return;
    }
    finishInlineRename(true);
    const FileCommandResult made = FileCommands::createFolder(w.current().toLocalFile());
    if (!made.ok) {
        w.showError(made.title, made.detail);
        return;
    }
    adopt(made.undo);
    w.commands().run(QStringLiteral("clearSearch"));
    w.refresh();
    w.selectWhenListed({QUrl::fromLocalFile(made.path)}, [this] { beginInlineRename(); });
}

void ExplorerFileOps::newTextDocument() {
    if (w.busy() || !w.current().isLocalFile()) return;
    const QString name = askName(QStringLiteral("New text document"), FileNames::newDocumentName());
    if (name.isEmpty()) return;
    const FileCommandResult made = FileCommands::createTextDocument(w.current().toLocalFile(), name);
    if (!made.ok) {
        w.showError(made.title, made.detail);
        return;
    }
    adopt(made.undo);
    w.refresh();
    w.selectWhenListed({QUrl::fromLocalFile(made.path)});
}

QString ExplorerFileOps::askName(const QString& title, const QString& initial) {
    QInputDialog dialog(w.widget());
    AuxiliaryStyle::apply(&dialog);
    dialog.setWindowTitle(title);
    dialog.setLabelText(title);
    dialog.setTextValue(initial);
    dialog.setOkButtonText(QStringLiteral("OK"));
    dialog.setCancelButtonText(QStringLiteral("Cancel"));
    // Showing selects the whole name; as in the inline editor, only the stem is chosen.
    QTimer::singleShot(0, &dialog, [&dialog, initial] {
        if (auto* field = dialog.findChild<QLineEdit*>(); field && field->text() == initial) {
            const TextRange stem = filenameStemRange(initial, false);
            field->setSelection(int(stem.start), int(stem.length));
        }
    });
    if (dialog.exec() != QDialog::Accepted) return {};
    const QString name = dialog.textValue();
    if (!FileNames::isValidName(name)) {
        w.showError(FileNames::invalidNameTitle(), FileNames::invalidNameDetail());
        return {};
    }
    return name;
}

// ---------------------------------------------------------------- inline rename

void ExplorerFileOps::renameAction() {
    beginInlineRename();
}

QRect ExplorerFileOps::renamePlacement(int row) const {
    FileTable* table = w.table();
    const QModelIndex index = table->model()->index(row, 0);
    table->scrollTo(index);
    QRect cell = table->visualRect(index);
    if (!cell.isValid()) return {};
    cell.setLeft(cell.left() + 30);
    cell.setRight(cell.right() - 6);
    return QRect(cell.left(), cell.center().y() - 12, cell.width(), 24);
}

// A refused name is not lost: once the alert is read, the editor is back on the item with the typed text.
void ExplorerFileOps::reopenAfterAlert(const QUrl& item, const QString& typed) {
    QMessageBox* alert = w.lastAlert();
    if (!alert) return;
    connect(alert, &QDialog::finished, this, [this, item, typed] {
        w.selectURL(item);
        const std::vector<Entry> chosen = w.selected();
        if (chosen.size() == 1 && chosen.front().url() == item) beginInlineRename(typed);
    });
}

void ExplorerFileOps::beginInlineRename(const QString& text) {
    cancelPendingRename();
    const QModelIndexList rows = w.table()->selectionModel()->selectedRows();
    if (w.busy() || rows.size() != 1) return;
    const int row = rows.front().row();
    std::pair<QWidget*, QRect> spot = renameSpot ? renameSpot(row) : std::pair<QWidget*, QRect>();
    if (!spot.first) spot = {w.table()->viewport(), renamePlacement(row)};
    const QRect place = spot.second;
    if (!place.isValid()) return;
    finishInlineRename(false);
    const Entry& entry = w.entries()[size_t(row)];
    const QString shown = text.isEmpty() ? entry.name() : text;
    auto* field = new QLineEdit(shown, spot.first);
    field->setObjectName(QStringLiteral("renameEditor"));
    field->setGeometry(place);
    field->setAccessibleName(QStringLiteral("Rename ") + entry.name());
    field->installEventFilter(this);
    // Focus gone elsewhere with the refused name untouched: that name is dropped, not refused again.
    connect(field, &QLineEdit::editingFinished, this,
            [this] { finishInlineRename(!editor || editor->text() != refusedText); });
    renameURL = entry.url();
    renaming = entry;
    refusedText = text;
    editor = field;
    emit w.events().editingChanged(true);
    field->show();
    field->setFocus();
    const TextRange stem = filenameStemRange(shown, entry.directory);
    field->setSelection(int(stem.start), int(stem.length));
}

void ExplorerFileOps::finishInlineRename(bool commit) {
    if (editor && renameURL.isValid()) {
        const QString typed = editor->text();
        const QString path = renameURL.toLocalFile();
        const bool local = renameURL.isLocalFile();
        const QString oldName = local ? path.section(u'/', -1) : renaming.name();
        // An emptied local name keeps the old one; another place may have its own word on it.
        const QString name = typed.isEmpty() && local ? oldName : typed;
        const Entry item = std::exchange(renaming, Entry());
        QLineEdit* field = editor;
        editor.clear();
        renameURL.clear();
        field->removeEventFilter(this);
        // The table takes the focus before the editor goes: a focused widget that hides hands the
        // focus on as a Tab press to the table, which moves the selection to another item.
        if (field->hasFocus()) w.focusFileList();
        field->deleteLater();
        field->hide();
        TabContent* content = w.contentFor(w.current());
        const bool changed = commit && name != oldName;
        if (changed && !(content && content->rename(item, name)) && local) {
            const FileCommandResult done = FileCommands::rename(path, name, followPin());
            if (!done.ok) {
                w.showError(done.title, done.detail);
                reopenAfterAlert(QUrl::fromLocalFile(path), name);
            } else {
                adopt(done.undo);
                followPin()(path, done.path);
                w.refresh();
                w.selectWhenListed({QUrl::fromLocalFile(done.path)});
            }
        }
        w.focusFileList();
    }
    emit w.events().editingChanged(false);
}

void ExplorerFileOps::scheduleInlineRename() {
    if (renameClickURL.isValid()) renameDelay.start();
}

void ExplorerFileOps::cancelPendingRename() {
    renameDelay.stop();
    renameClickURL.clear();
}

// A press on the name of the row that was already the only selection arms a rename.
void ExplorerFileOps::pointerPressed(QMouseEvent* event) {
    cancelPendingRename();
    if (event->button() != Qt::LeftButton || event->modifiers() != Qt::NoModifier || editor) return;
    const QModelIndexList rows = w.table()->selectionModel()->selectedRows();
    const QModelIndex hit = w.table()->indexAt(event->position().toPoint());
    if (rows.size() != 1 || !hit.isValid() || hit.row() != rows.front().row()) return;
    if (renamePlacement(hit.row()).contains(event->position().toPoint()))
        renameClickURL = w.entries()[size_t(hit.row())].url();
}

bool ExplorerFileOps::eventFilter(QObject* watched, QEvent* event) {
    // The keys that end an edit end there: a line edit lets Return travel on to its parents, and
    // the table would take it for Rename and open the editor again.
    if (watched == editor && event->type() == QEvent::KeyPress) {
        const int key = static_cast<QKeyEvent*>(event)->key();
        if (key == Qt::Key_Escape || key == Qt::Key_Return || key == Qt::Key_Enter) {
            finishInlineRename(key != Qt::Key_Escape);
            return true;
        }
    }
    // Only pointer events reach the window below; hide and show events also come while it is torn down.
    if (watched != viewport) return false;
    switch (event->type()) {
    case QEvent::MouseButtonPress:
        pointerPressed(static_cast<QMouseEvent*>(event));
        break;
    case QEvent::MouseButtonRelease:
        scheduleInlineRename();
        break;
    case QEvent::MouseButtonDblClick:
    case QEvent::Wheel:
        cancelPendingRename();
        break;
    case QEvent::MouseMove:
        if (static_cast<QMouseEvent*>(event)->buttons() != Qt::NoButton) cancelPendingRename();
        break;
    default:
        break;
    }
    return false;
}

// ---------------------------------------------------------------- trash and delete

bool ExplorerFileOps::confirm(const QString& message, const QString& info, const QString& accept,
                              bool critical) {
    return ExplorerAlert::confirm(w.widget(),
                                  critical ? ExplorerAlert::Kind::Destructive : ExplorerAlert::Kind::Question,
                                  message, info, accept, QStringLiteral("trash"));
}

void ExplorerFileOps::trashAction() {
    if (w.busy()) {
        QApplication::beep();
        return;
    }
    const std::vector<Entry> items = w.selected();
    if (items.empty()) return;
    if (!confirm(QStringLiteral("Move ") + subject(items, true) + QStringLiteral(" to Trash?"),
                 QStringLiteral("You can restore these items from Trash or press Ctrl+Z here."),
                 QStringLiteral("Move to Trash"), false))
        return;
    const FileTrash::Batch batch = FileTrash::trash(paths(items));
    if (!batch.items.empty()) fileUndo = FileTrash::undoStep(batch.items);
    w.refresh();
    if (!batch.failures.isEmpty()) w.showError(FileTrash::failureTitle(), batch.failures.join(u'\n'));
}

void ExplorerFileOps::permanentlyDeleteAction() {
    const std::vector<Entry> items = w.selected();
    if (w.busy() || items.empty()) return;
    if (!confirm(QStringLiteral("Permanently delete ") + subject(items, false) + u'?',
                 QStringLiteral("These items will not go to Trash. This operation cannot be undone."),
                 QStringLiteral("Delete permanently"), true))
        return;
    QPointer<Job> job = w.jobs().start(QStringLiteral("Deleting items…"), w.widget());
    w.setStatus(QStringLiteral("Deleting items…"));
    PermanentDelete::start(paths(items), this, [this, job](const PermanentDelete::Result& result) {
        if (job) job->finish();
        if (result.deleted > 0) fileUndo = nullptr;
        w.refresh();
        w.setStatus(result.statusText());
        if (!result.failures.isEmpty())
            w.showError(PermanentDelete::Result::failureTitle(), result.failureDetail());
        emit jobFinished();
    });
}

} // namespace orvane
