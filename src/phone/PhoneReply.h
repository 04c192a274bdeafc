#pragma once

#include "phone/PhoneItem.h"

#include <QByteArray>
#include <QList>

namespace orvane {

// One line from the bridge. Every field is optional; keys it doesn't name are ignored. A line with
// a progress value is a progress line, any other line is the final reply of its request.
struct PhoneReply {
    std::optional<QString> name;
    std::optional<QString> error;
    std::optional<QList<PhoneItem>> items;
    std::optional<double> progress;
    std::optional<quint32> id;
    std::optional<quint32> width;
    std::optional<quint32> height;
    std::optional<QString> created;

    static PhoneReply failure(const QString& error);
    // Absent for a line that isn't one JSON object, or that has a value of the wrong type under a
    // known key (a negative id, a progress in quotes, an item without a name).
    static std::optional<PhoneReply> decode(const QByteArray& line);

    bool operator==(const PhoneReply&) const = default;
};

} // namespace orvane
