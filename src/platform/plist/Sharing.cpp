#include "platform/plist/Sharing.h"

#include <algorithm>
#include <limits>
#include <unordered_map>

namespace platform::plist {

namespace {

constexpr std::size_t largestSize = std::numeric_limits<std::size_t>::max() / 2;
constexpr std::size_t sizeOfTags = 24; // of a value and its key, with tabs
constexpr std::size_t sizeOfNumber = 24;

class SizeEstimate final {
public:
    // The expanded size; the distinct one is added up on the way.
    std::size_t of(const Value& value) {
        if (const Array* array = value.array())
            return shared(array, [&] { return ofElements(*array); });
        if (const Dictionary* dictionary = value.dictionary())
            return shared(dictionary, [&] { return ofEntries(*dictionary); });
        const std::size_t size = sizeOfTags + contentOf(value);
        distinct_ += size;
        return size;
    }
    [[nodiscard]] std::size_t distinct() const { return distinct_; }

private:
    static std::size_t contentOf(const Value& value) {
        if (const std::string* string = value.string())
            return string->size();
        if (const Data* data = value.data())
            return data->bytes.size() * 2;
        return value.kind() == Kind::Boolean ? 0 : sizeOfNumber;
    }

    static std::size_t add(std::size_t a, std::size_t b) { return std::min(a + b, largestSize); }

    std::size_t ofElements(const Array& array) {
        std::size_t size = sizeOfTags;
        for (const Value& element : array)
            size = add(size, of(element));
        return size;
    }

    std::size_t ofEntries(const Dictionary& dictionary) {
        std::size_t size = sizeOfTags;
        for (const auto& [key, value] : dictionary.entries()) {
            const std::size_t keySize = sizeOfTags + key.size();
            distinct_ += keySize;
            size = add(size, add(keySize, of(value)));
        }
        return size;
    }

    template <typename Measure>
    std::size_t shared(const void* container, Measure measure) {
        const auto known = known_.find(container);
        if (known != known_.end())
            return known->second;
        distinct_ += sizeOfTags;
        const std::size_t size = measure();
        known_.emplace(container, size);
        return size;
    }

    std::size_t distinct_ = 0;
    std::unordered_map<const void*, std::size_t> known_;
};

} // namespace

WrittenSize writtenSize(const Value& value) {
    SizeEstimate estimate;
    const std::size_t expanded = estimate.of(value);
    return {expanded, estimate.distinct()};
}

std::size_t largestExpansion(std::size_t ownSize) {
    constexpr std::size_t alwaysAllowed = std::size_t{64} << 20U;
    constexpr std::size_t allowedGrowth = 16;
    return alwaysAllowed + allowedGrowth * std::min(ownSize, largestSize / allowedGrowth);
}

bool isBeyondMeasure(const WrittenSize& size) {
    return size.expanded > largestExpansion(size.distinct);
}

} // namespace platform::plist
