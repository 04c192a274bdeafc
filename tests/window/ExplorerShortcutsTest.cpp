#include "window/ExplorerShortcuts.h"
#include "chrome/ExplorerChrome.h"
#include "chrome/ShortcutGuideWindow.h"
#include "core/InlineRename.h"
#include "core/ShortcutRows.h"
#include "core/TabContent.h"
#include "fileops/ExplorerFileOps.h"
#include "fileops/FileClipboard.h"
#include "kit/EditablePathBox.h"
#include "support/TempTree.h"
#include "support/TestEnvironment.h"
#include "support/WindowDriver.h"
#include "support/WindowFixture.h"
#include "views/FileTable.h"
#include "window/AppDelegate.h"
#include "window/Explorer.h"
#include "window/ModalShortcuts.h"

#include <QDialog>
#include <QLabel>
#include <QLineEdit>
#include <QMenu>
#include <QSignalSpy>
#include <QVBoxLayout>

using namespace orvane;
using namespace orvane::test;

namespace {

// Word moves, select all, copy, cut and undo belong to the field, whatever the window around it does
// with those keys. Letters come with Arabic text, so the physical key is what counts.
void editsLikeAField(QWidget* window, QLineEdit* field) {
    field->setText(QStringLiteral("holiday photos.txt"));
    field->end(false);
    QVERIFY(press(window, keys::Left, control));
    QCOMPARE(field->cursorPosition(), 15);
    QVERIFY(press(window, keys::Left, control | shift));
    QCOMPARE(field->selectedText(), QStringLiteral("."));
    QVERIFY(press(window, keys::Home, control));
    QVERIFY(press(window, keys::Right, control | shift));
    QCOMPARE(field->selectedText(), QStringLiteral("holiday "));
    QVERIFY(press(window, keys::Delete, control));
    QCOMPARE(field->text(), QStringLiteral("photos.txt"));
    field->end(false);
    QVERIFY(press(window, keys::Backspace, control));
    QCOMPARE(field->text(), QStringLiteral("photos."));
    QVERIFY(press(window, keys::A, primary, QStringLiteral("ش")));
    QVERIFY(press(window, keys::C, primary, QStringLiteral("ؤ")));
    QCOMPARE(field->selectedText(), QStringLiteral("photos."));
    QVERIFY(press(window, keys::X, primary, QStringLiteral("ء")));
    QVERIFY(field->text().isEmpty());
    QVERIFY(press(window, keys::Z, primary, QStringLiteral("ئ")));
    QCOMPARE(field->text(), QStringLiteral("photos."));
}

// A place with items of its own, as a phone tab is: it notes the commands its keys reach.
class PhoneStandIn : public TabContent {
public:
    QStringList calls;
    bool handles(const QUrl& url) const override { return url.scheme() == QLatin1String("android"); }
    void reload() override {}
    QUrl parent(const QUrl&) const override { return {}; }
    bool takesFileKeys() const override { return true; }
    bool run(const QString& name) override { return calls << name, true; }
};

// One table row per line: QTest::newRow(name) << values...
template <typename... Values> void row(const char* name, const Values&... values) {
    (QTest::newRow(name) << ... << values);
}

// The system's key code of a key, found by asking the program which key each code is.
quint32 scanCodeOf(PhysicalKey key) {
    for (quint32 code = 1; code < 256; ++code)
        if (nativePhysicalKey(QKeyEvent(QEvent::KeyPress, 0, Qt::NoModifier, code, 0, 0)) == key) return code;
    return 0;
}

QStringList listed(const QString& operation) {
    return operation.isEmpty() ? QStringList() : QStringList{operation};
}

} // namespace

Q_DECLARE_METATYPE(orvane::test::Key)

class ExplorerShortcutsTest : public QObject, WindowFixture {
    Q_OBJECT
    QStringList called;
    PhoneStandIn phone; // outlives the windows that hold it

