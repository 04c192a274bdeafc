#include "browsing/ExplorerShortcuts.h"
#include "browsing/AppDelegate.h"
#include "browsing/EditablePathBox.h"
#include "browsing/Explorer.h"
#include "browsing/ModalShortcuts.h"
#include "browsing/PhoneKeyTarget.h"
#include "browsing/ShortcutGuideWindow.h"
#include "fileops/ExplorerFileOps.h"
#include "fileops/FileClipboard.h"
#include "support/TempTree.h"
#include "support/TestEnvironment.h"
#include "views/FileTable.h"

#include <QDialog>
#include <QItemSelectionModel>
#include <QLabel>
#include <QLineEdit>
#include <QListWidget>
#include <QMenu>
#include <QVBoxLayout>

using namespace orvane;
using orvane::test::TempTree;

namespace {

// A key as the system delivers it: X11/Wayland scan code, Mac virtual key code, Qt's key on a US
// layout.
struct Key {
    quint32 scanCode;
    quint32 virtualKey;
    int qtKey;
};

namespace keys {
const Key A{38, 0, Qt::Key_A}, C{54, 8, Qt::Key_C}, D{40, 2, Qt::Key_D}, E{26, 14, Qt::Key_E},
    F{41, 3, Qt::Key_F}, H{43, 4, Qt::Key_H}, L{46, 37, Qt::Key_L}, N{57, 45, Qt::Key_N},
    P{33, 35, Qt::Key_P}, Q{24, 12, Qt::Key_Q}, T{28, 17, Qt::Key_T}, V{55, 9, Qt::Key_V},
    W{25, 13, Qt::Key_W}, X{53, 7, Qt::Key_X}, Z{52, 6, Qt::Key_Z};
const Key Digit2{11, 19, Qt::Key_2}, Digit3{12, 20, Qt::Key_3}, Digit9{18, 25, Qt::Key_9};
const Key Return{36, 36, Qt::Key_Return}, Enter{104, 76, Qt::Key_Enter}, Backspace{22, 51, Qt::Key_Backspace},
    Delete{119, 117, Qt::Key_Delete}, Insert{118, 114, Qt::Key_Insert}, Escape{9, 53, Qt::Key_Escape},
    Tab{23, 48, Qt::Key_Tab}, Space{65, 49, Qt::Key_Space}, Home{110, 115, Qt::Key_Home},
    End{115, 119, Qt::Key_End}, Left{113, 123, Qt::Key_Left}, Right{114, 124, Qt::Key_Right},
    Up{111, 126, Qt::Key_Up}, Down{116, 125, Qt::Key_Down}, KeypadPlus{86, 69, Qt::Key_Plus};
const Key F1{67, 122, Qt::Key_F1}, F2{68, 120, Qt::Key_F2}, F3{69, 99, Qt::Key_F3}, F4{70, 118, Qt::Key_F4},
    F6{72, 97, Qt::Key_F6}, F10{76, 109, Qt::Key_F10};
} // namespace keys

// Primary is Command on a Mac, which Qt reports as Control; the key printed Control is Meta there.
const Qt::KeyboardModifiers primary = Qt::ControlModifier;
#ifdef Q_OS_MACOS
const Qt::KeyboardModifiers control = Qt::MetaModifier;
#else
const Qt::KeyboardModifiers control = Qt::ControlModifier;
#endif
const Qt::KeyboardModifiers shift = Qt::ShiftModifier, alt = Qt::AltModifier, none = Qt::NoModifier;

QKeyEvent keyEvent(QEvent::Type type, const Key& key, Qt::KeyboardModifiers modifiers, const QString& text) {
    const int qtKey = text.size() == 1 && text[0].unicode() > 127 ? text[0].unicode() : key.qtKey;
    return QKeyEvent(type, qtKey,
                     modifiers | (key.qtKey == Qt::Key_Plus ? Qt::KeypadModifier : Qt::NoModifier),
                     key.scanCode, key.virtualKey, 1, text);
}

// Delivers a press as the system does: announced to the focused widget as a shortcut override, then
// pressed there unless a shortcut took it. As from the system, both are spontaneous, so Qt adds no
// announcement of its own. Answers whether something used the key.
bool press(QWidget* window, const Key& key, Qt::KeyboardModifiers modifiers = Qt::NoModifier,
           const QString& text = {}) {
    static ulong clock = 1;
    ++clock;
    QWidget* target = window->focusWidget() ? window->focusWidget() : window;
    QKeyEvent announce = keyEvent(QEvent::ShortcutOverride, key, modifiers, text);
    announce.setTimestamp(clock);
    announce.ignore();
    QSpontaneKeyEvent::setSpontaneous(&announce);
    const bool taken = qApp->notify(target, &announce) && announce.isAccepted();
    QKeyEvent down = keyEvent(QEvent::KeyPress, key, modifiers, text);
    down.setTimestamp(clock);
    QSpontaneKeyEvent::setSpontaneous(&down);
    qApp->notify(target, &down);
    return taken || down.isAccepted();
}

class PhoneStandIn : public PhoneKeyTarget {
public:
    QStringList calls;
    void copyFiles() override { calls << "copyFiles"; }
    void pasteFiles() override { calls << "pasteFiles"; }
    void selectAllItems() override { calls << "selectAllItems"; }
    void createFolder() override { calls << "createFolder"; }
    void cutFiles() override { calls << "cutFiles"; }
    void renameSelection() override { calls << "renameSelection"; }
    void deleteSelection() override { calls << "deleteSelection"; }
    void showProperties() override { calls << "showProperties"; }
};

const QStringList standInOperations = {"copyAction",
                                       "copyPathAction",
                                       "cutAction",
                                       "pasteAction",
                                       "trashAction",
                                       "permanentlyDeleteAction",
                                       "undoAction",
                                       "renameAction",
                                       "newFolder",
                                       "propertiesAction",
                                       "quickLook",
                                       "helpAction",
                                       "expandToCurrentFolder",
                                       "arrangeWindow:0",
                                       "arrangeWindow:1",
                                       "arrangeWindow:2",
                                       "arrangeWindow:3",
                                       "setViewMode:1",
                                       "setViewMode:2",
                                       "setViewMode:3",
                                       "setViewMode:8",
                                       "setViewMode:9",
                                       "cancelInlineRename"};

QList<int> selectedRows(Explorer& w) {
    QList<int> rows;
    for (const QModelIndex& index : w.table()->selectionModel()->selectedRows())
        rows << index.row();
    std::sort(rows.begin(), rows.end());
    return rows;
}

} // namespace

