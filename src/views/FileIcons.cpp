#include "views/FileIcons.h"

#include <QApplication>
#include <QMimeDatabase>
#include <QStyle>

namespace orvane {

FileIcons& FileIcons::shared() {
    static FileIcons icons;
    return icons;
}

QIcon FileIcons::folder() {
    if (folderIcon.isNull())
        folderIcon =
            QIcon::fromTheme(QStringLiteral("folder"), qApp->style()->standardIcon(QStyle::SP_DirIcon));
    return folderIcon;
}

QIcon FileIcons::icon(const Entry& entry) {
    if (entry.isPlainFolder()) return folder();
    static const QMimeDatabase db;
    const QMimeType type = db.mimeTypeForFile(entry.name(), QMimeDatabase::MatchExtension);
    auto it = byType.constFind(type.name());
    if (it != byType.constEnd()) return *it;
    QIcon icon = QIcon::fromTheme(type.iconName());
    if (icon.isNull()) icon = QIcon::fromTheme(type.genericIconName());
    if (icon.isNull()) icon = qApp->style()->standardIcon(QStyle::SP_FileIcon);
    byType.insert(type.name(), icon);
    return icon;
}

} // namespace orvane
