#pragma once

#include <QString>
#include <QStringList>
#include <functional>
#include <vector>

namespace orvane {

// Copies, moves and removes whole items on the local disk by the exact bytes of their paths, with the
// system calls themselves, so that "never overwrite" is decided by the kernel (see TreeCopy).
class FileTree {
public:
    struct Problem {
        QString where; // below the item, as shown ("inner/file.txt"); empty for the item itself
        QString text;  // the system's text
    };
    struct Outcome {
        bool arrived = false;          // the item is at its destination, whole or in part
        std::vector<Problem> problems; // one per item that could not be copied, or left behind by a move
        bool ok() const { return arrived && problems.empty(); }
        // One line per problem, "<name>: <text>" or "<name>/<inner>: <text>".
        QStringList lines(const QString& name) const;
    };

    // Copies a file, a link (as a link with the same target text) or a whole folder to `destination`,
    // which must not exist. Modes, times, user extended attributes and ACLs are kept where the
    // destination holds them; an item inside a folder that cannot be copied does not stop the others.
    static Outcome copyItem(const QString& source, const QString& destination);
    // A rename that refuses an existing destination; across volumes a copy that also keeps owners where
    // the process may, after which exactly what was copied, and nothing else, leaves the source.
    static Outcome moveItem(const QString& source, const QString& destination);

    // The same, whole or not at all as far as the caller is told: `error` has the problems, one a line,
    // the item's own without a name.
    static bool copy(const QString& source, const QString& destination, QString& error);
    static bool move(const QString& source, const QString& destination, QString& error);
    // Removes a file, a link or a whole folder without following links.
    static bool remove(const QString& path, QString& error);
    // The system's text for an errno value.
    static QString systemText(int code);
    // Renames `from` to the first free name of `folder` that `candidate` gives for 1, 2, …; the kernel
    // decides at the rename itself, so a name taken meanwhile moves on to the next. Empty on failure.
    static QString placeNumbered(const QByteArray& from, const QString& folder,
                                 const std::function<QString(int n)>& candidate, QString& error);
};

} // namespace orvane
