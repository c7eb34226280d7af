#include "platform/plist/text/Unicode.h"

#include <algorithm>
#include <cstdint>

namespace platform::plist {

namespace {

unsigned char byteAt(std::string_view text, std::size_t offset) {
    return static_cast<unsigned char>(text[offset]);
}

bool isContinuation(unsigned char byte) {
    return (byte & 0xC0U) == 0x80U;
}

bool isSurrogate(char32_t value) {
    return value >= 0xD800 && value <= 0xDFFF;
}

// The length of the UTF-8 sequence at an offset; 0 if there is none. Surrogates' three bytes count
// only where they are allowed.
std::size_t sequenceLength(std::string_view text, std::size_t offset, bool allowSurrogates) {
    const unsigned char first = byteAt(text, offset);
    const std::size_t left = text.size() - offset;
    if (first < 0x80)
        return 1;
    if (first < 0xC2 || left < 2)
        return 0;
    const unsigned char second = byteAt(text, offset + 1);
    if (!isContinuation(second))
        return 0;
    if (first < 0xE0)
        return 2;
    if (left < 3 || !isContinuation(byteAt(text, offset + 2)))
        return 0;
    if (first < 0xF0) {
        const bool overlong = first == 0xE0 && second < 0xA0;
        const bool surrogate = first == 0xED && second >= 0xA0;
        return overlong || (surrogate && !allowSurrogates) ? 0 : 3;
    }
    if (first > 0xF4 || left < 4 || !isContinuation(byteAt(text, offset + 3)))
        return 0;
    const bool overlong = first == 0xF0 && second < 0x90;
    const bool tooLarge = first == 0xF4 && second >= 0x90;
    return overlong || tooLarge ? 0 : 4;
}

// The UTF-16 unit at which a text continues from an offset: a whole unit, or the high surrogate of a pair.
// -1 at the end, so that a prefix comes first.
std::int32_t unitAt(std::string_view text, std::size_t offset) {
    if (offset >= text.size())
        return -1;
    const CodePoint point = codePointAt(text, offset);
    if (point.value >= 0x10000)
        return static_cast<std::int32_t>(0xD800 + ((point.value - 0x10000) >> 10U));
    return static_cast<std::int32_t>(point.value);
}

} // namespace

bool isUtf8(std::string_view bytes) {
    for (std::size_t at = 0; at < bytes.size();) {
        if (byteAt(bytes, at) < 0x80) {
            ++at;
            continue;
        }
        const std::size_t length = sequenceLength(bytes, at, false);
        if (length == 0)
            return false;
        at += length;
    }
    return true;
}

bool isAscii(std::string_view bytes) {
    return std::all_of(bytes.begin(), bytes.end(), [](char c) { return (c & 0x80) == 0; });
}

bool startsWithSurrogate(std::string_view text) {
    return text.size() >= 3 && text[0] == '\xED' && byteAt(text, 1) >= 0xA0;
}

std::size_t findSurrogate(std::string_view text) {
    std::size_t at = text.find('\xED');
    while (at < text.size() && !startsWithSurrogate(text.substr(at)))
        at = text.find('\xED', at + 1);
    return std::min(at, text.size());
}

std::string_view withoutMark(std::string_view text) {
    constexpr std::string_view mark = "\xEF\xBB\xBF";
    return text.starts_with(mark) ? text.substr(mark.size()) : text;
}

void appendCodePoint(std::string& text, char32_t codePoint) {
    const auto tail = [codePoint](unsigned shift) {
        return static_cast<char>(0x80U | ((codePoint >> shift) & 0x3FU));
    };
    if (codePoint < 0x80) {
        text += static_cast<char>(codePoint);
    } else if (codePoint < 0x800) {
        text += static_cast<char>(0xC0U | (codePoint >> 6U));
        text += tail(0);
    } else if (codePoint < 0x10000) {
        text += static_cast<char>(0xE0U | (codePoint >> 12U));
        text += tail(6);
        text += tail(0);
    } else {
        text += static_cast<char>(0xF0U | (codePoint >> 18U));
        text += tail(12);
        text += tail(6);
        text += tail(0);
    }
}

void appendUtf16Unit(std::string& text, char16_t unit) {
    constexpr std::size_t surrogateLength = 3;
    if (unit >= 0xDC00 && unit <= 0xDFFF && text.size() >= surrogateLength) {
        const CodePoint last = codePointAt(text, text.size() - surrogateLength);
        if (last.length == surrogateLength && last.value >= 0xD800 && last.value <= 0xDBFF) {
            text.resize(text.size() - surrogateLength);
            appendCodePoint(text, 0x10000 + ((last.value - 0xD800) << 10U) + (unit - 0xDC00U));
            return;
        }
    }
    appendCodePoint(text, unit);
}

std::string textOfBigEndianUtf16(std::string_view bytes) {
    std::string text;
    text.reserve(bytes.size() / 2);
    for (std::size_t at = 0; at + 1 < bytes.size(); at += 2)
        appendUtf16Unit(text, static_cast<char16_t>((byteAt(bytes, at) << 8U) | byteAt(bytes, at + 1)));
    return text;
}

CodePoint codePointAt(std::string_view text, std::size_t offset) {
    const unsigned char first = byteAt(text, offset);
    const auto tail = [&](std::size_t index) {
        return static_cast<char32_t>(byteAt(text, offset + index) & 0x3FU);
    };
    switch (sequenceLength(text, offset, true)) {
    case 2:
        return {((first & 0x1FU) << 6U) | tail(1), 2};
    case 3:
        return {((first & 0x0FU) << 12U) | (tail(1) << 6U) | tail(2), 3};
    case 4:
        return {((first & 0x07U) << 18U) | (tail(1) << 12U) | (tail(2) << 6U) | tail(3), 4};
    default:
        return {first, 1};
    }
}

bool precedesInUtf16(std::string_view a, std::string_view b) {
    const std::size_t common = std::min(a.size(), b.size());
    std::size_t at = 0;
    while (at < common && a[at] == b[at])
        ++at;
    if (at == common)
        return a.size() < b.size();
    // Up to U+D7FF the order of bytes is that of units.
    if (byteAt(a, at) < 0xED && byteAt(b, at) < 0xED && !isContinuation(byteAt(a, at)))
        return byteAt(a, at) < byteAt(b, at);
    while (at > 0 && isContinuation(byteAt(a, at)))
        --at;
    const std::int32_t unitA = unitAt(a, at);
    const std::int32_t unitB = unitAt(b, at);
    if (unitA != unitB)
        return unitA < unitB;
    // Both begin with one high surrogate. Where one of the two is alone, what follows it decides.
    const CodePoint pointA = codePointAt(a, at);
    const CodePoint pointB = codePointAt(b, at);
    const auto second = [](std::string_view text, std::size_t offset, CodePoint point) {
        return isSurrogate(point.value)
                   ? unitAt(text, offset + point.length)
                   : static_cast<std::int32_t>(0xDC00 + ((point.value - 0x10000) & 0x3FFU));
    };
    return second(a, at, pointA) < second(b, at, pointB);
}

std::size_t lineAt(std::string_view text, std::size_t offset) {
    std::size_t line = 1;
    for (std::size_t i = 0; i < offset && i < text.size(); ++i) {
        const bool ends =
            text[i] == '\n' || (text[i] == '\r' && !(i + 1 < text.size() && text[i + 1] == '\n'));
        line += ends ? 1 : 0;
    }
    return line;
}

} // namespace platform::plist
