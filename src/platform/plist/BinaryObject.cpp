#include "platform/plist/BinaryObject.h"

#include "platform/plist/Text.h"

#include <limits>

namespace platform::plist {

namespace {

constexpr auto largestCount = static_cast<std::uint64_t>(std::numeric_limits<std::int64_t>::max());

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

} // namespace

// Every element takes a byte or more, so that no product of the count overflows.
bool takeStatedCount(std::string_view& rest, std::size_t& count) {
    const std::optional<std::uint64_t> stated = takeSize(rest);
    if (!stated || *stated > largestCount || *stated > rest.size())
        return false;
    count = *stated;
    return true;
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

bool isPlainText(const BinaryObject& object) {
    return object.marker == BinaryMarker::Ascii && isAscii(object.content);
}

void appendText(std::string& text, const BinaryObject& object) {
    const std::string_view content = object.content;
    if (object.marker == BinaryMarker::Utf16) {
        appendBigEndianUtf16(text, content);
    } else if (isAscii(content)) {
        text += content;
    } else {
        for (const char c : content)
            appendCodePoint(text, static_cast<unsigned char>(c));
    }
}

} // namespace platform::plist
