#include "phone/PhoneItem.h"

#include "phone/PhoneJson.h"

namespace orvane {

QString PhoneItem::textKey() const {
    return QString::number(storage) + u':' + QString::number(id);
}

QJsonObject PhoneItem::toJson() const {
    QJsonObject object{{QLatin1String("id"), qint64(id)},
                       {QLatin1String("storage"), qint64(storage)},
                       {QLatin1String("name"), name},
                       {QLatin1String("folder"), folder},
                       {QLatin1String("size"),
                        size <= quint64(INT64_MAX) ? QJsonValue(qint64(size)) : QJsonValue(double(size))}};
    if (modified) object.insert(QLatin1String("modified"), *modified);
    if (created) object.insert(QLatin1String("created"), *created);
    if (width) object.insert(QLatin1String("width"), qint64(*width));
    if (height) object.insert(QLatin1String("height"), qint64(*height));
    return object;
}

std::optional<PhoneItem> PhoneItem::fromJson(const QJsonValue& value) {
    if (!value.isObject()) return std::nullopt;
    const QJsonObject object = value.toObject();
    PhoneItem item;
    using namespace PhoneJson;
    const bool ok = requiredUInt32(object, QLatin1String("id"), item.id) &&
                    requiredUInt32(object, QLatin1String("storage"), item.storage) &&
                    requiredString(object, QLatin1String("name"), item.name) &&
                    requiredBool(object, QLatin1String("folder"), item.folder) &&
                    requiredUInt64(object, QLatin1String("size"), item.size) &&
                    optionalDouble(object, QLatin1String("modified"), item.modified) &&
                    optionalString(object, QLatin1String("created"), item.created) &&
                    optionalUInt32(object, QLatin1String("width"), item.width) &&
                    optionalUInt32(object, QLatin1String("height"), item.height);
    return ok ? std::optional<PhoneItem>(std::move(item)) : std::nullopt;
}

} // namespace orvane
