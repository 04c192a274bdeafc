#pragma once

#include "chrome/ExplorerChrome.h"
#include "core/ExplorerEvents.h"
#include "core/WindowCommands.h"
#include "core/WindowListing.h"
#include "navigation/NavigationPane.h"
#include "navigation/PlacesTable.h"
#include "window/ExplorerKeyboard.h"
#include "window/ListingCommands.h"
#include "window/LocalFolderContent.h"

#include <QKeyEvent>
#include <QList>
#include <QString>
#include <QStringList>

class QAbstractItemView;
class QWidget;

namespace orvane {
class Explorer;
}

namespace orvane::test {

// Selects exactly these rows, leaving the current index alone.
void selectRows(QAbstractItemView& view, const QList<int>& rows);
// The selected rows in ascending order.
QList<int> selectedRows(const QAbstractItemView& view);
// Selects exactly the rows with these names, as Control-clicks would.
void selectNames(Explorer& window, const QStringList& names);
// The window's alert as "title|detail", dismissed; empty when none is showing.
QString takeAlert(Explorer& window);
// Answers the next modal dialog with the button of that text, typing `typed` into a name prompt.
void answerNextDialog(const QString& button, const QString& typed = {});

// A key as the system delivers it: X11/Wayland scan code, Mac virtual key code, Qt's key on a US
// layout.
struct Key {
    quint32 scanCode;
    quint32 virtualKey;
    int qtKey;
};

namespace keys {
inline const Key A{38, 0, Qt::Key_A}, C{54, 8, Qt::Key_C}, D{40, 2, Qt::Key_D}, E{26, 14, Qt::Key_E},
    F{41, 3, Qt::Key_F}, H{43, 4, Qt::Key_H}, L{46, 37, Qt::Key_L}, N{57, 45, Qt::Key_N},
    P{33, 35, Qt::Key_P}, Q{24, 12, Qt::Key_Q}, T{28, 17, Qt::Key_T}, V{55, 9, Qt::Key_V},
    X{53, 7, Qt::Key_X}, Z{52, 6, Qt::Key_Z};
inline const Key Digit2{11, 19, Qt::Key_2}, Digit3{12, 20, Qt::Key_3}, Digit9{18, 25, Qt::Key_9};
inline const Key Return{36, 36, Qt::Key_Return}, Enter{104, 76, Qt::Key_Enter},
    Backspace{22, 51, Qt::Key_Backspace}, Delete{119, 117, Qt::Key_Delete}, Insert{118, 114, Qt::Key_Insert},
    Escape{9, 53, Qt::Key_Escape}, Tab{23, 48, Qt::Key_Tab}, Space{65, 49, Qt::Key_Space},
    Home{110, 115, Qt::Key_Home}, End{115, 119, Qt::Key_End}, Left{113, 123, Qt::Key_Left},
    Right{114, 124, Qt::Key_Right}, Up{111, 126, Qt::Key_Up}, Down{116, 125, Qt::Key_Down};
inline const Key F1{67, 122, Qt::Key_F1}, F2{68, 120, Qt::Key_F2}, F4{70, 118, Qt::Key_F4},
    F6{72, 97, Qt::Key_F6}, F10{76, 109, Qt::Key_F10};
} // namespace keys

// Primary is Command on a Mac, which Qt reports as Control; the key printed Control is Meta there.
inline const Qt::KeyboardModifiers primary = Qt::ControlModifier;
#ifdef Q_OS_MACOS
inline const Qt::KeyboardModifiers control = Qt::MetaModifier;
#else
inline const Qt::KeyboardModifiers control = Qt::ControlModifier;
#endif
inline const Qt::KeyboardModifiers shift = Qt::ShiftModifier, alt = Qt::AltModifier, none = Qt::NoModifier;

QKeyEvent keyEvent(QEvent::Type type, const Key& key, Qt::KeyboardModifiers modifiers, const QString& text);
// Delivers a press as the system does: announced to the focused widget as a shortcut override, then
// pressed there unless a shortcut took it. As from the system, both are spontaneous, so Qt adds no
// announcement of its own. Answers whether something used the key.
bool press(QWidget* window, const Key& key, Qt::KeyboardModifiers modifiers = Qt::NoModifier,
           const QString& text = {});
// Types text into the focused widget, one press per character.
void typeText(QWidget* window, const QString& text);

} // namespace orvane::test
