#include "core/UriList.h"

#include "platform/NativePath.h"

#include <QMimeData>

namespace orvane {

QByteArrayList UriList::lines(const QList<QUrl>& localFiles) {
    QByteArrayList lines;
    for (const QUrl& url : localFiles)
        lines << NativePath::encodedUrl(url.toLocalFile());
    return lines;
}

QByteArray UriList::encode(const QList<QUrl>& localFiles) {
    return localFiles.isEmpty() ? QByteArray() : lines(localFiles).join("\r\n") + "\r\n";
}

QList<QUrl> UriList::decode(const QByteArrayList& lines) {
    QList<QUrl> files;
    for (const QByteArray& line : lines) {
        const QByteArray url = line.trimmed();
        if (url.isEmpty() || url.startsWith('#')) continue;
        const QString path = NativePath::fromEncodedUrl(url);
        if (!path.isEmpty()) files << QUrl::fromLocalFile(path);
    }
    return files;
}

void UriList::write(QMimeData& data, const QList<QUrl>& localFiles) {
    data.setData(format, encode(localFiles));
}

QList<QUrl> UriList::read(const QMimeData& data) {
    return data.hasFormat(format) ? decode(data.data(format).split('\n')) : QList<QUrl>();
}

} // namespace orvane
