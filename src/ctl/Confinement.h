#pragma once

#include "ctl/Report.h"
#include "platform/confinement/FileConfinement.h"

#include <system_error>

namespace ctl {

// Takes from this process, for good, all files but the given ones and those that any program reads, and the
// system calls that no command needs, so that a fault in what reads a container reaches nothing else of the
// user's (docs/security.md). Where a kernel lacks a part of it, that part is left out. Before there is a
// second thread.
[[nodiscard]] std::error_code confineProcess(const platform::AllowedFiles& files);

// Confines the process as its streams say. If that fails, says so and returns false: the command must read
// nothing then.
[[nodiscard]] bool confine(Streams& streams, const platform::AllowedFiles& files);

} // namespace ctl
