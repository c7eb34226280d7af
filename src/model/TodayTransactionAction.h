#pragma once

#include <cstdint>

// What the user chose to do with a transaction: one of four cases, two of which carry a value. Held as a tag
// and a value.
class TodayTransactionAction final {
public:
    enum class Tag : std::uint8_t { Later = 0, Delete = 1, Valueless = 2 };

    static constexpr TodayTransactionAction Paid() { return {Tag::Valueless, 0}; }
    // Move the occurrence to the start of the day that lies this many days after today.
    static constexpr TodayTransactionAction Later(std::int64_t days) { return {Tag::Later, days}; }
    // Delete the occurrence and, when asked to, every later one of the same plan.
    static constexpr TodayTransactionAction Delete(bool laterOccurrences) {
        return {Tag::Delete, laterOccurrences ? 1 : 0};
    }
    // Open the occurrence in the host application; never logged.
    static constexpr TodayTransactionAction Info() { return {Tag::Valueless, 1}; }

    [[nodiscard]] constexpr Tag tag() const { return tag_; }
    // Later: days. Delete: 1 for the later occurrences too, otherwise 0. Paid: 0, Info: 1.
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
