#include "platform/plist/Value.h"

#include <algorithm>
#include <bit>
#include <functional>
#include <numeric>

namespace platform::plist {

namespace {

bool sameBits(double a, double b) {
    return std::bit_cast<std::uint64_t>(a) == std::bit_cast<std::uint64_t>(b);
}

// Whether two contents are one, or equal.
template <typename T>
bool sameContent(const T* a, const T* b) {
    return a == b || *a == *b;
}

// Long keys that are one object are not compared byte by byte.
bool precedes(const Dictionary::Entry& a, const Dictionary::Entry& b) {
    return a.key != b.key && *a.key < *b.key;
}
bool haveSameKey(const Dictionary::Entry& a, const Dictionary::Entry& b) {
    return a.key == b.key || *a.key == *b.key;
}

// The places of the entries in the order of their keys, equal keys in the order in which they stand.
std::vector<std::size_t> orderOfKeys(const std::vector<Dictionary::Entry>& entries) {
    std::vector<std::size_t> order(entries.size());
    std::iota(order.begin(), order.end(), std::size_t{0});
    std::stable_sort(order.begin(), order.end(),
                     [&](std::size_t a, std::size_t b) { return precedes(entries[a], entries[b]); });
    return order;
}

} // namespace

Dictionary::Dictionary(std::vector<Entry> entries, Duplicates duplicates)
    : entries_(std::move(entries)) {
    if (std::adjacent_find(entries_.begin(), entries_.end(), std::not_fn(precedes)) == entries_.end())
        return; // as lists that programs write mostly are
    const std::vector<std::size_t> order = orderOfKeys(entries_);
    std::vector<std::size_t> dropped;
    for (std::size_t i = 0; i < order.size();) {
        std::size_t last = i;
        while (last + 1 < order.size() && haveSameKey(entries_[order[last + 1]], entries_[order[i]]))
            dropped.push_back(order[++last]);
        if (last != i && duplicates == Duplicates::KeepLast)
            entries_[order[i]].value = std::move(entries_[order[last]].value);
        i = last + 1;
    }
    if (dropped.empty())
        return;
    std::sort(dropped.begin(), dropped.end());
    std::size_t place = 0;
    std::erase_if(entries_,
                  [&](const Entry&) { return std::binary_search(dropped.begin(), dropped.end(), place++); });
}

std::size_t Dictionary::placeOf(std::string_view key) const {
    const auto found =
        std::find_if(entries_.begin(), entries_.end(), [&](const Entry& entry) { return *entry.key == key; });
    return static_cast<std::size_t>(found - entries_.begin());
}

const Value* Dictionary::find(std::string_view key) const {
    const std::size_t place = placeOf(key);
    return place < size() ? &entries_[place].value : nullptr;
}

void Dictionary::set(std::string_view key, Value value) {
    const std::size_t place = placeOf(key);
    if (place < size())
        entries_[place].value = std::move(value);
    else
        entries_.push_back({std::make_shared<const std::string>(key), std::move(value)});
}

void Dictionary::remove(std::string_view key) {
    const std::size_t place = placeOf(key);
    if (place < size())
        entries_.erase(entries_.begin() + static_cast<std::ptrdiff_t>(place));
}

bool operator==(const Dictionary& a, const Dictionary& b) {
    if (a.size() != b.size())
        return false;
    const std::vector<std::size_t> orderA = orderOfKeys(a.entries_);
    const std::vector<std::size_t> orderB = orderOfKeys(b.entries_);
    for (std::size_t i = 0; i < orderA.size(); ++i)
        if (a.keyAt(orderA[i]) != b.keyAt(orderB[i]) || a.valueAt(orderA[i]) != b.valueAt(orderB[i]))
            return false;
    return true;
}

Value::Value(Array value)
    : content_(std::make_shared<const Array>(std::move(value))) {}
Value::Value(Dictionary value)
    : content_(std::make_shared<const Dictionary>(std::move(value))) {}
Value::Value(ForeignDictionary value)
    : content_(std::make_shared<const ForeignDictionary>(std::move(value))) {}

bool Value::isShared() const {
    return std::visit(
        [](const auto& content) {
            if constexpr (requires { content.use_count(); })
                return content.use_count() > 1;
            else
                return false;
        },
        content_);
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
    case Kind::Uid:
        return *a.uid() == *b.uid();
    case Kind::String:
        return *a.string() == *b.string();
    case Kind::Data:
        return sameContent(a.data(), b.data());
    case Kind::Array:
        return sameContent(a.array(), b.array());
    case Kind::Dictionary:
        return sameContent(a.dictionary(), b.dictionary());
    case Kind::Set:
        return sameContent(a.set()->members.get(), b.set()->members.get());
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
