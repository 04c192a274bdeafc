#include "views/FileIcons.h"

#include "chrome/Symbols.h"

#include <QMimeDatabase>

namespace orvane {

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

QIcon FileIcons::icon(const Entry& entry) {
    if (entry.isPlainFolder()) return folder();
    // A row is painted often; its type text already names its type, so one lookup per type is enough.
    if (auto known = byKind.constFind(entry.kind); known != byKind.constEnd()) return *known;
    static const QMimeDatabase db;
    const QMimeType type = db.mimeTypeForFile(entry.name(), QMimeDatabase::MatchExtension);
    auto it = byType.constFind(type.name());
    if (it != byType.constEnd()) {
        byKind.insert(entry.kind, *it);
        return *it;
    }
    QIcon icon = QIcon::fromTheme(type.iconName());
    if (icon.isNull()) icon = QIcon::fromTheme(type.genericIconName());
    if (icon.isNull()) icon = document();
    byType.insert(type.name(), icon);
    byKind.insert(entry.kind, icon);
    return icon;
}

} // namespace orvane
