#pragma once

#include "phone/PhoneProtocol.h"

#include <QJsonObject>
#include <QString>
#include <optional>

namespace orvane {

constexpr quint32 phoneRootHandle = PhoneProtocol::rootHandle;

// One object on the phone. An object is known by its storage and handle, never by its name.
struct PhoneItem {
    quint32 id = 0;
    quint32 storage = 0;
    QString name; // file name, or the storage's label for a root
    bool folder = false;
    quint64 size = 0;
    std::optional<double> modified; // seconds since 1970; counts only when greater than 0
    std::optional<QString> created; // the phone's own text, read by phoneDate
    std::optional<quint32> width;
    std::optional<quint32> height;

    // "65537:22": storage and handle in decimal.
    QString textKey() const;
    QJsonObject toJson() const;
    // Absent when a required key is missing or any known key has a value of the wrong type.
    static std::optional<PhoneItem> fromJson(const QJsonValue& value);

    bool operator==(const PhoneItem&) const = default;
};

} // namespace orvane
