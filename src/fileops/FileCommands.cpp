#include "fileops/FileCommands.h"

#include "fileops/FileNames.h"
#include "fileops/FileTrash.h"
#include "fileops/FileTree.h"
#include "platform/NativePath.h"
#include "platform/NoReplaceRename.h"

#include <cerrno>
#include <fcntl.h>
#include <sys/stat.h>
#include <unistd.h>

namespace orvane {

namespace {

FileCommandResult failure(const QString& title, const QString& detail) {
    FileCommandResult result;
    result.title = title;
    result.detail = detail;
    return result;
}

FileCommandResult created(const QString& path) {
    FileCommandResult result;
    result.ok = true;
    result.path = path;
    result.undo = [path](QString& error) {
        QString trashed;
        return FileTrash::moveToTrash(path, trashed, error);
    };
    return result;
}

bool sameItem(const QString& a, const QString& b) {
    struct stat sa, sb;
    return lstat(NativePath::encode(a).constData(), &sa) == 0 &&
           lstat(NativePath::encode(b).constData(), &sb) == 0 && sa.st_dev == sb.st_dev &&
           sa.st_ino == sb.st_ino;
}

} // namespace

FileCommandResult FileCommands::createFolder(const QString& folder) {
    // Another program may take the free name first; mkdir then refuses and the next name is tried.
    int code = EEXIST;
    for (int attempt = 0; attempt < 100 && code == EEXIST; ++attempt) {
        const QString path = folder + u'/' + FileNames::newFolderName(folder);
        if (mkdir(NativePath::encode(path).constData(), 0777) == 0) return created(path);
        code = errno;
    }
    return failure(QStringLiteral("Cannot create folder"), FileTree::systemText(code));
}

FileCommandResult FileCommands::createTextDocument(const QString& folder, const QString& name) {
    if (!FileNames::isValidName(name))
        return failure(FileNames::invalidNameTitle(), FileNames::invalidNameDetail());
    const QString path = folder + u'/' + name;
    const int fd = open(NativePath::encode(path).constData(), O_WRONLY | O_CREAT | O_EXCL | O_CLOEXEC, 0666);
    if (fd < 0) return failure(QStringLiteral("Cannot create document"), FileTree::systemText(errno));
    close(fd);
    return created(path);
}

FileCommandResult FileCommands::rename(const QString& path, const QString& newName, PathMoved onMoved) {
    if (!FileNames::isValidName(newName))
        return failure(FileNames::invalidNameTitle(), FileNames::invalidNameDetail());
    const qsizetype slash = path.lastIndexOf(u'/');
    const QString target = path.left(slash + 1) + newName;
    FileCommandResult result;
    result.ok = true;
    // The editor shows a byte that is not UTF-8 as U+FFFD; a name left as shown is the item's own.
    result.path = newName == NativePath::display(path.mid(slash + 1)) ? path : target;
    if (result.path == path) return result;
    const QString title = QStringLiteral("Cannot rename");
    const QByteArray from = NativePath::encode(path);
    const QByteArray to = NativePath::encode(target);
    // A name that differs only in letter case on a volume that ignores case is the item's own name.
    const int code = sameItem(path, target) ? (::rename(from.constData(), to.constData()) == 0 ? 0 : errno)
                                            : renameNoReplace(from.constData(), to.constData());
    if (code == EEXIST) return failure(title, QStringLiteral("An item with that name already exists."));
    if (code != 0) return failure(title, FileTree::systemText(code));
    result.undo = [path, target, onMoved](QString& error) {
        if (!FileTree::move(target, path, error)) return false;
        if (onMoved) onMoved(target, path);
        return true;
    };
    return result;
}

} // namespace orvane
