#pragma once

#include <QSet>
#include <QString>

namespace orvane {

// The naming rules of file operations. Every creating operation picks a free name first, and number
// suffixes start at 2 in all of them.
class FileNames {
public:
    // A free place for `source` inside `folder`: its own name, else " - Copy", " - Copy (2)", … before
    // the extension. A folder has no extension whatever dots its name holds. A dangling link takes its
    // name. A copy's name is cut to the folder's name limit, from the end of its stem, by whole
    // characters. Paths in `reserved` count as taken too.
    static QString destination(const QString& source, const QString& folder,
                               const QSet<QString>& reserved = {});
    // "New Folder", else "New Folder (2)", "New Folder (3)", …
    static QString newFolderName(const QString& folder);
    // The name offered for a new text document.
    static QString newDocumentName() { return QStringLiteral("New document.txt"); }
    // False for "", ".", "..", and names holding "/", ":" or NUL.
    static bool isValidName(const QString& name);
    static QString invalidNameTitle() { return QStringLiteral("Invalid name"); }
    static QString invalidNameDetail() { return QStringLiteral("Enter a name without / or :."); }
};

// Start and length, in UTF-16 units, of the part of `name` that a rename selects: the whole name for a
// folder or a name without an inner dot, else everything before the last dot.
struct TextRange {
    qsizetype start = 0;
    qsizetype length = 0;
    bool operator==(const TextRange&) const = default;
};
TextRange filenameStemRange(const QString& name, bool directory);

} // namespace orvane
