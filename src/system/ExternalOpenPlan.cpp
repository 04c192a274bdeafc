#include "system/ExternalOpenPlan.h"

#include "platform/NativePath.h"

#include <QDir>
#include <QHash>
#include <sys/stat.h>

namespace orvane {

namespace {
// A macOS bundle is a folder that shows as one item; other systems have none.
bool isPackage(const QString& path) {
#ifdef __APPLE__
    static const QStringList suffixes = {QStringLiteral(".app"), QStringLiteral(".bundle"),
                                         QStringLiteral(".framework"), QStringLiteral(".pkg")};
    for (const QString& suffix : suffixes)
        if (path.endsWith(suffix, Qt::CaseInsensitive)) return NativePath::isDir(path);
#else
    Q_UNUSED(path);
#endif
    return false;
}

QString parentOf(const QString& path) {
    const qsizetype slash = path.lastIndexOf(u'/');
    return slash <= 0 ? QStringLiteral("/") : path.left(slash);
}
} // namespace

QString ExternalOpenPlan::identity(const QUrl& url) {
    const QString path = QDir::cleanPath(url.toLocalFile());
    const QString resolved = NativePath::canonical(path);
    return resolved.isEmpty() ? path : resolved;
}

ExternalOpenPlan::ExternalOpenPlan(const QList<QUrl>& urls, bool reveal) {
    QHash<QString, qsizetype> known; // a folder's identity to its place in `folders`
    for (const QUrl& url : urls) {
        if (!url.isLocalFile() || !NativePath::exists(QDir::cleanPath(url.toLocalFile()))) {
            unavailable.append(url);
            continue;
        }
        const QString resolved = identity(url);
        const bool asFolder = !reveal && NativePath::isDir(resolved) && !isPackage(resolved);
        const QString folder = asFolder ? resolved : parentOf(resolved);
        const QString key = identity(QUrl::fromLocalFile(folder));
        qsizetype at = known.value(key, -1);
        if (at < 0) {
            at = folders.size();
            known.insert(key, at);
            folders.append({QUrl::fromLocalFile(folder), {}});
        }
        QList<QUrl>& selection = folders[at].selection;
        const QUrl item = QUrl::fromLocalFile(resolved);
        if (!asFolder && !selection.contains(item)) selection.append(item);
    }
}

} // namespace orvane
