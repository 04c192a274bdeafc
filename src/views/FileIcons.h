#pragma once

#include "browsing/Entry.h"

#include <QHash>
#include <QIcon>

namespace orvane {

// Icons by type, looked up once per type: the folder icon, or the theme's icon for the file's type.
class FileIcons {
public:
    static FileIcons& shared();
    QIcon icon(const Entry& entry);
    QIcon folder();

private:
    QHash<QString, QIcon> byType;
    QIcon folderIcon;
};

} // namespace orvane