Q_DECLARE_METATYPE(Key)

class ExplorerShortcutsTest : public QObject {
    Q_OBJECT
    std::unique_ptr<TempTree> tree;
    std::unique_ptr<AppDelegate> app;
    Explorer* w = nullptr;

    void selectOnly(const QString& name) {
        for (size_t row = 0; row < w->entries.size(); ++row)
            if (w->entries[row].name() == name)
                w->table()->selectionModel()->select(w->table()->model()->index(int(row), 0),
                                                     QItemSelectionModel::ClearAndSelect |
                                                         QItemSelectionModel::Rows);
    }
    QStringList called;

    // Stand-ins for the commands the keys reach through the registry; each notes its name.
    void registerStandIns() {
        for (const QString& name : standInOperations)
            w->registerOperation(name, [this, name] { called << name; });
    }

private slots:
    void init() {
        tree = std::make_unique<TempTree>();
        for (const char* name : {"a.txt", "b.txt", "c.txt", "d.txt", "e.txt", "f.txt"})
            tree->file(name, "x");
        tree->folder("Sub");
        app = std::make_unique<AppDelegate>();
        w = app->newWindow(QUrl::fromLocalFile(tree->path()));
        QVERIFY(QTest::qWaitForWindowActive(w));
        w->table()->setFocus();
        called.clear();
    }
    void cleanup() {
        app.reset();
        tree.reset();
    }

    void readingTheKeyUsesItsPlace_data() {
        QTest::addColumn<int>("physical");
        QTest::addColumn<QString>("text");
        QTest::addColumn<QString>("letter");
        QTest::addColumn<int>("digit");
        QTest::newRow("T under Arabic") << int(PhysicalKey::T) << "ف"
                                        << "t" << 0;
        QTest::newRow("N under Arabic") << int(PhysicalKey::N) << "ى"
                                        << "n" << 0;
        QTest::newRow("Q has no command letter") << int(PhysicalKey::Q) << "ض"
                                                 << "ض" << 0;
        QTest::newRow("control character dropped") << int(PhysicalKey::G) << "\x07"
                                                   << "" << 0;
        QTest::newRow("upper case lowered") << int(PhysicalKey::B) << "B"
                                            << "b" << 0;
        QTest::newRow("5 sits between 4 and 6") << int(PhysicalKey::Digit5) << "5"
                                                << "5" << 5;
        QTest::newRow("shifted 9") << int(PhysicalKey::Digit9) << "("
                                   << "(" << 9;
        QTest::newRow("0 picks no tab") << int(PhysicalKey::Digit0) << "0"
                                        << "0" << 0;
    }
    void readingTheKeyUsesItsPlace() {
        QFETCH(int, physical);
        QFETCH(QString, text);
        QFETCH(QString, letter);
        QFETCH(int, digit);
        QCOMPARE(shortcutLetter(PhysicalKey(physical), text), letter);
        QCOMPARE(shortcutDigit(PhysicalKey(physical)), digit);
    }