    // Stand-ins for the commands the keys reach through the registry; each notes its name. Cancelling
    // a rename still happens, so the editor's Escape can be followed to its end.
    void registerStandIns() {
        const QString names = QStringLiteral(
            "copyAction copyPathAction cutAction pasteAction trashAction permanentlyDeleteAction undoAction "
            "renameAction newFolder propertiesAction quickLook helpAction expandToCurrentFolder "
            "arrangeWindow:0 "
            "arrangeWindow:1 arrangeWindow:2 arrangeWindow:3 setViewMode:1 setViewMode:2 setViewMode:3 "
            "setViewMode:8 setViewMode:9 cancelInlineRename");
        for (const QString& spelled : names.split(u' ')) {
            const QString name = spelled.section(u':', 0, 0);
            const bool real = name == QLatin1String("cancelInlineRename");
            w->commands().add(Command{name,
                                      name,
                                      [this, name, real](const QVariant& arg) {
                                          called << (arg.isValid() ? name + u':' + arg.toString() : name);
                                          if (real) w->inlineRename()->finishInlineRename(false);
                                      },
                                      {},
                                      {}});
        }
    }
    // Selects one row and makes it current, as a plain click would.
    void selectCurrent(int row) {
        w->table()->selectionModel()->setCurrentIndex(w->table()->model()->index(row, 0),
                                                      QItemSelectionModel::ClearAndSelect |
                                                          QItemSelectionModel::Rows);
    }
    void openPhoneTab() {
        w->addContent(&phone);
        QVERIFY(w->navigate(QUrl(QStringLiteral("android://phone?location=1"))));
        w->commands().setRoute({}); // the stand-ins answer, not the phone tab's own commands
    }

private slots:
    void init() {
        startProgram();
        for (const char* name : {"a.txt", "b.txt", "c.txt", "d.txt", "e.txt", "f.txt"})
            tree->file(name, "x");
        tree->folder("Sub");
        openWindow();
        QVERIFY(QTest::qWaitForWindowActive(w));
        w->table()->setFocus();
        called.clear();
        phone.calls.clear();
    }
    void cleanup() { stopProgram(); }

    void readingTheKeyUsesItsPlace_data() {
        QTest::addColumn<PhysicalKey>("physical");
        QTest::addColumn<QString>("text");
        QTest::addColumn<QString>("letter");
        QTest::addColumn<int>("digit");
        row("T under Arabic", PhysicalKey::T, "ف", "t", 0);
        row("N under Arabic", PhysicalKey::N, "ى", "n", 0);
        row("Q has no command letter", PhysicalKey::Q, "ض", "ض", 0);
        row("control character dropped", PhysicalKey::G, "\x07", "", 0);
        row("upper case lowered", PhysicalKey::B, "B", "b", 0);
        row("5 sits between 4 and 6", PhysicalKey::Digit5, "5", "5", 5);
        row("shifted 9", PhysicalKey::Digit9, "(", "(", 9);
        row("0 picks no tab", PhysicalKey::Digit0, "0", "0", 0);
    }
    void readingTheKeyUsesItsPlace() {
        QFETCH(PhysicalKey, physical);
        QFETCH(QString, text);
        QFETCH(QString, letter);
        QFETCH(int, digit);
        QCOMPARE(shortcutLetter(physical, text), letter);
        QCOMPARE(shortcutDigit(physical), digit);
    }

