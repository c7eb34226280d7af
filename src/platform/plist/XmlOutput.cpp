#include "platform/plist/XmlOutput.h"

#include "platform/plist/Base64.h"
#include "platform/plist/Dates.h"
#include "platform/plist/Numbers.h"
#include "platform/plist/Swar.h"

#include <algorithm>
#include <array>
#include <cstring>

namespace platform::plist {

namespace {

// The longest that one byte becomes: "&amp;".
constexpr std::size_t escapedRoom = 5;

char* put(char* out, std::string_view text) {
    std::memcpy(out, text.data(), text.size());
    return out + text.size();
}

char* putTabs(char* out, std::size_t count) {
    std::memset(out, '\t', count);
    return out + count;
}

// Whether a word may hold a byte that needs care: '<', '>', '&' or the first one of a surrogate.
bool mayNeedCare(std::uint64_t word) {
    // '<' (0x3C) and '>' (0x3E) differ in one bit.
    return (roughlyZeroBytes((word | (0x02 * everyByte)) ^ ('>' * everyByte)) |
            roughlyZeroBytes(word ^ ('&' * everyByte)) | roughlyZeroBytes(word ^ (0xED * everyByte))) != 0;
}

bool isSurrogate(std::string_view text, std::size_t at) {
    return static_cast<unsigned char>(text[at]) == 0xED && at + 2 < text.size() &&
           static_cast<unsigned char>(text[at + 1]) >= 0xA0;
}

// One byte, or the surrogate that begins with it, which is left out.
char* putEscaped(char* out, std::string_view text, std::size_t& at) {
    const char c = text[at];
    ++at;
    switch (c) {
    case '<':
        return put(out, "&lt;");
    case '>':
        return put(out, "&gt;");
    case '&':
        return put(out, "&amp;");
    default:
        if (isSurrogate(text, at - 1)) {
            at += 2;
            return out;
        }
        *out = c;
        return out + 1;
    }
}

char* putText(char* out, std::string_view text) {
    std::size_t at = 0;
    std::uint64_t word = 0;
    while (at + sizeof word <= text.size()) {
        std::memcpy(&word, text.data() + at, sizeof word);
        if (!mayNeedCare(word)) {
            std::memcpy(out, &word, sizeof word);
            out += sizeof word;
            at += sizeof word;
            continue;
        }
        for (const std::size_t end = at + sizeof word; at < end;)
            out = putEscaped(out, text, at);
    }
    while (at < text.size())
        out = putEscaped(out, text, at);
    return out;
}

} // namespace

XmlOutput::XmlOutput(std::size_t expectedSize) {
    grow(expectedSize);
}

void XmlOutput::grow(std::size_t size) {
    capacity_ = std::max(capacity_ * 2, size_ + size);
    text_.resize(capacity_);
}

std::string XmlOutput::take() {
    text_.resize(size_);
    return std::move(text_);
}

void XmlOutput::line(std::string_view open, std::string_view text, std::string_view close,
                     std::size_t indent) {
    char* out = room(indent + open.size() + escapedRoom * text.size() + close.size());
    out = put(putTabs(out, indent), open);
    used(put(putText(out, text), close));
}

void XmlOutput::tag(std::string_view text, std::size_t indent) {
    used(put(putTabs(room(indent + text.size()), indent), text));
}

void XmlOutput::boolean(bool value, std::size_t indent) {
    tag(value ? "<true/>\n" : "<false/>\n", indent);
}

void XmlOutput::integer(Integer value, std::size_t indent) {
    std::array<char, numberRoom> text{};
    const char* const end = formatInteger(text.data(), value);
    line("<integer>", {text.data(), static_cast<std::size_t>(end - text.data())}, "</integer>\n", indent);
}

void XmlOutput::real(double value, std::size_t indent) {
    std::array<char, numberRoom> text{};
    const char* const end = formatReal(text.data(), value);
    line("<real>", {text.data(), static_cast<std::size_t>(end - text.data())}, "</real>\n", indent);
}

bool XmlOutput::date(Date value, std::size_t indent) {
    std::array<char, dateRoom> text{};
    const char* const end = formatDate(text.data(), value.seconds);
    if (!end)
        return false;
    line("<date>", {text.data(), static_cast<std::size_t>(end - text.data())}, "</date>\n", indent);
    return true;
}

void XmlOutput::data(std::string_view bytes, std::size_t indent) {
    tag("<data>\n", indent);
    used(encodeBase64(room(base64Size(bytes.size(), indent)), bytes, indent));
    tag("</data>\n", indent);
}

} // namespace platform::plist
