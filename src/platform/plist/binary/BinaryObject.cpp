#include "platform/plist/binary/BinaryObject.h"

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

char* putText(char* out, const BinaryObject& object) {
    const std::string_view content = object.content;
    if (object.marker == BinaryMarker::Utf16)
        return putBigEndianUtf16(out, content);
    for (const char c : content)
        out = putCodePoint(out, static_cast<unsigned char>(c));
    return out;
}

std::string textOf(const BinaryObject& object) {
    if (isPlainText(object))
        return std::string(object.content);
    std::string text(object.count * longestCharacter, '\0');
    text.resize(static_cast<std::size_t>(putText(text.data(), object) - text.data()));
    return text;
}

} // namespace platform::plist
