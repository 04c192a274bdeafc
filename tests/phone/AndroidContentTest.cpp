// A phone tab in a real window, over the real bridge and a simulated phone: what it shows, which
// commands it answers, its dialogs and transfers, and phone items dropped on a local window.
#include "phone/AndroidContent.h"
#include "kit/EditablePathBox.h"
#include "kit/TransferProgressEdge.h"
#include "navigation/NavigationPane.h"
#include "navigation/PlacesTable.h"
#include "phone/AndroidBrowser.h"
#include "phone/BridgeHarness.h"
#include "phone/PhoneClipboard.h"
#include "phone/PhoneLocation.h"
#include "phone/PhoneWindowFixture.h"
#include "phone/SendFilesDialog.h"
#include "platform/Platform.h"
#include "support/TestEnvironment.h"
#include "support/WindowDriver.h"
#include "views/FileTable.h"
#include "window/AppDelegate.h"
#include "window/Explorer.h"

#include <QDialogButtonBox>
#include <QDropEvent>
#include <QFileDialog>
#include <QLabel>
#include <QLineEdit>
#include <QMimeData>
#include <QPushButton>
#include <QSignalSpy>
#include <QToolButton>

using namespace orvane;
using namespace orvane::test;

class AndroidContentTest : public PhoneWindowFixture {
    Q_OBJECT

    static int rowTitled(const PlacesTable& pane, const QString& title) {
        const SidebarTreeSnapshot& s = pane.tree().snapshot();
        for (int row = 0; row < s.count(); ++row)
            if (s.places[row].title == title) return row;
        return -1;
    }
    void openNamed(const QString& name) {
        selectNames(*w, {name});
        QVERIFY(w->commands().run(QStringLiteral("openSelected")));
        QTRY_VERIFY(settled() && !names().contains(name));
    }
    bool enabled(const char* name) const { return w->commands().isEnabled(QLatin1String(name)); }
    // The dialog the window opened last, once it is there.
    // Clicks the dialog's accepting button, which must read `text`, as a person would.
    static void press(QDialog* dialog, const QString& text) {
        QDialogButtonBox* box = dialog->findChild<QDialogButtonBox*>();
        QPushButton* button = box ? qobject_cast<QPushButton*>(box->buttons().value(0)) : nullptr;
        for (QAbstractButton* b : box ? box->buttons() : QList<QAbstractButton*>())
            if (box->buttonRole(b) == QDialogButtonBox::AcceptRole) button = qobject_cast<QPushButton*>(b);
        QTRY_VERIFY(button && button->isEnabled());
        QTRY_COMPARE(button->text(), text);
        button->click();
    }
    // A drag of `data` that enters the file list and is let go at `point`; answers whether it was taken.
    bool dropAt(const QPoint& point, QMimeData& data) {
        QWidget* viewport = w->table()->viewport();
        QDragEnterEvent enter(point, Qt::CopyAction, &data, Qt::LeftButton, Qt::NoModifier);
        QApplication::sendEvent(viewport, &enter);
        if (!enter.isAccepted()) return false;
        QDropEvent drop(point, Qt::CopyAction, &data, Qt::LeftButton, Qt::NoModifier);
        QApplication::sendEvent(viewport, &drop);
        return drop.isAccepted();
    }
    template <typename Dialog> Dialog* dialog() {
        Dialog* found = nullptr;
        if (!QTest::qWaitFor([&] { return (found = w->findChild<Dialog*>()) && found->isVisible(); }, 5000))
            qWarning("no dialog came");
        return found;
    }

private slots:
    void init() {
        makeTrees();
        phone->file(QStringLiteral("Internal storage/DCIM/Camera/IMG_1.jpg"), "one");
        phone->file(QStringLiteral("Internal storage/DCIM/Camera/IMG_2.jpg"), "two");
        phone->file(QStringLiteral("Internal storage/DCIM/notes.txt"), "notes");
        phone->folder(QStringLiteral("SD card"));
        tree->file(QStringLiteral("here/existing.txt"), "mine");
        openWindow();
    }
    void cleanup() { closeWindow(); }

