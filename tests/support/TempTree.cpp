#include "TempTree.h"

#include "fileops/FileTree.h"
#include "platform/NativePath.h"

#include <QDir>
#include <QFile>
#include <QFileInfo>
#include <fcntl.h>
#include <sys/stat.h>
#include <unistd.h>

namespace orvane::test {

TempTree::TempTree() : dir(QDir::tempPath() + QStringLiteral("/orvane-tree-XXXXXX")) {}

TempTree::~TempTree() {
    QString ignored;
    FileTree::remove(dir.path(), ignored);
}

QString TempTree::path(const QString& relative) const {
    return relative.isEmpty() ? dir.path() : dir.path() + u'/' + relative;
}

QString TempTree::file(const QString& relative, const QByteArray& content) {
    const QString full = path(relative);
    QDir().mkpath(QFileInfo(full).absolutePath());
    QFile f(full);
    if (f.open(QIODevice::WriteOnly)) f.write(content);
    return full;
}

QString TempTree::folder(const QString& relative) {
    const QString full = path(relative);
    QDir().mkpath(full);
    return full;
}

QString TempTree::sizedFile(const QString& relative, qint64 size) {
    const QString full = file(relative);
    QFile f(full);
    if (!f.open(QIODevice::WriteOnly)) return full;
    QByteArray block(1 << 16, '\0');
    for (int i = 0; i < block.size(); ++i)
        block[i] = char(i * 31 + 7);
    for (qint64 left = size; left > 0; left -= block.size())
        f.write(block.constData(), qMin<qint64>(left, block.size()));
    return full;
}

QString TempTree::rawFile(const QByteArray& relative, const QByteArray& content) {
    return writeFile(dir.path() + u'/' + NativePath::decode(relative), content);
}

QString TempTree::writeFile(const QString& path, const QByteArray& content) {
    const QByteArray full = NativePath::encode(path);
    for (qsizetype slash = full.indexOf('/', 1); slash > 0; slash = full.indexOf('/', slash + 1))
        mkdir(full.left(slash).constData(), 0755);
    const int fd = open(full.constData(), O_WRONLY | O_CREAT | O_TRUNC | O_CLOEXEC, 0644);
    if (fd >= 0) {
        if (write(fd, content.constData(), size_t(content.size())) != content.size()) qWarning("short write");
        close(fd);
    }
    return path;
}

QByteArray TempTree::contents(const QString& path) {
    QByteArray data;
    const int fd = open(NativePath::encode(path).constData(), O_RDONLY | O_CLOEXEC);
    if (fd < 0) return data;
    char buffer[65536];
    ssize_t n;
    while ((n = read(fd, buffer, sizeof buffer)) > 0)
        data.append(buffer, n);
    close(fd);
    return data;
}

bool TempTree::present(const QString& path) {
    struct stat st;
    return lstat(NativePath::encode(path).constData(), &st) == 0;
}

void TempTree::setModified(const QString& relative, const QDateTime& when) {
    QFile f(path(relative));
    if (f.open(QIODevice::ReadWrite)) f.setFileTime(when, QFileDevice::FileModificationTime);
}

} // namespace orvane::test
