#pragma once

#include "platform/plist/ExpandedSize.h"

#include <cstddef>

namespace ctl {

// How much of a list may be printed. A binary list of a few hundred bytes can name the same contents so often
// that they fill any disk once each place has a copy of its own. What is printed may therefore grow to eight
// mebibytes and in addition sixteen times the distinct contents (platform/plist/ExpandedSize.h), by its
// estimate of the size: no bound for a list that shares nothing, however long it is.
class PrintBudget final {
public:
    // Whether a value may be printed in addition to those that this budget has granted. It takes the value's
    // size from the budget only then, so that a value after one that is too large is still granted. Takes
    // time in proportion to the distinct contents. The values must stay unchanged while the budget is used,
    // because contents are told apart by their addresses.
    [[nodiscard]] bool grants(const platform::plist::Value& value);

private:
    platform::plist::ExpandedSize seen_; // of all values, granted or not
    std::size_t granted_ = 0;
};

// Whether a value alone may be printed.
[[nodiscard]] bool isPrintable(const platform::plist::Value& value);

} // namespace ctl
