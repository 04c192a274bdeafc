#include "phone/PhoneEntry.h"

#include "phone/PhoneLocation.h"
#include "phone/PhoneNames.h"
#include "platform/Platform.h"

namespace orvane {

Entry phoneEntry(const PhoneItem& item) {
    registerPhoneNames();
    Entry entry;
    entry.location = QStringLiteral("android://phone/") + QString::number(item.storage) + u'/' +
                     QString::number(item.id) + u'/' +
                     QString::fromLatin1(QUrl::toPercentEncoding(item.name));
    entry.directory = item.folder;
    entry.package = false;
    entry.size = qint64(std::min<quint64>(item.size, quint64(INT64_MAX)));
    if (item.modified && *item.modified > 0)
        entry.modified = QDateTime::fromMSecsSinceEpoch(qint64(*item.modified * 1000.0), Qt::UTC);
    if (const std::optional<QDateTime> created = phoneDate(item.created)) entry.created = *created;
    entry.kind = Platform::typeDescription(item.name, item.folder, false);
    return entry;
}

} // namespace orvane
