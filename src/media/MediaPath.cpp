#include "media/MediaPath.h"

#include "platform/NativePath.h"

#include <QDir>
#include <QFileInfo>
#include <QTemporaryDir>
#include <unistd.h>

namespace orvane {

MediaPath::MediaPath(const QString& path) : source(path) {
    if (!NativePath::holdsRawBytes(path)) {
        carried = path;
        return;
    }
    QTemporaryDir dir(QDir::tempPath() + QStringLiteral("/orvane-media-XXXXXX"));
    if (!dir.isValid()) return;
    dir.setAutoRemove(false);
    folder = dir.path();
    // The link keeps the extension, which the player and ffmpeg go by.
    const QString suffix = QFileInfo(NativePath::display(path)).suffix();
    const QString link = folder + QStringLiteral("/media") + (suffix.isEmpty() ? QString() : u'.' + suffix);
    if (::symlink(NativePath::encode(path).constData(), QFile::encodeName(link).constData()) == 0)
        carried = link;
}

MediaPath::~MediaPath() {
    if (folder.isEmpty()) return;
    if (!carried.isEmpty()) ::unlink(QFile::encodeName(carried).constData());
    QDir().rmdir(folder);
}

} // namespace orvane
