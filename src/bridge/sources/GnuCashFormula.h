#pragma once

#include "bridge/plans/Decimal.h"

#include <optional>
#include <string_view>

namespace bridge {

// The value of an arithmetic formula of a GnuCash plan ("100.50 + 2 * 3"): numbers, + - * / and parentheses,
// rounded half away from zero only at the end. Nothing where it has names, is no formula, does not fit into
// 64 bits, or can be read in two ways: "1.234" is a thousand in some languages and the file does not say in
// which it was written.
[[nodiscard]] std::optional<Decimal> valueOfFormula(std::string_view formula, int places);

} // namespace bridge
