#include "TempTree.h"

#include <QDir>
#include <QFile>
#include <QFileInfo>

namespace orvane::test {

TempTree::TempTree() : dir(QDir::tempPath() + QStringLiteral("/orvane-tree-XXXXXX")) {}

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

void TempTree::setModified(const QString& relative, const QDateTime& when) {
    QFile f(path(relative));
    if (f.open(QIODevice::ReadWrite)) f.setFileTime(when, QFileDevice::FileModificationTime);
}

} // namespace orvane::test
