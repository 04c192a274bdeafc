#pragma once

#include <Qt>

class QKeyEvent;

namespace orvane {

// A key by its place on the keyboard, whatever the input source makes of it. The numbers are the
// Apple virtual key codes, so the same key has the same identity on every system.
enum class PhysicalKey : int {
    None = -1,
    A = 0,
    S = 1,
    D = 2,
    F = 3,
    H = 4,
    G = 5,
    Z = 6,
    X = 7,
    C = 8,
    V = 9,
    B = 11,
    Q = 12,
    W = 13,
    E = 14,
    R = 15,
    Y = 16,
    T = 17,
    Digit1 = 18,
    Digit2 = 19,
    Digit3 = 20,
    Digit4 = 21,
    Digit6 = 22,
    Digit5 = 23,
    Equal = 24,
    Digit9 = 25,
    Digit7 = 26,
    Minus = 27,
    Digit8 = 28,
    Digit0 = 29,
    RightBracket = 30,
    O = 31,
    U = 32,
    LeftBracket = 33,
    I = 34,
    P = 35,
    Return = 36,
    L = 37,
    J = 38,
    Quote = 39,
    K = 40,
    Semicolon = 41,
    Backslash = 42,
    Comma = 43,
    Slash = 44,
    N = 45,
    M = 46,
    Period = 47,
    Tab = 48,
    Space = 49,
    Grave = 50,
    Backspace = 51,
    Escape = 53,
    KeypadPlus = 69,
    Enter = 76, // the keypad's
    KeypadMinus = 78,
    F5 = 96,
    F6 = 97,
    F7 = 98,
    F3 = 99,
    F8 = 100,
    F9 = 101,
    F11 = 103,
    F10 = 109,
    Menu = 110, // the context menu key of PC keyboards
    F12 = 111,
    Help = 114, // Insert on PC keyboards
    Home = 115,
    PageUp = 116,
    ForwardDelete = 117,
    F4 = 118,
    End = 119,
    F2 = 120,
    PageDown = 121,
    F1 = 122,
    Left = 123,
    Right = 124,
    Down = 125,
    Up = 126,
};

// The modifiers as this program reads them. Qt on macOS reports Command as Control and Control as
// Meta; here `control` and `command` always mean the keys printed so.
struct KeyModifiers {
    bool control = false;
    bool command = false; // Command on a Mac, the Super key elsewhere
    bool alt = false;     // Option on a Mac
    bool shift = false;

    // Control, or Command on a Mac. The Super key of other systems belongs to the desktop.
    bool primary() const;
};

KeyModifiers keyModifiers(Qt::KeyboardModifiers modifiers);

// The physical key of an event: from the system's own key code when the event carries one, else
// from the key Qt reports, as for events made by the program itself.
PhysicalKey physicalKey(const QKeyEvent& event);

// Only the system's key code; None when the event carries none or an unknown one.
PhysicalKey nativePhysicalKey(const QKeyEvent& event);

// The fallback for events without a usable key code.
PhysicalKey physicalKeyFromQtKey(int key, Qt::KeyboardModifiers modifiers);

} // namespace orvane
