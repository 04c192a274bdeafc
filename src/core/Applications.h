#pragma once

#include "platform/DefaultApplications.h"

#include <QMimeType>
#include <QStringList>

namespace orvane {

// Which applications open files, and opening with them, as every window asks it (`services()`).
// A file is only ever handed to an application: opening never runs the file itself.
class Applications {
public:
    using Application = DefaultApplications::Application;
    struct Choice {
        QList<Application> applications; // those that open every file; the default first
        bool hasDefault = false;         // the first one is the default of all the files
    };

    // A file's type by its name, else by its first bytes.
    static QMimeType typeOf(const QString& path);
    // The applications that open all the files, the common default first and the rest by name.
    Choice choicesFor(const QStringList& paths) const;
    Application defaultFor(const QString& path) const;
    QList<Application> all() const { return DefaultApplications::all(); }
    bool open(const QStringList& paths, const QString& id, QString& error) const {
        return DefaultApplications::launch(id, paths, error);
    }
    bool openTerminal(const QString& folder, QString& error) const {
        return DefaultApplications::openTerminal(folder, error);
    }
};

} // namespace orvane
