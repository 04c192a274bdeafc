#include "media/ThumbnailCache.h"

#include "media/MediaFile.h"
#include "platform/NativePath.h"

#include <QBuffer>
#include <QCoreApplication>
#include <QCryptographicHash>
#include <QFile>
#include <QImageReader>
#include <QImageWriter>
#include <fcntl.h>
#include <unistd.h>

namespace orvane {

namespace {

// What a path may keep unescaped in a URI, as GLib's g_filename_to_uri leaves it.
bool keptInUri(unsigned char c) {
    if ((c >= 'a' && c <= 'z') || (c >= 'A' && c <= 'Z') || (c >= '0' && c <= '9')) return true;
    static const QByteArray kept("!$&'()*+,-./:=@_~");
    return c < 0x80 && kept.contains(char(c));
}

QString cacheHome() {
    const QByteArray env = qgetenv("XDG_CACHE_HOME");
    if (!env.isEmpty() && env.startsWith('/')) return NativePath::decode(env);
    return NativePath::decode(qgetenv("HOME")) + QLatin1String("/.cache");
}

// Larger first: a picture bigger than needed scales down cleanly.
const char* const sizeFolders[] = {"large", "x-large", "xx-large", "normal"};

bool writeAll(int fd, const QByteArray& bytes) {
    qsizetype done = 0;
    while (done < bytes.size()) {
        const ssize_t n = ::write(fd, bytes.constData() + done, size_t(bytes.size() - done));
        if (n <= 0) return false;
        done += n;
    }
    return true;
}

} // namespace

ThumbnailCache::ThumbnailCache(const QString& folder)
    : base(folder.isEmpty() ? cacheHome() + QLatin1String("/thumbnails") : folder) {}

QByteArray ThumbnailCache::uri(const QString& path) {
    static const char hex[] = "0123456789ABCDEF";
    QByteArray out("file://");
    for (const char byte : NativePath::encode(path)) {
        const auto c = static_cast<unsigned char>(byte);
        if (keptInUri(c)) {
            out += char(c);
            continue;
        }
        out += '%';
        out += hex[c >> 4];
        out += hex[c & 15];
    }
    return out;
}

QString ThumbnailCache::fileName(const QByteArray& uri) {
    return QString::fromLatin1(QCryptographicHash::hash(uri, QCryptographicHash::Md5).toHex()) +
           QLatin1String(".png");
}

bool ThumbnailCache::holds(const QString& path) const {
    return path == base || path.startsWith(base + u'/');
}

QImage ThumbnailCache::read(const QString& path, qint64 modified) const {
    const QByteArray key = uri(path);
    const QString name = fileName(key);
    for (const char* folder : sizeFolders) {
        QImage image = readValid(base + u'/' + QLatin1String(folder) + u'/' + name, key, modified);
        if (!image.isNull()) return image;
    }
    return {};
}

QImage ThumbnailCache::readValid(const QString& file, const QByteArray& key, qint64 modified) const {
    const auto device = MediaFile::open(file);
    if (!device) return {};
    QImageReader reader(device.get(), "png");
    QImage image = reader.read();
    // A picture of another file, or of an older version of this one, is not this file's.
    if (image.text(QStringLiteral("Thumb::URI")).toLatin1() != key) return {};
    if (image.text(QStringLiteral("Thumb::MTime")).toLongLong() != modified) return {};
    return image;
}

QString ThumbnailCache::failFolder() const {
    return base + QLatin1String("/fail/orvane-") + QCoreApplication::applicationVersion();
}

bool ThumbnailCache::failed(const QString& path, qint64 modified) const {
    const QByteArray key = uri(path);
    return !readValid(failFolder() + u'/' + fileName(key), key, modified).isNull();
}

bool ThumbnailCache::write(const QString& path, qint64 modified, qint64 size, const QString& mime,
                           QImage image) const {
    if (holds(path)) return false;
    const QByteArray key = uri(path);
    image.setText(QStringLiteral("Thumb::URI"), QString::fromLatin1(key));
    image.setText(QStringLiteral("Thumb::MTime"), QString::number(modified));
    image.setText(QStringLiteral("Thumb::Size"), QString::number(size));
    if (!mime.isEmpty()) image.setText(QStringLiteral("Thumb::Mime"), mime);
    image.setText(QStringLiteral("Software"), QStringLiteral("Orvane"));
    return store(base + QLatin1String("/large"), fileName(key), image);
}

bool ThumbnailCache::recordFailure(const QString& path, qint64 modified) const {
    if (holds(path)) return false;
    const QByteArray key = uri(path);
    QImage mark(1, 1, QImage::Format_ARGB32);
    mark.fill(Qt::transparent);
    mark.setText(QStringLiteral("Thumb::URI"), QString::fromLatin1(key));
    mark.setText(QStringLiteral("Thumb::MTime"), QString::number(modified));
    return store(failFolder(), fileName(key), mark);
}

// Written under a temporary name and renamed, so a reader never sees half a picture.
bool ThumbnailCache::store(const QString& folder, const QString& name, const QImage& image) const {
    if (!MediaFile::makeFolders(folder)) return false;
    QByteArray png;
    QBuffer buffer(&png);
    buffer.open(QIODevice::WriteOnly);
    QImageWriter writer(&buffer, "png");
    writer.setQuality(80); // light compression: these are read far more often than written
    if (!writer.write(image)) return false;
    QByteArray temp = NativePath::encode(folder + u'/' + name) + ".XXXXXX";
    const int fd = mkostemp(temp.data(), O_CLOEXEC); // mode 0600
    if (fd < 0) return false;
    const bool written = writeAll(fd, png);
    ::close(fd);
    if (written && ::rename(temp.constData(), NativePath::encode(folder + u'/' + name).constData()) == 0)
        return true;
    ::unlink(temp.constData());
    return false;
}

} // namespace orvane
