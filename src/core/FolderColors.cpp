#include "core/FolderColors.h"

#include "core/Settings.h"

#include <QDir>

namespace orvane {

FolderColors::FolderColors(Settings& settings, QObject* parent)
    : QObject(parent), prefs(settings), values(settings.folderColors()) {}

std::optional<QString> FolderColors::normalize(const QString& text) {
    QString digits = text.trimmed().remove(u'#').toUpper();
    if (digits.size() != 6) return std::nullopt;
    for (const QChar c : digits)
        if (!c.isDigit() && (c < u'A' || c > u'F')) return std::nullopt;
    return u'#' + digits;
}

QColor FolderColors::color(const QString& hex) {
    const uint value = QString(hex).remove(u'#').toUInt(nullptr, 16);
    return QColor::fromRgb((value >> 16) & 255, (value >> 8) & 255, value & 255);
}

QString FolderColors::key(const QUrl& url) {
    if (url.scheme() == QLatin1String("android")) return QLatin1String("android:") + url.path();
    // Links are not resolved: a link and its target may carry colours of their own.
    return QDir::cleanPath(url.isLocalFile() ? url.toLocalFile() : url.path());
}

QString FolderColors::keyOf(const QString& location) {
    if (location.startsWith(QLatin1String("android:"))) return key(QUrl(location));
    return QDir::cleanPath(location); // a path keeps its exact bytes as they travel in text
}

std::optional<QString> FolderColors::hex(const QUrl& url) const {
    return hexAt(key(url));
}

std::optional<QString> FolderColors::hexAt(const QString& folderKey) const {
    const auto found = values.constFind(folderKey);
    if (found == values.constEnd()) return std::nullopt;
    return normalize(*found);
}

void FolderColors::set(const std::optional<QString>& hex, const QList<QUrl>& urls) {
    QStringList keys;
    for (const QUrl& url : urls)
        keys << key(url);
    store(hex, keys);
}

void FolderColors::setAt(const std::optional<QString>& hex, const QStringList& locations) {
    QStringList keys;
    for (const QString& location : locations)
        keys << keyOf(location);
    store(hex, keys);
}

void FolderColors::store(const std::optional<QString>& hex, const QStringList& keys) {
    const std::optional<QString> value = hex ? normalize(*hex) : std::nullopt;
    for (const QString& k : keys) {
        if (value)
            values.insert(k, *value);
        else
            values.remove(k);
    }
    prefs.setFolderColors(values);
    emit changed();
}

void FolderColors::moved(const QString& from, const QString& to) {
    const QString old = keyOf(from), now = keyOf(to);
    QList<QString> going;
    for (auto it = values.cbegin(); it != values.cend(); ++it)
        if (it.key() == old || it.key().startsWith(old + u'/')) going << it.key();
    if (going.isEmpty() || old == now) return;
    QHash<QString, QString> renamed;
    for (const QString& k : going)
        renamed.insert(now + k.mid(old.size()), values.take(k));
    values.insert(renamed);
    prefs.setFolderColors(values);
    emit changed();
}

} // namespace orvane
