#pragma once

#include <QString>

namespace orvane {

// The application the desktop opens a file with by default.
class DefaultApplications {
public:
    // Its display name for the file at `path`, or an empty text when the desktop names none.
    // `typeName` is the type database's name for the file's content, as read for its facts.
    // Reads the desktop's settings; call it off the main thread.
    static QString nameFor(const QString& path, const QString& typeName);
};

} // namespace orvane
