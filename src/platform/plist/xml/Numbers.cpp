#include "platform/plist/xml/Numbers.h"

#include "platform/plist/text/Unicode.h"

#include <algorithm>
#include <array>
#include <charconv>
#include <cmath>
#include <limits>

namespace platform::plist {

namespace {

constexpr std::size_t numberRoom = 32; // for the text of any number

bool isDigit(char c) {
    return c >= '0' && c <= '9';
}

char lower(char c) {
    return c >= 'A' && c <= 'Z' ? static_cast<char>(c - 'A' + 'a') : c;
}

bool equalsIgnoringCase(std::string_view text, std::string_view lowerCase) {
    return std::equal(text.begin(), text.end(), lowerCase.begin(), lowerCase.end(),
                      [](char a, char b) { return lower(a) == b; });
}

std::optional<double> namedReal(std::string_view text) {
    constexpr double infinity = std::numeric_limits<double>::infinity();
    if (equalsIgnoringCase(text, "nan"))
        return std::numeric_limits<double>::quiet_NaN();
    const bool isNegative = text.starts_with('-');
    if (isNegative || text.starts_with('+'))
        text.remove_prefix(1);
    if (equalsIgnoringCase(text, "inf") || equalsIgnoringCase(text, "infinity"))
        return isNegative ? -infinity : infinity;
    return std::nullopt;
}

// The platform's white space before a real: by code points, control characters and some of Latin-1 included.
std::size_t realSpaceLength(std::string_view text) {
    std::size_t at = 0;
    while (at < text.size()) {
        const CodePoint point = codePointAt(text, at);
        const bool isSpace = point.value < 0x21 || (point.value > 0x7E && point.value < 0xA1) ||
                             (point.value >= 0x2000 && point.value <= 0x200B) || point.value == 0x3000;
        if (!isSpace)
            break;
        at += point.length;
    }
    return at;
}

// Where the number lies beyond what a double holds: whether it is too large (or too small). Its text is known
// to be a decimal number with at least one digit other than zero.
bool isTooLarge(std::string_view number) {
    const std::size_t mark = std::min(number.find_first_of("eE"), number.size());
    const std::string_view digits = number.substr(0, mark);
    const std::size_t point = std::min(digits.find('.'), digits.size());
    const std::size_t first = digits.find_first_of("123456789");
    if (first == std::string_view::npos)
        return false;
    const long long magnitude =
        first < point ? static_cast<long long>(point - first) : -static_cast<long long>(first - point);
    std::string_view exponent = number.substr(std::min(mark + 1, number.size()));
    const bool isNegative = exponent.starts_with('-');
    if (isNegative || exponent.starts_with('+'))
        exponent.remove_prefix(1);
    // An exponent beyond this outweighs any number of digits that fits in memory.
    constexpr long long ceiling = std::numeric_limits<long long>::max() / 4;
    long long power = 0;
    if (std::from_chars(exponent.data(), exponent.data() + exponent.size(), power).ec ==
        std::errc::result_out_of_range)
        power = ceiling;
    power = std::min(power, ceiling);
    return magnitude + (isNegative ? -power : power) > 0;
}

std::size_t skipIntegerSpace(std::string_view text, std::size_t at) {
    const auto byte = [&](std::size_t index) {
        return index < text.size() ? static_cast<unsigned char>(text[index]) : 0xFFU;
    };
    // Bytes rather than code points, on purpose: so the platform reads them, and a character between 0x7F and
    // 0xA0 need not even be valid.
    const auto isSpace = [&] {
        const unsigned first = byte(at);
        const unsigned second = byte(at + 1);
        const unsigned third = byte(at + 2);
        if (first < 0x21 || (first > 0x7E && first < 0xA1))
            return true;
        if (first == 0xE2 && second == 0x80)
            return third >= 0x80 && third <= 0x8B;
        if (first == 0xE2 && second == 0x81)
            return third == 0x9F;
        return first == 0xE3 && second == 0x80 && third == 0x80;
    };
    while (at < text.size() && isSpace())
        ++at;
    return at;
}

} // namespace

std::optional<double> parseReal(std::string_view text) {
    std::string_view number = text;
    if (number.empty() || !isDigit(number.front()))
        number.remove_prefix(realSpaceLength(number));
    const bool hasPlus = number.starts_with('+');
    if (hasPlus)
        number.remove_prefix(1);
    const std::size_t digits = number.starts_with('-') ? 1 : 0;
    const bool startsAsNumber = digits < number.size() && (isDigit(number[digits]) || number[digits] == '.');
    if (!startsAsNumber || (hasPlus && digits == 1))
        return namedReal(text);
    double value = 0;
    const auto [end, fault] = std::from_chars(number.data(), number.data() + number.size(), value);
    if (end != number.data() + number.size() || fault == std::errc::invalid_argument)
        return std::nullopt;
    if (fault == std::errc::result_out_of_range) {
        const double magnitude =
            isTooLarge(number.substr(digits)) ? std::numeric_limits<double>::infinity() : 0.0;
        value = digits == 1 ? -magnitude : magnitude;
    }
    return value;
}

IntegerText parseInteger(std::string_view text) {
    const auto fault = [](const char* message, std::size_t offset) {
        return IntegerText{{}, message, offset};
    };
    std::size_t at = skipIntegerSpace(text, 0);
    if (at == text.size())
        return fault("An integer is empty", at);
    const bool isNegative = text[at] == '-';
    if (isNegative || text[at] == '+')
        at = skipIntegerSpace(text, at + 1);
    const bool isHexadecimal = at + 1 < text.size() && text[at] == '0' && lower(text[at + 1]) == 'x';
    at += isHexadecimal ? 2 : 0;
    if (at == text.size())
        return fault("An integer has no digits", at);
    const std::uint64_t limit =
        isNegative ? std::uint64_t{1} << 63U : std::numeric_limits<std::uint64_t>::max();
    std::uint64_t magnitude = 0;
    const char* const last = text.data() + text.size();
    const auto [end, error] = std::from_chars(text.data() + at, last, magnitude, isHexadecimal ? 16 : 10);
    if (end != last)
        return fault("An integer holds a character that is no digit",
                     static_cast<std::size_t>(end - text.data()));
    if (error == std::errc::result_out_of_range || magnitude > limit)
        return fault("An integer is out of range", at);
    if (isNegative)
        return {{~magnitude + 1, false}};
    return {{magnitude, magnitude > static_cast<std::uint64_t>(std::numeric_limits<std::int64_t>::max())}};
}

void appendReal(std::string& out, double value) {
    if (std::isnan(value)) {
        out += "nan";
    } else if (std::isinf(value)) {
        out += value < 0 ? "-infinity" : "+infinity";
    } else if (value == 0) {
        out += "0.0";
    } else {
        std::array<char, numberRoom> text{};
        char* const end =
            std::to_chars(text.data(), text.data() + text.size(), value, std::chars_format::general, 17).ptr;
        out.append(text.data(), end);
    }
}

void appendInteger(std::string& out, Integer value) {
    std::array<char, numberRoom> text{};
    char* const limit = text.data() + text.size();
    char* const end = value.isLarge
                          ? std::to_chars(text.data(), limit, value.bits).ptr
                          : std::to_chars(text.data(), limit, static_cast<std::int64_t>(value.bits)).ptr;
    out.append(text.data(), end);
}

} // namespace platform::plist
