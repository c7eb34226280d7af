#pragma once

#include "ctl/check/CheckedContainer.h"
#include "ctl/check/Finding.h"

#include <cstddef>
#include <map>
#include <string>

namespace ctl {

// Where an icon is named first, preferably by a record that is shown.
struct IconUse {
    std::size_t record = 0; // from 1
    bool isShown = false;   // due within the days that are shown
};
using IconUses = std::map<std::string, IconUse>; // by name

// The feed, record by record, and whether it could be rewritten. Gives the icons that it names.
[[nodiscard]] IconUses checkFeed(const CheckedContainer& container, Findings& findings);

} // namespace ctl
