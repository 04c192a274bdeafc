#include "views/FileIcons.h"

#include "kit/Symbols.h"
#include "platform/TypeIndex.h"

#include <QMimeDatabase>
#include <QStandardPaths>

namespace orvane {

// Without a desktop the platform names no icon theme and may not even look in the system's icon
// folders; the freedesktop themes are there all the same, and the set-up installs Adwaita.
FileIcons::FileIcons() {
    if (QIcon::hasThemeIcon(QStringLiteral("text-x-generic"))) return;
    QStringList paths = QIcon::themeSearchPaths();
    const QStringList system = QStandardPaths::locateAll(
        QStandardPaths::GenericDataLocation, QStringLiteral("icons"), QStandardPaths::LocateDirectory);
    for (const QString& dir : system)
        if (!paths.contains(dir)) paths << dir;
    QIcon::setThemeSearchPaths(paths);
    if (QIcon::themeName().isEmpty()) QIcon::setThemeName(QStringLiteral("hicolor"));
    QIcon::setFallbackThemeName(QStringLiteral("Adwaita"));
}

FileIcons& FileIcons::shared() {
    static FileIcons icons;
    return icons;
}

QIcon FileIcons::folder() {
    if (folderIcon.isNull()) folderIcon = symbolIcon(QStringLiteral("folder"));
    return folderIcon;
}

QIcon FileIcons::document() {
    if (documentIcon.isNull()) documentIcon = symbolIcon(QStringLiteral("doc"), Palette::muted());
    return documentIcon;
}

QIcon FileIcons::bundled(const QString& genericIconName) {
    static const struct {
        const char* prefix;
        const char* symbol;
        QColor tint;
    } families[] = {
        {"text-", "doc.text", Palette::muted()},    {"x-office-", "doc.text", QColor(120, 170, 240)},
        {"image-", "photo", QColor(110, 200, 150)}, {"audio-", "music.note", QColor(240, 120, 170)},
        {"video-", "film", QColor(240, 160, 90)},   {"package-", "archivebox", QColor(220, 185, 100)},
    };
    for (const auto& f : families)
        if (genericIconName.startsWith(QLatin1String(f.prefix)))
            return symbolIcon(QLatin1String(f.symbol), f.tint);
    return {};
}

QIcon FileIcons::icon(const Entry& entry) {
    if (entry.isPlainFolder()) return folder();
    // A row is painted often; its type text already names its type, so one lookup per type is enough.
    if (auto known = byKind.constFind(entry.kind); known != byKind.constEnd()) return *known;
    const QIcon icon = forType(TypeIndex::shared().typeName(entry.name()));
    byKind.insert(entry.kind, icon);
    return icon;
}

QIcon FileIcons::forType(const QString& typeName) {
    if (auto it = byType.constFind(typeName); it != byType.constEnd()) return *it;
    static const QMimeDatabase db;
    const QMimeType type = typeName.isEmpty() ? QMimeType() : db.mimeTypeForName(typeName);
    QIcon icon;
    if (type.isValid()) {
        icon = QIcon::fromTheme(type.iconName());
        if (icon.isNull()) icon = QIcon::fromTheme(type.genericIconName());
        if (icon.isNull()) icon = bundled(type.genericIconName());
    }
    if (icon.isNull()) icon = document();
    byType.insert(typeName, icon);
    return icon;
}

} // namespace orvane
