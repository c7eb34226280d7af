#pragma once

#include <cstdint>

// What the user chose to do with a transaction: Paid, Later with a number of days, Delete with or without the
// later occurrences, or Info.
class TodayTransactionAction final {
public:
    enum class Tag : std::uint8_t { Later = 0, Delete = 1, Valueless = 2 };

    static constexpr TodayTransactionAction Paid() { return {Tag::Valueless, 0}; }
    // Moves the occurrence to the start of the day that is a number of days after today.
    static constexpr TodayTransactionAction Later(std::int64_t days) { return {Tag::Later, days}; }
    // Deletes the occurrence and optionally all later occurrences of its plan.
    static constexpr TodayTransactionAction Delete(bool laterOccurrences) {
        return {Tag::Delete, laterOccurrences ? 1 : 0};
    }
    // Opens the occurrence in the host application. This action is not logged.
    static constexpr TodayTransactionAction Info() { return {Tag::Valueless, 1}; }

    [[nodiscard]] constexpr Tag tag() const { return tag_; }
    // Of Later the days; of Delete 1 with the later occurrences and 0 without; of Paid 0; of Info 1.
    [[nodiscard]] constexpr std::int64_t value() const { return value_; }

    [[nodiscard]] constexpr bool isPaid() const { return *this == Paid(); }
    [[nodiscard]] constexpr bool isInfo() const { return *this == Info(); }
    [[nodiscard]] constexpr bool isLater() const { return tag_ == Tag::Later; }
    [[nodiscard]] constexpr bool isDelete() const { return tag_ == Tag::Delete; }

    constexpr bool operator==(const TodayTransactionAction&) const = default;

private:
    constexpr TodayTransactionAction(Tag tag, std::int64_t value)
        : tag_(tag)
        , value_(value) {}

    Tag tag_;
    std::int64_t value_;
};
