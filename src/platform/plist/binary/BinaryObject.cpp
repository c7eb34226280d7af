#include "platform/plist/binary/BinaryObject.h"

#include "platform/plist/text/Unicode.h"

#include <bit>
#include <limits>
#include <string>

namespace platform::plist {

namespace {

// The count that follows an object's first byte, as an integer object, which it passes. None for no such
// integer, and for a count of more than the bytes that are left: every element takes one or more.
std::optional<std::size_t> takeCount(std::string_view& rest) {
    if (rest.empty() ||
        (static_cast<unsigned char>(rest[0]) >> 4U) != static_cast<unsigned>(BinaryMarker::Integer))
        return std::nullopt;
    const std::size_t width = std::size_t{1} << (static_cast<unsigned char>(rest[0]) & 0x0FU);
    rest.remove_prefix(1);
    if (width > rest.size())
        return std::nullopt;
    const std::uint64_t count = bigEndian(rest.substr(0, width));
    rest.remove_prefix(width);
    return count <= rest.size() ? std::optional<std::size_t>(count) : std::nullopt;
}

// Up to four bytes are unsigned, eight are signed; of sixteen the last eight count, unsigned.
Integer integerOf(const BinaryObject& object) {
    const std::uint64_t bits = bigEndian(object.content);
    return {bits, object.content.size() > 8 && (bits >> 63U) != 0};
}

double realOf(const BinaryObject& object) {
    const std::uint64_t bits = bigEndian(object.content);
    if (object.content.size() == sizeof(float))
        return static_cast<double>(std::bit_cast<float>(static_cast<std::uint32_t>(bits)));
    return std::bit_cast<double>(bits);
}

// A byte above 127 is the character of Latin 1.
std::string stringOf(std::string_view bytes) {
    if (isAscii(bytes))
        return std::string(bytes);
    std::string text;
    for (const char c : bytes)
        appendCodePoint(text, static_cast<unsigned char>(c));
    return text;
}

} // namespace

std::optional<BinaryObject> binaryObjectAt(const BinaryLayout& layout, std::size_t offset) {
    constexpr unsigned statedApart = 0x0F;
    std::string_view rest = layout.objects().substr(offset);
    const auto first = static_cast<unsigned char>(rest[0]);
    rest.remove_prefix(1);
    BinaryObject object;
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
        if (object.low == statedApart) {
            const std::optional<std::size_t> count = takeCount(rest);
            if (!count)
                return std::nullopt;
            object.count = *count;
        }
        if (object.marker == BinaryMarker::Utf16)
            elementSize = 2;
        else if (object.isContainer())
            elementSize = layout.referenceSize() * (object.marker == BinaryMarker::Dictionary ? 2 : 1);
    }
    const std::size_t size = object.count * elementSize;
    if (size > rest.size())
        return std::nullopt;
    object.content = rest.substr(0, size);
    return object;
}

const char* faultOf(const BinaryObject& object) {
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
        return bigEndian(object.content) <= std::numeric_limits<std::uint32_t>::max()
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

Value leafOf(const BinaryObject& object) {
    switch (object.marker) {
    case BinaryMarker::Integer:
        return Value(integerOf(object));
    case BinaryMarker::Real:
        return Value(realOf(object));
    case BinaryMarker::Date:
        return Value(Date{realOf(object)});
    case BinaryMarker::Uid:
        return Value(Uid{bigEndian(object.content)});
    case BinaryMarker::Data:
        return Value(Data{std::string(object.content)});
    case BinaryMarker::Ascii:
        return Value(stringOf(object.content));
    case BinaryMarker::Utf16:
        return Value(textOfBigEndianUtf16(object.content));
    default:
        return object.low == 0x0 ? Value() : Value(object.low == 0x9);
    }
}

} // namespace platform::plist
