#include "phone/PhoneClipboard.h"

#include <QCoreApplication>
#include <QJsonArray>
#include <QJsonDocument>
#include <QMimeData>

namespace orvane {

QString PhoneClipboard::type() {
    return QStringLiteral("local.belcove.phone-items");
}

namespace {
// Handles are good only with the bridge that listed them: another process's are left alone, and
// what it drags or copies reaches us as files instead.
const QString ownerType = QStringLiteral("application/x-orvane-phone-items-owner");

QByteArray owner() {
    return QByteArray::number(QCoreApplication::applicationPid());
}
} // namespace

void PhoneClipboard::write(const QList<PhoneItem>& items, QMimeData& data) {
    QJsonArray array;
    for (const PhoneItem& item : items)
        array.append(item.toJson());
    data.setData(type(), QJsonDocument(array).toJson(QJsonDocument::Compact));
    data.setData(ownerType, owner());
}

QList<PhoneItem> PhoneClipboard::read(const QMimeData* data) {
    QList<PhoneItem> items;
    if (!data || !data->hasFormat(type()) || data->data(ownerType) != owner()) return items;
    const QJsonDocument document = QJsonDocument::fromJson(data->data(type()));
    for (const QJsonValue& value : document.array())
        if (std::optional<PhoneItem> item = PhoneItem::fromJson(value)) items.append(std::move(*item));
    return items;
}

} // namespace orvane
