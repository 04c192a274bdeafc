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
    static const QMimeDatabase db;
    const QMimeType type = db.mimeTypeForFile(entry.name(), QMimeDatabase::MatchExtension);
    auto it = byType.constFind(type.name());
    if (it != byType.constEnd()) return *it;
    QIcon icon = QIcon::fromTheme(type.iconName());
    if (icon.isNull()) icon = QIcon::fromTheme(type.genericIconName());
    if (icon.isNull()) icon = document();
    byType.insert(type.name(), icon);
    return icon;
}

} // namespace orvane
