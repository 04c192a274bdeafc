// libFuzzer target: any bytes as one bridge line. Decoding must never crash, and every item it
// accepts must survive its own coding unchanged.
#include "phone/PhoneReply.h"

#include <cstddef>
#include <cstdint>

extern "C" int LLVMFuzzerTestOneInput(const uint8_t* data, size_t size) {
    const QByteArray line(reinterpret_cast<const char*>(data), qsizetype(size));
    const std::optional<orvane::PhoneReply> reply = orvane::PhoneReply::decode(line);
    if (!reply || !reply->items) return 0;
    for (const orvane::PhoneItem& item : *reply->items)
        if (orvane::PhoneItem::fromJson(item.toJson()) != item) __builtin_trap();
    return 0;
}
