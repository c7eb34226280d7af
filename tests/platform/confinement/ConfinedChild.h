#pragma once

#include <functional>
#include <string>
#include <system_error>

namespace support {

// Confines a process made for it, has it attempt something, and returns the name of the error ("EACCES"), or
// "done". An attempt returns 0 or -1 with errno, as system calls do. A confinement that fails is "not
// confined"; a process that is killed is "killed".
[[nodiscard]] std::string inConfinedChild(const std::function<std::error_code()>& confine,
                                          const std::function<long()>& attempt);

// Attempts: reading a whole file, and what an operation has come to.
[[nodiscard]] long readWholeFile(const std::string& path);
[[nodiscard]] long asCall(const std::error_code& result);

} // namespace support
