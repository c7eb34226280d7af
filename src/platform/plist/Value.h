#pragma once

#include <array>
#include <cstddef>
#include <cstdint>
#include <iterator>
#include <memory>
#include <new>
#include <optional>
#include <string>
#include <string_view>
#include <type_traits>
#include <utility>
#include <vector>

// The values of a property list. A Value is a plain value: cheap to move, cheap to copy (containers are
// immutable and shared, so a list that names one container many times stays small), compared exactly: kinds
// are told apart (the integer 1 is neither the real 1.0 nor true), reals by their bits, so that a NaN equals
// itself.
//
// Texts are UTF-8; a lone surrogate of a UTF-16 source is kept in its three-byte form.
namespace platform::plist {

class Value;
class Dictionary;
struct ForeignDictionary;

using Array = std::vector<Value>;

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
    explicit Value(bool value) { put(Kind::Boolean, value); }
    explicit Value(std::int64_t value)
        : Value(Integer{static_cast<std::uint64_t>(value), false}) {}
    explicit Value(Integer value) { put(Kind::Integer, value); }
    explicit Value(double value) { put(Kind::Real, value); }
    explicit Value(Date value) { put(Kind::Date, value); }
    explicit Value(Data value);
    explicit Value(std::string_view value);
    explicit Value(std::string value);
    explicit Value(const char* value)
        : Value(std::string_view(value)) {}
    explicit Value(Array value);
    explicit Value(Dictionary value);
    explicit Value(Set value);
    explicit Value(Uid value) { put(Kind::Uid, value); }
    explicit Value(ForeignDictionary value);

    Value(const Value& other) { copyFrom(other); }
    Value(Value&& other) noexcept { moveFrom(other); }
    Value& operator=(const Value& other) {
        if (this != &other) {
            release();
            copyFrom(other);
        }
        return *this;
    }
    Value& operator=(Value&& other) noexcept {
        if (this != &other) {
            release();
            moveFrom(other);
        }
        return *this;
    }
    ~Value() { release(); }

    [[nodiscard]] Kind kind() const { return tag() >= shortText ? Kind::String : static_cast<Kind>(tag()); }

    // Each gives the content where the value is of that very kind, otherwise none.
    [[nodiscard]] const bool* boolean() const { return own<bool>(Kind::Boolean); }
    [[nodiscard]] const Integer* integer() const { return own<Integer>(Kind::Integer); }
    [[nodiscard]] const double* real() const { return own<double>(Kind::Real); }
    [[nodiscard]] const Date* date() const { return own<Date>(Kind::Date); }
    [[nodiscard]] const Data* data() const { return pointee<Data>(Kind::Data); }
    [[nodiscard]] std::optional<std::string_view> string() const {
        if (tag() >= shortText)
            return std::string_view(bytes_.data(), tag() - shortText);
        const auto* const text = pointee<std::string>(Kind::String);
        return text ? std::optional<std::string_view>(*text) : std::nullopt;
    }
    [[nodiscard]] const Array* array() const { return pointee<Array>(Kind::Array); }
    [[nodiscard]] const Dictionary* dictionary() const { return pointee<Dictionary>(Kind::Dictionary); }
    [[nodiscard]] const Set* set() const { return pointee<Set>(Kind::Set); }
    [[nodiscard]] const Uid* uid() const { return own<Uid>(Kind::Uid); }
    [[nodiscard]] const ForeignDictionary* foreignDictionary() const {
        return pointee<ForeignDictionary>(Kind::ForeignDictionary);
    }

    // Whether other values have this one's array or dictionary for their own, so that it may stand somewhere
    // twice.
    [[nodiscard]] bool isShared() const {
        return (tag() == static_cast<unsigned char>(Kind::Array) ||
                tag() == static_cast<unsigned char>(Kind::Dictionary)) &&
               shared().use_count() > 1;
    }

    friend bool operator==(const Value& a, const Value& b);

private:
    // Three words. The last byte tells what the others hold: from shortText on that many characters of a
    // text, otherwise by its kind a number, or a content that copies of the value share.
    using Shared = std::shared_ptr<const void>;
    static constexpr std::size_t size = 24;
    static constexpr unsigned char shortText = 16;
    static constexpr std::size_t longestShortText = size - 1;

