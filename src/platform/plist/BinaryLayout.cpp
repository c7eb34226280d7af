#include "platform/plist/BinaryLayout.h"

#include <limits>

namespace platform::plist {

namespace {

constexpr std::size_t headerSize = 8;
constexpr std::size_t trailerSize = 32;
constexpr auto largestCount = static_cast<std::uint64_t>(std::numeric_limits<std::int64_t>::max());

// Whether `width` bytes can hold every number below a bound.
bool canHold(std::size_t width, std::uint64_t bound) {
    return width >= 8 || (std::uint64_t{1} << (8 * width)) > bound;
}

// The size that follows an object's first byte, as an integer object. None where none stands there.
std::optional<std::uint64_t> takeSize(std::string_view& rest) {
    if (rest.empty() ||
        (static_cast<unsigned char>(rest[0]) >> 4U) != static_cast<unsigned>(BinaryMarker::Integer))
        return std::nullopt;
    const std::size_t width = std::size_t{1} << (static_cast<unsigned char>(rest[0]) & 0x0FU);
    rest.remove_prefix(1);
    if (width > rest.size())
        return std::nullopt;
    const std::uint64_t size = bigEndian(rest.substr(0, width));
    rest.remove_prefix(width);
    return size;
}

// Bytes of one element, for the objects that hold some of their own number.
std::size_t elementSize(BinaryMarker marker, std::size_t referenceSize) {
    switch (marker) {
    case BinaryMarker::Utf16:
        return 2;
    case BinaryMarker::Array:
    case BinaryMarker::Set:
        return referenceSize;
    case BinaryMarker::Dictionary:
        return 2 * referenceSize;
    default:
        return 1;
    }
}

// Bytes after the first one, where it alone tells how many they are.
std::optional<std::size_t> fixedSize(BinaryMarker marker, unsigned low) {
    switch (marker) {
    case BinaryMarker::Simple:
        return 0;
    case BinaryMarker::Integer:
    case BinaryMarker::Real:
    case BinaryMarker::Date:
        return std::size_t{1} << low;
    case BinaryMarker::Uid:
        return low + 1;
    default:
        return std::nullopt;
    }
}

} // namespace

bool hasBinaryMagic(std::string_view bytes) {
    return bytes.size() >= headerSize && bytes.starts_with("bplist0");
}

std::uint64_t bigEndian(std::string_view bytes) {
    std::uint64_t value = 0;
    for (const char byte : bytes)
        value = (value << 8U) | static_cast<unsigned char>(byte);
    return value;
}

std::optional<BinaryLayout> BinaryLayout::of(std::string_view bytes) {
    if (!hasBinaryMagic(bytes) || bytes.size() < headerSize + 1 + trailerSize)
        return std::nullopt;
    const std::string_view trailer = bytes.substr(bytes.size() - trailerSize);
    BinaryLayout layout;
    layout.offsetSize_ = static_cast<unsigned char>(trailer[6]);
    layout.referenceSize_ = static_cast<unsigned char>(trailer[7]);
    layout.count_ = bigEndian(trailer.substr(8, 8));
    layout.topObject_ = bigEndian(trailer.substr(16, 8));
    const std::uint64_t tableOffset = bigEndian(trailer.substr(24, 8));
    const std::size_t beforeTrailer = bytes.size() - trailerSize;
    if (layout.offsetSize_ < 1 || layout.referenceSize_ < 1 || layout.topObject_ >= layout.count_)
        return std::nullopt;
    if (tableOffset < headerSize + 1 || tableOffset >= beforeTrailer)
        return std::nullopt;
    const std::uint64_t tableSize = beforeTrailer - tableOffset;
    if (tableSize % layout.offsetSize_ != 0 || tableSize / layout.offsetSize_ != layout.count_)
        return std::nullopt;
    if (!canHold(layout.referenceSize_, layout.count_) || !canHold(layout.offsetSize_, tableOffset))
        return std::nullopt;
    layout.objects_ = bytes.substr(0, tableOffset);
    layout.offsets_ = bytes.substr(tableOffset, tableSize);
    for (std::size_t at = 0; at < tableSize; at += layout.offsetSize_)
        if (bigEndian(layout.offsets_.substr(at, layout.offsetSize_)) >= tableOffset)
            return std::nullopt;
    return layout;
}

std::optional<std::size_t> BinaryLayout::offsetOf(std::uint64_t object) const {
    if (object >= count_)
        return std::nullopt;
    const std::size_t offset = bigEndian(offsets_.substr(object * offsetSize_, offsetSize_));
    return offset < headerSize ? std::nullopt : std::optional(offset);
}

std::optional<BinaryObject> binaryObjectAt(const BinaryLayout& layout, std::size_t offset) {
    std::string_view rest = layout.objects().substr(offset);
    const auto first = static_cast<unsigned char>(rest[0]);
    rest.remove_prefix(1);
    BinaryObject object{static_cast<BinaryMarker>(first >> 4U), first & 0x0FU, {}, 0};
    if (const std::optional<std::size_t> size = fixedSize(object.marker, object.low)) {
        object.count = *size;
    } else {
        std::uint64_t count = object.low;
        if (count == 0x0F) {
            const std::optional<std::uint64_t> stated = takeSize(rest);
            if (!stated || *stated > largestCount)
                return std::nullopt;
            count = *stated;
        }
        if (count > rest.size()) // every element takes a byte or more
            return std::nullopt;
        object.count = count;
    }
    const std::size_t size = object.count * elementSize(object.marker, layout.referenceSize());
    if (size > rest.size())
        return std::nullopt;
    object.content = rest.substr(0, size);
    return object;
}

} // namespace platform::plist
