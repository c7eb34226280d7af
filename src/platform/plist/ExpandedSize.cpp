#include "platform/plist/ExpandedSize.h"

#include <algorithm>
#include <limits>

namespace platform::plist {

namespace {

constexpr std::size_t largestSize = std::numeric_limits<std::size_t>::max() / 2;
constexpr std::size_t sizeOfTags = 24; // of a value, and of a container's two lines
constexpr std::size_t sizeOfNumber = 24;

} // namespace

std::size_t ExpandedSize::sum(std::size_t a, std::size_t b) {
    return std::min(a + b, largestSize);
}

void ExpandedSize::addInner(Extent& outer, Extent inner) {
    outer.bytes = sum(outer.bytes, sum(inner.bytes, inner.lines));
    outer.lines = sum(outer.lines, inner.lines);
}

void ExpandedSize::add(const Value& value) {
    addInner(expanded_, extentOf(value));
}

ExpandedSize::Extent ExpandedSize::extentOf(const Value& value) {
    if (const Array* array = value.array())
        return container(array, [&] { return extentOfElements(*array); });
    if (const Dictionary* dictionary = value.dictionary())
        return container(dictionary, [&] { return extentOfEntries(*dictionary); });
    if (const std::optional<std::string_view> string = value.string())
        return leaf(string->data(), string->size());
    if (const Data* data = value.data())
        return leaf(data, data->bytes.size() * 2);
    distinct_ += sizeOfTags + sizeOfNumber;
    return {sizeOfTags + sizeOfNumber, 1};
}

// A short string is not worth remembering: that takes more memory than the string.
ExpandedSize::Extent ExpandedSize::leaf(const void* content, std::size_t size) {
    constexpr std::size_t worthRemembering = 256;
    const Extent extent{sizeOfTags + size, 1};
    if (size < worthRemembering || known_.emplace(content, extent).second)
        distinct_ += extent.bytes;
    return extent;
}

template <typename Measure>
ExpandedSize::Extent ExpandedSize::container(const void* content, Measure measure) {
    const auto known = known_.find(content);
    if (known != known_.end())
        return known->second;
    distinct_ += sizeOfTags;
    const Extent extent = measure();
    known_.emplace(content, extent);
    return extent;
}

ExpandedSize::Extent ExpandedSize::extentOfElements(const Array& array) {
    Extent extent{sizeOfTags, 2};
    for (const Value& element : array)
        addInner(extent, extentOf(element));
    return extent;
}

ExpandedSize::Extent ExpandedSize::extentOfEntries(const Dictionary& dictionary) {
    Extent extent{sizeOfTags, 2};
    for (const auto& [key, value] : dictionary) {
        addInner(extent, leaf(key.data(), key.size()));
        addInner(extent, extentOf(value));
    }
    return extent;
}

bool isTooLarge(std::size_t expanded, std::size_t source) {
    constexpr std::size_t alwaysAllowed = std::size_t{8} << 20U;
    constexpr std::size_t allowedGrowth = 16;
    return expanded > alwaysAllowed + allowedGrowth * std::min(source, largestSize / allowedGrowth);
}

bool expandsTooFar(const Value& value) {
    ExpandedSize size;
    size.add(value);
    return isTooLarge(size.expanded(), size.distinct());
}

} // namespace platform::plist
