#include "kit/DroppedFiles.h"

#include "core/UriList.h"
#include "platform/NativePath.h"

#include <QDir>
#include <QDropEvent>
#include <QMimeData>
#include <sys/stat.h>

namespace orvane {

namespace {
std::optional<dev_t> deviceOf(const QString& path) {
    struct stat facts;
    if (::lstat(NativePath::encode(path).constData(), &facts) != 0) return std::nullopt;
    return facts.st_dev;
}

QUrl identity(const QUrl& url) {
    const QString resolved = NativePath::canonical(QDir::cleanPath(url.toLocalFile()));
    return resolved.isEmpty() ? url : QUrl::fromLocalFile(resolved);
}

// A drag is read many times a second while it hovers; its files are read once.
struct Reading {
    QByteArray raw;
    QList<QUrl> urls;
    QList<QUrl> identities;
    std::optional<dev_t> device;
};

const Reading& read(const QMimeData& data) {
    static Reading last;
    const QByteArray raw = data.data(UriList::format);
    if (raw == last.raw && !raw.isEmpty()) return last;
    last = {raw, UriList::read(data), {}, std::nullopt};
    for (const QUrl& url : last.urls)
        last.identities << identity(url);
    if (!last.urls.isEmpty()) last.device = deviceOf(last.urls.front().toLocalFile());
    return last;
}
} // namespace

FileDropPlan::Drag DroppedFiles::facts(const QDropEvent& event, const QUrl& folder, bool busy) {
    FileDropPlan::Drag drag;
    drag.busy = busy;
    drag.folder = folder;
    drag.folderIdentity = identity(folder);
    drag.keys = event.modifiers();
    drag.offered = event.possibleActions();
    if (!event.mimeData()) return drag;
    const Reading& files = read(*event.mimeData());
    drag.urls = files.urls;
    drag.identities = files.identities;
    if (!event.source())
        drag.source = DropSource::OtherProgram;
    else if (files.device && files.device == deviceOf(folder.toLocalFile()))
        drag.source = DropSource::SameFileSystem;
    else
        drag.source = DropSource::OtherFileSystem;
    return drag;
}

std::optional<FileDropPlan> DroppedFiles::plan(const QDropEvent& event, const QUrl& folder,
                                               std::optional<int> row, bool busy, QString* refusal) {
    FileDropPlan::Drag drag = facts(event, folder, busy);
    drag.row = row;
    return FileDropPlan::make(drag, refusal);
}

void DroppedFiles::answer(QDropEvent& event, const std::optional<FileDropPlan>& plan) {
    if (!plan) return event.ignore();
    event.setDropAction(plan->operation);
    event.accept();
}

} // namespace orvane
