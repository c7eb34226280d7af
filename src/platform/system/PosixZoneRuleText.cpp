#include "platform/system/PosixZoneRuleText.h"

#include <algorithm>

namespace platform {

namespace {

bool isDigit(char c) {
    return c >= '0' && c <= '9';
}

bool isLetter(char c) {
    return (c >= 'a' && c <= 'z') || (c >= 'A' && c <= 'Z');
}

bool isQuotable(char c) {
    return isLetter(c) || isDigit(c) || c == '+' || c == '-';
}

} // namespace

void PosixZoneRuleText::skipName() {
    const bool isQuoted = take('<');
    const auto end = std::find_if_not(rest_.begin(), rest_.end(), isQuoted ? isQuotable : isLetter);
    const auto length = static_cast<std::size_t>(end - rest_.begin());
    rest_.remove_prefix(length);
    if (length < 3 || (isQuoted && !take('>')))
        fail();
}

void PosixZoneRuleText::skip(char c) {
    if (!take(c))
        fail();
}

int PosixZoneRuleText::time(int largestHour) {
    const bool isNegative = take('-');
    if (!isNegative)
        take('+');
    int seconds = number(0, largestHour) * 3600;
    if (take(':'))
        seconds += number(0, 59) * 60;
    if (take(':'))
        seconds += number(0, 59);
    return isNegative ? -seconds : seconds;
}

PosixZoneRule::Change PosixZoneRuleText::change() {
    using Day = PosixZoneRule::Change::Day;
    PosixZoneRule::Change change;
    if (take('M')) {
        change.kind = Day::OfWeek;
        change.month = number(1, 12);
        skip('.');
        change.week = number(1, 5);
        skip('.');
        change.day = number(0, 6);
    } else if (take('J')) {
        change.kind = Day::OfYearWithoutLeaps;
        change.day = number(1, 365);
    } else {
        change.day = number(0, 365);
    }
    if (take('/'))
        change.time = time(167);
    return change;
}

bool PosixZoneRuleText::take(char c) {
    if (!isAt(c))
        return false;
    rest_.remove_prefix(1);
    return true;
}

int PosixZoneRuleText::number(int smallest, int largest) {
    if (rest_.empty() || !isDigit(rest_.front()))
        fail();
    int number = 0;
    for (; !rest_.empty() && isDigit(rest_.front()) && number <= largest; rest_.remove_prefix(1))
        number = number * 10 + (rest_.front() - '0');
    if (number < smallest || number > largest)
        fail();
    return failed_ ? 0 : number;
}

void PosixZoneRuleText::fail() {
    failed_ = true;
    rest_ = {};
}

} // namespace platform
