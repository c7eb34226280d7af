#include "platform/plist/Value.h"

#include <algorithm>
#include <bit>
#include <cmath>
#include <numeric>

namespace platform::plist {

namespace {

bool sameBits(double a, double b) {
    return std::bit_cast<std::uint64_t>(a) == std::bit_cast<std::uint64_t>(b);
}

template <typename T>
bool sameContent(const std::shared_ptr<const T>& a, const std::shared_ptr<const T>& b) {
    return a == b || *a == *b;
}

// The places of keys in their order, equal keys in the order in which they stand.
std::vector<std::size_t> orderOf(const Dictionary::Keys& keys) {
    std::vector<std::size_t> order(keys.size());
    std::iota(order.begin(), order.end(), std::size_t{0});
    std::stable_sort(order.begin(), order.end(),
                     [&](std::size_t a, std::size_t b) { return keys[a] < keys[b]; });
    return order;
}

bool hasDuplicates(const Dictionary::Keys& keys) {
    // Below this many keys, comparing every pair is quicker than sorting.
    constexpr std::size_t few = 24;
    if (keys.size() > few) {
        const std::vector<std::size_t> order = orderOf(keys);
        return std::adjacent_find(order.begin(), order.end(), [&](std::size_t a, std::size_t b) {
                   return keys[a] == keys[b];
               }) != order.end();
    }
    for (std::size_t i = 1; i < keys.size(); ++i)
        for (std::size_t j = 0; j < i; ++j)
            if (keys[i] == keys[j])
                return true;
    return false;
}

// Leaves each key once, at its first place, with its first value or its last.
void dropDuplicates(Dictionary::Keys& keys, std::vector<Value>& values, Dictionary::Duplicates duplicates) {
    const std::vector<std::size_t> order = orderOf(keys);
    std::vector<bool> isDropped(keys.size(), false);
    for (std::size_t i = 0; i < order.size();) {
        std::size_t last = i;
        while (last + 1 < order.size() && keys[order[last + 1]] == keys[order[i]])
            isDropped[order[++last]] = true;
        if (last != i && duplicates == Dictionary::Duplicates::KeepLast)
            values[order[i]] = std::move(values[order[last]]);
        i = last + 1;
    }
    std::size_t kept = 0;
    for (std::size_t i = 0; i < keys.size(); ++i) {
        if (isDropped[i])
            continue;
        if (kept != i) {
            keys[kept] = std::move(keys[i]);
            values[kept] = std::move(values[i]);
        }
        ++kept;
    }
    keys.resize(kept);
    values.resize(kept);
}

} // namespace

Dictionary::Dictionary(std::shared_ptr<const Keys> keys, std::vector<Value> values)
    : keys_(std::move(keys))
    , values_(std::move(values)) {}

Dictionary Dictionary::fromKeysAndValues(Keys keys, std::vector<Value> values, Duplicates duplicates) {
    if (keys.empty())
        return {};
    if (hasDuplicates(keys))
        dropDuplicates(keys, values, duplicates);
    return {std::make_shared<const Keys>(std::move(keys)), std::move(values)};
}

// The number of keys for one that is absent.
std::size_t Dictionary::placeOf(std::string_view key) const {
    std::size_t place = 0;
    while (place < values_.size() && keyAt(place) != key)
        ++place;
    return place;
}

const Value* Dictionary::find(std::string_view key) const {
    const std::size_t place = placeOf(key);
    return place < size() ? &values_[place] : nullptr;
}

void Dictionary::set(std::string_view key, Value value) {
    const std::size_t place = placeOf(key);
    if (place < size()) {
        values_[place] = std::move(value);
        return;
    }
    auto keys = keys_ ? std::make_shared<Keys>(*keys_) : std::make_shared<Keys>();
    keys->emplace_back(key);
    keys_ = std::move(keys);
    values_.push_back(std::move(value));
}

void Dictionary::remove(std::string_view key) {
    const std::size_t place = placeOf(key);
    if (place == size())
        return;
    auto keys = std::make_shared<Keys>(*keys_);
    keys->erase(keys->begin() + static_cast<std::ptrdiff_t>(place));
    keys_ = std::move(keys);
    values_.erase(values_.begin() + static_cast<std::ptrdiff_t>(place));
}

bool operator==(const Dictionary& a, const Dictionary& b) {
    if (a.size() != b.size())
        return false;
    if (a.size() == 0)
        return true;
    if (a.keys_ == b.keys_ || *a.keys_ == *b.keys_)
        return a.values_ == b.values_;
    const std::vector<std::size_t> orderA = orderOf(*a.keys_);
    const std::vector<std::size_t> orderB = orderOf(*b.keys_);
    for (std::size_t i = 0; i < orderA.size(); ++i)
        if (a.keyAt(orderA[i]) != b.keyAt(orderB[i]) || a.valueAt(orderA[i]) != b.valueAt(orderB[i]))
            return false;
    return true;
}

Value::Value(Data value) {
    share(Kind::Data, std::move(value));
}
Value::Value(std::string_view value) {
    if (value.size() > longestShortText)
        share(Kind::String, std::string(value));
    else
        putShortText(value);
}
Value::Value(std::string value) {
    if (value.size() > longestShortText)
        share(Kind::String, std::move(value));
    else
        putShortText(value);
}
Value::Value(Array value) {
    share(Kind::Array, std::move(value));
}
Value::Value(Dictionary value) {
    share(Kind::Dictionary, std::move(value));
}
Value::Value(Set value) {
    share(Kind::Set, std::move(value));
}
Value::Value(ForeignDictionary value) {
    share(Kind::ForeignDictionary, std::move(value));
}

bool operator==(const Value& a, const Value& b) {
    if (a.kind() != b.kind())
        return false;
    switch (a.kind()) {
    case Kind::Null:
        return true;
    case Kind::Boolean:
        return *a.boolean() == *b.boolean();
    case Kind::Integer:
        return *a.integer() == *b.integer();
    case Kind::Real:
        return sameBits(*a.real(), *b.real());
    case Kind::Date:
        return sameBits(a.date()->seconds, b.date()->seconds);
    case Kind::Data:
        return a.data() == b.data() || *a.data() == *b.data();
    case Kind::String:
        return *a.string() == *b.string();
    case Kind::Array:
        return a.array() == b.array() || *a.array() == *b.array();
    case Kind::Dictionary:
        return a.dictionary() == b.dictionary() || *a.dictionary() == *b.dictionary();
    case Kind::Set:
        return sameContent(a.set()->members, b.set()->members);
    case Kind::Uid:
        return *a.uid() == *b.uid();
    case Kind::ForeignDictionary:
        return a.foreignDictionary()->entries == b.foreignDictionary()->entries;
    }
    return false;
}

double doubleOf(Integer integer) {
    return integer.isLarge ? static_cast<double>(integer.bits)
                           : static_cast<double>(static_cast<std::int64_t>(integer.bits));
}

std::optional<double> numberOf(const Value& value) {
    if (const double* real = value.real())
        return *real;
    if (const Integer* integer = value.integer())
        return doubleOf(*integer);
    if (const bool* boolean = value.boolean())
        return *boolean ? 1.0 : 0.0;
    return std::nullopt;
}

std::optional<bool> truthOf(const Value& value) {
    const std::optional<double> number = numberOf(value);
    if (!number)
        return std::nullopt;
    return *number != 0.0; // true for a NaN too
}

} // namespace platform::plist
