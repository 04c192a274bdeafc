#include "fileops/FileNames.h"

#include "platform/NativePath.h"

#include <sys/stat.h>
#include <unistd.h>

namespace orvane {

namespace {

// A dangling link takes its name too: creating there would fail, or write through it.
bool exists(const QString& path) {
    struct stat st;
    return lstat(NativePath::encode(path).constData(), &st) == 0;
}

bool isFolder(const QString& path) {
    struct stat st;
    return stat(NativePath::encode(path).constData(), &st) == 0 && S_ISDIR(st.st_mode);
}

// The extension as the system names it: after the last dot, but never for a name that starts with its
// only dot or ends in one.
QString extensionOf(const QString& name) {
    const qsizetype dot = name.lastIndexOf(u'.');
    if (dot <= 0 || dot == name.size() - 1) return {};
    return name.mid(dot + 1);
}

QString copySuffix(int n) {
    return n == 1 ? QStringLiteral(" - Copy") : QStringLiteral(" - Copy (%1)").arg(n);
}

qsizetype nameLimit(const QString& folder) {
    const long limit = pathconf(NativePath::encode(folder).constData(), _PC_NAME_MAX);
    return limit > 0 ? qsizetype(limit) : 255;
}

// Drops whole characters from the end of `text`, never half of a surrogate pair.
void chopCharacter(QString& text) {
    const qsizetype n = text.size();
    text.chop(n > 1 && text[n - 1].isLowSurrogate() && text[n - 2].isHighSurrogate() ? 2 : 1);
}

// The stem gives way first, so the suffix and the extension stay whole.
QString fitted(QString stem, const QString& suffix, QString tail, qsizetype limit) {
    const auto bytes = [&] { return NativePath::encode(stem + suffix + tail).size(); };
    while (bytes() > limit && !stem.isEmpty())
        chopCharacter(stem);
    while (bytes() > limit && !tail.isEmpty())
        chopCharacter(tail);
    return stem + suffix + tail;
}

} // namespace

QString FileNames::destination(const QString& source, const QString& folder, const QSet<QString>& reserved) {
    const auto free = [&reserved](const QString& path) { return !reserved.contains(path) && !exists(path); };
    const QString name = source.section(u'/', -1);
    const QString plain = folder + u'/' + name;
    if (free(plain)) return plain;
    const QString extension = isFolder(source) ? QString() : extensionOf(name);
    const QString stem = extension.isEmpty() ? name : name.left(name.size() - extension.size() - 1);
    const QString tail = extension.isEmpty() ? QString() : u'.' + extension;
    const qsizetype limit = nameLimit(folder);
    for (int n = 1;; ++n) {
        const QString candidate = folder + u'/' + fitted(stem, copySuffix(n), tail, limit);
        if (free(candidate)) return candidate;
    }
}

QString FileNames::newFolderName(const QString& folder) {
    QString name = QStringLiteral("New Folder");
    for (int n = 2; exists(folder + u'/' + name); ++n)
        name = QStringLiteral("New Folder (%1)").arg(n);
    return name;
}

bool FileNames::isValidName(const QString& name) {
    if (name.isEmpty() || name == QLatin1String(".") || name == QLatin1String("..")) return false;
    return !name.contains(u'/') && !name.contains(u':') && !name.contains(QChar(0));
}

TextRange filenameStemRange(const QString& name, bool directory) {
    const qsizetype dot = name.lastIndexOf(u'.');
    if (directory || dot <= 0) return {0, name.size()};
    return {0, dot};
}

} // namespace orvane
