#include "phone/PhoneReply.h"

#include "phone/PhoneJson.h"

#include <QJsonArray>
#include <QJsonDocument>

namespace orvane {

namespace F = PhoneProtocol::Field;

namespace {
bool readItems(const QJsonObject& object, std::optional<QList<PhoneItem>>& out) {
    const QJsonValue value = object.value(QLatin1String(F::items));
    if (value.isUndefined() || value.isNull()) return true;
    if (!value.isArray()) return false;
    const QJsonArray array = value.toArray();
    QList<PhoneItem> items;
    items.reserve(array.size());
    for (const QJsonValue& element : array) {
        std::optional<PhoneItem> item = PhoneItem::fromJson(element);
        if (!item) return false;
        items.append(std::move(*item));
    }
    out = std::move(items);
    return true;
}
} // namespace

PhoneReply PhoneReply::failure(const QString& error) {
    PhoneReply reply;
    reply.error = error;
    return reply;
}

std::optional<PhoneReply> PhoneReply::decode(const QByteArray& line) {
    QJsonParseError parse;
    const QJsonDocument document = QJsonDocument::fromJson(line, &parse);
    if (parse.error != QJsonParseError::NoError || !document.isObject()) return std::nullopt;
    const QJsonObject object = document.object();
    PhoneReply reply;
    using namespace PhoneJson;
    const bool ok = optionalString(object, QLatin1String(F::name), reply.name) &&
                    optionalString(object, QLatin1String(F::error), reply.error) &&
                    readItems(object, reply.items) &&
                    optionalDouble(object, QLatin1String(F::progress), reply.progress) &&
                    optionalUInt32(object, QLatin1String(F::id), reply.id) &&
                    optionalUInt32(object, QLatin1String(F::width), reply.width) &&
                    optionalUInt32(object, QLatin1String(F::height), reply.height) &&
                    optionalString(object, QLatin1String(F::created), reply.created);
    return ok ? std::optional<PhoneReply>(std::move(reply)) : std::nullopt;
}

} // namespace orvane
