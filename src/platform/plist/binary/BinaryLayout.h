#pragma once

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

// A list's objects, checked once: every offset lies before the table, and the sizes add up to the whole list.
class BinaryLayout final {
public:
    // The layout of a list, or nothing if its trailer does not fit it.
    [[nodiscard]] static std::optional<BinaryLayout> of(std::string_view bytes);

    [[nodiscard]] std::uint64_t topObject() const { return topObject_; }
    [[nodiscard]] std::size_t referenceSize() const { return referenceSize_; }
    // Everything before the offset table, the header included: offsets count from its start.
    [[nodiscard]] std::string_view objects() const { return objects_; }
    // The object that a container's content names at one of its references, counted from 0.
    [[nodiscard]] std::uint64_t referenceAt(std::string_view content, std::size_t place) const {
        return bigEndian(content.substr(place * referenceSize_, referenceSize_));
    }
    // Where an object stands; none for a number that no object has, and for one within the header.
    [[nodiscard]] std::optional<std::size_t> offsetOf(std::uint64_t object) const;

private:
    std::string_view objects_;
    std::string_view offsets_;
    std::size_t offsetSize_ = 1;
    std::size_t referenceSize_ = 1;
    std::uint64_t count_ = 0;
    std::uint64_t topObject_ = 0;
};

} // namespace platform::plist
