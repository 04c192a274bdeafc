#pragma once

#include <QSettings>
#include <memory>

namespace orvane {

// Where settings live. Each setting is written the moment it changes; nothing is written at quit.
namespace Preferences {
std::unique_ptr<QSettings> standard();
// Pins go to a suite of their own while the built-in battery runs, so it never touches the user's.
std::unique_ptr<QSettings> pins();
bool selfTest();
void setSelfTest(bool on);
} // namespace Preferences

} // namespace orvane
