#pragma once

namespace platform {

// Ends the process at once by SIGABRT, without printing anything, writing a core file, or running destructors
// and exit handlers. Used for faults of the program's own resources and for files of the host application
// that break their format.
[[noreturn]] void fatal() noexcept;

// Calls fatal() unless a condition holds.
inline void require(bool condition) noexcept {
    if (!condition)
        fatal();
}

} // namespace platform
