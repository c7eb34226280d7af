#pragma once

#include "platform/system/PosixZoneRule.h"

#include <string_view>

namespace platform {

// Reads the parts of a POSIX zone rule one after the other. After the first part that is not as expected, all
// others are zero and isComplete() is false.
class PosixZoneRuleText final {
public:
    explicit PosixZoneRuleText(std::string_view text)
        : rest_(text) {}

    [[nodiscard]] bool isAtEnd() const { return rest_.empty(); }
    [[nodiscard]] bool isAt(char c) const { return rest_.starts_with(c); }
    // Whether all of the text was read and was as expected.
    [[nodiscard]] bool isComplete() const { return !failed_ && isAtEnd(); }

    // The name of standard or summer time: three letters or more ("CET"), or letters, digits and signs in
    // angle brackets ("<+03>").
    void skipName();
    void skip(char c);
    // "[+-]hh[:mm[:ss]]" in seconds.
    int time(int largestHour);
    // "Jn", "n" or "Mm.w.d", and perhaps a slash and a time.
    PosixZoneRule::Change change();

private:
    bool take(char c);
    int number(int smallest, int largest);
    void fail();

    std::string_view rest_;
    bool failed_ = false;
};

} // namespace platform
