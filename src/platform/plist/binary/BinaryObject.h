#pragma once

#include "platform/plist/binary/BinaryLayout.h"
#include "platform/plist/text/Unicode.h"
#include "platform/plist/Value.h"

#include <bit>
#include <cstdint>
#include <limits>
#include <optional>
#include <string>
#include <string_view>

// The binary form's objects, one at a time.
namespace platform::plist {

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

    [[nodiscard]] bool isContainer() const {
        return marker == BinaryMarker::Array || marker == BinaryMarker::Set ||
               marker == BinaryMarker::Dictionary;
    }
    [[nodiscard]] bool isText() const {
        return marker == BinaryMarker::Ascii || marker == BinaryMarker::Utf16;
    }
    // Of a size that its first byte tells: a simple value, a number, a date or a UID.
    [[nodiscard]] bool isFixed() const { return marker <= BinaryMarker::Date || marker == BinaryMarker::Uid; }
};

// False where the object reaches beyond the objects' end, or states no size in the way it must.
[[nodiscard]] bool takeBinaryObject(const BinaryLayout& layout, std::size_t offset, BinaryObject& object);

// What is wrong with an object, apart from what it refers to; null where nothing is. What follows may be
// asked only of an object that nothing is wrong with, and of its own kind.
[[nodiscard]] inline const char* faultOf(const BinaryObject& object) {
    const std::size_t size = object.content.size();
    switch (object.marker) {
    case BinaryMarker::Simple:
        return object.low == 0x0 || object.low == 0x8 || object.low == 0x9
                   ? nullptr
                   : "An object is of an unknown kind";
    case BinaryMarker::Integer:
        return size <= 16 ? nullptr : "An integer is too wide";
    case BinaryMarker::Real:
        return size == sizeof(float) || size == sizeof(double)
                   ? nullptr
                   : "A real is neither of four bytes nor of eight";
    case BinaryMarker::Date:
        return size == sizeof(double) ? nullptr : "A date is not of eight bytes";
    case BinaryMarker::Uid:
        return bigEndianAt(object.content.data(), object.content.size()) <=
                       std::numeric_limits<std::uint32_t>::max()
                   ? nullptr
                   : "A UID is above 2^32-1";
    case BinaryMarker::Data:
    case BinaryMarker::Ascii:
    case BinaryMarker::Utf16:
    case BinaryMarker::Array:
    case BinaryMarker::Set:
    case BinaryMarker::Dictionary:
        return nullptr;
    }
    return "An object is of an unknown kind";
}

// Up to four bytes are unsigned, eight are signed; of sixteen the last eight count, unsigned.
inline Integer integerOf(const BinaryObject& object) {
    const std::uint64_t bits = bigEndianAt(object.content.data(), object.content.size());
    return {bits, object.content.size() > 8 && (bits >> 63U) != 0};
}

// A real's number, or a date's.
inline double realOf(const BinaryObject& object) {
    const std::uint64_t bits = bigEndianAt(object.content.data(), object.content.size());
    if (object.content.size() == sizeof(float))
        return static_cast<double>(std::bit_cast<float>(static_cast<std::uint32_t>(bits)));
    return std::bit_cast<double>(bits);
}

// A simple value: a boolean, or none for null.
inline std::optional<bool> booleanOf(const BinaryObject& object) {
    return object.low == 0x0 ? std::nullopt : std::optional(object.low == 0x9);
}

// Whether a boolean, which is all in its first byte, stands there.
inline bool isBooleanAt(const BinaryLayout& layout, std::size_t offset) {
    return (layout.objects()[offset] | 1) == 0x09;
}

// Whether a text stands in the list as it is: ASCII without a byte above 127.
inline bool isPlainText(const BinaryObject& object) {
    return object.marker == BinaryMarker::Ascii && isAscii(object.content);
}
// Writes any text as UTF-8 to a room of three bytes a character (or UTF-16 unit); gives its end. A byte above
// 127 is the character of Latin 1.
char* putText(char* out, const BinaryObject& object);
[[nodiscard]] std::string textOf(const BinaryObject& object);
constexpr std::size_t longestCharacter = 3;

// The count of an object that states it in the bytes that follow its first one, which it passes.
[[nodiscard]] bool takeStatedCount(std::string_view& rest, std::size_t& count);

// Likewise, if it is one byte's: false, and nothing passed, where it is not.
inline bool takeShortCount(std::string_view& rest, std::size_t& count) {
    constexpr char oneByteInteger = 0x10;
    if (rest.size() < 2 || rest[0] != oneByteInteger)
        return false;
    count = static_cast<unsigned char>(rest[1]);
    rest.remove_prefix(2);
    return true;
}

inline bool takeBinaryObject(const BinaryLayout& layout, std::size_t offset, BinaryObject& object) {
    constexpr unsigned statedApart = 0x0F;
    std::string_view rest = layout.objects().substr(offset);
    const auto first = static_cast<unsigned char>(rest[0]);
    rest.remove_prefix(1);
    object.marker = static_cast<BinaryMarker>(first >> 4U);
    object.low = first & 0x0FU;
    object.count = object.low;
    std::size_t elementSize = 1;
    switch (object.marker) {
    case BinaryMarker::Simple:
        object.count = 0;
        break;
    case BinaryMarker::Integer:
    case BinaryMarker::Real:
    case BinaryMarker::Date:
        object.count = std::size_t{1} << object.low;
        break;
    case BinaryMarker::Uid:
        ++object.count;
        break;
    default:
        if (object.low == statedApart && !takeShortCount(rest, object.count) &&
            !takeStatedCount(rest, object.count))
            return false;
        if (object.marker == BinaryMarker::Utf16)
            elementSize = 2;
        else if (object.isContainer())
            elementSize = layout.referenceSize() * (object.marker == BinaryMarker::Dictionary ? 2 : 1);
    }
    const std::size_t size = object.count * elementSize;
    if (size > rest.size())
        return false;
    object.content = rest.substr(0, size);
    return true;
}

} // namespace platform::plist
