#pragma once

#include <QString>
#include <functional>

namespace orvane {

// A window's one undo step. Answers false with the reason when it could not finish, or with none when
// the person declined; it may then be run again and resumes where it stopped.
using FileUndo = std::function<bool(QString& error)>;

// Asked before an undo step does what the person may not expect; false leaves everything as it is.
using UndoConfirm = std::function<bool(const QString& message, const QString& info)>;

// Told when an item has moved from one path to another, so that pins can follow it.
using PathMoved = std::function<void(const QString& from, const QString& to)>;

} // namespace orvane
