#pragma once

#include "ctl/check/CheckedContainer.h"
#include "ctl/check/Finding.h"

namespace ctl {

// The files and folders themselves: who may write them and whose they are, links, and what writers have left.
void checkFiles(const CheckedContainer& container, Findings& findings);

} // namespace ctl
