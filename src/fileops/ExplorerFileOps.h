#pragma once

#include "core/Entry.h"
#include "core/InlineRename.h"
#include "fileops/FileAliases.h"
#include "fileops/FileUndo.h"
#include "fileops/TransferResult.h"

#include <QElapsedTimer>
#include <QLineEdit>
#include <QObject>
#include <QPointer>
#include <QTimer>
#include <QUrl>
#include <functional>

class QLineEdit;
class QMouseEvent;

namespace orvane {

class BrowserWindow;
class Job;
class TransferEngine;

// The file commands of one window: clipboard, transfers, create, rename, trash, delete and the one
// undo step. The window owns it; it works on the window's state and reports through its status line.
class ExplorerFileOps : public QObject, public InlineRename {
    Q_OBJECT
public:
    explicit ExplorerFileOps(BrowserWindow& window);
    ~ExplorerFileOps() override;

    FileUndo fileUndo;

    void copyAction();
    void cutAction();
    void setClipboard(bool cut);
    void pasteAction();
    // Starts a transfer into `into`, or into the current folder.
    void transfer(const QStringList& sources, bool moving, const QString& into = {});
    void undoAction();
    // Shortcuts to these items in `into`, or in the current folder; one Job, one undo step.
    void createAliases(const QStringList& items, const QString& into = {});
    void makeAlias();
    // Carries out a drop's plan: shortcuts for a link, a transfer otherwise.
    void dropFiles(const QVariant& plan);

    void newFolder();
    void newTextDocument();
    // A modal prompt for a name; empty when cancelled or invalid (which is then reported).
    QString askName(const QString& title, const QString& initial);

    void renameAction();
    // Opens the editor on the one selected item, holding `text` instead of its name when given.
    void beginInlineRename(const QString& text = {}) override;
    void finishInlineRename(bool commit) override;
    void scheduleInlineRename();
    void cancelPendingRename() override;
    QLineEdit* renameEditor() const override { return editor; }
    QUrl renameClickURL;

    void trashAction();
    void permanentlyDeleteAction();

signals:
    // A transfer or deletion ended and the window has caught up with it.
    void jobFinished();

protected:
    bool eventFilter(QObject* watched, QEvent* event) override;

private:
    PathMoved followPin() const;
    void transferProgress(double fraction);
    void finishTransfer(const TransferResult& result);
    void selectArrived(const TransferResult& result);
    void adopt(const FileUndo& step);
    void finishAliases(const FileAliases::Result& result);
    QRect renamePlacement(int row) const;
    void reopenAfterAlert(const QUrl& item, const QString& typed);
    void pointerPressed(QMouseEvent* event);
    bool confirm(const QString& message, const QString& info, const QString& accept, bool critical);
    void registerOperations();

    BrowserWindow& w;
    std::unique_ptr<TransferEngine> engine;
    QPointer<Job> running;
    QElapsedTimer transferClock;
    bool transferMoving = false;
    QPointer<QLineEdit> editor;
    QUrl renameURL;
    QString refusedText; // the editor came back after this name was refused
    Entry renaming;
    QTimer renameDelay;
    QPointer<QWidget> viewport;
};

} // namespace orvane