    void commandsReachTheirOperations_data() {
        QTest::addColumn<Key>("key");
        QTest::addColumn<Qt::KeyboardModifiers>("modifiers");
        QTest::addColumn<QString>("text");
        QTest::addColumn<QString>("operation");
        row("Ctrl+C", keys::C, primary, "ؤ", "copyAction");
        row("Ctrl+Shift+C", keys::C, primary | shift, "ؤ", "copyPathAction");
        row("Ctrl+X", keys::X, primary, "ء", "cutAction");
        row("Ctrl+V", keys::V, primary, "ر", "pasteAction");
        row("Ctrl+D", keys::D, primary, "ي", "trashAction");
        row("Ctrl+Z", keys::Z, primary, "ئ", "undoAction");
        row("Ctrl+Shift+N", keys::N, primary | shift, "ى", "newFolder");
        row("Ctrl+Shift+E", keys::E, primary | shift, "ث", "expandToCurrentFolder");
        row("Return", keys::Return, none, "\r", "renameAction");
        row("keypad Enter", keys::Enter, none, "\r", "renameAction");
        row("Alt+Return", keys::Return, alt, "\r", "propertiesAction");
        row("Space", keys::Space, none, " ", "quickLook");
        row("Ctrl+Shift+2", keys::Digit2, primary | shift, "@", "setViewMode:2");
        row("Ctrl+Alt+Left", keys::Left, control | alt, "", "arrangeWindow:0");
        row("Ctrl+Alt+Right", keys::Right, control | alt, "", "arrangeWindow:1");
        row("Ctrl+Alt+Up", keys::Up, control | alt, "", "arrangeWindow:2");
        row("Ctrl+Alt+Down", keys::Down, control | alt, "", "arrangeWindow:3");
        row("Ctrl+Q is no command", keys::Q, primary, "ض", "");
        row("Ctrl+Alt+C is no copy", keys::C, primary | alt, "ؤ", "");
    }
    void commandsReachTheirOperations() {
        QFETCH(Key, key);
        QFETCH(Qt::KeyboardModifiers, modifiers);
        QFETCH(QString, text);
        QFETCH(QString, operation);
        registerStandIns();
        press(w, key, modifiers, text);
        QCOMPARE(called, listed(operation));
        QCOMPARE(w->tabs().count(), 1);
    }

    // Every key the shortcut guide names runs the command it names, through the window's own key
    // handling; asked with the commands suspended, so nothing happens but the request.
    void guideKeysRunTheirCommands_data() {
        QTest::addColumn<Key>("key");
        QTest::addColumn<Qt::KeyboardModifiers>("modifiers");
        QTest::addColumn<QString>("command");
        for (const ShortcutRow& line : explorerShortcutRows())
            for (const GuideKey& chord : line.chords) {
                const Qt::KeyboardModifiers held = (chord.primary ? primary : none) |
                                                   (chord.alt ? alt : none) | (chord.shift ? shift : none);
                const QString name = keyText(chord) + u' ' + line.commandOf(chord);
                QTest::newRow(qPrintable(name))
                    << Key{scanCodeOf(chord.key), 0, 0} << held << line.commandOf(chord);
            }
    }
    void guideKeysRunTheirCommands() {
        QFETCH(Key, key);
        QFETCH(Qt::KeyboardModifiers, modifiers);
        QFETCH(QString, command);
        QVERIFY(key.scanCode != 0);
        w->commands().setSuspended(true);
        QSignalSpy requested(&w->commands(), &WindowCommands::requested);
        press(w, key, modifiers);
        QStringList names; // any key first puts a pending rename away
        for (const QList<QVariant>& request : requested)
            names << request.front().toString();
        names.removeAll(QStringLiteral("cancelPendingRename"));
        QCOMPARE(names, QStringList{command});
    }

    void phoneTabSendsItsKeysToThePhone_data() {
        QTest::addColumn<Key>("key");
        QTest::addColumn<Qt::KeyboardModifiers>("modifiers");
        QTest::addColumn<QString>("phoneCall");
        QTest::addColumn<QString>("operation");
        row("Ctrl+C", keys::C, primary, "copyAction", "");
        row("Ctrl+V", keys::V, primary, "pasteAction", "");
        row("Ctrl+A", keys::A, primary, "selectAll", "");
        row("Ctrl+Shift+N", keys::N, primary | shift, "newFolder", "");
        row("Ctrl+X", keys::X, primary, "cutAction", "");
        row("Ctrl+Shift+X", keys::X, primary | shift, "cutAction", "");
        row("Return", keys::Return, none, "renameAction", "");
        row("F2", keys::F2, none, "renameAction", "");
        row("Backspace", keys::Backspace, none, "trashAction", "");
        row("Delete", keys::Delete, none, "trashAction", "");
        row("Alt+Return", keys::Return, alt, "propertiesAction", "");
        row("Ctrl+Shift+C is the path", keys::C, primary | shift, "", "copyPathAction");
        row("Ctrl+Z stays local", keys::Z, primary, "", "undoAction");
    }
    void phoneTabSendsItsKeysToThePhone() {
        QFETCH(Key, key);
        QFETCH(Qt::KeyboardModifiers, modifiers);
        QFETCH(QString, phoneCall);
        QFETCH(QString, operation);
        registerStandIns();
        openPhoneTab();
        w->table()->setFocus();
        QVERIFY(press(w, key, modifiers));
        QCOMPARE(phone.calls, listed(phoneCall));
        QCOMPARE(called, listed(operation));
    }

