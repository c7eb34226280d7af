#pragma once

#include <algorithm>
#include <cstdint>

// How many transactions the widget shows: at most a given number, none, or all. Held as a tag and a value.
class TodayTransactionsCount final {
public:
    enum class Tag : std::uint8_t { Custom = 0, Valueless = 1 };

    static constexpr TodayTransactionsCount Custom(std::int64_t limit) { return {Tag::Custom, limit}; }
    static constexpr TodayTransactionsCount None() { return {Tag::Valueless, 0}; }
    static constexpr TodayTransactionsCount All() { return {Tag::Valueless, 1}; }

    [[nodiscard]] constexpr Tag tag() const { return tag_; }
    // Custom: the limit. None: 0, All: 1.
    [[nodiscard]] constexpr std::int64_t value() const { return value_; }

    [[nodiscard]] constexpr bool isCustom() const { return tag_ == Tag::Custom; }
    [[nodiscard]] constexpr bool isNone() const { return *this == None(); }
    [[nodiscard]] constexpr bool isAll() const { return *this == All(); }

    // The number to show out of those available. A negative limit yields itself; nobody makes one.
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
