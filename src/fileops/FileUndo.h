#pragma once

#include <QString>
#include <functional>

namespace orvane {

// A window's one undo step. Answers false with the reason when it could not finish; it may then be run
// again and resumes where it stopped.
using FileUndo = std::function<bool(QString& error)>;

// Told when an item has moved from one path to another, so that pins can follow it.
using PathMoved = std::function<void(const QString& from, const QString& to)>;

} // namespace orvane
