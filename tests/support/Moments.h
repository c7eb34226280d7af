#pragma once

#include <chrono>

namespace support {

// The seconds since 1970-01-01 00:00 UTC of a date and time in UTC (proleptic Gregorian calendar). The hours
// may be negative or exceed a day, so a local time is written with the zone's offset subtracted from the
// hours.
inline double utc(int year, unsigned month, unsigned day, int hour = 0, int minute = 0, double second = 0) {
    const std::chrono::sys_days days{std::chrono::year{year} / static_cast<int>(month) /
                                     static_cast<int>(day)};
    return static_cast<double>(days.time_since_epoch().count()) * 86400.0 + hour * 3600.0 + minute * 60.0 +
           second;
}

} // namespace support
