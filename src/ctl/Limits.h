#pragma once

namespace ctl {

// Makes the process meet its limits with a failure instead of a signal: a file that would grow beyond
// RLIMIT_FSIZE fails with EFBIG, and a lack of memory ends the process as reportNoMemory says, also where it
// is met in a function that may not throw.
void prepareForLimits();

// Says on standard error that there is not enough memory, without allocating any. Returns the exit status.
[[nodiscard]] int reportNoMemory() noexcept;

} // namespace ctl
