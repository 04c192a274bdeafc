// The window's file commands on a phone folder, through the real bridge and a simulated phone: the
// inline editor, new folders, the delete confirmation, the clipboard, the context menus and drops.
#include "phone/AndroidBrowser.h"
#include "core/EntryText.h"
#include "core/InlineRename.h"
#include "core/PinnedStore.h"
#include "core/Services.h"
#include "fileops/ExplorerFileOps.h"
#include "kit/EditablePathBox.h"
#include "phone/AndroidContent.h"
#include "phone/BridgeHarness.h"
#include "phone/PhoneClipboard.h"
#include "phone/PhoneDragData.h"
#include "phone/PhoneLocation.h"
#include "phone/PhoneWindowFixture.h"
#include "support/TestEnvironment.h"
#include "support/WindowDriver.h"
#include "views/FileTable.h"
#include "window/AppDelegate.h"
#include "window/Explorer.h"

#include <QClipboard>
#include <QContextMenuEvent>
#include <QDropEvent>
#include <QLabel>
#include <QLineEdit>
#include <QMenu>
#include <QMessageBox>
#include <QMimeData>
#include <QProcess>
#include <QTimer>
#include <QToolButton>

using namespace orvane;
using namespace orvane::test;

class AndroidBrowserTest : public PhoneWindowFixture {
    Q_OBJECT

    bool idle() const { return settled() && !w->busy(); }
    bool run(const char* name) { return w->commands().run(QLatin1String(name)); }
    QString onPhone(const QString& path) const {
        return phone->path(QStringLiteral("Internal storage/") + path);
    }
    void go(const QString& folder) {
        type(QStringLiteral("Android USB/Internal storage/") + folder);
        QTRY_VERIFY(idle() && w->current().scheme() == QLatin1String("android"));
    }
    QLineEdit* editor() const { return w->inlineRename()->renameEditor(); }
    // Opens the inline editor through the window's command, types `text` and ends with `key`.
    void renameWith(const QString& text, Qt::Key key) {
        QVERIFY(run("renameAction"));
        QTRY_VERIFY(editor());
        editor()->setText(text);
        QTest::keyClick(editor(), key);
        QVERIFY(!editor());
    }
    // The next modal question, as "message|informative|buttons", answered with `button`.
    static void answer(QString* seen, const QString& button) {
        QTimer::singleShot(0, [seen, button] {
            auto* box = qobject_cast<QMessageBox*>(QApplication::activeModalWidget());
            if (!box) return;
            QStringList buttons;
            for (QAbstractButton* b : box->buttons())
                buttons << b->text() + (b->objectName() == QLatin1String("destructiveButton") ? "!" : "");
            buttons.sort();
            *seen = box->text() + u'|' + box->informativeText() + u'|' + buttons.join(u',');
            for (QAbstractButton* b : box->buttons())
                if (b->text() == button) b->click();
        });
    }
    QPoint rowCentre(const QString& name) const {
        return w->table()->visualRect(w->table()->model()->index(int(names().indexOf(name)), 0)).center();
    }
    QPoint background() const { return QPoint(5, w->table()->viewport()->height() - 5); }
    // The context menu a right click at `point` brings up, as its items' titles ("-" for a line).
    QStringList menuAt(const QPoint& point, QStringList* enabled = nullptr) {
        QContextMenuEvent event(QContextMenuEvent::Mouse, point, w->table()->viewport()->mapToGlobal(point));
        QApplication::sendEvent(w->table()->viewport(), &event);
        QMenu* menu = nullptr;
        const bool shown = QTest::qWaitFor([&] {
            for (QMenu* m : w->findChildren<QMenu*>())
                if (m->isVisible()) menu = m;
            return menu != nullptr;
        });
        if (!shown) return {};
        QStringList titles;
        for (QAction* a : menu->actions()) {
            titles << (a->isSeparator() ? QStringLiteral("-") : a->text());
            if (enabled && a->isEnabled() && !a->isSeparator()) *enabled << a->text();
        }
        menu->close();
        return titles;
    }
    bool drop(const QPoint& point, QMimeData& data, bool* marked = nullptr) {
        QWidget* viewport = w->table()->viewport();
        QDragEnterEvent enter(point, Qt::CopyAction | Qt::MoveAction, &data, Qt::LeftButton, Qt::NoModifier);
        QApplication::sendEvent(viewport, &enter);
        if (marked) *marked = w->table()->dropRow() == w->table()->indexAt(point).row();
        if (!enter.isAccepted()) return false;
        QDropEvent dropped(point, Qt::CopyAction | Qt::MoveAction, &data, Qt::LeftButton, Qt::NoModifier);
        QApplication::sendEvent(viewport, &dropped);
        return dropped.isAccepted() && !w->table()->dropRow();
    }

