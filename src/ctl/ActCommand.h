#pragma once

#include "ctl/Options.h"
#include "ctl/Report.h"

namespace ctl {

// act PLANPK DATE paid | later DAYS | delete | delete-future | info: does to a transaction of the widget's
// list what the buttons and the action sheet do, through the same code. On a repeating plan, delete is the
// sheet's second choice and delete-future its first. Returns the exit status.
[[nodiscard]] int act(const Options& options, Streams& streams);

} // namespace ctl
