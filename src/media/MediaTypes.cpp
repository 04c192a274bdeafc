#include "media/MediaTypes.h"

#include "platform/NativePath.h"

#include <QMimeDatabase>
#include <QSet>
#include <fcntl.h>
#include <unistd.h>

namespace orvane::MediaTypes {

namespace {
QString extension(const QString& path) {
    const qsizetype slash = path.lastIndexOf(u'/');
    const qsizetype dot = path.lastIndexOf(u'.');
    return dot > slash + 1 ? path.mid(dot + 1).toLower() : QString();
}

bool listed(const QString& path, std::initializer_list<const char*> names) {
    const QString ext = extension(path);
    for (const char* name : names)
        if (ext == QLatin1String(name)) return true;
    return false;
}

QMimeType typeByName(const QString& path) {
    return QMimeDatabase().mimeTypeForFile(NativePath::display(path), QMimeDatabase::MatchExtension);
}

bool namesAudio(const QMimeType& type) {
    return type.name().startsWith(QLatin1String("audio/")) ||
           type.inherits(QStringLiteral("audio/x-generic"));
}

QByteArray head(const QString& path) {
    const int fd = ::open(NativePath::encode(path).constData(), O_RDONLY | O_CLOEXEC | O_NONBLOCK);
    if (fd < 0) return {};
    QByteArray bytes(4096, Qt::Uninitialized);
    const ssize_t got = ::read(fd, bytes.data(), size_t(bytes.size()));
    ::close(fd);
    bytes.resize(got > 0 ? got : 0);
    return bytes;
}
} // namespace

bool isAudioByName(const QString& path) {
    return listed(path, {"mp3", "wav",  "wave", "aif", "aiff", "aifc", "m4a", "m4b", "aac",  "adts",
                         "caf", "flac", "alac", "ogg", "oga",  "opus", "wma", "ac3", "eac3", "amr",
                         "au",  "snd",  "mp2",  "mka", "ape",  "wv",   "dsf", "dff", "mid",  "midi"}) ||
           namesAudio(typeByName(path));
}

bool isAudio(const QString& path) {
    if (isAudioByName(path)) return true;
    const QByteArray bytes = head(path);
    return !bytes.isEmpty() && namesAudio(QMimeDatabase().mimeTypeForData(bytes));
}

bool isVideo(const QString& path) {
    return listed(path, {"mp4", "mov", "m4v", "mkv", "avi", "webm", "mpg", "mpeg", "m2v", "mts", "m2ts", "ts",
                         "wmv", "flv", "3gp", "3g2", "vob", "ogv"}) ||
           typeByName(path).name().startsWith(QLatin1String("video/"));
}

bool platformRefusesAudio([[maybe_unused]] const QString& path) {
#ifdef Q_OS_MACOS
    return listed(path, {"ogg", "oga", "opus", "wma", "mka", "ape", "wv", "dsf", "dff", "mp2"});
#else
    return false;
#endif
}

bool platformRefusesVideo([[maybe_unused]] const QString& path) {
#ifdef Q_OS_MACOS
    return listed(
        path, {"mkv", "avi", "webm", "wmv", "flv", "mpg", "mpeg", "m2v", "mts", "m2ts", "ts", "vob", "ogv"});
#else
    return false;
#endif
}

} // namespace orvane::MediaTypes