    void searchFieldKeepsItsEditingKeys_data() {
        QTest::addColumn<bool>("phoneTab");
        QTest::newRow("folder tab") << false;
        QTest::newRow("phone tab") << true;
    }
    void searchFieldKeepsItsEditingKeys() {
        QFETCH(bool, phoneTab);
        registerStandIns();
        if (phoneTab) openPhoneTab();
        QLineEdit* search = w->widgets().searchField;
        search->setFocus();
        editsLikeAField(w, search);
        QCOMPARE(called, QStringList());
        QCOMPARE(phone.calls, QStringList());
        // Commands of every context still work from a field, others are typing.
        search->end(false);
        press(w, keys::Space, none, QStringLiteral(" "));
        QCOMPARE(search->text(), QStringLiteral("photos. "));
        QVERIFY(press(w, keys::T, primary));
        QCOMPARE(w->tabs().count(), 2);
    }

    void renameEditorKeepsItsKeysAndEscapeCancels() {
        // History first: Backspace in the editor must edit the name, not go back.
        QVERIFY(w->navigate(QUrl::fromLocalFile(tree->path("Sub"))) &&
                w->navigate(QUrl::fromLocalFile(tree->path())));
        registerStandIns();
        selectNames(*w, {"a.txt"});
        w->inlineRename()->beginInlineRename();
        QLineEdit* editor = w->inlineRename()->renameEditor();
        QVERIFY(editor);
        editsLikeAField(w, editor);
        editor->end(false);
        press(w, keys::Backspace, none);
        QCOMPARE(editor->text(), QStringLiteral("photos"));
        QCOMPARE(w->tabs().current().index, 2);
        QVERIFY(press(w, keys::Escape));
        QCOMPARE(called, QStringList{"cancelInlineRename"});
        QVERIFY(!w->inlineRename()->renameEditor() && !w->inlineRename()->renameEditor());
        QCOMPARE(w->focusWidget(), w->table());
        QVERIFY(QFileInfo::exists(tree->path("a.txt")));
    }

    void dialogsGetTheTextKeysAndEscape() {
        app->installModalShortcuts();
        QDialog dialog(w);
        auto* field = new QLineEdit(&dialog);
        (new QVBoxLayout(&dialog))->addWidget(field);
        dialog.setModal(true);
        dialog.show();
        QVERIFY(QTest::qWaitForWindowActive(&dialog));
        field->setFocus();
        editsLikeAField(&dialog, field);
        QCOMPARE(w->tabs().count(), 1);
        QVERIFY(press(&dialog, keys::Escape));
        QCOMPARE(dialog.result(), ModalShortcuts::escapeCode);
        QVERIFY(!dialog.isVisible());
    }

    void tabKeys_data() {
        QTest::addColumn<int>("tabCount");
        QTest::addColumn<Key>("key");
        QTest::addColumn<Qt::KeyboardModifiers>("modifiers");
        QTest::addColumn<QString>("text");
        QTest::addColumn<int>("active");
        QTest::addColumn<QString>("operation");
        row("Ctrl+T under Arabic opens one", 1, keys::T, primary, "ف", 1, "");
        row("Ctrl+9 with nine tabs", 9, keys::Digit9, primary, "", 8, "");
        row("Ctrl+9 with three tabs", 3, keys::Digit9, primary, "", 0, "");
        row("Ctrl+3", 3, keys::Digit3, primary, "", 2, "");
        row("Ctrl+Shift+9", 9, keys::Digit9, primary | shift, "(", 0, "");
        row("Ctrl+Shift+3", 9, keys::Digit3, primary | shift, "", 0, "setViewMode:3");
        row("Ctrl+Tab", 3, keys::Tab, primary, "", 1, "");
        row("Ctrl+Shift+Tab wraps", 3, keys::Tab, primary | shift, "", 2, "");
    }
    void tabKeys() {
        QFETCH(int, tabCount);
        QFETCH(Key, key);
        QFETCH(Qt::KeyboardModifiers, modifiers);
        QFETCH(QString, text);
        QFETCH(int, active);
        QFETCH(QString, operation);
        registerStandIns();
        while (w->tabs().count() < tabCount)
            w->newTab();
        w->activateTab(0);
        press(w, key, modifiers, text);
        QCOMPARE(w->tabs().active(), active);
        QCOMPARE(w->tabs().count(), std::max(tabCount, active + 1));
        QCOMPARE(called, listed(operation));
    }

