#pragma once

namespace platform {

// Ends the process at once by SIGABRT, with nothing printed and no core file asked for: the answer to faults
// of the bundle and to files that break the contract. No destructor and no exit handler runs.
[[noreturn]] void fatal() noexcept;

// The same where a condition does not hold.
inline void require(bool condition) noexcept {
    if (!condition)
        fatal();
}

} // namespace platform
