#pragma once

#include <QByteArray>
#include <QString>

namespace orvane {

// A path is bytes; a name need not be UTF-8. Paths travel through the program as text that gives back
// the exact bytes: valid UTF-8 reads as itself, and each byte outside valid UTF-8 becomes the lone
// surrogate U+DC80 + byte, which no valid UTF-8 can produce. Every system call takes `encode(path)`,
// never QFile::encodeName, which would turn such a byte into the bytes of U+FFFD and so name another file.
namespace NativePath {

QString decode(const QByteArray& bytes);
QString decode(const char* bytes);
QByteArray encode(const QString& path);
// What a person reads: each kept byte shows as U+FFFD.
QString display(const QString& path);
bool holdsRawBytes(const QString& path);

// A file URL whose percent-encoding is the path's bytes exactly, as text/uri-list carries it.
QByteArray encodedUrl(const QString& path);
// The path of such a URL (file scheme, empty host or "localhost"), or empty for anything else.
QString fromEncodedUrl(const QByteArray& url);

// The same file questions Qt answers, asked with the exact bytes. Existence follows links.
bool exists(const QString& path);
bool isDir(const QString& path);
// The path with links resolved, or empty when it cannot be resolved.
QString canonical(const QString& path);

} // namespace NativePath

} // namespace orvane
