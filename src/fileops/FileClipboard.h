#pragma once

#include <QObject>
#include <QStringList>
#include <QUrl>

class QMimeData;

namespace orvane {

// The process-wide note of which clipboard items were cut. The items themselves live on the system
// clipboard; a cut holds only while nothing has been written there since, by this or any other program.
// Other desktops' cut marks are written and read too, so a Cut in another file manager pastes here as a
// move and a Cut here pastes there as one.
class FileClipboard : public QObject {
    Q_OBJECT
public:
    static FileClipboard& shared();

    QList<QUrl> urls; // the items of the last Cut that have not been moved yet
    qint64 changeCount =
        -1; // the clipboard's count just after the last Copy or Cut; -1 once the cut is spent

    // Moves on every clipboard change by any program and on every write of ours.
    qint64 pasteboardChangeCount() const { return counter; }

    // The body of Copy and Cut: writes the items and notes them as cut, or as merely copied.
    void setClipboard(const QList<QUrl>& items, bool cut);
    // Copy path: the paths between straight double quotes, nothing escaped, joined by line feeds.
    void copyPaths(const QStringList& paths);
    static QString pathText(const QStringList& paths);

    // File URLs on the clipboard, written by any program; other kinds of URL are left out.
    QList<QUrl> fileUrls() const;
    bool canPaste() const { return !fileUrls().isEmpty(); }
    // Our cut still holds: nothing has been written to the clipboard since.
    bool cutHolds() const { return changeCount == counter && !urls.isEmpty(); }
    // Dimming of a row: the item is part of a cut that still holds.
    bool isCut(const QUrl& url) const { return cutHolds() && urls.contains(url); }
    // A paste now is a move: our cut holds, or another program's cut mark is on the clipboard and unspent.
    bool pasteMoves() const;
    // After a paste that moved: the moved items stop being cut; once none is left the cut is spent.
    void finishMove(const QStringList& movedSources);
    // Escape in the file list.
    void clearCut();

signals:
    // Which items show as cut may have changed: a Cut, a Copy, a paste that moved, Escape, or a
    // write to the clipboard by any program.
    void cutChanged();

public:
    static QString gnomeFormat() { return QStringLiteral("x-special/gnome-copied-files"); }
    static QString kdeCutFormat() { return QStringLiteral("application/x-kde-cutselection"); }

private:
    FileClipboard();
    void write(QMimeData* data);
    bool isOurs(const QMimeData* data) const;
    bool foreignCut(const QMimeData* data) const;
    void changed();

    qint64 counter = 0;
    qint64 writes = 0;
    qint64 spentForeignCut = -1; // the count at which another program's cut was pasted here
};

} // namespace orvane
