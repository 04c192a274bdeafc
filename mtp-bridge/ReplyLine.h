#pragma once

#include <cstdint>
#include <string>
#include <string_view>

namespace orvane {

// One JSON object written straight into text: replies are built at thousands a second, and a
// document tree per reply would cost more than the phone's answer.
class ReplyLine {
public:
    ReplyLine& add(std::string_view key, std::string_view text);
    ReplyLine& add(std::string_view key, uint64_t number);
    ReplyLine& add(std::string_view key, double number);
    ReplyLine& add(std::string_view key, bool value);
    ReplyLine& addNull(std::string_view key);
    // A value already in JSON form, such as an array of objects.
    ReplyLine& addRaw(std::string_view key, std::string_view json);
    std::string text() const { return '{' + body + '}'; }

    // A JSON string; bytes that aren't UTF-8 (a name from an odd file system) become U+FFFD.
    static void appendString(std::string& out, std::string_view text);

private:
    void key(std::string_view name);
    std::string body;
};

} // namespace orvane
