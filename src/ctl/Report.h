#pragma once

#include <iosfwd>
#include <string_view>

namespace ctl {

// Where a command reads and writes: the process's standard streams, or a test's.
struct Streams {
    std::istream& in;
    std::ostream& out;
    std::ostream& err;
};

// The exit statuses of the program.
enum ExitStatus : int { Done = 0, Failed = 1, Misused = 2 };

// Says on one line of standard error what failed, and gives the exit status for it. The place is a file, with
// what more is known of where in it; it may be empty.
[[nodiscard]] int failed(Streams& streams, std::string_view place, std::string_view sentence);

// Likewise for wrong usage.
[[nodiscard]] int misused(Streams& streams, std::string_view sentence);

} // namespace ctl
