#include "phone/PhoneItem.h"

#include "phone/PhoneJson.h"

namespace orvane {

namespace F = PhoneProtocol::Field;

QString PhoneItem::textKey() const {
    return QString::number(storage) + u':' + QString::number(id);
}

QJsonObject PhoneItem::toJson() const {
    QJsonObject object{{QLatin1String(F::id), qint64(id)},
                       {QLatin1String(F::storage), qint64(storage)},
                       {QLatin1String(F::name), name},
                       {QLatin1String(F::folder), folder},
                       {QLatin1String(F::size),
                        size <= quint64(INT64_MAX) ? QJsonValue(qint64(size)) : QJsonValue(double(size))}};
    if (modified) object.insert(QLatin1String(F::modified), *modified);
    if (created) object.insert(QLatin1String(F::created), *created);
    if (width) object.insert(QLatin1String(F::width), qint64(*width));
    if (height) object.insert(QLatin1String(F::height), qint64(*height));
    return object;
}

std::optional<PhoneItem> PhoneItem::fromJson(const QJsonValue& value) {
    if (!value.isObject()) return std::nullopt;
    const QJsonObject object = value.toObject();
    PhoneItem item;
    using namespace PhoneJson;
    const bool ok = requiredUInt32(object, QLatin1String(F::id), item.id) &&
                    requiredUInt32(object, QLatin1String(F::storage), item.storage) &&
                    requiredString(object, QLatin1String(F::name), item.name) &&
                    requiredBool(object, QLatin1String(F::folder), item.folder) &&
                    requiredUInt64(object, QLatin1String(F::size), item.size) &&
                    optionalDouble(object, QLatin1String(F::modified), item.modified) &&
                    optionalString(object, QLatin1String(F::created), item.created) &&
                    optionalUInt32(object, QLatin1String(F::width), item.width) &&
                    optionalUInt32(object, QLatin1String(F::height), item.height);
    return ok ? std::optional<PhoneItem>(std::move(item)) : std::nullopt;
}

} // namespace orvane
