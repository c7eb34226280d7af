#include "bridge/sources/GnuCashFormula.h"

#include <algorithm>
#include <limits>
#include <string>
#include <utility>

namespace bridge {

namespace {

constexpr int mostNested = 32;

// Holds the product of two 64-bit numbers.
__extension__ typedef __int128 Wide;

struct Fraction {
    std::int64_t numerator = 0;
    std::int64_t denominator = 1; // positive
};

using Result = std::optional<Fraction>;

Result reduced(Wide numerator, Wide denominator) {
    if (denominator == 0)
        return std::nullopt;
    Wide a = numerator < 0 ? -numerator : numerator;
    Wide b = denominator < 0 ? -denominator : denominator;
    while (b != 0)
        a = std::exchange(b, a % b);
    const Wide divisor = denominator < 0 ? -a : a;
    constexpr Wide largest = std::numeric_limits<std::int64_t>::max();
    const Wide top = numerator / divisor;
    const Wide bottom = denominator / divisor;
    if (top > largest || top < -largest || bottom > largest)
        return std::nullopt;
    return Fraction{static_cast<std::int64_t>(top), static_cast<std::int64_t>(bottom)};
}

Result combined(const Fraction& a, char sign, const Fraction& b) {
    const Wide bottom = Wide{a.denominator} * b.denominator;
    switch (sign) {
    case '+':
        return reduced(Wide{a.numerator} * b.denominator + Wide{b.numerator} * a.denominator, bottom);
    case '-':
        return reduced(Wide{a.numerator} * b.denominator - Wide{b.numerator} * a.denominator, bottom);
    case '*':
        return reduced(Wide{a.numerator} * b.numerator, bottom);
    default:
        return reduced(Wide{a.numerator} * b.denominator, Wide{a.denominator} * b.numerator);
    }
}

// The number with a decimal point and without separators of thousands. Absent if a sign may be either of the
// two.
std::optional<std::string> plainNumber(std::string text) {
    const std::size_t last = text.find_last_of(".,");
    if (last == std::string::npos)
        return text;
    const char mark = text[last];
    const bool isRepeated = std::count(text.begin(), text.end(), mark) > 1;
    const bool hasBoth = text.find(mark == '.' ? ',' : '.') != std::string::npos;
    const bool canBeThousands = text.size() - last - 1 == 3 && last >= 1 && last <= 3 && text.front() != '0';
    if (isRepeated || (canBeThousands && !hasBoth))
        return std::nullopt;
    text[last] = ' ';
    std::erase_if(text, [](char letter) { return letter == '.' || letter == ','; });
    text[text.find(' ')] = '.';
    return text;
}

// sum: product (("+" | "-") product)*; product: factor (("*" | "/") factor)*;
// factor: ("+" | "-") factor | "(" sum ")" | number
class Parser final {
public:
    explicit Parser(std::string_view text)
        : text_(text) {}

    Result parse() {
        const Result result = sum();
        return next() == '\0' && at_ == text_.size() ? result : std::nullopt;
    }

private:
    char next() {
        while (at_ < text_.size() && text_[at_] == ' ')
            ++at_;
        return at_ < text_.size() ? text_[at_] : '\0';
    }

    bool isNextOneOf(std::string_view signs) {
        const char sign = next();
        return sign != '\0' && signs.find(sign) != std::string_view::npos;
    }

    Result sum() {
        Result result = product();
        while (result && isNextOneOf("+-"))
            result = operation(*result, &Parser::product);
        return result;
    }

    Result product() {
        Result result = factor();
        while (result && isNextOneOf("*/"))
            result = operation(*result, &Parser::factor);
        return result;
    }

    Result operation(const Fraction& left, Result (Parser::*operand)()) {
        const char sign = text_[at_++];
        const Result right = (this->*operand)();
        return right ? combined(left, sign, *right) : std::nullopt;
    }

    Result factor() {
        if (++nested_ > mostNested)
            return std::nullopt;
        const Result result = isNextOneOf("+-(") ? signedOrNested() : number();
        --nested_;
        return result;
    }

    Result signedOrNested() {
        const char sign = text_[at_++];
        if (sign != '(') {
            const Result value = factor();
            return value ? combined({}, sign, *value) : std::nullopt;
        }
        const Result value = sum();
        if (next() != ')')
            return std::nullopt;
        ++at_;
        return value;
    }

    Result number() {
        next();
        const std::size_t end = std::min(text_.find_first_not_of("0123456789.,", at_), text_.size());
        const auto plain = plainNumber(std::string(text_.substr(at_, end - at_)));
        const auto value = plain ? decimalOfText(*plain) : std::nullopt;
        at_ = end;
        if (!value)
            return std::nullopt;
        Wide denominator = 1;
        for (int place = 0; place < value->places; ++place)
            denominator *= 10;
        return reduced(value->units, denominator);
    }

    std::string_view text_;
    std::size_t at_ = 0;
    int nested_ = 0;
};

} // namespace

std::optional<Decimal> valueOfFormula(std::string_view formula, int places) {
    const Result value = Parser(formula).parse();
    if (!value)
        return std::nullopt;
    Wide units = value->numerator;
    for (int place = 0; place < places; ++place)
        if (__builtin_mul_overflow(units, Wide{10}, &units))
            return std::nullopt;
    const Wide half = value->denominator / 2 + value->denominator % 2;
    const Wide rest = units % value->denominator;
    units /= value->denominator;
    if (rest >= half)
        ++units;
    else if (-rest >= half)
        --units;
    constexpr Wide largest = std::numeric_limits<std::int64_t>::max();
    if (units > largest || units < -largest)
        return std::nullopt;
    return Decimal{static_cast<std::int64_t>(units), places};
}

} // namespace bridge
