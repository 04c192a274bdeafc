#include "platform/DesktopTrash.h"

#include <QFile>

namespace orvane {

// Names on a Mac are always UTF-8, so Qt's own path text is exact there.
bool DesktopTrash::moveIn(const QString& path, QString& trashed, QString& error) {
    QFile file(path);
    if (!file.moveToTrash()) {
        error = file.errorString();
        return false;
    }
    trashed = file.fileName();
    return true;
}

void DesktopTrash::forget(const QString&) {}

// Finder keeps no records a program may read; the Mac build lists no Trash of its own.
std::vector<DesktopTrash::Folder> DesktopTrash::folders() {
    return {};
}

std::vector<DesktopTrash::Record> DesktopTrash::read(const QString&, const QString&) {
    return {};
}

std::vector<DesktopTrash::Record> DesktopTrash::contents() {
    return {};
}

bool DesktopTrash::isEmpty() {
    return true;
}

} // namespace orvane
