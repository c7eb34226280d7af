#pragma once

#include "platform/plist/text/Swar.h"

#include <cstddef>
#include <cstdint>
#include <optional>
#include <string_view>

// The frame of the binary form: where its objects stand.
namespace platform::plist {

// `bplist0` and any one character.
constexpr std::size_t binaryHeaderSize = 8;
[[nodiscard]] bool hasBinaryMagic(std::string_view bytes);

// The last 64 bits of a big-endian number of any width.
[[nodiscard]] std::uint64_t bigEndian(std::string_view bytes);

// Likewise, of numbers of one width each (a byte or more) that eight readable bytes follow, as anything
// before the trailer does.
class BinaryNumbers final {
public:
    BinaryNumbers() = default;
    explicit BinaryNumbers(std::size_t width)
        : width_(width)
        , skipped_(width < 8 ? 0 : width - 8)
        , shift_(width < 8 ? static_cast<unsigned>(8 * (8 - width)) : 0) {}
    [[nodiscard]] std::size_t width() const { return width_; }
    [[nodiscard]] std::uint64_t at(const char* bytes) const {
        return loadBigEndian(bytes + skipped_) >> shift_;
    }

private:
    std::size_t width_ = 1;
    std::size_t skipped_ = 0;
    unsigned shift_ = 56;
};

inline std::uint64_t bigEndianAt(const char* bytes, std::size_t width) {
    return BinaryNumbers(width).at(bytes);
}

// A list's objects, checked once: every offset lies before the table, and the sizes add up to the whole list.
class BinaryLayout final {
public:
    // None where the trailer does not fit the list.
    [[nodiscard]] static std::optional<BinaryLayout> of(std::string_view bytes);

    [[nodiscard]] std::uint64_t topObject() const { return topObject_; }
    [[nodiscard]] std::size_t referenceSize() const { return references_.width(); }
    // Everything before the offset table, the header included: offsets count from its start.
    [[nodiscard]] std::string_view objects() const { return objects_; }
    // The object that a container's content names at one of its references.
    [[nodiscard]] std::uint64_t referenceAt(const char* reference) const { return references_.at(reference); }
    // Where an object stands; none for a number that no object has, and for one within the header.
    [[nodiscard]] std::optional<std::size_t> offsetOf(std::uint64_t object) const {
        if (object >= count_)
            return std::nullopt;
        const std::size_t offset = offsetNumbers_.at(offsets_.data() + object * offsetNumbers_.width());
        return offset < binaryHeaderSize ? std::nullopt : std::optional(offset);
    }

private:
    std::string_view objects_;
    std::string_view offsets_;
    BinaryNumbers offsetNumbers_;
    BinaryNumbers references_;
    std::uint64_t count_ = 0;
    std::uint64_t topObject_ = 0;
};

} // namespace platform::plist
