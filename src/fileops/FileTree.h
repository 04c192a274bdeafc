#pragma once

#include <QString>

namespace orvane {

// Copies, moves and removes whole items on the local disk with the system calls themselves, so that
// "never overwrite" is decided by the kernel: files are created with O_EXCL, folders with mkdir and links
// with symlink, each of which fails when anything is already there. Errors come back as the system's text,
// with the inner path in parentheses when the failing item lies below the one asked for.
class FileTree {
public:
    // Copies a file, a link (as a link with the same target text) or a whole folder to `destination`,
    // which must not exist. Permissions and modification times are kept. A copy that fails half way is
    // removed again, but only if this call created its top; nothing that was there before is touched.
    static bool copy(const QString& source, const QString& destination, QString& error);
    // A rename that refuses an existing destination; across volumes a copy, and the source goes only after
    // its copy has completed.
    static bool move(const QString& source, const QString& destination, QString& error);
    // Removes a file, a link or a whole folder without following links.
    static bool remove(const QString& path, QString& error);
    // The system's text for an errno value.
    static QString systemText(int code);
};

} // namespace orvane