    std::unique_ptr<TempTree> temp; // the temporary folder of this whole run
    QProcess running;               // stands for another run of the program that is still going
    QString leftByACrash, ofARunningOne;

    QStringList clipboardFolders() const {
        return QDir(temp->path()).entryList({QStringLiteral("Belcove-Clipboard-*")}, QDir::Dirs);
    }

private slots:
    // What runs that ended without clearing up left, before this run's first window.
    void initTestCase() {
        temp = std::make_unique<TempTree>();
        qputenv("TMPDIR", QFile::encodeName(temp->path()));
        QProcess ended;
        ended.start(QStringLiteral("true"));
        const qint64 gone = ended.processId();
        QVERIFY(ended.waitForFinished());
        running.start(QStringLiteral("sleep"), {QStringLiteral("600")});
        QVERIFY(running.waitForStarted());
        leftByACrash = QStringLiteral("Belcove-Clipboard-%1-a").arg(gone);
        ofARunningOne = QStringLiteral("Belcove-Clipboard-%1-b").arg(running.processId());
        temp->file(leftByACrash + QStringLiteral("/IMG_1.jpg"), "copied");
        temp->file(ofARunningOne + QStringLiteral("/IMG_2.jpg"), "copied");
    }
    void cleanupTestCase() {
        running.kill();
        running.waitForFinished();
    }

    void init() {
        makeTrees();
        phone->file(QStringLiteral("Internal storage/DCIM/Camera/IMG_1.jpg"), "one");
        phone->file(QStringLiteral("Internal storage/DCIM/notes.txt"), "notes");
        openWindow();
        go(QStringLiteral("DCIM"));
    }
    void cleanup() { closeWindow(); }

    // The window's own editor over the name cell: a sibling's name is refused in the status line,
    // Escape sends nothing, and new folders come numbered, chosen and in rename.
    void inlineRenameAndNewFolders() {
        selectNames(*w, {"notes.txt"});
        renameWith(QStringLiteral("Camera"), Qt::Key_Return);
        QCOMPARE(status(), QStringLiteral("Choose a valid, unique name."));
        renameWith(QStringLiteral("other.txt"), Qt::Key_Escape);
        QCOMPARE(status(), QStringLiteral("Choose a valid, unique name."));
        renameWith(QStringLiteral("journal.txt"), Qt::Key_Return);
        QTRY_VERIFY(idle() && names().contains(QStringLiteral("journal.txt")));
        QCOMPARE(readAll(onPhone(QStringLiteral("DCIM/journal.txt"))), QByteArray("notes"));
        QCOMPARE(w->selected().front().name(), QStringLiteral("journal.txt"));

        for (const QString& made : {QStringLiteral("New folder"), QStringLiteral("New folder (2)")}) {
            QVERIFY(run("newFolder"));
            QTRY_VERIFY(editor());
            QCOMPARE(editor()->text(), made);
            QTest::keyClick(editor(), Qt::Key_Escape);
        }
        QVERIFY(run("newFolder"));
        QTRY_VERIFY(editor() && editor()->text() == QStringLiteral("New folder (3)"));
        editor()->setText(QStringLiteral("Trips"));
        QTest::keyClick(editor(), Qt::Key_Return);
        QTRY_VERIFY(idle() && names().contains(QStringLiteral("Trips")));
        QVERIFY(QFileInfo(onPhone(QStringLiteral("DCIM/Trips"))).isDir());
    }

