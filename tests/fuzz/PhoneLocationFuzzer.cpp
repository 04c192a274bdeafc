// libFuzzer target: any bytes as a phone address, or as the JSON inside one. Decoding must never
// crash, and every chain it accepts must come back unchanged from its own address.
#include "phone/PhoneLocation.h"

#include <cstddef>
#include <cstdint>

namespace {
void roundTrip(const QUrl& url) {
    const std::optional<QList<orvane::PhoneItem>> chain = orvane::PhoneLocation::decode(url);
    if (!chain) return;
    for (const orvane::PhoneItem& item : *chain)
        if (!item.folder || item.name.contains(u'/')) __builtin_trap();
    if (orvane::PhoneLocation::decode(orvane::PhoneLocation::url(*chain)) != chain) __builtin_trap();
}
} // namespace

extern "C" int LLVMFuzzerTestOneInput(const uint8_t* data, size_t size) {
    if (size == 0) return 0;
    const QByteArray bytes(reinterpret_cast<const char*>(data) + 1, qsizetype(size - 1));
    if (data[0] & 1) {
        roundTrip(QUrl(QString::fromUtf8(bytes)));
    } else {
        const QString value =
            QString::fromLatin1(QUrl::toPercentEncoding(QString::fromLatin1(bytes.toBase64()), "/="));
        roundTrip(QUrl(QStringLiteral("android://phone/x?location=") + value));
    }
    return 0;
}
