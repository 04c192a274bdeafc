#pragma once

#include "core/Entry.h"

#include <QHash>
#include <QIcon>

namespace orvane {

// Icons by type, looked up once per type: the program's folder, or the icon theme's icon for the
// file's type, or one of the program's own for the broad families (text, image, audio, video,
// archive) when no theme has one, or a plain document.
class FileIcons {
public:
    FileIcons();
    static FileIcons& shared();
    QIcon icon(const Entry& entry);
    // The icon of a type by its name ("application/json"); an empty name is a file of no known type.
    QIcon forType(const QString& typeName);
    QIcon folder();
    QIcon document();
    // The program's own icon for a family named by a generic icon name ("audio-x-generic").
    static QIcon bundled(const QString& genericIconName);

private:
    QHash<QString, QIcon> byType;
    QHash<QString, QIcon> byKind;
    QIcon folderIcon;
    QIcon documentIcon;
};

} // namespace orvane
