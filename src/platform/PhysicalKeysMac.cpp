#include "platform/PhysicalKeys.h"

#include <QKeyEvent>

namespace orvane {

// The event's virtual key code is already the identity. Code 0 is the A key, so an event made by
// the program itself, which carries no native data at all, is told apart by its missing flags.
PhysicalKey nativePhysicalKey(const QKeyEvent& event) {
    const quint32 code = event.nativeVirtualKey();
    if (code == 0 && event.nativeModifiers() == 0 && !event.spontaneous()) return PhysicalKey::None;
    return code <= 127 ? PhysicalKey(int(code)) : PhysicalKey::None;
}

} // namespace orvane
