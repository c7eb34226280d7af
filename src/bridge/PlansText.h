#pragma once

#include "bridge/plans/Plan.h"

#include <optional>
#include <string>
#include <string_view>
#include <vector>

namespace bridge {

// Plans as JSON, and back: what the last sound reading of a file is kept as.
[[nodiscard]] std::string textOfPlans(const std::vector<Plan>& plans);

// The plans of a text that textOfPlans has made. Absent for any other text.
[[nodiscard]] std::optional<std::vector<Plan>> plansOfText(std::string_view text);

} // namespace bridge
