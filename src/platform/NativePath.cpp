#include "platform/NativePath.h"

#include <QUrl>
#include <climits>
#include <cstdlib>
#include <cstring>
#include <sys/stat.h>

namespace orvane {

namespace {

constexpr char16_t escapeBase = 0xDC00; // a kept byte b (0x80..0xFF) is U+DC00 + b

bool isEscape(const QString& text, qsizetype i) {
    const char16_t c = text[i].unicode();
    return c >= 0xDC80 && c <= 0xDCFF && (i == 0 || !text[i - 1].isHighSurrogate());
}

// Length of the valid UTF-8 sequence at `p`, or 0 when the byte there starts none.
int sequenceLength(const unsigned char* p, const unsigned char* end) {
    const unsigned char b = p[0];
    if (b < 0x80) return 1;
    int length;
    unsigned char low = 0x80, high = 0xBF; // allowed range of the second byte
    if (b >= 0xC2 && b <= 0xDF) {
        length = 2;
    } else if (b >= 0xE0 && b <= 0xEF) {
        length = 3;
        if (b == 0xE0) low = 0xA0;  // overlong
        if (b == 0xED) high = 0x9F; // surrogates
    } else if (b >= 0xF0 && b <= 0xF4) {
        length = 4;
        if (b == 0xF0) low = 0x90;  // overlong
        if (b == 0xF4) high = 0x8F; // beyond U+10FFFF
    } else {
        return 0;
    }
    if (end - p < length || p[1] < low || p[1] > high) return 0;
    for (int i = 2; i < length; ++i)
        if ((p[i] & 0xC0) != 0x80) return 0;
    return length;
}

} // namespace

QString NativePath::decode(const QByteArray& bytes) {
    if (bytes.isValidUtf8()) return QString::fromUtf8(bytes);
    QString text;
    text.reserve(bytes.size());
    const auto* p = reinterpret_cast<const unsigned char*>(bytes.constData());
    const auto* end = p + bytes.size();
    while (p < end) {
        const int length = sequenceLength(p, end);
        if (length == 0) {
            text.append(QChar(char16_t(escapeBase + *p)));
            ++p;
        } else {
            text.append(QString::fromUtf8(reinterpret_cast<const char*>(p), length));
            p += length;
        }
    }
    return text;
}

QString NativePath::decode(const char* bytes) {
    return decode(QByteArray::fromRawData(bytes, qsizetype(std::strlen(bytes))));
}

bool NativePath::holdsRawBytes(const QString& path) {
    for (qsizetype i = 0; i < path.size(); ++i)
        if (isEscape(path, i)) return true;
    return false;
}

QByteArray NativePath::encode(const QString& path) {
    if (!holdsRawBytes(path)) return path.toUtf8();
    QByteArray bytes;
    bytes.reserve(path.size());
    qsizetype start = 0;
    for (qsizetype i = 0; i < path.size(); ++i) {
        if (!isEscape(path, i)) continue;
        bytes += QStringView(path).mid(start, i - start).toUtf8();
        bytes += char(path[i].unicode() - escapeBase);
        start = i + 1;
    }
    bytes += QStringView(path).mid(start).toUtf8();
    return bytes;
}

QString NativePath::display(const QString& path) {
    if (!holdsRawBytes(path)) return path;
    QString text = path;
    for (qsizetype i = 0; i < text.size(); ++i)
        if (isEscape(path, i)) text[i] = QChar::ReplacementCharacter;
    return text;
}

QByteArray NativePath::encodedUrl(const QString& path) {
    return QByteArrayLiteral("file://") + encode(path).toPercentEncoding("/");
}

QString NativePath::fromEncodedUrl(const QByteArray& url) {
    const QUrl parsed = QUrl::fromEncoded(url.trimmed());
    if (!parsed.isValid() || !parsed.isLocalFile()) return {};
    const QString host = parsed.host();
    if (!host.isEmpty() && host != QLatin1String("localhost")) return {};
    // The encoded path keeps bytes that are not UTF-8 as they came; the decoded one would not.
    return decode(QByteArray::fromPercentEncoding(parsed.path(QUrl::FullyEncoded).toLatin1()));
}

bool NativePath::exists(const QString& path) {
    struct stat st;
    return !path.isEmpty() && stat(encode(path).constData(), &st) == 0;
}

bool NativePath::isDir(const QString& path) {
    struct stat st;
    return !path.isEmpty() && stat(encode(path).constData(), &st) == 0 && S_ISDIR(st.st_mode);
}

QString NativePath::canonical(const QString& path) {
    if (path.isEmpty()) return {};
    char* real = realpath(encode(path).constData(), nullptr);
    if (!real) return {};
    const QString result = decode(real);
    std::free(real);
    return result;
}

} // namespace orvane
