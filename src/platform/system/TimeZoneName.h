#pragma once

#include <string>

namespace platform {

// The name, known to ICU, of the process's time zone: TZ in the forms that the C library takes (a zone's
// name, a path to its file, or a POSIX rule), else the zone of /etc/localtime. An empty TZ and one that names
// no zone are UTC, as they are to the C library. A POSIX rule with summer time that is no zone's name counts
// its standard time all year. A change of TZ is seen at once, one of /etc/localtime within a twentieth of a
// second.
[[nodiscard]] std::string timeZoneName();

// What a value of TZ names.
[[nodiscard]] std::string timeZoneNameOf(const std::string& tz);

} // namespace platform