    void aPhoneTabListsStoragesThenFolders() {
        PlacesTable& pane = w->findChild<NavigationPane*>()->table();
        QTRY_VERIFY(pane.phoneConnected()); // the connection watch found the phone
        const int phoneRow = rowTitled(pane, QStringLiteral("Android USB"));
        QVERIFY(phoneRow >= 0);
        pane.openRow(phoneRow);
        QTRY_VERIFY(settled());
        QCOMPARE(names(), (QStringList{"Internal storage", "SD card"}));
        QCOMPARE(status(), QStringLiteral("2 items • Double-click a folder to open it"));
        QCOMPARE(w->windowTitle(), QStringLiteral("Android USB — Orvane"));
        QCOMPARE(w->widgets().pathBox->elements(), QStringList{"Android USB"});
        QCOMPARE(pane.tree().selectedRow(), phoneRow); // the pane follows into the phone
        openNamed(QStringLiteral("Internal storage"));
        openNamed(QStringLiteral("DCIM"));
        QCOMPARE(names(), (QStringList{"Camera", "notes.txt"}));
        QCOMPARE(w->windowTitle(), QStringLiteral("DCIM — Orvane"));
        QCOMPARE(w->widgets().pathBox->elements(), (QStringList{"Android USB", "Internal storage", "DCIM"}));
        QCOMPARE(w->widgets().pathBox->addressField()->text(),
                 QStringLiteral("Android USB/Internal storage/DCIM"));
        // Up goes to the parent, with the folder we came from selected.
        QVERIFY(w->commands().run(QStringLiteral("up")));
        QTRY_VERIFY(settled() && names().contains(QStringLiteral("DCIM")));
        QCOMPARE(selectedRows(*w->table()), QList<int>{int(names().indexOf(QStringLiteral("DCIM")))});
        QVERIFY(w->commands().run(QStringLiteral("up")));
        QTRY_VERIFY(settled() && names().contains(QStringLiteral("SD card")));
        QVERIFY(!enabled("up"));
        w->navigate(QUrl::fromLocalFile(tree->path(QStringLiteral("here"))));
        QVERIFY(pane.tree().selectedRow() != phoneRow);
    }

    // The table of enabled controls, through the window's own commands and buttons.
    void commandsFollowThePhoneRules() {
        type(QStringLiteral("android://phone/"));
        QVERIFY(!enabled("sendToAndroid"));
        selectNames(*w, {"Internal storage"});
        QVERIFY(!enabled("saveFromAndroid")); // a storage can't be copied
        for (const char* name :
             {"copyAction", "cutAction", "pasteAction", "renameAction", "trashAction", "newFolder"})
            QVERIFY2(!enabled(name), name);
        QVERIFY(!w->widgets().action("new")->isEnabled());
        QVERIFY(!w->widgets().action("save")->isHidden());
        type(QStringLiteral("Android USB/Internal storage/DCIM"));
        QVERIFY(enabled("sendToAndroid"));
        QVERIFY(!enabled("saveFromAndroid"));
        selectNames(*w, {"notes.txt"});
        QVERIFY(enabled("saveFromAndroid"));
        QVERIFY(w->widgets().action("save")->isEnabled());
        selectNames(*w, {"Camera"});
        QVERIFY(w->commands().run(QStringLiteral("openNewTabSelected")));
        QTRY_VERIFY(settled() && names().contains(QStringLiteral("IMG_1.jpg")));
        QCOMPARE(w->tabs().count(), 2);
        w->navigate(QUrl::fromLocalFile(tree->path(QStringLiteral("here"))));
        QVERIFY(w->widgets().action("save")->isHidden());
        selectNames(*w, {"existing.txt"});
        QVERIFY(enabled("copyAction") && enabled("renameAction"));
        QVERIFY(!enabled("sendToAndroid") && !enabled("saveFromAndroid"));
    }

    // Typed paths are walked from any tab; a local path typed on a phone tab goes there.
    void theAddressBoxWalksTypedPaths() {
        type(QStringLiteral("Android USB/Internal storage/DCIM/Camera"));
        QCOMPARE(names(), (QStringList{"IMG_1.jpg", "IMG_2.jpg"}));
        type(QStringLiteral("Android USB/Internal storage/Nope"));
        QCOMPARE(status(), QStringLiteral("Folder not found: Nope"));
        QCOMPARE(names(), (QStringList{"IMG_1.jpg", "IMG_2.jpg"})); // it stays where it was
        w->widgets().pathBox->addressField()->setText(tree->path(QStringLiteral("here")));
        w->addressGo();
        QCOMPARE(w->current(), QUrl::fromLocalFile(tree->path(QStringLiteral("here"))));
    }

    // A failed listing empties the list and says why; Refresh then reads again.
    void refreshIsUsableAfterAFailure() {
        type(QStringLiteral("android://phone/Internal storage"));
        simulate(phone->path(), {{QStringLiteral("MTP_BRIDGE_LOCKED"), QStringLiteral("1")}});
        QVERIFY(w->commands().run(QStringLiteral("refreshAction")));
        QTRY_VERIFY(settled() && status().startsWith(QStringLiteral("The phone is locked.")));
        QVERIFY(names().isEmpty());
        // The explanation stands where the items would, not only in the status line.
        QVERIFY(!w->widgets().emptyLabel->isHidden());
        QCOMPARE(w->widgets().emptyLabel->text(), status());
        QVERIFY(enabled("refreshAction"));
        simulate(phone->path());
        type(QStringLiteral("android://phone/"));
        QCOMPARE(names(), (QStringList{"Internal storage", "SD card"}));
    }

