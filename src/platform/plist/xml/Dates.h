#pragma once

#include <optional>
#include <string>
#include <string_view>

// The texts of <date>: `YYYY-MM-DDThh:mm:ssZ` in the proleptic Gregorian calendar, as seconds since
// 2001-01-01 00:00 UTC.
namespace platform::plist {

// A year of any number of digits (or none) and a minus sign or none, the rest two digits each. The fields are
// added up rather than checked, as the platform does: 2001-02-30 is 2 March and 24:00 the next day's
// midnight.
[[nodiscard]] std::optional<double> parseDate(std::string_view text);

// Appends the whole seconds, rounded down. False, and nothing appended, for a date whose year is beyond 2^31,
// and for what is no number.
[[nodiscard]] bool appendDate(std::string& out, double seconds);

} // namespace platform::plist
