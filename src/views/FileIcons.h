#pragma once

#include "browsing/Entry.h"

#include <QHash>
#include <QIcon>

namespace orvane {

// Icons by type, looked up once per type: the program's folder, or the theme's icon for the file's
// type, or a plain document when the theme has none.
class FileIcons {
public:
    static FileIcons& shared();
    QIcon icon(const Entry& entry);
    QIcon folder();
    QIcon document();

private:
    QHash<QString, QIcon> byType;
    QHash<QString, QIcon> byKind;
    QIcon folderIcon;
    QIcon documentIcon;
};

} // namespace orvane