    // The toolbar's command and the Delete key both ask first; Cancel sends nothing.
    void deleteAlwaysAsks() {
        selectNames(*w, {"notes.txt", "Camera"});
        QCOMPARE(w->widgets().action("trash")->toolTip(), QStringLiteral("Delete permanently from phone"));
        QString asked;
        answer(&asked, QStringLiteral("Cancel"));
        QVERIFY(run("trashAction"));
        QCOMPARE(asked,
                 QStringLiteral("Delete 2 item(s) from the phone?|This permanently deletes the selected "
                                "items, including folder contents. Android USB has no Trash and this "
                                "cannot be undone.|Cancel,Delete permanently!"));
        QVERIFY(QFileInfo::exists(onPhone(QStringLiteral("DCIM/notes.txt"))));
        QVERIFY(idle());
        w->activateWindow();
        w->focusFileList();
        answer(&asked, QStringLiteral("Delete permanently"));
        press(w, keys::Delete);
        QTRY_VERIFY(idle() && names().isEmpty());
        QVERIFY(!QFileInfo::exists(onPhone(QStringLiteral("DCIM/Camera/IMG_1.jpg"))));
    }

    // Cut notes handles and a paste elsewhere moves; Copy puts real files on the clipboard, and their
    // paste into a phone folder sends those copies.
    void cutMovesAndCopyUploads() {
        selectNames(*w, {"notes.txt"});
        QVERIFY(run("cutAction"));
        const QMimeData* clip = QGuiApplication::clipboard()->mimeData();
        QVERIFY(clip->hasFormat(PhoneClipboard::type()) && !clip->hasUrls());
        go(QStringLiteral("DCIM/Camera"));
        QVERIFY(run("pasteAction"));
        QTRY_VERIFY(idle() && names().contains(QStringLiteral("notes.txt")));
        QVERIFY(!QFileInfo::exists(onPhone(QStringLiteral("DCIM/notes.txt"))));

        selectNames(*w, {"IMG_1.jpg"});
        QVERIFY(run("copyPathAction"));
        QCOMPARE(QGuiApplication::clipboard()->text(),
                 QStringLiteral("Android USB/Internal storage/DCIM/Camera/IMG_1.jpg"));
        QVERIFY(run("copyAction"));
        QTRY_VERIFY(QGuiApplication::clipboard()->mimeData()->hasUrls());
        const QString copy = QGuiApplication::clipboard()->mimeData()->urls().value(0).toLocalFile();
        QVERIFY2(copy.contains(QStringLiteral("/Belcove-Clipboard-")), qPrintable(copy));
        QCOMPARE(readAll(copy), QByteArray("one"));
        QVERIFY(run("pasteAction")); // the same name here: refused before anything is sent
        QCOMPARE(status(), QStringLiteral("A file with that name already exists. Rename it before pasting."));
        go(QStringLiteral("DCIM"));
        QVERIFY(run("pasteAction"));
        QTRY_VERIFY(idle() && names().contains(QStringLiteral("IMG_1.jpg")));
        QCOMPARE(readAll(onPhone(QStringLiteral("DCIM/IMG_1.jpg"))), QByteArray("one"));
        QDir(QFileInfo(copy).path()).removeRecursively();
    }

    // A copy's folder lasts as long as the clipboard holds it; a failed one's not at all.
    void copiesLastAsLongAsTheClipboardHoldsThem() {
        QTRY_COMPARE(clipboardFolders(), QStringList{ofARunningOne});
        selectNames(*w, {"notes.txt"});
        QVERIFY(run("copyAction"));
        QTRY_VERIFY(idle() && QGuiApplication::clipboard()->mimeData()->hasUrls());
        QCOMPARE(clipboardFolders().size(), 2);
        QGuiApplication::clipboard()->setText(QStringLiteral("something else"));
        QTRY_COMPARE(clipboardFolders(), QStringList{ofARunningOne});
        QVERIFY(QFile::remove(onPhone(QStringLiteral("DCIM/notes.txt"))));
        QVERIFY(run("copyAction"));
        QTRY_VERIFY(idle());
        QVERIFY(!QGuiApplication::clipboard()->mimeData()->hasUrls());
        QTRY_COMPARE(clipboardFolders(), QStringList{ofARunningOne});
    }

