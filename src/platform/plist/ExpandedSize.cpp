#include "platform/plist/ExpandedSize.h"

#include <algorithm>
#include <limits>

namespace platform::plist {

namespace {

constexpr std::size_t largestSize = std::numeric_limits<std::size_t>::max() / 2;
constexpr std::size_t sizeOfTags =
    24; // the tags of one value, or a container's open and close lines together
constexpr std::size_t sizeOfNumber = 24; // with its tags twice that
constexpr std::size_t sizeOfReference =
    4; // what naming a value takes at the least, where contents are shared

constexpr std::size_t allowedGrowth = 16;
} // namespace

std::size_t ExpandedSize::sum(std::size_t a, std::size_t b) {
    return std::min(a + b, largestSize);
}

void ExpandedSize::addInner(Extent& outer, Extent inner) {
    outer.bytes = sum(outer.bytes, sum(inner.bytes, inner.lines));
    outer.lines = sum(outer.lines, inner.lines);
}

std::size_t ExpandedSize::add(const Value& value) {
    const Extent extent = extentOf(value);
    addInner(expanded_, extent);
    return extent.bytes;
}

ExpandedSize::Extent ExpandedSize::extentOf(const Value& value) {
    if (const Array* array = value.array())
        return container(value, array, [&] { return extentOfElements(*array); });
    if (const Dictionary* dictionary = value.dictionary())
        return container(value, dictionary, [&] { return extentOfEntries(*dictionary); });
    if (const std::optional<std::string_view> string = value.string())
        return leaf(string->data(), string->size(), value.isShared());
    if (const Data* data = value.data())
        return leaf(data, data->bytes.size() * 2, value.isShared());
    distinct_ += sizeOfReference;
    return {sizeOfTags + sizeOfNumber, 1};
}

// The growth that is allowed to a reference covers a short string, which need not be remembered.
ExpandedSize::Extent ExpandedSize::leaf(const void* content, std::size_t size, bool isShared) {
    const Extent extent{sizeOfTags + size, 1};
    const bool isShort = extent.bytes <= allowedGrowth * sizeOfReference;
    const bool isNew = !isShort && (!isShared || known_.emplace(content, extent).second);
    distinct_ += isNew ? extent.bytes : sizeOfReference;
    return extent;
}

template <typename Measure>
ExpandedSize::Extent ExpandedSize::container(const Value& value, const void* content, Measure measure) {
    if (!value.isShared()) {
        distinct_ += sizeOfTags;
        return measure();
    }
    const auto known = known_.find(content);
    if (known != known_.end()) {
        distinct_ += sizeOfReference;
        return known->second;
    }
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
        addInner(extent, leaf(key.data(), key.size(), true));
        addInner(extent, extentOf(value));
    }
    return extent;
}

bool isTooLarge(std::size_t expanded, std::size_t source) {
    constexpr std::size_t alwaysAllowed = std::size_t{8} << 20U;
    return expanded > alwaysAllowed + allowedGrowth * std::min(source, largestSize / allowedGrowth);
}

bool expandsTooFar(const Value& value) {
    ExpandedSize size;
    size.add(value);
    return isTooLarge(size.expanded(), size.distinct());
}

} // namespace platform::plist