    void primaryTOpensATabUnderAnyInputSource() {
        QVERIFY(press(w, keys::T, primary, QStringLiteral("ف")));
        QCOMPARE(w->tabs.count(), 2);
        // Without a key code only the characters are left, and they are no Latin letter.
        QKeyEvent bare(QEvent::KeyPress, 0x0641, primary, QStringLiteral("ف"));
        QVERIFY(!w->handleExplorerShortcut(&bare));
        QCOMPARE(w->tabs.count(), 2);
    }

    void commandsReachTheirOperations_data() {
        QTest::addColumn<Key>("key");
        QTest::addColumn<int>("modifiers");
        QTest::addColumn<QString>("text");
        QTest::addColumn<QString>("operation");
        QTest::newRow("Ctrl+C") << keys::C << int(primary) << "ؤ"
                                << "copyAction";
        QTest::newRow("Ctrl+Shift+C") << keys::C << int(primary | shift) << "ؤ"
                                      << "copyPathAction";
        QTest::newRow("Ctrl+Insert") << keys::Insert << int(primary) << ""
                                     << "copyAction";
        QTest::newRow("Ctrl+X") << keys::X << int(primary) << "ء"
                                << "cutAction";
        QTest::newRow("Ctrl+V") << keys::V << int(primary) << "ر"
                                << "pasteAction";
        QTest::newRow("Shift+Insert") << keys::Insert << int(shift) << ""
                                      << "pasteAction";
        QTest::newRow("Ctrl+D") << keys::D << int(primary) << "ي"
                                << "trashAction";
        QTest::newRow("Delete") << keys::Delete << 0 << ""
                                << "trashAction";
        QTest::newRow("Shift+Delete") << keys::Delete << int(shift) << ""
                                      << "permanentlyDeleteAction";
        QTest::newRow("Ctrl+Z") << keys::Z << int(primary) << "ئ"
                                << "undoAction";
        QTest::newRow("Ctrl+Shift+N") << keys::N << int(primary | shift) << "ى"
                                      << "newFolder";
        QTest::newRow("Ctrl+Shift+E") << keys::E << int(primary | shift) << "ث"
                                      << "expandToCurrentFolder";
        QTest::newRow("Return") << keys::Return << 0 << "\r"
                                << "renameAction";
        QTest::newRow("keypad Enter") << keys::Enter << 0 << "\r"
                                      << "renameAction";
        QTest::newRow("F2") << keys::F2 << 0 << ""
                            << "renameAction";
        QTest::newRow("Alt+Return") << keys::Return << int(alt) << "\r"
                                    << "propertiesAction";
        QTest::newRow("Space") << keys::Space << 0 << " "
                               << "quickLook";
        QTest::newRow("F1") << keys::F1 << 0 << ""
                            << "helpAction";
        QTest::newRow("Ctrl+Shift+2") << keys::Digit2 << int(primary | shift) << "@"
                                      << "setViewMode:2";
        QTest::newRow("Ctrl+Alt+Left") << keys::Left << int(control | alt) << ""
                                       << "arrangeWindow:0";
        QTest::newRow("Ctrl+Alt+Right") << keys::Right << int(control | alt) << ""
                                        << "arrangeWindow:1";
        QTest::newRow("Ctrl+Alt+Up") << keys::Up << int(control | alt) << ""
                                     << "arrangeWindow:2";
        QTest::newRow("Ctrl+Alt+Down") << keys::Down << int(control | alt) << ""
                                       << "arrangeWindow:3";
        QTest::newRow("Ctrl+Shift+9 does nothing") << keys::Digit9 << int(primary | shift) << "("
                                                   << "";
        QTest::newRow("Ctrl+Q is no command") << keys::Q << int(primary) << "ض"
                                              << "";
        QTest::newRow("Ctrl+Alt+C is no copy") << keys::C << int(primary | alt) << "ؤ"
                                               << "";
    }
    void commandsReachTheirOperations() {
        QFETCH(Key, key);
        QFETCH(int, modifiers);
        QFETCH(QString, text);
        QFETCH(QString, operation);
        registerStandIns();
        press(w, key, Qt::KeyboardModifiers(modifiers), text);
        QCOMPARE(called, operation.isEmpty() ? QStringList() : QStringList{operation});
        QCOMPARE(w->tabs.count(), 1);
    }

