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

char* putView(char* out, std::string_view text) {
    std::memcpy(out, text.data(), text.size());
    return out + text.size();
}

// Whether every byte may be written as it stands.
bool isPlain(std::string_view text) {
    constexpr std::size_t width = sizeof(std::uint64_t);
    if (text.size() < width) {
        std::uint64_t word = 0;
        std::memcpy(&word, text.data(), text.size());
        return !mayNeedCare(word);
    }
    for (std::size_t at = 0; at + width < text.size(); at += width)
        if (mayNeedCare(loadWord(text.data() + at)))
            return false;
    return !mayNeedCare(loadWord(text.data() + text.size() - width));
}

// Lone surrogates are left out.
char* putEscaped(char* out, std::string_view text) {
    for (std::size_t at = 0; at < text.size(); ++at) {
        switch (text[at]) {
        case '<':
            out = putView(out, "&lt;");
            break;
        case '>':
            out = putView(out, "&gt;");
            break;
        case '&':
            out = putView(out, "&amp;");
            break;
        default:
            if (isSurrogate(text, at))
                at += 2;
            else
                *out++ = text[at];
        }
    }
    return out;
}

} // namespace

char* XmlOutput::putText(char* out, std::string_view text) {
    return isPlain(text) ? putView(out, text) : putEscaped(out, text);
}

void XmlOutput::raw(std::string_view text) {
    used(putView(room(text.size()), text));
}

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