    // A click on the background clears the selection first: its menu never offers a delete.
    void contextMenusFollowTheSelection() {
        selectNames(*w, {"notes.txt"});
        QStringList enabled;
        QCOMPARE(menuAt(background(), &enabled),
                 (QStringList{"Paste", "Send files…", "New folder", "Select all", "Refresh"}));
        QVERIFY(w->selected().empty());
        QCOMPARE(enabled, (QStringList{"Send files…", "New folder", "Select all", "Refresh"}));
        enabled.clear();
        const QStringList onFile = menuAt(rowCentre(QStringLiteral("notes.txt")), &enabled);
        QCOMPARE(onFile.mid(0, 4), (QStringList{"Open", "-", "Open in new tab", "Pin to Quick access"}));
        QCOMPARE(onFile.mid(onFile.size() - 4),
                 (QStringList{"-", "Rename", "Delete from phone…", "Properties"}));
        for (const char* title : {"Open", "Cut", "Copy", "Copy as path", "Rename", "Delete from phone…"})
            QVERIFY2(enabled.contains(QString::fromUtf8(title)), title);
        QVERIFY(!enabled.contains(QStringLiteral("Open in new tab")));
        enabled.clear();
        menuAt(rowCentre(QStringLiteral("Camera")), &enabled);
        QVERIFY(enabled.contains(QStringLiteral("Open in new tab")));

        selectNames(*w, {"Camera"});
        QVERIFY(run("pinAction")); // by the folder's own address, not its row's identity
        const PhoneItem camera = browser()->selectedItems().value(0);
        QVERIFY(w->services().pins().contains(PhoneLocation::url(browser()->state().chainTo(camera))));

        selectNames(*w, {"Camera", "notes.txt"});
        QVERIFY(run("propertiesAction"));
        QCOMPARE(takeAlert(*w), QStringLiteral("2 items|Camera — Folder\nnotes.txt — ") + byteCountText(5));
    }

    // Phone items move onto a folder row, marked while the drag is over it; local files are sent;
    // a drag to another program delivers real files when they are asked for.
    void dropsInAndDragsOut() {
        const QList<PhoneItem> notes =
            browser()->itemsOf({w->entries()[size_t(names().indexOf(QStringLiteral("notes.txt")))]});
        QMimeData items;
        PhoneClipboard::write(notes, items);
        QMimeData foreign; // another process's handles mean nothing to our bridge
        foreign.setData(PhoneClipboard::type(), items.data(PhoneClipboard::type()));
        QVERIFY(!drop(rowCentre(QStringLiteral("Camera")), foreign));
        bool marked = false;
        QVERIFY(drop(rowCentre(QStringLiteral("Camera")), items, &marked));
        QVERIFY(marked);
        QTRY_VERIFY(idle() && !names().contains(QStringLiteral("notes.txt")));
        QCOMPARE(readAll(onPhone(QStringLiteral("DCIM/Camera/notes.txt"))), QByteArray("notes"));

        QMimeData files;
        files.setUrls({QUrl::fromLocalFile(tree->file(QStringLiteral("song.mp3"), "la"))});
        QVERIFY(drop(background(), files));
        QTRY_VERIFY(idle() && names().contains(QStringLiteral("song.mp3")));
        QCOMPARE(readAll(onPhone(QStringLiteral("DCIM/song.mp3"))), QByteArray("la"));

        go(QStringLiteral("DCIM/Camera"));
        PhoneDragData promise(browser()->itemsOf(w->entries()));
        QVERIFY(promise.hasFormat(QStringLiteral("text/uri-list")));
        const QList<QUrl> delivered = promise.urls();
        QCOMPARE(delivered.size(), 2);
        QCOMPARE(readAll(delivered[0].toLocalFile()) + readAll(delivered[1].toLocalFile()),
                 QByteArray("onenotes"));
        QCOMPARE(promise.urls(), delivered); // downloaded once
        QDir(QFileInfo(delivered[0].toLocalFile()).path()).removeRecursively();
    }
};

ORVANE_TEST_MAIN(AndroidBrowserTest)
#include "AndroidBrowserTest.moc"