    void phoneTabSendsItsKeysToThePhone_data() {
        QTest::addColumn<Key>("key");
        QTest::addColumn<int>("modifiers");
        QTest::addColumn<QString>("phoneCall");
        QTest::addColumn<QString>("operation");
        QTest::newRow("Ctrl+C") << keys::C << int(primary) << "copyFiles"
                                << "";
        QTest::newRow("Ctrl+V") << keys::V << int(primary) << "pasteFiles"
                                << "";
        QTest::newRow("Ctrl+A") << keys::A << int(primary) << "selectAllItems"
                                << "";
        QTest::newRow("Ctrl+Shift+N") << keys::N << int(primary | shift) << "createFolder"
                                      << "";
        QTest::newRow("Ctrl+X") << keys::X << int(primary) << "cutFiles"
                                << "";
        QTest::newRow("Ctrl+Shift+X") << keys::X << int(primary | shift) << "cutFiles"
                                      << "";
        QTest::newRow("Return") << keys::Return << 0 << "renameSelection"
                                << "";
        QTest::newRow("F2") << keys::F2 << 0 << "renameSelection"
                            << "";
        QTest::newRow("Backspace") << keys::Backspace << 0 << "deleteSelection"
                                   << "";
        QTest::newRow("Delete") << keys::Delete << 0 << "deleteSelection"
                                << "";
        QTest::newRow("Alt+Return") << keys::Return << int(alt) << "showProperties"
                                    << "";
        QTest::newRow("Ctrl+Shift+C is the path") << keys::C << int(primary | shift) << ""
                                                  << "copyPathAction";
        QTest::newRow("Ctrl+Z stays local") << keys::Z << int(primary) << ""
                                            << "undoAction";
    }
    void phoneTabSendsItsKeysToThePhone() {
        QFETCH(Key, key);
        QFETCH(int, modifiers);
        QFETCH(QString, phoneCall);
        QFETCH(QString, operation);
        registerStandIns();
        PhoneStandIn phone;
        QVERIFY(w->navigate(QUrl(QStringLiteral("android://phone?location=1"))));
        w->setPhoneKeyTarget(w->tabs.current().id, &phone);
        w->table()->setFocus();
        QVERIFY(press(w, key, Qt::KeyboardModifiers(modifiers)));
        QCOMPARE(phone.calls, phoneCall.isEmpty() ? QStringList() : QStringList{phoneCall});
        QCOMPARE(called, operation.isEmpty() ? QStringList() : QStringList{operation});
        w->setPhoneKeyTarget(w->tabs.current().id, nullptr);
    }

    void phoneKeysLeaveTextFieldsAlone() {
        PhoneStandIn phone;
        QVERIFY(w->navigate(QUrl(QStringLiteral("android://phone?location=1"))));
        w->setPhoneKeyTarget(w->tabs.current().id, &phone);
        QLineEdit* search = w->widgets().searchField;
        search->setFocus();
        search->setText(QStringLiteral("holiday"));
        QVERIFY(press(w, keys::A, primary));
        QVERIFY(press(w, keys::C, primary));
        QVERIFY(phone.calls.isEmpty());
        QCOMPARE(search->selectedText(), QStringLiteral("holiday"));
        w->setPhoneKeyTarget(w->tabs.current().id, nullptr);
    }

