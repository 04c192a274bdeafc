#include "platform/PhysicalKeys.h"

#include <QKeyEvent>
#include <array>
#include <utility>

namespace orvane {

namespace {

// X11 and Wayland both deliver the kernel's evdev code plus 8 as the scan code.
constexpr int evdevOffset = 8;

// Kernel key codes (linux/input-event-codes.h) of the keys the program tells apart.
constexpr std::pair<int, PhysicalKey> evdevKeys[] = {
    {1, PhysicalKey::Escape},
    {2, PhysicalKey::Digit1},
    {3, PhysicalKey::Digit2},
    {4, PhysicalKey::Digit3},
    {5, PhysicalKey::Digit4},
    {6, PhysicalKey::Digit5},
    {7, PhysicalKey::Digit6},
    {8, PhysicalKey::Digit7},
    {9, PhysicalKey::Digit8},
    {10, PhysicalKey::Digit9},
    {11, PhysicalKey::Digit0},
    {12, PhysicalKey::Minus},
    {13, PhysicalKey::Equal},
    {14, PhysicalKey::Backspace},
    {15, PhysicalKey::Tab},
    {16, PhysicalKey::Q},
    {17, PhysicalKey::W},
    {18, PhysicalKey::E},
    {19, PhysicalKey::R},
    {20, PhysicalKey::T},
    {21, PhysicalKey::Y},
    {22, PhysicalKey::U},
    {23, PhysicalKey::I},
    {24, PhysicalKey::O},
    {25, PhysicalKey::P},
    {26, PhysicalKey::LeftBracket},
    {27, PhysicalKey::RightBracket},
    {28, PhysicalKey::Return},
    {30, PhysicalKey::A},
    {31, PhysicalKey::S},
    {32, PhysicalKey::D},
    {33, PhysicalKey::F},
    {34, PhysicalKey::G},
    {35, PhysicalKey::H},
    {36, PhysicalKey::J},
    {37, PhysicalKey::K},
    {38, PhysicalKey::L},
    {39, PhysicalKey::Semicolon},
    {40, PhysicalKey::Quote},
    {41, PhysicalKey::Grave},
    {43, PhysicalKey::Backslash},
    {44, PhysicalKey::Z},
    {45, PhysicalKey::X},
    {46, PhysicalKey::C},
    {47, PhysicalKey::V},
    {48, PhysicalKey::B},
    {49, PhysicalKey::N},
    {50, PhysicalKey::M},
    {51, PhysicalKey::Comma},
    {52, PhysicalKey::Period},
    {53, PhysicalKey::Slash},
    {57, PhysicalKey::Space},
    {59, PhysicalKey::F1},
    {60, PhysicalKey::F2},
    {61, PhysicalKey::F3},
    {62, PhysicalKey::F4},
    {63, PhysicalKey::F5},
    {64, PhysicalKey::F6},
    {65, PhysicalKey::F7},
    {66, PhysicalKey::F8},
    {67, PhysicalKey::F9},
    {68, PhysicalKey::F10},
    {74, PhysicalKey::KeypadMinus},
    {78, PhysicalKey::KeypadPlus},
    {87, PhysicalKey::F11},
    {88, PhysicalKey::F12},
    {96, PhysicalKey::Enter},
    {102, PhysicalKey::Home},
    {103, PhysicalKey::Up},
    {104, PhysicalKey::PageUp},
    {105, PhysicalKey::Left},
    {106, PhysicalKey::Right},
    {107, PhysicalKey::End},
    {108, PhysicalKey::Down},
    {109, PhysicalKey::PageDown},
    {110, PhysicalKey::Help},
    {111, PhysicalKey::ForwardDelete},
    {127, PhysicalKey::Menu},
    {138, PhysicalKey::Help},
};

std::array<PhysicalKey, 256> scanCodeTable() {
    std::array<PhysicalKey, 256> table;
    table.fill(PhysicalKey::None);
    for (const auto& [evdev, key] : evdevKeys)
        table[size_t(evdev + evdevOffset)] = key;
    return table;
}

} // namespace

PhysicalKey nativePhysicalKey(const QKeyEvent& event) {
    static const std::array<PhysicalKey, 256> table = scanCodeTable();
    const quint32 code = event.nativeScanCode();
    return code < table.size() ? table[code] : PhysicalKey::None;
}

} // namespace orvane
