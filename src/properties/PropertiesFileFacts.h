#pragma once

#include <QDateTime>
#include <QString>
#include <QUrl>
#include <optional>

namespace orvane {

// Everything the Properties window tells about one item but its size. Read off the main thread;
// links are never followed, so the facts of a link are those of the link.
struct PropertiesFileFacts {
    QUrl url;
    QString kind = unavailable();
    QString typeName; // the type database's name for it ("text/plain"); empty for folders and links
    bool isDirectory = false;
    bool isSymbolicLink = false;
    std::optional<QDateTime> created;
    std::optional<QDateTime> modified;
    std::optional<QDateTime> accessed;
    std::optional<bool> readable;
    std::optional<bool> writable;
    std::optional<bool> locked;
    std::optional<bool> hidden;
    QString owner = unavailable();
    QString group = unavailable();
    QString permissions = unavailable();
    std::optional<QString> linkTarget;
    std::optional<QString> error; // the system's text for what stopped the read

    // Never fails: what cannot be read keeps its default and the reason lands in `error`.
    static PropertiesFileFacts read(const QUrl& url);

    // The text of one row: type, location, created, modified, accessed, owner, group, permissions,
    // target, access or attributes. Empty for any other key.
    QString text(const QString& key) const;
    QString accessText() const;
    QString attributesText() const;

    static QString unavailable() { return QStringLiteral("Unavailable"); }
    // A date with the month's name and the seconds, "Mar 14, 2025 at 9:05:12 PM".
    static QString dateText(const std::optional<QDateTime>& date);
};

} // namespace orvane
