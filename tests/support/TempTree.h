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
    QString path(const QString& relative = {}) const;
    QString file(const QString& relative, const QByteArray& content = {});
    QString folder(const QString& relative);
    // Writes `size` bytes of a repeating pattern, for files too large to spell out.
    QString sizedFile(const QString& relative, qint64 size);
    void setModified(const QString& relative, const QDateTime& when);

private:
    QTemporaryDir dir;
};

} // namespace orvane::test
