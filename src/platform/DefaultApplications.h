#pragma once

#include <QList>
#include <QString>
#include <QStringList>

namespace orvane {

// The applications the desktop knows and the one it opens a type with (GIO here, `NSWorkspace` on a
// Mac). Nothing here reads the desktop's files itself: the desktop's own rules decide.
class DefaultApplications {
public:
    struct Application {
        QString id;   // what names it to `launch`: the desktop file's id here
        QString name; // its display name
        QString icon; // an icon theme name or an icon file's path; may be empty
        QString path; // where it is installed, for its tool tip
        bool operator==(const Application& other) const { return id == other.id; }
    };

    // Its display name for the file at `path`, or an empty text when the desktop names none.
    // `typeName` is the type database's name for the file's content, as read for its facts.
    // Reads the desktop's settings; call it off the main thread.
    static QString nameFor(const QString& path, const QString& typeName);
    // Every application that says it opens `typeName`, the desktop's order.
    static QList<Application> forType(const QString& typeName);
    // The default for `typeName`; an empty id when there is none.
    static Application defaultFor(const QString& typeName);
    // Every application a person may choose, by display name.
    static QList<Application> all();
    // Opens the files (paths by their exact bytes) with the application; false with the reason.
    // The desktop's launch keeps the application's own rules for its arguments and startup notice.
    static bool launch(const QString& id, const QStringList& paths, QString& error);
    // Starts the desktop's terminal in `folder`: its configured one, else x-terminal-emulator.
    static bool openTerminal(const QString& folder, QString& error);
};

} // namespace orvane
