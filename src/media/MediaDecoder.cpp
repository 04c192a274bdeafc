#include "media/MediaDecoder.h"

#include <QCoreApplication>
#include <QDir>
#include <QFileInfo>

namespace orvane::MediaDecoder {

namespace {
bool runnable(const QString& path) {
    const QFileInfo info(path);
    return info.isFile() && info.isExecutable();
}
} // namespace

std::optional<QString> find(const QString& programFolder, const QString& pathVariable) {
    QStringList candidates;
    if (!programFolder.isEmpty()) candidates << programFolder + QStringLiteral("/ffmpeg");
#ifdef Q_OS_MACOS
    candidates << programFolder + QStringLiteral("/../Helpers/ffmpeg")
               << QStringLiteral("/opt/homebrew/bin/ffmpeg") << QStringLiteral("/usr/local/bin/ffmpeg");
#endif
    for (const QString& dir : pathVariable.split(QDir::listSeparator(), Qt::SkipEmptyParts))
        candidates << dir + QStringLiteral("/ffmpeg");
    for (const QString& path : candidates)
        if (runnable(path)) return QDir::cleanPath(path);
    return std::nullopt;
}

const std::optional<QString>& executable() {
    static const std::optional<QString> found =
        find(QCoreApplication::applicationDirPath(), qEnvironmentVariable("PATH"));
    return found;
}

QStringList audioArguments(const QString& input, const QString& output) {
    return {QStringLiteral("-nostdin"),
            QStringLiteral("-v"),
            QStringLiteral("error"),
            QStringLiteral("-i"),
            input,
            QStringLiteral("-map"),
            QStringLiteral("0:a:0"),
            QStringLiteral("-vn"),
            QStringLiteral("-c:a"),
            QStringLiteral("pcm_s16le"),
            QStringLiteral("-y"),
            output};
}

QStringList videoArguments(const QString& input, const QString& output) {
    return {QStringLiteral("-nostdin"),
            QStringLiteral("-v"),
            QStringLiteral("error"),
            QStringLiteral("-i"),
            input,
            QStringLiteral("-map"),
            QStringLiteral("0:v:0"),
            QStringLiteral("-map"),
            QStringLiteral("0:a:0?"),
            QStringLiteral("-sn"),
            QStringLiteral("-dn"),
            QStringLiteral("-vf"),
            QStringLiteral("scale=trunc(iw/2)*2:trunc(ih/2)*2"),
            QStringLiteral("-c:v"),
            QStringLiteral("mpeg4"),
            QStringLiteral("-q:v"),
            QStringLiteral("3"),
            QStringLiteral("-pix_fmt"),
            QStringLiteral("yuv420p"),
            QStringLiteral("-c:a"),
            QStringLiteral("aac"),
            QStringLiteral("-movflags"),
            QStringLiteral("+faststart"),
            QStringLiteral("-y"),
            output};
}

} // namespace orvane::MediaDecoder
