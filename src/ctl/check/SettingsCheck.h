#pragma once

#include "ctl/check/CheckedContainer.h"
#include "ctl/check/Finding.h"

namespace ctl {

// The shared settings, and the account's key in them. Their absence is no fault.
void checkSettings(const CheckedContainer& container, Findings& findings);

} // namespace ctl
