#pragma once

#include <cstdint>
#include <optional>
#include <string>
#include <string_view>

namespace bridge {

// An exact decimal number, units / 10^places. 12.50 and 12.5 differ, as they do on a bill.
struct Decimal {
    std::int64_t units = 0;
    int places = 0; // 0 to 18

    bool operator==(const Decimal&) const = default;
};

// The number of a text like "-1200.00" or "1e-05", with all the places that it is written with. Nothing where
// it is no number, or one that has no 64-bit units.
[[nodiscard]] std::optional<Decimal> decimalOfText(std::string_view text);

// The number of a fraction like "-1999/100" or "-151/2". Absent if the text is no fraction, or if the
// denominator divides no power of ten up to 10^18.
[[nodiscard]] std::optional<Decimal> decimalOfFraction(std::string_view text);

// The same number with another count of places, rounded half away from zero. Absent if its units do not fit
// into 64 bits.
[[nodiscard]] std::optional<Decimal> withPlaces(const Decimal& number, int places);

// A text like "-1200.00".
[[nodiscard]] std::string textOfDecimal(const Decimal& number);

} // namespace bridge
