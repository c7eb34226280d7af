#pragma once

#include "ctl/check/CheckedContainer.h"
#include "ctl/check/Finding.h"

namespace ctl {

// The account's action log, and whether it could be appended to. Its absence is no fault.
void checkLog(const CheckedContainer& container, Findings& findings);

} // namespace ctl
