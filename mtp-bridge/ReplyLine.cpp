#include "ReplyLine.h"

#include <charconv>
#include <cmath>

namespace orvane {

namespace {
// Length of the well-formed UTF-8 sequence at `i`, or 0.
size_t sequenceLength(std::string_view text, size_t i) {
    const auto at = [&](size_t k) { return static_cast<unsigned char>(text[k]); };
    const unsigned char lead = at(i);
    size_t length = lead >= 0xC2 && lead <= 0xDF   ? 2
                    : lead >= 0xE0 && lead <= 0xEF ? 3
                    : lead >= 0xF0 && lead <= 0xF4 ? 4
                                                   : 0;
    if (length == 0 || i + length > text.size()) return 0;
    const unsigned char second = at(i + 1);
    const unsigned char low = lead == 0xE0 ? 0xA0 : lead == 0xF0 ? 0x90 : 0x80;
    const unsigned char high = lead == 0xED ? 0x9F : lead == 0xF4 ? 0x8F : 0xBF;
    if (second < low || second > high) return 0;
    for (size_t k = 2; k < length; ++k)
        if ((at(i + k) & 0xC0) != 0x80) return 0;
    return length;
}
} // namespace

void ReplyLine::appendString(std::string& out, std::string_view text) {
    static const char hex[] = "0123456789abcdef";
    out += '"';
    for (size_t i = 0; i < text.size();) {
        const auto byte = static_cast<unsigned char>(text[i]);
        if (byte >= 0x80) {
            const size_t length = sequenceLength(text, i);
            out += length ? text.substr(i, length) : std::string_view("\xEF\xBF\xBD");
            i += length ? length : 1;
            continue;
        }
        if (byte == '"' || byte == '\\') {
            out += '\\';
            out += char(byte);
        } else if (byte < 0x20) {
            out += "\\u00";
            out += hex[byte >> 4];
            out += hex[byte & 15];
        } else {
            out += char(byte);
        }
        ++i;
    }
    out += '"';
}

void ReplyLine::key(std::string_view name) {
    if (!body.empty()) body += ',';
    appendString(body, name);
    body += ':';
}

ReplyLine& ReplyLine::add(std::string_view name, std::string_view text) {
    key(name);
    appendString(body, text);
    return *this;
}

ReplyLine& ReplyLine::add(std::string_view name, uint64_t number) {
    key(name);
    body += std::to_string(number);
    return *this;
}

// Shortest text that reads back as the same double; JSON has no NaN or infinity.
ReplyLine& ReplyLine::add(std::string_view name, double number) {
    key(name);
    if (!std::isfinite(number)) number = 0;
    char text[32];
    const auto result = std::to_chars(text, text + sizeof text, number);
    body.append(text, result.ptr);
    return *this;
}

ReplyLine& ReplyLine::add(std::string_view name, bool value) {
    key(name);
    body += value ? "true" : "false";
    return *this;
}

ReplyLine& ReplyLine::addNull(std::string_view name) {
    key(name);
    body += "null";
    return *this;
}

ReplyLine& ReplyLine::addRaw(std::string_view name, std::string_view json) {
    key(name);
    body += json;
    return *this;
}

} // namespace orvane
