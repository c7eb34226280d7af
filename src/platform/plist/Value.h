#pragma once

#include <cstddef>
#include <cstdint>
#include <iterator>
#include <memory>
#include <optional>
#include <string>
#include <string_view>
#include <utility>
#include <variant>
#include <vector>

// The values of a property list. A Value is a plain value: strings, data and containers are immutable and
// shared by copies, so that a list that names one of them many times stays small. Values are compared
// exactly: kinds are told apart (the integer 1 is neither the real 1.0 nor true), and reals by their bits, so
// that a NaN equals itself.
//
// Strings are UTF-8; a lone surrogate of a UTF-16 source is kept in its three-byte form.
namespace platform::plist {

class Value;
class Dictionary;
struct ForeignDictionary;

using Array = std::vector<Value>;
using SharedString = std::shared_ptr<const std::string>;

struct Null {
    bool operator==(const Null&) const = default;
};

// An integer from -2^63 to 2^64-1.
struct Integer {
    std::uint64_t bits = 0;
    bool isLarge = false; // bits is an unsigned number above 2^63-1; otherwise bits is a signed number's

    bool operator==(const Integer&) const = default;
};

// Seconds since 2001-01-01 00:00 UTC, as the formats count them.
struct Date {
    double seconds = 0;
};

// An archive's reference number (binary form only).
struct Uid {
    std::uint64_t number = 0;
    bool operator==(const Uid&) const = default;
};

struct Data {
    std::string bytes;
    bool operator==(const Data&) const = default;
};

// A set (binary form only), its members in file order. The XML form has none.
struct Set {
    std::shared_ptr<const Array> members;
};

// In the order of the alternatives of a value's content.
enum class Kind {
    Null,
    Boolean,
    Integer,
    Real,
    Date,
    Uid,
    String,
    Data,
    Array,
    Dictionary,
    Set,
    ForeignDictionary
};

class Value final {
public:
    Value() = default; // null
    explicit Value(bool value)
        : content_(value) {}
    explicit Value(std::int64_t value)
        : Value(Integer{static_cast<std::uint64_t>(value), false}) {}
    explicit Value(Integer value)
        : content_(value) {}
    explicit Value(double value)
        : content_(value) {}
    explicit Value(Date value)
        : content_(value) {}
    explicit Value(Uid value)
        : content_(value) {}
    explicit Value(const char* value)
        : Value(std::string(value)) {}
    explicit Value(std::string_view value)
        : Value(std::string(value)) {}
    explicit Value(std::string value)
        : content_(std::make_shared<const std::string>(std::move(value))) {}
    explicit Value(SharedString value) // not null
        : content_(std::move(value)) {}
    explicit Value(Data value)
        : content_(std::make_shared<const Data>(std::move(value))) {}
    explicit Value(Array value);
    explicit Value(Dictionary value);
    explicit Value(Set value)
        : content_(std::move(value)) {}
    explicit Value(ForeignDictionary value);

    [[nodiscard]] Kind kind() const { return static_cast<Kind>(content_.index()); }

    // Each gives the content where the value is of that very kind, otherwise null or nothing.
    [[nodiscard]] const bool* boolean() const { return std::get_if<bool>(&content_); }
    [[nodiscard]] const Integer* integer() const { return std::get_if<Integer>(&content_); }
    [[nodiscard]] const double* real() const { return std::get_if<double>(&content_); }
    [[nodiscard]] const Date* date() const { return std::get_if<Date>(&content_); }
    [[nodiscard]] const Uid* uid() const { return std::get_if<Uid>(&content_); }
    [[nodiscard]] std::optional<std::string_view> string() const {
        const std::string* const string = pointee<std::string>();
        return string ? std::optional<std::string_view>(*string) : std::nullopt;
    }
    [[nodiscard]] const Data* data() const { return pointee<Data>(); }
    [[nodiscard]] const Array* array() const { return pointee<Array>(); }
    [[nodiscard]] const Dictionary* dictionary() const { return pointee<Dictionary>(); }
    [[nodiscard]] const Set* set() const { return std::get_if<Set>(&content_); }
    [[nodiscard]] const ForeignDictionary* foreignDictionary() const { return pointee<ForeignDictionary>(); }

    // The string itself, which other values and keys may share; null for another kind.
    [[nodiscard]] SharedString sharedString() const {
        const SharedString* const string = std::get_if<SharedString>(&content_);
        return string ? *string : nullptr;
    }

    // Whether other values or keys have the same content, so that it may stand somewhere twice.
    [[nodiscard]] bool isShared() const;

    friend bool operator==(const Value& a, const Value& b);

private:
    template <typename T>
    using Shared = std::shared_ptr<const T>;

    template <typename T>
    [[nodiscard]] const T* pointee() const {
        const Shared<T>* const content = std::get_if<Shared<T>>(&content_);
        return content ? content->get() : nullptr;
    }

    std::variant<Null, bool, Integer, double, Date, Uid, SharedString, Shared<Data>, Shared<Array>,
                 Shared<Dictionary>, Set, Shared<ForeignDictionary>>
        content_;
};

// Keys and values in the order in which they were read or set; every key stands once.
class Dictionary final {
public:
    struct Entry {
        SharedString key; // never null
        Value value;
    };
    // Which of several entries with one key stays, at the place of the first of them.
    enum class Duplicates { KeepFirst, KeepLast };

    Dictionary() = default;
    // Keys among the entries may be equal. Takes time n log n.
    Dictionary(std::vector<Entry> entries, Duplicates duplicates);

    // The value of a key; null where the key is absent.
    [[nodiscard]] const Value* find(std::string_view key) const;
    [[nodiscard]] std::size_t size() const { return entries_.size(); }
    [[nodiscard]] const std::string& keyAt(std::size_t place) const { return *entries_[place].key; }
    [[nodiscard]] const Value& valueAt(std::size_t place) const { return entries_[place].value; }

    // Over pairs of a key and its value.
    class Iterator;
    [[nodiscard]] Iterator begin() const;
    [[nodiscard]] Iterator end() const;

    // Replaces the value of a key at its place, or appends the key.
    void set(std::string_view key, Value value);
    // Removes a key. An absent key is no error.
    void remove(std::string_view key);

    friend bool operator==(const Dictionary& a, const Dictionary& b); // whatever the order of keys

private:
    [[nodiscard]] std::size_t placeOf(std::string_view key) const;

    std::vector<Entry> entries_;
};

class Dictionary::Iterator final {
public:
    using value_type = std::pair<const std::string&, const Value&>;
    using reference = value_type;
    using pointer = void;
    using difference_type = std::ptrdiff_t;
    using iterator_category = std::input_iterator_tag;

    explicit Iterator(const Entry* entry)
        : entry_(entry) {}
    reference operator*() const { return {*entry_->key, entry_->value}; }
    Iterator& operator++() {
        ++entry_;
        return *this;
    }
    bool operator==(const Iterator& other) const = default;

private:
    const Entry* entry_;
};

inline Dictionary::Iterator Dictionary::begin() const {
    return Iterator(entries_.data());
}
inline Dictionary::Iterator Dictionary::end() const {
    return Iterator(entries_.data() + entries_.size());
}

// A dictionary of the binary form with a key that is no string. It can be told apart and counted; the XML
// form has none.
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
