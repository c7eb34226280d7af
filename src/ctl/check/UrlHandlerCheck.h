#pragma once

#include "ctl/check/Finding.h"

namespace ctl {

// Whether the desktop has an opener, and for it a program that answers the host application's URLs.
void checkUrlHandler(Findings& findings);

} // namespace ctl
