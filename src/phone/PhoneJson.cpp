#include "phone/PhoneJson.h"

#include <cmath>

namespace orvane::PhoneJson {

namespace {
bool wholeNumber(const QJsonValue& value, double limit, double& out) {
    if (!value.isDouble()) return false;
    const double number = value.toDouble();
    if (!(number >= 0 && number <= limit) || std::floor(number) != number) return false;
    out = number;
    return true;
}

// Missing and null both mean absent.
bool absent(const QJsonObject& object, QLatin1String key, QJsonValue& value) {
    value = object.value(key);
    return value.isUndefined() || value.isNull();
}
} // namespace

bool requiredUInt32(const QJsonObject& object, QLatin1String key, quint32& out) {
    double number;
    if (!wholeNumber(object.value(key), 4294967295.0, number)) return false;
    out = quint32(number);
    return true;
}

// Doubles hold integers exactly only up to 2^53, so an integer that fits in 64 signed bits is read
// as one; only the very top of the unsigned range goes through a double.
bool requiredUInt64(const QJsonObject& object, QLatin1String key, quint64& out) {
    const QJsonValue value = object.value(key);
    double number;
    if (!wholeNumber(value, 18446744073709551615.0, number)) return false;
    const qint64 exact = value.toInteger(-1);
    if (exact >= 0)
        out = quint64(exact);
    else
        out = number >= 18446744073709551615.0 ? ~quint64(0) : quint64(number);
    return true;
}

bool requiredString(const QJsonObject& object, QLatin1String key, QString& out) {
    const QJsonValue value = object.value(key);
    if (!value.isString()) return false;
    out = value.toString();
    return true;
}

bool requiredBool(const QJsonObject& object, QLatin1String key, bool& out) {
    const QJsonValue value = object.value(key);
    if (!value.isBool()) return false;
    out = value.toBool();
    return true;
}

bool optionalUInt32(const QJsonObject& object, QLatin1String key, std::optional<quint32>& out) {
    QJsonValue value;
    out.reset();
    if (absent(object, key, value)) return true;
    quint32 number;
    if (!requiredUInt32(object, key, number)) return false;
    out = number;
    return true;
}

bool optionalDouble(const QJsonObject& object, QLatin1String key, std::optional<double>& out) {
    QJsonValue value;
    out.reset();
    if (absent(object, key, value)) return true;
    if (!value.isDouble()) return false;
    out = value.toDouble();
    return true;
}

bool optionalString(const QJsonObject& object, QLatin1String key, std::optional<QString>& out) {
    QJsonValue value;
    out.reset();
    if (absent(object, key, value)) return true;
    if (!value.isString()) return false;
    out = value.toString();
    return true;
}

} // namespace orvane::PhoneJson
