#pragma once

#include "bridge/plans/Plan.h"

#include <optional>
#include <string>
#include <string_view>
#include <vector>

namespace bridge {

// Plans as JSON, and back: what the last sound reading of a file is kept as.
[[nodiscard]] std::string textOfPlans(const std::vector<Plan>& plans);

// Nothing where the text is not one that textOfPlans gives.
[[nodiscard]] std::optional<std::vector<Plan>> plansOfText(std::string_view text);

} // namespace bridge