    void keysWithoutACodeNeedALatinLetter() {
        QKeyEvent bare(QEvent::KeyPress, 0x0641, primary, QStringLiteral("ف"));
        QVERIFY(!w->handleExplorerShortcut(&bare));
        QCOMPARE(w->tabs().count(), 1);
    }

    void ringMovesWithoutTouchingTheSelection() {
        FileTable* table = w->table();
        selectCurrent(1);
        QVERIFY(press(w, keys::Down, primary));
        QVERIFY(press(w, keys::Down, primary));
        QCOMPARE(table->keyboardFocusRow(), std::optional<int>(3));
        QCOMPARE(selectedRows(*table), QList<int>({1}));
        QVERIFY(press(w, keys::Space, none, QStringLiteral(" ")));
        QCOMPARE(selectedRows(*table), QList<int>({1, 3}));
        QCOMPARE(table->keyboardFocusRow(), std::optional<int>(3));
        QVERIFY(press(w, keys::Right, primary));
        QVERIFY(press(w, keys::Space, primary));
        QCOMPARE(selectedRows(*table), QList<int>({1, 3, 4}));
        QVERIFY(press(w, keys::Space, none, QStringLiteral(" ")));
        QCOMPARE(selectedRows(*table), QList<int>({1, 3}));
        // Past the last row the ring stays on it.
        for (int i = 0; i < 10; ++i)
            press(w, keys::Down, primary);
        QCOMPARE(table->keyboardFocusRow(), std::optional<int>(int(w->entries().size()) - 1));
        QTest::mouseClick(table->viewport(), Qt::LeftButton, {},
                          table->visualRect(table->model()->index(0, 0)).center());
        QCOMPARE(table->keyboardFocusRow(), std::nullopt);
    }

    void ringExtendsAndBoundariesSelect() {
        FileTable* table = w->table();
        const int last = int(w->entries().size()) - 1;
        QVERIFY(press(w, keys::Up, primary));
        QCOMPARE(table->keyboardFocusRow(), std::optional<int>(last)); // from nothing, Up lands on the end
        QVERIFY(selectedRows(*table).isEmpty());
        selectCurrent(2);
        QVERIFY(press(w, keys::Down, primary | shift));
        QVERIFY(press(w, keys::Down, primary | shift));
        QCOMPARE(selectedRows(*table), QList<int>({2, 3, 4}));
        QCOMPARE(table->keyboardFocusRow(), std::optional<int>(4));
        QVERIFY(press(w, keys::End));
        QCOMPARE(selectedRows(*table), QList<int>({last}));
        QVERIFY(press(w, keys::Home, shift));
        QCOMPARE(selectedRows(*table).size(), last + 1);
        QVERIFY(press(w, keys::Home));
        QCOMPARE(selectedRows(*table), QList<int>({0}));
    }

    void ringDoesNothingInAnEmptyFolder() {
        QVERIFY(w->navigate(QUrl::fromLocalFile(tree->path("Sub"))));
        w->table()->setFocus();
        QVERIFY(press(w, keys::Down, primary));
        QVERIFY(press(w, keys::Space, primary));
        QVERIFY(press(w, keys::End));
        QCOMPARE(w->table()->keyboardFocusRow(), std::nullopt);
        QVERIFY(selectedRows(*w->table()).isEmpty());
    }