    void renameEditorMovesByWordAndEscapeCancels() {
        // History first: Backspace in the editor must edit the name, not go back.
        QVERIFY(w->navigate(QUrl::fromLocalFile(tree->path("Sub"))) &&
                w->navigate(QUrl::fromLocalFile(tree->path())));
        selectOnly(QStringLiteral("a.txt"));
        w->fileOps()->beginInlineRename();
        QLineEdit* editor = w->fileOps()->renameEditor();
        QVERIFY(editor);
        editor->setText(QStringLiteral("holiday photos.txt"));
        editor->end(false);
        QVERIFY(press(w, keys::Left, control));
        QCOMPARE(editor->cursorPosition(), 15);
        QVERIFY(press(w, keys::Left, control | shift));
        QCOMPARE(editor->selectedText(), QStringLiteral("."));
        QVERIFY(press(w, keys::Home, control));
        QVERIFY(press(w, keys::Right, control | shift));
        QCOMPARE(editor->selectedText(), QStringLiteral("holiday "));
        QVERIFY(press(w, keys::Delete, control));
        QCOMPARE(editor->text(), QStringLiteral("photos.txt"));
        editor->end(false);
        press(w, keys::Backspace, none);
        QCOMPARE(editor->text(), QStringLiteral("photos.tx"));
        QCOMPARE(w->tabs.current().index, 2);
        QVERIFY(press(w, keys::Escape));
        QVERIFY(!w->renameEditor);
        QVERIFY(!w->fileOps()->renameEditor());
        QVERIFY(w->table()->hasFocus() || w->focusWidget() == w->table());
        QVERIFY(QFileInfo::exists(tree->path("a.txt")));
    }

    void escapeInRenameGoesThroughTheRenameCommands() {
        registerStandIns();
        auto* editor = new QLineEdit(QStringLiteral("a.txt"), w->table()->viewport());
        w->renameEditor = editor;
        editor->show();
        editor->setFocus();
        QVERIFY(press(w, keys::Escape));
        QCOMPARE(called, QStringList{"cancelInlineRename"});
    }

    void textFieldsKeepTheirEditingKeys() {
        QLineEdit* search = w->widgets().searchField;
        search->setFocus();
        search->setText(QStringLiteral("one two"));
        QVERIFY(press(w, keys::A, primary, QStringLiteral("ش")));
        QCOMPARE(search->selectedText(), QStringLiteral("one two"));
        QVERIFY(press(w, keys::X, primary, QStringLiteral("ء")));
        QVERIFY(search->text().isEmpty());
        QVERIFY(press(w, keys::Z, primary));
        QCOMPARE(search->text(), QStringLiteral("one two"));
        search->end(false);
        QVERIFY(press(w, keys::Backspace, control));
        QCOMPARE(search->text(), QStringLiteral("one "));
        // Commands of every context still work from a field, others are typing.
        QVERIFY(press(w, keys::T, primary));
        QCOMPARE(w->tabs.count(), 2);
        w->widgets().searchField->setFocus();
        press(w, keys::Space, none, QStringLiteral(" "));
        QCOMPARE(w->widgets().searchField->text(), QStringLiteral(" "));
    }

    void digitsPickTabsAndShiftedDigitsViews_data() {
        QTest::addColumn<int>("tabCount");
        QTest::addColumn<Key>("key");
        QTest::addColumn<int>("modifiers");
        QTest::addColumn<int>("active");
        QTest::addColumn<QString>("operation");
        QTest::newRow("Ctrl+9 with nine tabs") << 9 << keys::Digit9 << int(primary) << 8 << "";
        QTest::newRow("Ctrl+9 with three tabs") << 3 << keys::Digit9 << int(primary) << 0 << "";
        QTest::newRow("Ctrl+3") << 3 << keys::Digit3 << int(primary) << 2 << "";
        QTest::newRow("Ctrl+Shift+9") << 9 << keys::Digit9 << int(primary | shift) << 0 << "";
        QTest::newRow("Ctrl+Shift+3") << 9 << keys::Digit3 << int(primary | shift) << 0 << "setViewMode:3";
        QTest::newRow("Ctrl+Tab") << 3 << keys::Tab << int(primary) << 1 << "";
        QTest::newRow("Ctrl+Shift+Tab wraps") << 3 << keys::Tab << int(primary | shift) << 2 << "";
    }
    void digitsPickTabsAndShiftedDigitsViews() {
        QFETCH(int, tabCount);
        QFETCH(Key, key);
        QFETCH(int, modifiers);
        QFETCH(int, active);
        QFETCH(QString, operation);
        registerStandIns();
        while (w->tabs.count() < tabCount)
            w->newTab();
        w->activateTab(0);
        press(w, key, Qt::KeyboardModifiers(modifiers));
        QCOMPARE(w->tabs.active(), active);
        QCOMPARE(called, operation.isEmpty() ? QStringList() : QStringList{operation});
    }

