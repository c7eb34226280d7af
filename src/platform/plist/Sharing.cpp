#include "platform/plist/Sharing.h"

#include <algorithm>
#include <limits>
#include <unordered_map>

namespace platform::plist {

namespace {

constexpr std::size_t largestSize = std::numeric_limits<std::size_t>::max() / 2;
constexpr std::size_t sizeOfTags = 24; // of a value, and of a container's two lines
constexpr std::size_t sizeOfNumber = 24;

class SizeEstimate final {
public:
    // What a value takes at the left margin. Standing one level deeper, every one of its lines has one more
    // tab.
    struct Extent {
        std::size_t bytes = 0;
        std::size_t lines = 0;
    };

    // The expanded extent; the distinct size is added up on the way.
    Extent of(const Value& value) {
        if (const Array* array = value.array())
            return container(value, array, [&] { return ofElements(*array); });
        if (const Dictionary* dictionary = value.dictionary())
            return container(value, dictionary, [&] { return ofEntries(*dictionary); });
        const std::size_t size = sizeOfTags + contentOf(value);
        distinct_ += size;
        return {size, 1};
    }
    [[nodiscard]] std::size_t distinct() const { return distinct_; }

private:
    static std::size_t contentOf(const Value& value) {
        if (const std::optional<std::string_view> string = value.string())
            return string->size();
        if (const Data* data = value.data())
            return data->bytes.size() * 2;
        return value.kind() == Kind::Boolean ? 0 : sizeOfNumber;
    }

    static std::size_t sum(std::size_t a, std::size_t b) { return std::min(a + b, largestSize); }

    static void addInner(Extent& extent, Extent inner) {
        extent.bytes = sum(extent.bytes, sum(inner.bytes, inner.lines));
        extent.lines = sum(extent.lines, inner.lines);
    }

    Extent ofElements(const Array& array) {
        Extent extent{sizeOfTags, 2};
        for (const Value& element : array)
            addInner(extent, of(element));
        return extent;
    }

    Extent ofEntries(const Dictionary& dictionary) {
        Extent extent{sizeOfTags, 2};
        for (const auto& [key, value] : dictionary) {
            const std::size_t keySize = sizeOfTags + key.size();
            distinct_ += keySize;
            addInner(extent, {keySize, 1});
            addInner(extent, of(value));
        }
        return extent;
    }

    template <typename Measure>
    Extent container(const Value& value, const void* content, Measure measure) {
        if (!value.isShared()) {
            distinct_ += sizeOfTags;
            return measure();
        }
        const auto known = known_.find(content);
        if (known != known_.end())
            return known->second;
        distinct_ += sizeOfTags;
        const Extent extent = measure();
        known_.emplace(content, extent);
        return extent;
    }

    std::size_t distinct_ = 0;
    std::unordered_map<const void*, Extent> known_;
};

} // namespace

WrittenSize writtenSize(const Value& value) {
    SizeEstimate estimate;
    const SizeEstimate::Extent expanded = estimate.of(value);
    return {expanded.bytes, estimate.distinct()};
}

bool isBeyondMeasure(const WrittenSize& size) {
    constexpr std::size_t alwaysAllowed = std::size_t{8} << 20U;
    constexpr std::size_t allowedGrowth = 16;
    return size.expanded >
           alwaysAllowed + allowedGrowth * std::min(size.distinct, largestSize / allowedGrowth);
}

} // namespace platform::plist
