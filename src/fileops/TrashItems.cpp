#include "fileops/TrashItems.h"

#include "fileops/FileTree.h"
#include "platform/NativePath.h"

#include <cerrno>
#include <memory>
#include <sys/stat.h>

namespace orvane {

namespace {

bool taken(const QString& path) {
    struct stat st;
    return lstat(NativePath::encode(path).constData(), &st) == 0;
}

// Makes every missing folder down to `folder`, as the person would have had it.
bool makeFolders(const QString& folder, QString& error) {
    const QByteArray path = NativePath::encode(folder);
    for (qsizetype slash = path.indexOf('/', 1);; slash = path.indexOf('/', slash + 1)) {
        const QByteArray part = slash == -1 ? path : path.left(slash);
        if (mkdir(part.constData(), 0777) != 0 && errno != EEXIST)
            return error = FileTree::systemText(errno), false;
        if (slash == -1) return true;
    }
}

QString nameOf(const QString& path) {
    return NativePath::display(path.section(u'/', -1));
}

// Tries the free names one after another: a name taken between the look and the move is refused by the
// kernel, and the next number is tried.
bool restoreOne(const DesktopTrash::Record& record, QString& restored, QString& error) {
    if (record.original.isEmpty()) return error = TrashItems::unknownOrigin(), false;
    const QString folder = record.original.section(u'/', 0, -2);
    if (!folder.isEmpty() && !NativePath::isDir(folder) && !makeFolders(folder, error)) return false;
    struct stat st;
    const bool isFolder =
        lstat(NativePath::encode(record.trashed).constData(), &st) == 0 && S_ISDIR(st.st_mode);
    for (int attempt = 0; attempt < 100; ++attempt) {
        restored = TrashItems::freePath(record.original, isFolder);
        if (FileTree::move(record.trashed, restored, error)) {
            DesktopTrash::forget(record.trashed);
            return true;
        }
        if (!taken(restored) || !taken(record.trashed)) return false;
    }
    return false;
}

} // namespace

QString TrashItems::freePath(const QString& original, bool folder) {
    if (!taken(original)) return original;
    const qsizetype slash = original.lastIndexOf(u'/');
    const QString base = original.left(slash + 1), name = original.mid(slash + 1);
    const qsizetype dot = folder ? -1 : name.lastIndexOf(u'.');
    const bool hasExtension = dot > 0 && dot < name.size() - 1;
    const QString stem = hasExtension ? name.left(dot) : name,
                  tail = hasExtension ? name.mid(dot) : QString();
    for (int n = 2;; ++n) {
        const QString candidate = base + stem + QStringLiteral(" (%1)").arg(n) + tail;
        if (!taken(candidate)) return candidate;
    }
}

TrashItems::Outcome TrashItems::restore(const std::vector<DesktopTrash::Record>& records) {
    Outcome outcome;
    for (const DesktopTrash::Record& record : records) {
        QString restored, error;
        if (restoreOne(record, restored, error))
            outcome.restored.push_back({record.trashed, restored});
        else
            outcome.failures << nameOf(record.original.isEmpty() ? record.trashed : record.original) +
                                    QStringLiteral(": ") + error;
    }
    return outcome;
}

FileUndo TrashItems::undoStep(std::vector<Restored> items) {
    auto next = std::make_shared<size_t>(0);
    return [items = std::move(items), next](QString& error) {
        for (; *next < items.size(); ++*next) {
            QString trashed;
            if (!DesktopTrash::moveIn(items[*next].restored, trashed, error)) return false;
        }
        return true;
    };
}

PermanentDelete::Result TrashItems::erase(const QStringList& trashed) {
    PermanentDelete::Result result = PermanentDelete::run(trashed);
    // The records of what is gone go after the items, so an interrupted removal still lists the rest.
    for (const QString& path : trashed)
        if (!taken(path)) DesktopTrash::forget(path);
    return result;
}

} // namespace orvane
