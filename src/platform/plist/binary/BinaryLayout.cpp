#include "platform/plist/binary/BinaryLayout.h"

namespace platform::plist {

namespace {

constexpr std::size_t trailerSize = 32;

// Whether `width` bytes can hold every number up to a bound.
bool canHold(std::size_t width, std::uint64_t bound) {
    return width >= 8 || (std::uint64_t{1} << (8 * width)) > bound;
}

} // namespace

bool hasBinaryMagic(std::string_view bytes) {
    return bytes.size() >= binaryHeaderSize && bytes.starts_with("bplist0");
}

std::uint64_t bigEndian(std::string_view bytes) {
    std::uint64_t value = 0;
    for (const char byte : bytes)
        value = (value << 8U) | static_cast<unsigned char>(byte);
    return value;
}

std::optional<BinaryLayout> BinaryLayout::of(std::string_view bytes) {
    if (!hasBinaryMagic(bytes) || bytes.size() < binaryHeaderSize + 1 + trailerSize)
        return std::nullopt;
    const std::string_view trailer = bytes.substr(bytes.size() - trailerSize);
    BinaryLayout layout;
    const std::size_t offsetSize = static_cast<unsigned char>(trailer[6]);
    const std::size_t referenceSize = static_cast<unsigned char>(trailer[7]);
    layout.count_ = bigEndian(trailer.substr(8, 8));
    layout.topObject_ = bigEndian(trailer.substr(16, 8));
    const std::uint64_t tableOffset = bigEndian(trailer.substr(24, 8));
    const std::size_t beforeTrailer = bytes.size() - trailerSize;
    if (offsetSize < 1 || referenceSize < 1 || layout.topObject_ >= layout.count_)
        return std::nullopt;
    if (tableOffset < binaryHeaderSize + 1 || tableOffset >= beforeTrailer)
        return std::nullopt;
    const std::uint64_t tableSize = beforeTrailer - tableOffset;
    if (tableSize % offsetSize != 0 || tableSize / offsetSize != layout.count_)
        return std::nullopt;
    if (!canHold(referenceSize, layout.count_) || !canHold(offsetSize, tableOffset))
        return std::nullopt;
    layout.objects_ = bytes.substr(0, tableOffset);
    layout.offsets_ = bytes.substr(tableOffset, tableSize);
    layout.offsetSize_ = offsetSize;
    layout.referenceSize_ = referenceSize;
    for (std::size_t at = 0; at < tableSize; at += offsetSize)
        if (bigEndian(layout.offsets_.substr(at, offsetSize)) >= tableOffset)
            return std::nullopt;
    return layout;
}

std::optional<std::size_t> BinaryLayout::offsetOf(std::uint64_t object) const {
    if (object >= count_)
        return std::nullopt;
    const std::size_t offset = bigEndian(offsets_.substr(object * offsetSize_, offsetSize_));
    return offset < binaryHeaderSize ? std::nullopt : std::optional(offset);
}

} // namespace platform::plist
