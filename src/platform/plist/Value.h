#pragma once

#include <cstdint>
#include <memory>
#include <optional>
#include <string>
#include <string_view>
#include <utility>
#include <variant>
#include <vector>

// The values of a property list. A Value is a plain value: cheap to move, cheap to copy (containers are
// immutable and shared, so a list that names one container many times stays small), compared exactly: kinds
// are told apart (the integer 1 is neither the real 1.0 nor true), reals by their bits, so that a NaN equals
// itself.
//
// Texts are UTF-8; a lone surrogate of a UTF-16 source is kept in its three-byte form.
namespace platform::plist {

class Value;
struct ForeignDictionary;

using Array = std::vector<Value>;

// Key and value pairs in the order in which they were read or set; every key stands once.
class Dictionary final {
public:
    using Entry = std::pair<std::string, Value>;

    // The value of a key; none where the key is absent.
    [[nodiscard]] const Value* find(std::string_view key) const;
    [[nodiscard]] const std::vector<Entry>& entries() const { return entries_; }
    [[nodiscard]] std::size_t size() const;

    // Replaces the value of a key at its place, or appends the key.
    void set(std::string key, Value value);
    // Removes a key; does nothing where it is absent.
    void remove(std::string_view key);

    // Which of two entries with one key stays, at the place of the first of them.
    enum class Duplicates { KeepFirst, KeepLast };
    // A dictionary of many entries at once, in time n log n.
    static Dictionary fromEntries(std::vector<Entry> entries, Duplicates duplicates);

    friend bool operator==(const Dictionary& a, const Dictionary& b); // whatever the order of keys

private:
    std::vector<Entry> entries_;
};

// An integer from -2^63 to 2^64-1: the magnitude's two's complement bits, and whether it is above 2^63-1.
struct Integer {
    std::uint64_t bits = 0;
    bool isLarge = false; // bits is an unsigned number above 2^63-1; otherwise bits is a signed number's

    bool operator==(const Integer&) const = default;
};

struct Null {
    bool operator==(const Null&) const = default;
};

// An archive's reference number (binary form only).
struct Uid {
    std::uint64_t number = 0;
    bool operator==(const Uid&) const = default;
};

// Seconds since 2001-01-01 00:00 UTC, as the formats count them.
struct Date {
    double seconds = 0;
};

struct Data {
    std::string bytes;
    bool operator==(const Data&) const = default;
};

// A set (binary form only), its members in file order. No XML form.
struct Set {
    std::shared_ptr<const Array> members;
};

enum class Kind {
    Null,
    Boolean,
    Integer,
    Real,
    Date,
    Data,
    String,
    Array,
    Dictionary,
    Set,
    Uid,
    ForeignDictionary
};

class Value final {
public:
    Value() = default; // null
    explicit Value(bool value);
    explicit Value(std::int64_t value);
    explicit Value(Integer value);
    explicit Value(double value);
    explicit Value(Date value);
    explicit Value(Data value);
    explicit Value(std::string value);
    explicit Value(const char* value)
        : Value(std::string(value)) {}
    explicit Value(Array value);
    explicit Value(Dictionary value);
    explicit Value(Set value);
    explicit Value(Uid value);
    explicit Value(ForeignDictionary value);

    [[nodiscard]] Kind kind() const { return static_cast<Kind>(content_.index()); }

    // Each gives the content where the value is of that very kind, otherwise none.
    [[nodiscard]] const bool* boolean() const { return std::get_if<bool>(&content_); }
    [[nodiscard]] const Integer* integer() const { return std::get_if<Integer>(&content_); }
    [[nodiscard]] const double* real() const { return std::get_if<double>(&content_); }
    [[nodiscard]] const Date* date() const { return std::get_if<Date>(&content_); }
    [[nodiscard]] const Data* data() const { return pointee<Data>(); }
    [[nodiscard]] const std::string* string() const { return pointee<std::string>(); }
    [[nodiscard]] const Array* array() const { return pointee<Array>(); }
    [[nodiscard]] const Dictionary* dictionary() const { return pointee<Dictionary>(); }
    [[nodiscard]] const Set* set() const { return std::get_if<Set>(&content_); }
    [[nodiscard]] const Uid* uid() const { return std::get_if<Uid>(&content_); }
    [[nodiscard]] const ForeignDictionary* foreignDictionary() const { return pointee<ForeignDictionary>(); }

    // Whether other values have this one's array or dictionary for their own, so that it may stand somewhere
    // twice.
    [[nodiscard]] bool isShared() const;

    friend bool operator==(const Value& a, const Value& b);

private:
    // In the order of Kind.
    using Content =
        std::variant<Null, bool, Integer, double, Date, std::shared_ptr<const Data>,
                     std::shared_ptr<const std::string>, std::shared_ptr<const Array>,
                     std::shared_ptr<const Dictionary>, Set, Uid, std::shared_ptr<const ForeignDictionary>>;
    Content content_;

    template <typename T>
    [[nodiscard]] const T* pointee() const {
        const auto* const shared = std::get_if<std::shared_ptr<const T>>(&content_);
        return shared ? shared->get() : nullptr;
    }
};

inline std::size_t Dictionary::size() const {
    return entries_.size();
}

// A dictionary of the binary form with a key that is no string. It can be told apart and counted; no XML
// form.
struct ForeignDictionary {
    std::vector<std::pair<Value, Value>> entries; // every key stands once
};

// The nearest double.
[[nodiscard]] double doubleOf(Integer integer);

// What a reader of records is given where a number is asked for: the platform's numbers are integers, reals
// and booleans (1 and 0). An integer beyond 2^53 is rounded to the nearest double. Other kinds: none.
[[nodiscard]] std::optional<double> numberOf(const Value& value);

// Likewise for a truth value: a boolean, or a number, which is true when it is not zero (a NaN is true).
[[nodiscard]] std::optional<bool> truthOf(const Value& value);

} // namespace platform::plist
