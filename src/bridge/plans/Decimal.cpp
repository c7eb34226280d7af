#include "bridge/plans/Decimal.h"

#include <charconv>
#include <limits>

namespace bridge {

namespace {

constexpr int mostPlaces = 18;
constexpr std::int64_t largest = std::numeric_limits<std::int64_t>::max();

std::optional<std::int64_t> tenfold(std::int64_t units) {
    std::int64_t product = 0;
    return __builtin_mul_overflow(units, std::int64_t{10}, &product) ? std::nullopt : std::optional(product);
}

template <class Integer>
std::optional<Integer> integerOfText(std::string_view text) {
    if (text.starts_with('+'))
        text.remove_prefix(1);
    Integer value = 0;
    const char* end = text.data() + text.size();
    const auto [last, error] = std::from_chars(text.data(), end, value);
    return error == std::errc() && last == end && !text.empty() ? std::optional(value) : std::nullopt;
}

} // namespace

std::optional<Decimal> decimalOfText(std::string_view text) {
    int exponent = 0;
    if (const auto mark = text.find_first_of("eE"); mark != text.npos) {
        const auto read = integerOfText<int>(text.substr(mark + 1));
        if (!read || *read < -mostPlaces || *read > mostPlaces)
            return std::nullopt;
        exponent = *read;
        text = text.substr(0, mark);
    }
    std::string digits(text);
    Decimal number;
    if (const auto point = digits.find('.'); point != digits.npos) {
        digits.erase(point, 1);
        number.places = static_cast<int>(digits.size() - point);
    }
    if (digits.find_first_of("0123456789") > 1 || number.places > 2 * mostPlaces)
        return std::nullopt;
    const auto units = integerOfText<std::int64_t>(digits);
    if (!units || *units == std::numeric_limits<std::int64_t>::min())
        return std::nullopt;
    number.units = *units;
    number.places -= exponent;
    if (number.places >= 0)
        return number.places <= mostPlaces ? std::optional(number) : withPlaces(number, mostPlaces);
    return withPlaces(number, 0);
}

std::optional<Decimal> decimalOfFraction(std::string_view text) {
    const auto slash = text.find('/');
    auto units = integerOfText<std::int64_t>(text.substr(0, slash));
    const auto denominator = slash == text.npos ? 1 : integerOfText<std::int64_t>(text.substr(slash + 1));
    if (!units || !denominator || *denominator <= 0 || *units == std::numeric_limits<std::int64_t>::min())
        return std::nullopt;
    std::int64_t power = 1;
    for (int places = 0; places <= mostPlaces; ++places, power *= 10) {
        if (power % *denominator == 0) {
            std::int64_t product = 0;
            if (__builtin_mul_overflow(*units, power / *denominator, &product))
                return std::nullopt;
            return Decimal{product, places};
        }
        if (places == mostPlaces)
            break;
    }
    return std::nullopt;
}

std::optional<Decimal> withPlaces(const Decimal& number, int places) {
    Decimal result = number;
    while (result.places < places) {
        const auto units = tenfold(result.units);
        if (!units)
            return std::nullopt;
        result = {*units, result.places + 1};
    }
    if (result.places == places)
        return result;
    std::int64_t divisor = 1;
    for (; result.places > places && divisor <= largest / 10; --result.places)
        divisor *= 10;
    if (result.places > places)
        return Decimal{0, places};
    const std::int64_t rest = result.units % divisor;
    result.units /= divisor;
    const std::int64_t magnitude = rest < 0 ? -rest : rest;
    if (magnitude >= divisor - magnitude)
        result.units += rest < 0 ? -1 : 1;
    return result;
}

std::string textOfDecimal(const Decimal& number) {
    const bool isNegative = number.units < 0;
    std::string digits = std::to_string(number.units).substr(isNegative ? 1 : 0);
    const auto places = static_cast<std::size_t>(number.places);
    if (digits.size() <= places)
        digits.insert(0, places + 1 - digits.size(), '0');
    if (places > 0)
        digits.insert(digits.size() - places, 1, '.');
    return (isNegative ? "-" : "") + digits;
}

} // namespace bridge
