#include "platform/Platform.h"

#include <QHash>
#include <QMimeDatabase>

namespace orvane {

namespace {
// Looking a type up by name is costly next to a stat; names in one folder share few suffixes.
QString cacheKey(const QString& fileName) {
    const qsizetype dot = fileName.indexOf(u'.', 1);
    return dot < 0 ? fileName : fileName.mid(dot).toLower();
}
} // namespace

QString Platform::typeDescription(const QString& fileName, bool directory, bool package) {
    static const QString folder = QStringLiteral("File folder");
    if (directory && !package)
        return folder;
    thread_local QHash<QString, QString> cache;
    const QString key = cacheKey(fileName);
    auto it = cache.constFind(key);
    if (it != cache.constEnd())
        return *it;
    static const QMimeDatabase db;
    const QMimeType type = db.mimeTypeForFile(fileName, QMimeDatabase::MatchExtension);
    QString text = type.isValid() && !type.isDefault() ? type.comment() : QString();
    if (text.isEmpty())
        text = QStringLiteral("File");
    if (cache.size() > 4096)
        cache.clear();
    cache.insert(key, text);
    return text;
}

} // namespace orvane
