#pragma once

#include <QByteArray>
#include <QDateTime>
#include <QString>
#include <QTemporaryDir>

namespace orvane::test {

// A real folder for one test, removed with the object. Paths are relative to its root.
class TempTree {
public:
    TempTree();
    // Removes by the exact bytes, which QTemporaryDir cannot do for names that are not UTF-8.
    ~TempTree();
    QString path(const QString& relative = {}) const;
    QString file(const QString& relative, const QByteArray& content = {});
    QString folder(const QString& relative);
    // Writes `size` bytes of a repeating pattern, for files too large to spell out.
    QString sizedFile(const QString& relative, qint64 size);
    // A file whose relative path is given as bytes, not necessarily UTF-8; answers its path as the
    // program holds it. Missing folders on the way are made.
    QString rawFile(const QByteArray& relative, const QByteArray& content = {});
    // Writes a file at any absolute path by its exact bytes, making missing folders on the way.
    static QString writeFile(const QString& path, const QByteArray& content = {});
    // Reading by the exact bytes of a path, for names that are not UTF-8; empty when unreadable.
    static QByteArray contents(const QString& path);
    // Whether anything, a dangling link too, is at the path.
    static bool present(const QString& path);
    void setModified(const QString& relative, const QDateTime& when);

private:
    QTemporaryDir dir;
};

} // namespace orvane::test
