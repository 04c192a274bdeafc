#include "platform/PhysicalKeys.h"

#include <QKeyEvent>

namespace orvane {

bool KeyModifiers::primary() const {
#ifdef Q_OS_MACOS
    return control || command;
#else
    return control;
#endif
}

KeyModifiers keyModifiers(Qt::KeyboardModifiers modifiers) {
    KeyModifiers result;
#ifdef Q_OS_MACOS
    result.control = modifiers & Qt::MetaModifier;
    result.command = modifiers & Qt::ControlModifier;
#else
    result.control = modifiers & Qt::ControlModifier;
    result.command = modifiers & Qt::MetaModifier;
#endif
    result.alt = modifiers & Qt::AltModifier;
    result.shift = modifiers & Qt::ShiftModifier;
    return result;
}

PhysicalKey physicalKey(const QKeyEvent& event) {
    const PhysicalKey native = nativePhysicalKey(event);
    return native != PhysicalKey::None ? native : physicalKeyFromQtKey(event.key(), event.modifiers());
}

namespace {

constexpr PhysicalKey letterKeys[26] = {
    PhysicalKey::A, PhysicalKey::B, PhysicalKey::C, PhysicalKey::D, PhysicalKey::E, PhysicalKey::F,
    PhysicalKey::G, PhysicalKey::H, PhysicalKey::I, PhysicalKey::J, PhysicalKey::K, PhysicalKey::L,
    PhysicalKey::M, PhysicalKey::N, PhysicalKey::O, PhysicalKey::P, PhysicalKey::Q, PhysicalKey::R,
    PhysicalKey::S, PhysicalKey::T, PhysicalKey::U, PhysicalKey::V, PhysicalKey::W, PhysicalKey::X,
    PhysicalKey::Y, PhysicalKey::Z};

constexpr PhysicalKey digitKeys[10] = {
    PhysicalKey::Digit0, PhysicalKey::Digit1, PhysicalKey::Digit2, PhysicalKey::Digit3, PhysicalKey::Digit4,
    PhysicalKey::Digit5, PhysicalKey::Digit6, PhysicalKey::Digit7, PhysicalKey::Digit8, PhysicalKey::Digit9};

constexpr PhysicalKey functionKeys[12] = {
    PhysicalKey::F1, PhysicalKey::F2, PhysicalKey::F3, PhysicalKey::F4,  PhysicalKey::F5,  PhysicalKey::F6,
    PhysicalKey::F7, PhysicalKey::F8, PhysicalKey::F9, PhysicalKey::F10, PhysicalKey::F11, PhysicalKey::F12};

PhysicalKey namedKey(int key) {
    switch (key) {
    case Qt::Key_Return:
        return PhysicalKey::Return;
    case Qt::Key_Enter:
        return PhysicalKey::Enter;
    case Qt::Key_Tab:
    case Qt::Key_Backtab: // Shift+Tab
        return PhysicalKey::Tab;
    case Qt::Key_Space:
        return PhysicalKey::Space;
    case Qt::Key_Backspace:
        return PhysicalKey::Backspace;
    case Qt::Key_Delete:
        return PhysicalKey::ForwardDelete;
    case Qt::Key_Escape:
        return PhysicalKey::Escape;
    case Qt::Key_Menu:
        return PhysicalKey::Menu;
    case Qt::Key_Insert:
    case Qt::Key_Help:
        return PhysicalKey::Help;
    case Qt::Key_Home:
        return PhysicalKey::Home;
    case Qt::Key_End:
        return PhysicalKey::End;
    case Qt::Key_PageUp:
        return PhysicalKey::PageUp;
    case Qt::Key_PageDown:
        return PhysicalKey::PageDown;
    case Qt::Key_Left:
        return PhysicalKey::Left;
    case Qt::Key_Right:
        return PhysicalKey::Right;
    case Qt::Key_Up:
        return PhysicalKey::Up;
    case Qt::Key_Down:
        return PhysicalKey::Down;
    default:
        return PhysicalKey::None;
    }
}

} // namespace

PhysicalKey physicalKeyFromQtKey(int key, Qt::KeyboardModifiers modifiers) {
    if (key >= Qt::Key_A && key <= Qt::Key_Z) return letterKeys[key - Qt::Key_A];
    if (modifiers & Qt::KeypadModifier) {
        if (key == Qt::Key_Plus) return PhysicalKey::KeypadPlus;
        if (key == Qt::Key_Minus) return PhysicalKey::KeypadMinus;
        if (key == Qt::Key_Enter) return PhysicalKey::Enter;
    }
    if (key >= Qt::Key_0 && key <= Qt::Key_9) return digitKeys[key - Qt::Key_0];
    if (key >= Qt::Key_F1 && key <= Qt::Key_F12) return functionKeys[key - Qt::Key_F1];
    return namedKey(key);
}

} // namespace orvane
