#pragma once

#include "platform/plist/Record.h"

#include <QString>

#include <array>
#include <cstddef>
#include <optional>
#include <string>
#include <string_view>

namespace exchange {

// The keys of a feed record, by their places in feedKeys.
enum class FeedKey : std::size_t {
    Date,    // number, seconds since 1970-01-01 00:00 UTC
    Name,    // string
    Image,   // string
    Amount,  // string
    Income,  // boolean or number
    Expense, // boolean or number
    Planpk,  // string
    Single   // boolean or number
};
inline constexpr std::array<std::string_view, 8> feedKeys = {"date",   "name",    "image",  "amount",
                                                             "income", "expense", "planpk", "single"};

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
    std::string_view key;   // one of feedKeys

    bool operator==(const FeedFault&) const = default;
};

// The fault in words, records counted from 1: `record 3: "amount" is missing`.
[[nodiscard]] std::string describe(const FeedFault& fault);

// One element of the feed's array, as a reader or an editor gives it. Values are checked when they are looked
// up and not before, so that a value that is not looked up may be absent or of any kind. The first lookup
// that fails sets the fault; a lookup that fails gives an empty value.
class FeedRecord final {
public:
    // The record must have been read with feedKeys.
    FeedRecord(const platform::plist::Record& record, std::size_t index);

    [[nodiscard]] double number(FeedKey key);
    [[nodiscard]] std::string_view string(FeedKey key); // UTF-8, valid until the next record is read
    [[nodiscard]] QString text(FeedKey key);
    [[nodiscard]] bool truth(FeedKey key);

    [[nodiscard]] const std::optional<FeedFault>& fault() const { return fault_; }

private:
    void fail(FeedFault::What what, FeedKey key);

    const platform::plist::Record& record_;
    std::size_t index_;
    std::optional<FeedFault> fault_;
};

} // namespace exchange
