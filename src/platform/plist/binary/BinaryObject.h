#pragma once

#include "platform/plist/Value.h"
#include "platform/plist/binary/BinaryLayout.h"

#include <cstdint>
#include <optional>
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
    std::size_t count = 0;    // of elements (entries of a dictionary), UTF-16 units or bytes

    [[nodiscard]] bool isContainer() const {
        return marker == BinaryMarker::Array || marker == BinaryMarker::Set ||
               marker == BinaryMarker::Dictionary;
    }
    // Of a size that its first byte tells: a simple value, a number, a date or a UID.
    [[nodiscard]] bool isFixed() const { return marker <= BinaryMarker::Date || marker == BinaryMarker::Uid; }
};

// The object at an offset, or nothing if it reaches beyond the objects' end, or states no size in the way it
// must.
[[nodiscard]] std::optional<BinaryObject> binaryObjectAt(const BinaryLayout& layout, std::size_t offset);

// What is wrong with an object, apart from what it refers to, or null if the object is sound.
[[nodiscard]] const char* faultOf(const BinaryObject& object);

// The value of an object that is no container, and that nothing is wrong with.
[[nodiscard]] Value leafOf(const BinaryObject& object);

} // namespace platform::plist
