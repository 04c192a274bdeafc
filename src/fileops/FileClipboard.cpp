#include "fileops/FileClipboard.h"

#include "core/UriList.h"
#include "platform/NativePath.h"

#include <QClipboard>
#include <QCoreApplication>
#include <QGuiApplication>
#include <QMimeData>

namespace orvane {

namespace {
// Tells our own writes from everybody else's, across platforms that report our writes late or twice.
const QString ownerFormat = QStringLiteral("application/x-orvane-clipboard-owner");

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
    emit cutChanged();
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
    const QByteArrayList encoded = UriList::lines(items);
    UriList::write(*data, items);
    QStringList paths;
    for (const QUrl& url : items)
        paths << NativePath::display(url.toLocalFile());
    data->setText(paths.join(u'\n'));
    // No line feed after the last one.
    data->setData(gnomeFormat(), (cut ? "cut\n" : "copy\n") + encoded.join('\n'));
    if (cut) data->setData(kdeCutFormat(), "1");
    write(data);
    urls = cut ? items : QList<QUrl>();
    changeCount = counter;
    emit cutChanged();
}

QString FileClipboard::pathText(const QStringList& paths) {
    QStringList quoted;
    for (const QString& path : paths)
        quoted << u'"' + NativePath::display(path) + u'"';
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
    // Read as bytes: Qt's own URL list would decode a name that is not UTF-8 into another name.
    if (data->hasFormat(UriList::format)) return UriList::read(*data);
    if (!data->hasFormat(gnomeFormat())) return {};
    return UriList::decode(data->data(gnomeFormat()).split('\n').mid(1));
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
    emit cutChanged();
}

void FileClipboard::clearCut() {
    urls.clear();
    emit cutChanged();
}

} // namespace orvane
