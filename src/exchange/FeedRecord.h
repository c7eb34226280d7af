#pragma once

#include "platform/plist/Value.h"

#include <QString>

#include <cstddef>
#include <optional>
#include <string>
#include <string_view>

namespace exchange {

// The keys of a feed record.
namespace feed {
inline constexpr std::string_view date = "date";       // number, seconds since 1970-01-01 00:00 UTC
inline constexpr std::string_view name = "name";       // string
inline constexpr std::string_view image = "image";     // string
inline constexpr std::string_view amount = "amount";   // string
inline constexpr std::string_view income = "income";   // boolean or number
inline constexpr std::string_view expense = "expense"; // boolean or number
inline constexpr std::string_view planpk = "planpk";   // string
inline constexpr std::string_view single = "single";   // boolean or number
} // namespace feed

// Why a feed cannot be used. The widget ends over it; the companion names it.
struct FeedFault {
    enum class What {
        NotADictionary,   // the record
        Missing,          // the key, in the record
        NotANumber,       // the key's value, in the record
        NotAString,       // likewise
        NotATruthValue,   // likewise
        DayCountOverflow, // of the settings; no record
        NoDate,           // the calendar yields none for today and the days added to it; no record
        Unreadable,       // no file, no property list, or no array; no record
    };

    What what = What::NotADictionary;
    std::size_t record = 0; // from 0
    std::string_view key;   // one of the names above

    bool operator==(const FeedFault&) const = default;
};

// The fault in words, records counted from 1: `record 3: "amount" is missing`.
[[nodiscard]] std::string describe(const FeedFault& fault);

// One element of the feed's array while it is looked at. Values are checked when they are looked up and not
// before, so what nobody asks for may be absent or of any kind. The first lookup that fails sets the fault;
// a lookup that fails gives an empty value.
class FeedRecord final {
public:
    FeedRecord(const platform::plist::Value& element, std::size_t index);

    [[nodiscard]] double number(std::string_view key);
    [[nodiscard]] std::string_view string(std::string_view key); // UTF-8, as long as the element lives
    [[nodiscard]] QString text(std::string_view key);
    [[nodiscard]] bool truth(std::string_view key);

    [[nodiscard]] const std::optional<FeedFault>& fault() const { return fault_; }

private:
    const platform::plist::Value* find(std::string_view key);
    void fail(FeedFault::What what, std::string_view key);

    const platform::plist::Dictionary* dictionary_;
    std::size_t index_;
    std::optional<FeedFault> fault_;
};

} // namespace exchange
