#include "platform/plist/xml/Dates.h"

#include <cmath>
#include <cstdint>
#include <cstdlib>
#include <limits>

namespace platform::plist {

namespace {

constexpr std::int64_t secondsPerDay = 86400;
constexpr std::int64_t daysOf400Years = 146097;

bool isDigit(char c) {
    return c >= '0' && c <= '9';
}

bool isLeap(std::int64_t year) {
    return year % 4 == 0 && (year % 100 != 0 || year % 400 == 0);
}

std::int64_t floorDivide(std::int64_t a, std::int64_t b) {
    return a / b - (a % b < 0 ? 1 : 0);
}

// Days from 2001-01-01 to the first of a year.
std::int64_t daysBeforeYear(std::int64_t year) {
    const std::int64_t past = year - 1;
    return past * 365 + floorDivide(past, 4) - floorDivide(past, 100) + floorDivide(past, 400) - 730485;
}

// Days of a year before a month. A month beyond the calendar counts as the platform's tables have it: 0 is
// January, 13 follows December, later ones begin the year (its leap day added to 14 and 15).
std::int64_t daysBeforeMonth(std::int64_t month, bool leap) {
    static constexpr std::int64_t days[] = {0,   0,   31,  59,  90,  120, 151, 181,
                                            212, 243, 273, 304, 334, 365, 0,   0};
    if (month > 15)
        return 0;
    return days[month] + (month > 2 && leap ? 1 : 0);
}

class DateScanner final {
public:
    explicit DateScanner(std::string_view text)
        : text_(text) {}

    bool take(char c) {
        if (at_ >= text_.size() || text_[at_] != c)
            return false;
        ++at_;
        return true;
    }

    std::optional<std::int64_t> takeYear() {
        const bool isNegative = take('-');
        std::int64_t year = 0;
        for (; at_ < text_.size() && isDigit(text_[at_]); ++at_) {
            year = year * 10 + (text_[at_] - '0');
            if (year > std::numeric_limits<std::int32_t>::max())
                return std::nullopt;
        }
        return isNegative ? -year : year;
    }

    std::optional<std::int64_t> takeTwoDigits() {
        if (text_.size() - at_ < 2 || !isDigit(text_[at_]) || !isDigit(text_[at_ + 1]))
            return std::nullopt;
        at_ += 2;
        return (text_[at_ - 2] - '0') * 10 + (text_[at_ - 1] - '0');
    }

    [[nodiscard]] bool atEnd() const { return at_ == text_.size(); }

private:
    std::string_view text_;
    std::size_t at_ = 0;
};

void appendTwoDigits(std::string& out, std::int64_t value) {
    out += static_cast<char>('0' + value / 10);
    out += static_cast<char>('0' + value % 10);
}

// As "%04d": the sign counts toward the four.
void appendYear(std::string& out, std::int64_t year) {
    if (year < 0)
        out += '-';
    const std::int64_t magnitude = std::llabs(year);
    for (std::int64_t bound = year < 0 ? 100 : 1000; bound > magnitude && bound > 1; bound /= 10)
        out += '0';
    out += std::to_string(magnitude);
}

} // namespace

std::optional<double> parseDate(std::string_view text) {
    DateScanner scanner(text);
    std::int64_t fields[6] = {};
    static constexpr char separators[] = {'-', '-', 'T', ':', ':', 'Z'};
    for (int i = 0; i < 6; ++i) {
        const std::optional<std::int64_t> field = i == 0 ? scanner.takeYear() : scanner.takeTwoDigits();
        if (!field || !scanner.take(separators[i]))
            return std::nullopt;
        fields[i] = *field;
    }
    if (!scanner.atEnd())
        return std::nullopt;
    const auto [year, month, day, hour, minute, second] = fields;
    const std::int64_t days = daysBeforeYear(year) + daysBeforeMonth(month, isLeap(year)) + day - 1;
    return static_cast<double>(days * secondsPerDay + hour * 3600 + minute * 60 + second);
}

bool appendDate(std::string& out, double seconds) {
    constexpr double largest = 6.7e16; // seconds of 2^31 years, nearly
    if (!(std::fabs(seconds) < largest))
        return false;
    const auto whole = static_cast<std::int64_t>(std::floor(seconds));
    const std::int64_t days = floorDivide(whole, secondsPerDay);
    const std::int64_t time = whole - days * secondsPerDay;
    // The estimate is a year off at most; daysBeforeYear() settles it.
    std::int64_t year = 2001 + floorDivide(days * 400, daysOf400Years);
    while (daysBeforeYear(year) > days)
        --year;
    while (daysBeforeYear(year + 1) <= days)
        ++year;
    const std::int64_t dayOfYear = days - daysBeforeYear(year);
    std::int64_t month = 12;
    while (daysBeforeMonth(month, isLeap(year)) > dayOfYear)
        --month;
    appendYear(out, year);
    const std::int64_t fields[] = {month, dayOfYear - daysBeforeMonth(month, isLeap(year)) + 1, time / 3600,
                                   time / 60 % 60, time % 60};
    constexpr std::string_view separators = "--T::";
    for (std::size_t i = 0; i < separators.size(); ++i) {
        out += separators[i];
        appendTwoDigits(out, fields[i]);
    }
    out += 'Z';
    return true;
}

} // namespace platform::plist
