#pragma once

#include <cstddef>
#include <iosfwd>
#include <string_view>
#include <system_error>

namespace platform {
struct AllowedFiles;
}

namespace ctl {

// Where a command reads and writes: the process's standard streams, or those of a test. And how the process
// is confined to files before a command reads a container; a test's is not.
struct Streams {
    std::istream& in;
    std::ostream& out;
    std::ostream& err;
    bool isTerminal = false; // standard output
    std::error_code (*confine)(const platform::AllowedFiles& files) = nullptr;
};

// The exit statuses of the program.
enum ExitStatus : int { Done = 0, Failed = 1, Misused = 2 };

// Writes an error message of one line to standard error and returns Failed. The place is a file, with the
// line or the record if known; it may be empty. Neither needs to be safe for a terminal.
[[nodiscard]] int failed(Streams& streams, std::string_view place, std::string_view sentence);

// Writes an error message about wrong usage to standard error and returns Misused. The place is the number of
// the argument at fault, from 1, or of the one that is missing.
[[nodiscard]] int misused(Streams& streams, std::size_t place, std::string_view sentence);

} // namespace ctl
