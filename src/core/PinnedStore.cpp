#include "core/PinnedStore.h"

#include "core/Settings.h"
#include "platform/NativePath.h"

#include <QDir>
#include <QSet>
#include <QStandardPaths>

namespace orvane {

PinnedStore::PinnedStore(Settings& settings) : prefs(settings) {
    seedIfNeeded();
    reload();
}

// Once in the life of a preferences domain; an emptied list stays empty.
void PinnedStore::seedIfNeeded() {
    if (prefs.pins()) return;
    const QStandardPaths::StandardLocation seeds[] = {
        QStandardPaths::DesktopLocation,  QStandardPaths::DownloadLocation, QStandardPaths::DocumentsLocation,
        QStandardPaths::PicturesLocation, QStandardPaths::MoviesLocation,   QStandardPaths::MusicLocation};
    QStringList paths;
    for (auto location : seeds)
        paths << QDir::cleanPath(QStandardPaths::writableLocation(location));
    prefs.setPins(paths);
}

QUrl PinnedStore::canonical(const QUrl& url) {
    QString path = QDir::cleanPath(url.toLocalFile());
    QString rest;
    // Resolve the deepest part that exists and keep the remainder as written.
    while (!path.isEmpty() && path != QLatin1String("/") && !NativePath::exists(path)) {
        const qsizetype slash = path.lastIndexOf(u'/');
        rest.prepend(path.mid(slash));
        path = slash <= 0 ? QStringLiteral("/") : path.left(slash);
    }
    const QString resolved = NativePath::canonical(path);
    const QString base = resolved.isEmpty() ? path : resolved;
    return QUrl::fromLocalFile(QDir::cleanPath(base + rest));
}

bool PinnedStore::accepted(const QUrl& url) {
    return url.isLocalFile() || isPhone(url);
}

QString PinnedStore::identity(const QUrl& url) {
    return isPhone(url) ? url.path() : canonical(url).path();
}

QString PinnedStore::storedForm(const QUrl& url) {
    if (isPhone(url)) return url.toString(QUrl::FullyEncoded);
    // Preferences hold text; a path that is not UTF-8 is kept as a file URL of its exact bytes.
    const QString path = url.toLocalFile();
    return NativePath::holdsRawBytes(path) ? QString::fromLatin1(NativePath::encodedUrl(path)) : path;
}

int PinnedStore::indexOf(const QString& identityPath) const {
    for (int i = 0; i < list.size(); ++i)
        if (list[i].path() == identityPath) return i;
    return -1;
}

void PinnedStore::reload() {
    QList<QUrl> kept;
    QSet<QString> seen;
    for (const QString& text : prefs.pins().value_or(QStringList())) {
        QUrl url;
        QString key;
        if (text.startsWith(QLatin1String("android://"))) {
            url = QUrl(text, QUrl::StrictMode);
            key = text;
        } else if (text.startsWith(u'/') || text.startsWith(QLatin1String("file:"))) {
            const QString path = text.startsWith(u'/') ? text : NativePath::fromEncodedUrl(text.toLatin1());
            url = canonical(QUrl::fromLocalFile(path));
            key = url.path();
        }
        if (!url.isValid() || key.isEmpty() || seen.contains(key)) continue;
        seen.insert(key);
        kept.append(url);
    }
    list = kept;
}

bool PinnedStore::contains(const QUrl& url) const {
    return accepted(url) && indexOf(identity(url)) >= 0;
}

bool PinnedStore::pin(const QUrl& url) {
    if (!accepted(url)) return false;
    QUrl stored = url;
    if (!isPhone(url)) {
        stored = canonical(url);
        if (!NativePath::isDir(stored.toLocalFile())) return false;
    }
    reload();
    if (contains(stored)) return false;
    list.append(stored);
    save();
    return true;
}

bool PinnedStore::unpin(const QUrl& url) {
    if (!accepted(url)) return false;
    reload();
    const QString id = identity(url);
    const qsizetype removed = list.removeIf([&](const QUrl& u) { return u.path() == id; });
    if (removed == 0) return false;
    save();
    return true;
}

bool PinnedStore::move(const QUrl& url, int slot) {
    if (!accepted(url)) return false;
    reload();
    if (slot < 0 || slot > list.size()) return false;
    const int source = indexOf(identity(url));
    if (source < 0) return false;
    const int destination = source >= slot ? slot : slot - 1;
    if (destination == source) return false;
    list.move(source, destination);
    save();
    return true;
}

bool PinnedStore::replace(const QUrl& oldURL, const QUrl& newURL) {
    if (!oldURL.isLocalFile() || !newURL.isLocalFile()) return false;
    reload();
    const QString oldPath = canonical(oldURL).path();
    const QUrl newCanonical = canonical(newURL);
    if (oldPath == newCanonical.path()) return false;
    const QString prefix = oldPath == QLatin1String("/") ? oldPath : oldPath + u'/';
    QStringList before;
    for (const QUrl& u : list)
        before << storedForm(u);
    QList<QUrl> rebuilt;
    QSet<QString> seen;
    for (const QUrl& pin : list) {
        const QString p = pin.path();
        QUrl result = pin;
        if (isPhone(pin))
            result = pin; // a local rename never touches a phone folder
        else if (p == oldPath)
            result = newCanonical;
        else if (p.startsWith(prefix))
            result = canonical(QUrl::fromLocalFile(newCanonical.toLocalFile() + u'/' + p.mid(prefix.size())));
        if (seen.contains(result.path())) continue;
        seen.insert(result.path());
        rebuilt.append(result);
    }
    QStringList after;
    for (const QUrl& u : rebuilt)
        after << u.path();
    if (before == after) return false;
    list = rebuilt;
    save();
    return true;
}

void PinnedStore::save() {
    QStringList forms;
    for (const QUrl& u : list)
        forms << storedForm(u);
    prefs.setPins(forms);
}

} // namespace orvane
