#pragma once

#include "platform/system/TimeZone.h"

#include <string>

namespace platform {

// The time zone of the current region, read as the C library reads TZ: a name is a file below $TZDIR or
// /usr/share/zoneinfo, an absolute path is a file, and what names no zone file is a POSIX rule. A colon in
// front is skipped. UTC if it is neither, or if the file is damaged, larger than 1 MB or no regular file.
//
// A file is read once and kept until another zone is asked for or the file changes, which each call checks,
// so that a file or a link that was replaced is seen at the next call. The reference is valid until then.
// Main thread only.
[[nodiscard]] const TimeZone& currentTimeZone();

// The path at which that file is looked for, whether or not there is one.
[[nodiscard]] std::string currentTimeZoneFile();

} // namespace platform
