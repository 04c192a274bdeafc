#include "fileops/FileClipboard.h"

#include <QClipboard>
#include <QCoreApplication>
#include <QGuiApplication>
#include <QMimeData>

namespace orvane {

namespace {
// Tells our own writes from everybody else's, across platforms that report our writes late or twice.
const QString ownerFormat = QStringLiteral("application/x-orvane-clipboard-owner");

QByteArray gnomeText(const QList<QUrl>& items, bool cut) {
    QByteArrayList lines{cut ? "cut" : "copy"};
    for (const QUrl& url : items)
        lines << url.toEncoded();
    return lines.join('\n'); // no line feed after the last one
}
} // namespace

FileClipboard& FileClipboard::shared() {
    static FileClipboard* instance = new FileClipboard;
    return *instance;
}

FileClipboard::FileClipboard() {
    connect(QGuiApplication::clipboard(), &QClipboard::dataChanged, this, &FileClipboard::changed);
}

void FileClipboard::changed() {
    if (!isOurs(QGuiApplication::clipboard()->mimeData())) ++counter;
}

bool FileClipboard::isOurs(const QMimeData* data) const {
    if (!data || writes == 0 || !data->hasFormat(ownerFormat)) return false;
    const QByteArray token =
        QByteArray::number(QCoreApplication::applicationPid()) + ':' + QByteArray::number(writes);
    return data->data(ownerFormat) == token;
}

void FileClipboard::write(QMimeData* data) {
    ++counter;
    ++writes;
    data->setData(ownerFormat,
                  QByteArray::number(QCoreApplication::applicationPid()) + ':' + QByteArray::number(writes));
    QGuiApplication::clipboard()->setMimeData(data);
}

void FileClipboard::setClipboard(const QList<QUrl>& items, bool cut) {
    auto* data = new QMimeData;
    data->setUrls(items);
    QStringList paths;
    for (const QUrl& url : items)
        paths << url.toLocalFile();
    data->setText(paths.join(u'\n'));
    data->setData(gnomeFormat(), gnomeText(items, cut));
    if (cut) data->setData(kdeCutFormat(), "1");
    write(data);
    urls = cut ? items : QList<QUrl>();
    changeCount = counter;
}

QString FileClipboard::pathText(const QStringList& paths) {
    QStringList quoted;
    for (const QString& path : paths)
        quoted << u'"' + path + u'"';
    return quoted.join(u'\n');
}

void FileClipboard::copyPaths(const QStringList& paths) {
    auto* data = new QMimeData;
    data->setText(pathText(paths));
    write(data);
}

QList<QUrl> FileClipboard::fileUrls() const {
    const QMimeData* data = QGuiApplication::clipboard()->mimeData();
    if (!data) return {};
    QList<QUrl> found = data->urls();
    if (found.isEmpty() && data->hasFormat(gnomeFormat())) {
        const QByteArrayList lines = data->data(gnomeFormat()).split('\n');
        for (qsizetype i = 1; i < lines.size(); ++i)
            if (!lines[i].trimmed().isEmpty()) found << QUrl::fromEncoded(lines[i].trimmed());
    }
    QList<QUrl> files;
    for (const QUrl& url : found)
        if (url.isLocalFile()) files << url;
    return files;
}

bool FileClipboard::foreignCut(const QMimeData* data) const {
    if (!data || isOurs(data)) return false;
    if (data->hasFormat(gnomeFormat()) && data->data(gnomeFormat()).split('\n').value(0).trimmed() == "cut")
        return true;
    return data->hasFormat(kdeCutFormat()) && data->data(kdeCutFormat()).startsWith('1');
}

bool FileClipboard::pasteMoves() const {
    if (cutHolds()) return true;
    return counter != spentForeignCut && foreignCut(QGuiApplication::clipboard()->mimeData());
}

void FileClipboard::finishMove(const QStringList& movedSources) {
    if (foreignCut(QGuiApplication::clipboard()->mimeData())) spentForeignCut = counter;
    urls.removeIf([&movedSources](const QUrl& url) { return movedSources.contains(url.toLocalFile()); });
    if (urls.isEmpty()) changeCount = -1;
}

void FileClipboard::clearCut() {
    urls.clear();
}

} // namespace orvane
