#include "phone/PhoneClipboard.h"

#include <QJsonArray>
#include <QJsonDocument>
#include <QMimeData>

namespace orvane {

QString PhoneClipboard::type() {
    return QStringLiteral("local.belcove.phone-items");
}

void PhoneClipboard::write(const QList<PhoneItem>& items, QMimeData& data) {
    QJsonArray array;
    for (const PhoneItem& item : items)
        array.append(item.toJson());
    data.setData(type(), QJsonDocument(array).toJson(QJsonDocument::Compact));
}

QList<PhoneItem> PhoneClipboard::read(const QMimeData* data) {
    QList<PhoneItem> items;
    if (!data || !data->hasFormat(type())) return items;
    const QJsonDocument document = QJsonDocument::fromJson(data->data(type()));
    for (const QJsonValue& value : document.array())
        if (std::optional<PhoneItem> item = PhoneItem::fromJson(value)) items.append(std::move(*item));
    return items;
}

} // namespace orvane