    [[nodiscard]] unsigned char tag() const { return static_cast<unsigned char>(bytes_.back()); }
    void setTag(unsigned char tag) { bytes_.back() = static_cast<char>(tag); }
    [[nodiscard]] bool ownsShared() const {
        constexpr auto bit = [](Kind kind) { return std::uint64_t{1} << static_cast<unsigned>(kind); };
        constexpr std::uint64_t owners = bit(Kind::Data) | bit(Kind::String) | bit(Kind::Array) |
                                         bit(Kind::Dictionary) | bit(Kind::Set) |
                                         bit(Kind::ForeignDictionary);
        return (owners >> tag() & 1U) != 0;
    }
    template <typename T>
    void put(Kind kind, T value) {
        static_assert(std::is_trivially_copyable_v<T> && sizeof(T) < size);
        new (bytes_.data()) T(value);
        setTag(static_cast<unsigned char>(kind));
    }
    void putShortText(std::string_view text) {
        text.copy(bytes_.data(), text.size());
        setTag(static_cast<unsigned char>(shortText + text.size()));
    }
    template <typename T>
    void share(Kind kind, T&& content) {
        new (bytes_.data()) Shared(std::make_shared<const std::decay_t<T>>(std::forward<T>(content)));
        setTag(static_cast<unsigned char>(kind));
    }
    template <typename T>
    [[nodiscard]] const T* own(Kind kind) const {
        return tag() == static_cast<unsigned char>(kind)
                   ? std::launder(reinterpret_cast<const T*>(bytes_.data()))
                   : nullptr;
    }
    template <typename T>
    [[nodiscard]] const T* pointee(Kind kind) const {
        return tag() == static_cast<unsigned char>(kind) ? static_cast<const T*>(shared().get()) : nullptr;
    }
    [[nodiscard]] const Shared& shared() const {
        return *std::launder(reinterpret_cast<const Shared*>(bytes_.data()));
    }
    [[nodiscard]] Shared& shared() { return *std::launder(reinterpret_cast<Shared*>(bytes_.data())); }

    void copyFrom(const Value& other) {
        bytes_ = other.bytes_;
        if (ownsShared())
            new (bytes_.data()) Shared(other.shared());
    }
    // Leaves null where the content is one that values share.
    void moveFrom(Value& other) {
        bytes_ = other.bytes_;
        if (!ownsShared())
            return;
        new (bytes_.data()) Shared(std::move(other.shared()));
        other.release();
        other.setTag(static_cast<unsigned char>(Kind::Null));
    }
    void release() {
        if (ownsShared())
            shared().~Shared();
    }

    alignas(std::uint64_t) std::array<char, size> bytes_{};
};
static_assert(sizeof(std::shared_ptr<const void>) < sizeof(Value));

// Keys and values in the order in which they were read or set; every key stands once.
class Dictionary final {
public:
    using Keys = std::vector<std::string>;

    Dictionary() = default;
    // As many values as keys, which are all different. Dictionaries may share their keys, as those of one
    // list do that have the same ones.
    Dictionary(std::shared_ptr<const Keys> keys, std::vector<Value> values);
    // Which of two entries with one key stays, at the place of the first of them.
    enum class Duplicates { KeepFirst, KeepLast };
    // Likewise of keys among which may be equal ones, in time n log n.
    static Dictionary fromKeysAndValues(Keys keys, std::vector<Value> values, Duplicates duplicates);

    // The value of a key; none where the key is absent.
    [[nodiscard]] const Value* find(std::string_view key) const;
    [[nodiscard]] std::size_t size() const { return values_.size(); }
    [[nodiscard]] const std::string& keyAt(std::size_t place) const { return (*keys_)[place]; }
    [[nodiscard]] const Value& valueAt(std::size_t place) const { return values_[place]; }
    // None where there is no entry.
    [[nodiscard]] const std::shared_ptr<const Keys>& keys() const { return keys_; }

    // Over pairs of a key and its value.
    class Iterator;
    [[nodiscard]] Iterator begin() const;
    [[nodiscard]] Iterator end() const;

    // Replaces the value of a key at its place, or appends the key.
    void set(std::string_view key, Value value);
    // Removes a key; does nothing where it is absent.
    void remove(std::string_view key);

    friend bool operator==(const Dictionary& a, const Dictionary& b); // whatever the order of keys

private:
    [[nodiscard]] std::size_t placeOf(std::string_view key) const;

    std::shared_ptr<const Keys> keys_;
    std::vector<Value> values_;
};

class Dictionary::Iterator final {
public:
    using value_type = std::pair<const std::string&, const Value&>;
    using reference = value_type;
    using pointer = void;
    using difference_type = std::ptrdiff_t;
    using iterator_category = std::input_iterator_tag;

    Iterator(const Dictionary& dictionary, std::size_t place)
        : dictionary_(&dictionary)
        , place_(place) {}
    reference operator*() const { return {dictionary_->keyAt(place_), dictionary_->valueAt(place_)}; }
    Iterator& operator++() {
        ++place_;
        return *this;
    }
    bool operator==(const Iterator& other) const { return place_ == other.place_; }

private:
    const Dictionary* dictionary_;
    std::size_t place_;
};

inline Dictionary::Iterator Dictionary::begin() const {
    return {*this, 0};
}
inline Dictionary::Iterator Dictionary::end() const {
    return {*this, size()};
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
