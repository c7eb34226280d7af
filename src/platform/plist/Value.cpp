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

// The entries' numbers in the order of their keys, equal keys in the order in which they stand.
std::vector<std::size_t> orderByKey(const std::vector<Dictionary::Entry>& entries) {
    std::vector<std::size_t> order(entries.size());
    std::iota(order.begin(), order.end(), std::size_t{0});
    std::stable_sort(order.begin(), order.end(),
                     [&](std::size_t a, std::size_t b) { return entries[a].first < entries[b].first; });
    return order;
}

bool hasDuplicates(const std::vector<Dictionary::Entry>& entries) {
    for (std::size_t i = 1; i < entries.size(); ++i)
        for (std::size_t j = 0; j < i; ++j)
            if (entries[i].first == entries[j].first)
                return true;
    return false;
}

// Below this many entries, comparing every pair is quicker than sorting.
constexpr std::size_t fewEntries = 24;

} // namespace

const Value* Dictionary::find(std::string_view key) const {
    for (const Entry& entry : entries_)
        if (entry.first == key)
            return &entry.second;
    return nullptr;
}

void Dictionary::set(std::string key, Value value) {
    for (Entry& entry : entries_)
        if (entry.first == key) {
            entry.second = std::move(value);
            return;
        }
    entries_.emplace_back(std::move(key), std::move(value));
}

void Dictionary::remove(std::string_view key) {
    std::erase_if(entries_, [&](const Entry& entry) { return entry.first == key; });
}

Dictionary Dictionary::fromEntries(std::vector<Entry> entries, Duplicates duplicates) {
    Dictionary result;
    if (entries.size() <= fewEntries && !hasDuplicates(entries)) {
        result.entries_ = std::move(entries);
        return result;
    }
    const std::vector<std::size_t> order = orderByKey(entries);
    std::vector<bool> dropped(entries.size(), false);
    for (std::size_t i = 0; i < order.size();) {
        std::size_t last = i;
        while (last + 1 < order.size() && entries[order[last + 1]].first == entries[order[i]].first)
            dropped[order[++last]] = true;
        if (last != i && duplicates == Duplicates::KeepLast)
            entries[order[i]].second = std::move(entries[order[last]].second);
        i = last + 1;
    }
    result.entries_.reserve(entries.size());
    for (std::size_t i = 0; i < entries.size(); ++i)
        if (!dropped[i])
            result.entries_.push_back(std::move(entries[i]));
    return result;
}

bool operator==(const Dictionary& a, const Dictionary& b) {
    if (a.entries_.size() != b.entries_.size())
        return false;
    if (a.entries_ == b.entries_)
        return true;
    const std::vector<std::size_t> orderA = orderByKey(a.entries_);
    const std::vector<std::size_t> orderB = orderByKey(b.entries_);
    for (std::size_t i = 0; i < orderA.size(); ++i)
        if (a.entries_[orderA[i]] != b.entries_[orderB[i]])
            return false;
    return true;
}

Value::Value(bool value)
    : content_(value) {}
Value::Value(std::int64_t value)
    : content_(Integer{static_cast<std::uint64_t>(value), false}) {}
Value::Value(Integer value)
    : content_(value) {}
Value::Value(double value)
    : content_(value) {}
Value::Value(Date value)
    : content_(value) {}
Value::Value(Data value)
    : content_(std::make_shared<const Data>(std::move(value))) {}
Value::Value(std::string value)
    : content_(std::make_shared<const std::string>(std::move(value))) {}
Value::Value(Array value)
    : content_(std::make_shared<const Array>(std::move(value))) {}
Value::Value(Dictionary value)
    : content_(std::make_shared<const Dictionary>(std::move(value))) {}
Value::Value(Set value)
    : content_(std::move(value)) {}
Value::Value(Uid value)
    : content_(value) {}
Value::Value(ForeignDictionary value)
    : content_(std::make_shared<const ForeignDictionary>(std::move(value))) {}

bool Value::isShared() const {
    if (const auto* array = std::get_if<std::shared_ptr<const Array>>(&content_))
        return array->use_count() > 1;
    const auto* const dictionary = std::get_if<std::shared_ptr<const Dictionary>>(&content_);
    return dictionary && dictionary->use_count() > 1;
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
        return a.string() == b.string() || *a.string() == *b.string();
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
