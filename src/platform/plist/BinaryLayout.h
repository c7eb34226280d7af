#pragma once

#include <cstddef>
#include <cstdint>
#include <optional>
#include <string_view>

// The frame of the binary form: where its objects stand, and how they begin.
namespace platform::plist {

// `bplist0` and any one character.
[[nodiscard]] bool hasBinaryMagic(std::string_view bytes);

// The last 64 bits of a big-endian number of any width.
[[nodiscard]] std::uint64_t bigEndian(std::string_view bytes);

// A list's objects, checked once: every offset lies before the table, and the sizes add up to the whole list.
class BinaryLayout final {
public:
    // None where the trailer does not fit the list.
    [[nodiscard]] static std::optional<BinaryLayout> of(std::string_view bytes);

    [[nodiscard]] std::uint64_t topObject() const { return topObject_; }
    [[nodiscard]] std::size_t referenceSize() const { return referenceSize_; }
    // Everything before the offset table, the header included: offsets count from its start.
    [[nodiscard]] std::string_view objects() const { return objects_; }
    // Where an object stands; none for a number that no object has, and for one within the header.
    [[nodiscard]] std::optional<std::size_t> offsetOf(std::uint64_t object) const;

private:
    std::string_view objects_;
    std::string_view offsets_;
    std::size_t offsetSize_ = 0;
    std::size_t referenceSize_ = 0;
    std::uint64_t count_ = 0;
    std::uint64_t topObject_ = 0;
};

enum class BinaryMarker : std::uint8_t {
    Simple = 0x0,
    Integer = 0x1,
    Real = 0x2,
    Date = 0x3,
    Data = 0x4,
    Ascii = 0x5,
    Utf16 = 0x6,
    Uid = 0x8,
    Array = 0xA,
    Set = 0xC,
    Dictionary = 0xD
};

// How an object begins.
struct BinaryObject {
    BinaryMarker marker = BinaryMarker::Simple;
    unsigned low = 0;         // the low half of the first byte
    std::string_view content; // as many bytes as the object states to have, all of them within the list
    std::size_t count = 0;    // of elements (entries of a dictionary), characters or bytes
};

// None where the object reaches beyond the objects' end, or states no size in the way it must.
[[nodiscard]] std::optional<BinaryObject> binaryObjectAt(const BinaryLayout& layout, std::size_t offset);

} // namespace platform::plist