    void ringMovesWithoutTouchingTheSelection() {
        FileTable* table = w->table();
        table->selectionModel()->setCurrentIndex(
            table->model()->index(1, 0), QItemSelectionModel::ClearAndSelect | QItemSelectionModel::Rows);
        QVERIFY(press(w, keys::Down, primary));
        QVERIFY(press(w, keys::Down, primary));
        QCOMPARE(table->keyboardFocusRow(), std::optional<int>(3));
        QCOMPARE(selectedRows(*w), QList<int>({1}));
        QVERIFY(press(w, keys::Space, none, QStringLiteral(" ")));
        QCOMPARE(selectedRows(*w), QList<int>({1, 3}));
        QCOMPARE(table->keyboardFocusRow(), std::optional<int>(3));
        QVERIFY(press(w, keys::Right, primary));
        QVERIFY(press(w, keys::Space, primary));
        QCOMPARE(selectedRows(*w), QList<int>({1, 3, 4}));
        QVERIFY(press(w, keys::Space, none, QStringLiteral(" ")));
        QCOMPARE(selectedRows(*w), QList<int>({1, 3}));
        // Past the last row the ring stays on it.
        for (int i = 0; i < 10; ++i)
            press(w, keys::Down, primary);
        QCOMPARE(table->keyboardFocusRow(), std::optional<int>(int(w->entries.size()) - 1));
        QTest::mouseClick(table->viewport(), Qt::LeftButton, {},
                          table->visualRect(table->model()->index(0, 0)).center());
        QCOMPARE(table->keyboardFocusRow(), std::nullopt);
    }

    void ringExtendsAndBoundariesSelect() {
        FileTable* table = w->table();
        const int last = int(w->entries.size()) - 1;
        QVERIFY(press(w, keys::Up, primary));
        QCOMPARE(table->keyboardFocusRow(), std::optional<int>(last)); // from nothing, Up lands on the end
        QVERIFY(selectedRows(*w).isEmpty());
        table->selectionModel()->setCurrentIndex(
            table->model()->index(2, 0), QItemSelectionModel::ClearAndSelect | QItemSelectionModel::Rows);
        QVERIFY(press(w, keys::Down, primary | shift));
        QVERIFY(press(w, keys::Down, primary | shift));
        QCOMPARE(selectedRows(*w), QList<int>({2, 3, 4}));
        QCOMPARE(table->keyboardFocusRow(), std::optional<int>(4));
        QVERIFY(press(w, keys::End));
        QCOMPARE(selectedRows(*w), QList<int>({last}));
        QVERIFY(press(w, keys::Home, shift));
        QCOMPARE(selectedRows(*w).size(), last + 1);
        QVERIFY(press(w, keys::Home));
        QCOMPARE(selectedRows(*w), QList<int>({0}));
    }

    void ringDoesNothingInAnEmptyFolder() {
        QVERIFY(w->navigate(QUrl::fromLocalFile(tree->path("Sub"))));
        w->table()->setFocus();
        QVERIFY(press(w, keys::Down, primary));
        QVERIFY(press(w, keys::Space, primary));
        QVERIFY(press(w, keys::End));
        QCOMPARE(w->table()->keyboardFocusRow(), std::nullopt);
        QVERIFY(selectedRows(*w).isEmpty());
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
        QCOMPARE(w->tabs.current().history.size(), 3);
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
        const QList<int> forward = {0, 1, 2, 3, 0};
        for (int region : forward) {
            QVERIFY(press(w, keys::F6));
            QCOMPARE(w->focusRegion(), region);
        }
        QVERIFY(press(w, keys::F6, shift));
        QCOMPARE(w->focusRegion(), 3);
        QVERIFY(press(w, keys::F6, shift));
        QCOMPARE(w->focusRegion(), 2);
        QCOMPARE(w->focusWidget(), w->widgets().places);
        QVERIFY(!w->widgets().pathBox->addressShown());
    }

