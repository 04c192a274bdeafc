#pragma once

#include "fileops/FileUndo.h"

#include <QStringList>

namespace orvane {

// Shortcuts of the system's own kind: on Linux a symbolic link, made in place by the kernel's
// no-replace rule (a link cannot be renamed across file systems, so it is never made elsewhere and
// moved). Each is named "<name> - Shortcut.alias", or the first free "<name> - Shortcut (n).alias".
class FileAliases {
public:
    struct Result {
        QStringList created;
        QStringList failures; // "<name>: <the system's text>"
    };

    // One shortcut per item in `folder`; a failure does not hold back the others. Any thread.
    static Result create(const QStringList& items, const QString& folder);
    // What the link holds: relative when the item lies under the link's folder, absolute otherwise.
    static QString linkText(const QString& item, const QString& folder);
    // Moves each created shortcut to the Trash in order, stopping at the first failure.
    static FileUndo undoStep(const QStringList& created);

    static QString busyText() { return QStringLiteral("Creating shortcuts…"); }
    static QString doneText(qsizetype count) {
        return QString::number(count) + QStringLiteral(" shortcuts created");
    }
    static QString failureTitle() { return QStringLiteral("Some shortcuts could not be created"); }
};

} // namespace orvane