    // "Send files…" and "Copy to Computer…" through their dialogs, holding the window meanwhile.
    void sendAndCopyBackThroughTheDialogs() {
        type(QStringLiteral("Android USB/Internal storage/DCIM"));
        tree->file(QStringLiteral("out/Trip/photo.jpg"), pattern(300000, 4));
        tree->folder(QStringLiteral("out/Trip/Empty"));
        tree->file(QStringLiteral("out/ملاحظة.txt"), "arabic");
        QSignalSpy busy(&w->events(), &ExplorerEvents::busyChanged);
        QVERIFY(w->commands().run(QStringLiteral("sendToAndroid")));
        SendFilesDialog* send = dialog<SendFilesDialog>();
        QVERIFY(send);
        send->setDirectory(tree->path(QStringLiteral("out")));
        send->selectFile(QStringLiteral("\"Trip\" \"ملاحظة.txt\""));
        press(send, QStringLiteral("Send"));
        QTRY_VERIFY(settled() && names().contains(QStringLiteral("Trip")));
        QCOMPARE(busy.count(), 2);
        QCOMPARE(status(), QStringLiteral("4 items • Double-click a folder to open it"));
        QCOMPARE(readAll(phone->path(QStringLiteral("Internal storage/DCIM/Trip/photo.jpg"))),
                 pattern(300000, 4));
        QVERIFY(QFileInfo(phone->path(QStringLiteral("Internal storage/DCIM/Trip/Empty"))).isDir());

        // The same names again are refused before the dialog's choice moves anything.
        QVERIFY(w->commands().run(QStringLiteral("sendToAndroid")));
        send = dialog<SendFilesDialog>();
        send->setDirectory(tree->path(QStringLiteral("out")));
        send->selectFile(QStringLiteral("Trip"));
        press(send, QStringLiteral("Send"));
        QCOMPARE(status(), QStringLiteral("A file with that name already exists. Rename it before sending."));

        selectNames(*w, {"Trip", "notes.txt"});
        QVERIFY(w->commands().run(QStringLiteral("saveFromAndroid")));
        QFileDialog* save = dialog<QFileDialog>();
        QVERIFY(save && save->labelText(QFileDialog::Accept) == QStringLiteral("Copy here"));
        save->setOption(QFileDialog::DontUseNativeDialog);
        const QString into = tree->folder(QStringLiteral("back"));
        save->setDirectory(into); // "Copy here" takes the folder the dialog shows
        press(save, QStringLiteral("Copy here"));
        QTRY_COMPARE(status(), Platform::instance().word(PlatformWord::FilesCopiedToComputer));
        QCOMPARE(readAll(into + QStringLiteral("/Trip/photo.jpg")), pattern(300000, 4));
        QCOMPARE(readAll(into + QStringLiteral("/notes.txt")), QByteArray("notes"));
        QVERIFY(!w->busy());
    }

    // Phone items dropped on a local window land in the folder under the pointer, or the window's;
    // the one failure comes as a dialog and leaves what was there alone.
    void phoneItemsDropOnALocalWindow() {
        type(QStringLiteral("Android USB/Internal storage/DCIM"));
        QList<PhoneItem> items = browser()->itemsOf(w->entries());
        w->navigate(QUrl::fromLocalFile(tree->path(QStringLiteral("here"))));
        tree->folder(QStringLiteral("here/Inbox"));
        QTRY_VERIFY(names().contains(QStringLiteral("Inbox")));
        QMimeData data;
        PhoneClipboard::write(items, data);
        const QPoint onInbox =
            w->table()->visualRect(w->table()->model()->index(int(names().indexOf("Inbox")), 0)).center();
        QVERIFY(dropAt(onInbox, data));
        QVERIFY(w->busy());
        QTRY_VERIFY(!w->busy());
        QCOMPARE(readAll(tree->path(QStringLiteral("here/Inbox/Camera/IMG_2.jpg"))), QByteArray("two"));
        QCOMPARE(readAll(tree->path(QStringLiteral("here/Inbox/notes.txt"))), QByteArray("notes"));
        QCOMPARE(takeAlert(*w), QString());

        tree->file(QStringLiteral("here/notes.txt"), "mine too");
        QVERIFY(dropAt(QPoint(5, w->table()->viewport()->height() - 5), data));
        QTRY_VERIFY(!w->busy());
        QCOMPARE(takeAlert(*w),
                 QStringLiteral("Copy from phone|notes.txt already exists. Nothing was overwritten."));
        QCOMPARE(readAll(tree->path(QStringLiteral("here/notes.txt"))), QByteArray("mine too"));

        QMimeData files; // not phone items: not this drop's business
        files.setUrls({QUrl::fromLocalFile(tree->path(QStringLiteral("here/existing.txt")))});
        QVERIFY(!dropAt(onInbox, files));
    }
};

ORVANE_TEST_MAIN(AndroidContentTest)
#include "AndroidContentTest.moc"