    void escapeClearsTheFilterAndTheCut() {
        w->setSearchText(QStringLiteral("a.t"));
        QCOMPARE(w->entries.size(), size_t(1));
        FileClipboard::shared().setClipboard({QUrl::fromLocalFile(tree->path("b.txt"))}, true);
        QVERIFY(FileClipboard::shared().cutHolds());
        bool quickLookUp = true;
        w->dismissQuickLook = [&] { return std::exchange(quickLookUp, false); };
        w->table()->setFocus();
        QVERIFY(press(w, keys::Escape));
        QCOMPARE(w->entries.size(), size_t(1)); // the first Escape only put Quick Look away
        QVERIFY(press(w, keys::Escape));
        QVERIFY(w->tabs.current().query.isEmpty());
        QVERIFY(w->widgets().searchField->text().isEmpty());
        QCOMPARE(w->entries.size(), size_t(7));
        QVERIFY(!FileClipboard::shared().cutHolds());
    }

    void paneAndWindowToggles() {
        QVERIFY(press(w, keys::P, alt));
        QVERIFY(w->previewVisible);
        QVERIFY(press(w, keys::P, alt | shift));
        QVERIFY(w->detailsVisible && !w->previewVisible);
        QVERIFY(press(w, keys::H, primary | shift));
        QVERIFY(w->showHidden);
        QVERIFY(press(w, keys::A, primary));
        QCOMPARE(selectedRows(*w).size(), int(w->entries.size()));
        QVERIFY(press(w, keys::N, primary, QStringLiteral("ى")));
        QCOMPARE(app->windows.size(), size_t(2));
    }

    void menuShortcutsDoNotOverrideTheWindow() {
        w->newTab();
        w->table()->setFocus();
        // Through Qt's own delivery, where the menu's Ctrl+W "Close Window" would otherwise win.
        QTest::keyClick(w->table(), Qt::Key_W, primary);
        QCOMPARE(w->tabs.count(), 1);
        QCOMPARE(app->windows.size(), size_t(1));
        QTest::keyClicks(w->widgets().searchField, QStringLiteral("b.t"));
        QCOMPARE(w->widgets().searchField->text(), QStringLiteral("b.t"));
    }

    void keyboardContextMenuOpensAtTheRow() {
        w->table()->selectionModel()->select(w->table()->model()->index(2, 0),
                                             QItemSelectionModel::Select | QItemSelectionModel::Rows);
        QVERIFY(press(w, keys::F10, shift));
        QTRY_VERIFY(qobject_cast<QMenu*>(QApplication::activePopupWidget()));
        auto* menu = qobject_cast<QMenu*>(QApplication::activePopupWidget());
        const QRect row = w->table()->visualRect(w->table()->model()->index(2, 0));
        const QPoint expected = w->table()->viewport()->mapToGlobal(QPoint(30, row.bottom() + 1 - 30));
        QVERIFY((menu->pos() - expected).manhattanLength() <= 2);
        menu->close();
    }

    void guideListsEveryRowAndEscapeClosesIt() {
        QVERIFY(press(w, keys::F1));
        QPointer<ShortcutGuideWindow> guide = w->shortcutsWindow;
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
        QCOMPARE(w->shortcutsWindow, guide);
        QKeyEvent escape = keyEvent(QEvent::KeyPress, keys::Escape, none, {});
        QApplication::sendEvent(guide, &escape);
        QTRY_VERIFY(!guide);
    }

    void dialogsGetTheTextKeysAndEscape() {
        app->installModalShortcuts();
        QDialog dialog(w);
        auto* field = new QLineEdit(QStringLiteral("new folder name"), &dialog);
        (new QVBoxLayout(&dialog))->addWidget(field);
        dialog.setModal(true);
        dialog.show();
        QVERIFY(QTest::qWaitForWindowActive(&dialog));
        field->setFocus();
        field->end(false);
        QVERIFY(press(&dialog, keys::Left, control));
        QCOMPARE(field->cursorPosition(), 11);
        QVERIFY(press(&dialog, keys::A, primary, QStringLiteral("ش")));
        QCOMPARE(field->selectedText(), QStringLiteral("new folder name"));
        QVERIFY(press(&dialog, keys::X, primary, QStringLiteral("ء")));
        QVERIFY(field->text().isEmpty());
        QVERIFY(press(&dialog, keys::Z, primary, QStringLiteral("ئ")));
        QCOMPARE(field->text(), QStringLiteral("new folder name"));
        QCOMPARE(w->tabs.count(), 1);
        QVERIFY(press(&dialog, keys::Escape));
        QCOMPARE(dialog.result(), ModalShortcuts::escapeCode);
        QVERIFY(!dialog.isVisible());
    }
};

ORVANE_TEST_MAIN(ExplorerShortcutsTest)
#include "ExplorerShortcutsTest.moc"
