#include "media/MediaFile.h"

#include "platform/NativePath.h"

#include <QFile>
#include <fcntl.h>
#include <sys/stat.h>
#include <unistd.h>

namespace orvane {

std::unique_ptr<QFile> MediaFile::open(const QString& path) {
    const int fd = ::open(NativePath::encode(path).constData(), O_RDONLY | O_NONBLOCK | O_CLOEXEC);
    if (fd < 0) return nullptr;
    struct stat st;
    if (fstat(fd, &st) != 0 || !S_ISREG(st.st_mode)) {
        ::close(fd);
        return nullptr;
    }
    auto file = std::make_unique<QFile>();
    if (!file->open(fd, QIODevice::ReadOnly, QFileDevice::AutoCloseHandle)) {
        ::close(fd);
        return nullptr;
    }
    return file;
}

qint64 MediaFile::modified(const QString& path) {
    struct stat st;
    return stat(NativePath::encode(path).constData(), &st) == 0 ? qint64(st.st_mtim.tv_sec) : 0;
}

bool MediaFile::makeFolders(const QString& path) {
    const QByteArray bytes = NativePath::encode(path);
    for (qsizetype slash = bytes.indexOf('/', 1); slash != -1; slash = bytes.indexOf('/', slash + 1))
        mkdir(bytes.left(slash).constData(), 0700);
    return mkdir(bytes.constData(), 0700) == 0 || errno == EEXIST;
}

} // namespace orvane
