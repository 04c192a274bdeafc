#pragma once

#include "platform/NativePath.h"

#include <QDir>
#include <QFile>
#include <QProcess>
#include <QString>
#include <QStringList>
#include <unistd.h>

namespace orvane::test {

// Media files made by the real ffmpeg at test time. Returns the path (NativePath form), or an
// empty string when ffmpeg failed. `source` is an lavfi graph such as "sine=frequency=440".
inline QString makeMedia(const QString& folder, const QString& name, const QString& source, double seconds,
                         const QStringList& extra = {}) {
    // ffmpeg cannot be given a name that is not UTF-8, so it writes a plain name that is then renamed.
    const QString plain = folder + QStringLiteral("/.making-") + QString::number(qHash(name)) + u'.' +
                          NativePath::display(name).section(u'.', -1);
    QStringList args{QStringLiteral("-nostdin"),
                     QStringLiteral("-v"),
                     QStringLiteral("error"),
                     QStringLiteral("-f"),
                     QStringLiteral("lavfi"),
                     QStringLiteral("-i"),
                     source,
                     QStringLiteral("-t"),
                     QString::number(seconds)};
    args << extra << QStringLiteral("-y") << plain;
    if (QProcess::execute(QStringLiteral("ffmpeg"), args) != 0) return {};
    const QString path = folder + u'/' + name;
    if (::rename(QFile::encodeName(plain).constData(), NativePath::encode(path).constData()) != 0) return {};
    return path;
}

inline QString makeSine(const QString& folder, const QString& name, double seconds = 3) {
    return makeMedia(folder, name, QStringLiteral("sine=frequency=440:sample_rate=44100"), seconds);
}

// Files of the folder whose names start with `prefix`: the players' temporary outputs.
inline QStringList leftovers(const QString& folder, const QString& prefix) {
    return QDir(folder).entryList({prefix + u'*'}, QDir::Files | QDir::Hidden);
}

} // namespace orvane::test
