#include "phone/PhoneDragData.h"

#include "core/UriList.h"
#include "phone/PhoneClipboard.h"
#include "phone/PhoneTransfer.h"
#include "platform/NativePath.h"

#include <QDir>
#include <QEventLoop>
#include <QUuid>

namespace orvane {

namespace {
const QString uriList = QStringLiteral("text/uri-list");
}

PhoneDragData::PhoneDragData(const QList<PhoneItem>& items) : items(items) {
    PhoneClipboard::write(items, *this);
}

QStringList PhoneDragData::formats() const {
    return QMimeData::formats() << uriList;
}

bool PhoneDragData::hasFormat(const QString& mimeType) const {
    return formats().contains(mimeType);
}

// The receiving program waits while the files come; a nested loop lets the bridge's answers in.
const QList<QUrl>& PhoneDragData::deliver() const {
    if (delivered) return *delivered;
    delivered.emplace();
    const QString folder = QDir::temp().filePath(QStringLiteral("Belcove-Drag-") +
                                                 QUuid::createUuid().toString(QUuid::WithoutBraces));
    if (!QDir().mkpath(folder)) {
        failure = QStringLiteral("Cannot create a temporary folder.");
        return *delivered;
    }
    std::optional<std::optional<QString>> outcome;
    QEventLoop loop;
    auto transfer = std::make_shared<PhoneTransfer>();
    transfer->download(items, NativePath::encode(folder), [&](const std::optional<QString>& error) {
        outcome = error;
        loop.quit();
    });
    if (!outcome) loop.exec();
    if (*outcome) {
        failure = **outcome;
        return *delivered;
    }
    for (const PhoneItem& item : items)
        delivered->append(QUrl::fromLocalFile(folder + u'/' + item.name));
    return *delivered;
}

QVariant PhoneDragData::retrieveData(const QString& mimeType, QMetaType type) const {
    if (mimeType != uriList) return QMimeData::retrieveData(mimeType, type);
    const QList<QUrl>& urls = deliver();
    if (type.id() == QMetaType::QByteArray) return UriList::encode(urls);
    QVariantList list;
    for (const QUrl& url : urls)
        list << url;
    return list;
}

} // namespace orvane
