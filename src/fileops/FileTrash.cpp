#include "fileops/FileTrash.h"

#include "fileops/FileTree.h"

#include <QDir>
#include <QFile>
#include <QFileInfo>
#include <QStandardPaths>
#include <memory>

namespace orvane {

namespace {
// Qt 6.4 "trashes" into the current directory when the data folder is missing, so it must exist first.
void ensureDataLocation() {
    const QString data = QStandardPaths::writableLocation(QStandardPaths::GenericDataLocation);
    if (!data.isEmpty()) QDir().mkpath(data);
}

QString infoPath(const QString& trashed) {
    const QFileInfo item(trashed);
    return item.dir().absolutePath() + QStringLiteral("/../info/") + item.fileName() +
           QStringLiteral(".trashinfo");
}
} // namespace

bool FileTrash::moveToTrash(const QString& path, QString& trashed, QString& error) {
    ensureDataLocation();
    QFile file(path);
    if (!file.moveToTrash()) {
        error = file.errorString();
        return false;
    }
    trashed = file.fileName();
    if (QDir::isAbsolutePath(trashed)) return true;
    // The Trash was not reached and the item went to a folder of Qt's choosing: put it back.
    QString ignored;
    FileTree::move(trashed, path, ignored);
    error = QStringLiteral("The Trash could not be reached.");
    return false;
}

bool FileTrash::restore(const TrashedItem& item, QString& error) {
    if (!FileTree::move(item.trashed, item.original, error)) return false;
    QFile::remove(QDir::cleanPath(infoPath(item.trashed)));
    return true;
}

FileTrash::Batch FileTrash::trash(const QStringList& paths) {
    Batch batch;
    for (const QString& path : paths) {
        QString trashed, error;
        if (moveToTrash(path, trashed, error))
            batch.items.push_back({path, trashed});
        else
            batch.failures << error;
    }
    return batch;
}

FileUndo FileTrash::undoStep(std::vector<TrashedItem> items) {
    auto next = std::make_shared<size_t>(0);
    return [items = std::move(items), next](QString& error) {
        for (; *next < items.size(); ++*next)
            if (!restore(items[*next], error)) return false;
        return true;
    };
}

} // namespace orvane
