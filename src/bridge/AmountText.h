#pragma once

#include "bridge/plans/Plan.h"

#include <string>

namespace bridge {

// The locale of amounts: LC_ALL, LC_MONETARY or LANG, the first that is set and not empty, as an ICU name.
[[nodiscard]] std::string amountLocale();

// A plan's amount as the list shows it, in a locale: with a minus for an expense, a plus for an income and no
// sign for a transfer, whatever the sign of the number; with all decimals of the number, and at least those
// of the currency. What is no currency of ISO 4217 stands where the locale has its own sign. Empty without an
// amount.
[[nodiscard]] std::string amountText(const Plan& plan, const std::string& locale);

} // namespace bridge
