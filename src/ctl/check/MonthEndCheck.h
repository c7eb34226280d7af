#pragma once

#include "ctl/check/CheckedContainer.h"
#include "ctl/check/Finding.h"

namespace ctl {

// The days ahead: a count or a calendar that ends the panel, and a count that leaves this month, within which
// the days are counted on purpose.
void checkDays(const CheckedContainer& container, Findings& findings);

} // namespace ctl
