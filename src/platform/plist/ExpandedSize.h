#pragma once

#include "platform/plist/Value.h"

#include <cstddef>
#include <unordered_map>

// A list of a few bytes can name one string or container so often that it fills any memory once each of these
// places is given a copy of its own.
namespace platform::plist {

// An estimate, within a small factor, of the size in bytes that values take when they are written as text.
// Takes time in proportion to the distinct contents, however often they are shared.
class ExpandedSize final {
public:
    // Gives the expanded size of the value alone. A size stops growing at half of the largest std::size_t.
    std::size_t add(const Value& value);

    // Shared contents counted each time that they are named.
    [[nodiscard]] std::size_t expanded() const { return expanded_.bytes; }
    // Shared contents counted once, with the references to them.
    [[nodiscard]] std::size_t distinct() const { return distinct_; }

private:
    // What a value takes at the left margin. One level deeper, every one of its lines has one more tab.
    struct Extent {
        std::size_t bytes = 0;
        std::size_t lines = 0;
    };

    [[nodiscard]] static std::size_t sum(std::size_t a, std::size_t b);
    static void addInner(Extent& outer, Extent inner);
    Extent extentOf(const Value& value);
    Extent extentOfElements(const Array& array);
    Extent extentOfEntries(const Dictionary& dictionary);
    Extent leaf(const void* content, std::size_t size, bool isShared);
    template <typename Measure>
    Extent container(const Value& value, const void* content, Measure measure);

    Extent expanded_;
    std::size_t distinct_ = 0;
    std::unordered_map<const void*, Extent> known_; // by the address of what may be shared
};

// Whether so many bytes are too many for what was `source` bytes before: more than eight mebibytes, which are
// always allowed, and sixteen times the source together.
[[nodiscard]] bool isTooLarge(std::size_t expanded, std::size_t source);

// Whether a value grows too large when it is written.
[[nodiscard]] bool expandsTooFar(const Value& value);

} // namespace platform::plist
