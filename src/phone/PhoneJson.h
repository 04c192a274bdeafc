#pragma once

#include <QJsonObject>
#include <QString>
#include <optional>

namespace orvane::PhoneJson {

// Strict readers of the bridge's JSON. A number field takes only a JSON number that is a whole
// value in range; a missing or null optional key leaves the field absent, while a present value
// of the wrong type fails the whole record.
bool requiredUInt32(const QJsonObject& object, QLatin1String key, quint32& out);
bool requiredUInt64(const QJsonObject& object, QLatin1String key, quint64& out);
bool requiredString(const QJsonObject& object, QLatin1String key, QString& out);
bool requiredBool(const QJsonObject& object, QLatin1String key, bool& out);
bool optionalUInt32(const QJsonObject& object, QLatin1String key, std::optional<quint32>& out);
bool optionalDouble(const QJsonObject& object, QLatin1String key, std::optional<double>& out);
bool optionalString(const QJsonObject& object, QLatin1String key, std::optional<QString>& out);

} // namespace orvane::PhoneJson