    void altF4ClosesTheWindowAndF4EditsTheAddress() {
        Explorer* other = app->newWindow(QUrl::fromLocalFile(tree->path()));
        QVERIFY(QTest::qWaitForWindowActive(other));
        other->table()->setFocus();
        QVERIFY(press(other, keys::F4));
        QVERIFY(other->widgets().pathBox->addressShown());
        QCOMPARE(other->focusWidget(), other->widgets().pathBox->addressField());
        QVERIFY(press(other, keys::F4, alt));
        QCOMPARE(app->windows.size(), size_t(1));
        QCOMPARE(app->windows.front().get(), w);
    }

    void navigationKeys() {
        QVERIFY(w->navigate(QUrl::fromLocalFile(tree->path("Sub"))));
        QVERIFY(press(w, keys::Backspace));
        QCOMPARE(w->current().toLocalFile(), tree->path());
        QVERIFY(press(w, keys::Right, alt));
        QCOMPARE(w->current().toLocalFile(), tree->path("Sub"));
        QVERIFY(press(w, keys::Left, alt));
        QCOMPARE(w->current().toLocalFile(), tree->path());
        QVERIFY(w->navigate(QUrl::fromLocalFile(tree->path("Sub"))));
        QVERIFY(press(w, keys::Up, alt));
        QCOMPARE(w->current().toLocalFile(), tree->path());
        QCOMPARE(w->tabs().current().history.size(), 3);
    }

    void focusKeysAndEscapeFromTheAddress() {
        QLineEdit* address = w->widgets().pathBox->addressField();
        QVERIFY(press(w, keys::L, primary, QStringLiteral("م")));
        QCOMPARE(w->focusWidget(), address);
        address->setText(QStringLiteral("/somewhere/else"));
        QVERIFY(press(w, keys::Escape));
        QVERIFY(!w->widgets().pathBox->addressShown());
        QCOMPARE(address->text(), tree->path());
        QCOMPARE(w->focusWidget(), w->table());
        QVERIFY(press(w, keys::D, alt));
        QCOMPARE(w->focusWidget(), address);
        w->widgets().searchField->setText(QStringLiteral("abc"));
        QVERIFY(press(w, keys::F, primary));
        QCOMPARE(w->focusWidget(), w->widgets().searchField);
        QCOMPARE(w->widgets().searchField->selectedText(), QStringLiteral("abc"));
    }

    void f6CyclesTheRegions() {
        for (int region : {0, 1, 2, 3, 0}) {
            QVERIFY(press(w, keys::F6));
            QCOMPARE(w->keyboard().focusRegion(), region);
        }
        for (int region : {3, 2}) {
            QVERIFY(press(w, keys::F6, shift));
            QCOMPARE(w->keyboard().focusRegion(), region);
        }
        QCOMPARE(w->focusWidget(), w->widgets().navigationPane->focusProxy());
        QVERIFY(!w->widgets().pathBox->addressShown());
    }

    void escapeClearsTheFilterAndTheCut() {
        w->commands().run(QStringLiteral("setSearchText"), QStringLiteral("a.t"));
        QCOMPARE(w->entries().size(), size_t(1));
        FileClipboard::shared().setClipboard({QUrl::fromLocalFile(tree->path("b.txt"))}, true);
        QVERIFY(FileClipboard::shared().cutHolds());
        w->table()->setFocus();
        QVERIFY(press(w, keys::Escape));
        QVERIFY(w->tabs().current().query.isEmpty());
        QVERIFY(w->widgets().searchField->text().isEmpty());
        QCOMPARE(w->entries().size(), size_t(7));
        QVERIFY(!FileClipboard::shared().cutHolds());
    }

    // Escape in the search field clears it, as the guide says; a second one goes back to the files.
    void escapeInTheSearchFieldClearsIt() {
        QVERIFY(press(w, keys::F, primary));
        QLineEdit* search = w->widgets().searchField;
        QCOMPARE(w->focusWidget(), search);
        typeText(w, QStringLiteral("a.t"));
        QCOMPARE(search->text(), QStringLiteral("a.t"));
        QCOMPARE(w->entries().size(), size_t(1));
        QVERIFY(press(w, keys::Escape));
        QVERIFY(search->text().isEmpty());
        QVERIFY(w->tabs().current().query.isEmpty());
        QCOMPARE(w->entries().size(), size_t(7));
        QCOMPARE(w->focusWidget(), search);
        QVERIFY(press(w, keys::Escape));
        QCOMPARE(w->focusWidget(), w->table());
    }

