#pragma once

#include <QByteArray>
#include <QString>
#include <optional>

namespace orvane {

// The user's mimeapps.list, changed one line at a time: comments, other groups, other defaults
// and their spacing stay byte for byte as they were, and a line put back is the line taken.
class MimeAppsList {
public:
    // $XDG_CONFIG_HOME/mimeapps.list, where the desktop looks first.
    static QString userFile();

    // The line of `type` under [Default Applications] as it stands, without its newline; the last
    // one counts when there are several, as for the desktop's own reader. Empty when there is none.
    static QByteArray lineIn(const QByteArray& content, const QByteArray& type);
    // The applications a line names: "a.desktop;b.desktop;".
    static QByteArray valueOf(const QByteArray& line);
    // The content with that line replaced by `line`, added, or with an empty `line` removed.
    static QByteArray withLine(const QByteArray& content, const QByteArray& type, const QByteArray& line);

    // Nothing when the file exists and cannot be read.
    static std::optional<QByteArray> readLine(const QString& file, const QByteArray& type);
    // Through a new file renamed over the old, so a crash leaves one or the other; a file the user
    // made read-only is left alone. The error, or empty.
    static QString writeLine(const QString& file, const QByteArray& type, const QByteArray& line);
};

} // namespace orvane
