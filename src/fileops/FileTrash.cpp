#include "fileops/FileTrash.h"

#include "fileops/FileTree.h"
#include "platform/DesktopTrash.h"

#include <memory>

namespace orvane {

bool FileTrash::moveToTrash(const QString& path, QString& trashed, QString& error) {
    return DesktopTrash::moveIn(path, trashed, error);
}

bool FileTrash::restore(const TrashedItem& item, QString& error) {
    if (!FileTree::move(item.trashed, item.original, error)) return false;
    DesktopTrash::forget(item.trashed);
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
