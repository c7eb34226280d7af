#pragma once

#include "ctl/check/CheckedContainer.h"
#include "ctl/check/FeedCheck.h"
#include "ctl/check/Finding.h"

namespace ctl {

// The icons that the feed names, in the folder of the account.
void checkIcons(const CheckedContainer& container, const IconUses& uses, Findings& findings);

} // namespace ctl
