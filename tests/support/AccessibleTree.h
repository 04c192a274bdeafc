#pragma once

#include <QStringList>

class QWidget;

namespace orvane::test {

// Walks what assistive tools see of `root` (children of children through QAccessible, the way an
// AT-SPI reader does) and lists each fault: a visible control without a name, or a label whose
// name replaces the text it shows, so a reader hears the name and never the value.
QStringList accessibilityFaults(QWidget* root);

} // namespace orvane::test