    void paneAndWindowToggles() {
        QVERIFY(press(w, keys::P, alt));
        QVERIFY((*w->findChild<ExplorerChrome*>()).previewVisible);
        QVERIFY(press(w, keys::P, alt | shift));
        QVERIFY((*w->findChild<ExplorerChrome*>()).detailsVisible &&
                !(*w->findChild<ExplorerChrome*>()).previewVisible);
        QVERIFY(press(w, keys::H, primary | shift));
        QVERIFY(w->listing().showHidden());
        QVERIFY(press(w, keys::A, primary));
        QCOMPARE(selectedRows(*w->table()).size(), int(w->entries().size()));
        QVERIFY(press(w, keys::N, primary, QStringLiteral("ى")));
        QCOMPARE(app->windows.size(), size_t(2));
    }

    void menuShortcutsDoNotOverrideTheWindow() {
        w->newTab();
        w->table()->setFocus();
        // Through Qt's own delivery, where the menu's Ctrl+W "Close Window" would otherwise win.
        QTest::keyClick(w->table(), Qt::Key_W, primary);
        QCOMPARE(w->tabs().count(), 1);
        QCOMPARE(app->windows.size(), size_t(1));
        QTest::keyClicks(w->widgets().searchField, QStringLiteral("b.t"));
        QCOMPARE(w->widgets().searchField->text(), QStringLiteral("b.t"));
    }

    // Return renames, so a keyboard reaches Open through the context menu, where it comes first.
    void keyboardContextMenuOpensAtTheRow_data() {
        QTest::addColumn<Key>("key");
        QTest::addColumn<int>("modifiers");
        QTest::newRow("Shift+F10") << keys::F10 << int(shift);
        QTest::newRow("Menu key") << Key{135, 110, Qt::Key_Menu} << 0;
    }
    void keyboardContextMenuOpensAtTheRow() {
        QFETCH(Key, key);
        QFETCH(int, modifiers);
        selectRows(*w->table(), {2});
        QVERIFY(press(w, key, Qt::KeyboardModifiers(modifiers)));
        QTRY_VERIFY(qobject_cast<QMenu*>(QApplication::activePopupWidget()));
        auto* menu = qobject_cast<QMenu*>(QApplication::activePopupWidget());
        QCOMPARE(menu->actions().first()->text(), QStringLiteral("Open"));
        QVERIFY(menu->actions().first()->isEnabled());
        const QRect row = w->table()->visualRect(w->table()->model()->index(2, 0));
        const QPoint expected = w->table()->viewport()->mapToGlobal(QPoint(30, row.bottom() + 1 - 30));
        QVERIFY((menu->pos() - expected).manhattanLength() <= 2);
        menu->close();
    }

    void guideListsEveryRowAndEscapeClosesIt() {
        QVERIFY(press(w, keys::F1));
        QPointer<ShortcutGuideWindow> guide = (*w->findChild<ExplorerChrome*>()).shortcutGuide();
        QVERIFY(guide && guide->isVisible());
        QCOMPARE(guide->windowTitle(), QStringLiteral("Keyboard shortcuts — Orvane"));
        QStringList texts;
        for (const QLabel* label : guide->findChildren<QLabel*>())
            texts << label->text();
        QCOMPARE(texts.first(), shortcutGuideNote());
        for (const ShortcutRow& row : explorerShortcutRows()) {
            QVERIFY2(texts.contains(row.keys), qPrintable(row.keys));
            if (!row.isHeading()) QVERIFY2(texts.contains(row.description), qPrintable(row.description));
        }
        w->activateWindow();
        QVERIFY(press(w, keys::F1));
        QCOMPARE((*w->findChild<ExplorerChrome*>()).shortcutGuide(), guide);
        QKeyEvent escape = keyEvent(QEvent::KeyPress, keys::Escape, none, {});
        QApplication::sendEvent(guide, &escape);
        QTRY_VERIFY(!guide);
    }
};

ORVANE_TEST_MAIN(ExplorerShortcutsTest)
#include "ExplorerShortcutsTest.moc"
