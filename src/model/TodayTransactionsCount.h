#pragma once

#include <algorithm>
#include <cstdint>

// How many transactions the widget shows: at most a limit, none, or all.
class TodayTransactionsCount final {
public:
    enum class Tag : std::uint8_t { Custom = 0, Valueless = 1 };

    static constexpr TodayTransactionsCount Custom(std::int64_t limit) { return {Tag::Custom, limit}; }
    static constexpr TodayTransactionsCount None() { return {Tag::Valueless, 0}; }
    static constexpr TodayTransactionsCount All() { return {Tag::Valueless, 1}; }

    [[nodiscard]] constexpr Tag tag() const { return tag_; }
    // Of Custom the limit; of None 0; of All 1.
    [[nodiscard]] constexpr std::int64_t value() const { return value_; }

    [[nodiscard]] constexpr bool isCustom() const { return tag_ == Tag::Custom; }
    [[nodiscard]] constexpr bool isNone() const { return *this == None(); }
    [[nodiscard]] constexpr bool isAll() const { return *this == All(); }

    // The number of transactions to show if a number of them is available. A negative limit is returned
    // unchanged.
    [[nodiscard]] constexpr std::int64_t shownOutOf(std::int64_t available) const {
        if (isCustom())
            return std::min(value_, available);
        return isAll() ? available : 0;
    }

    constexpr bool operator==(const TodayTransactionsCount&) const = default;

private:
    constexpr TodayTransactionsCount(Tag tag, std::int64_t value)
        : tag_(tag)
        , value_(value) {}

    Tag tag_;
    std::int64_t value_;
};
