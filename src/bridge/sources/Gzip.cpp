#include "bridge/sources/Gzip.h"

#include <zlib.h>

#include <algorithm>
#include <limits>
#include <memory>

namespace bridge {

namespace {

using Stream = std::unique_ptr<z_stream, decltype(&inflateEnd)>;

// Feeds the stream until it ends or fails; the last result of inflate().
int inflateAll(z_stream& stream, std::string& bytes, std::size_t largest) {
    int result = Z_OK;
    char buffer[1 << 16];
    while (result == Z_OK && bytes.size() <= largest) {
        stream.next_out = reinterpret_cast<Bytef*>(buffer);
        stream.avail_out = sizeof buffer;
        result = inflate(&stream, Z_NO_FLUSH);
        bytes.append(buffer, sizeof buffer - stream.avail_out);
    }
    return result;
}

Unpacked fault(std::string text) {
    return {{}, std::move(text)};
}

} // namespace

bool isGzip(std::string_view bytes) {
    return bytes.starts_with("\x1f\x8b");
}

Unpacked unpack(std::string_view bytes, std::size_t largest) {
    const std::string tooLarge = "is larger than " + std::to_string(largest >> 20) + " MiB";
    if (bytes.size() > std::min<std::size_t>(largest, std::numeric_limits<uInt>::max()))
        return fault(tooLarge);
    if (!isGzip(bytes))
        return {std::string(bytes), {}};
    z_stream stream = {};
    // zlib never writes to its input; its type is older than const.
    stream.next_in = reinterpret_cast<Bytef*>(const_cast<char*>(bytes.data()));
    stream.avail_in = static_cast<uInt>(bytes.size());
    constexpr int gzipOnly = 16 + MAX_WBITS;
    if (inflateInit2(&stream, gzipOnly) != Z_OK)
        return fault("could not be unpacked for want of memory");
    const Stream end(&stream, &inflateEnd);
    Unpacked result;
    const int last = inflateAll(stream, result.bytes, largest);
    if (result.bytes.size() > largest)
        return fault(tooLarge);
    if (last == Z_BUF_ERROR)
        return fault("is cut off: its packed text has no end");
    if (last != Z_STREAM_END)
        return fault("is damaged: its packed text cannot be unpacked");
    if (stream.avail_in > 0)
        return fault("is damaged: other bytes follow its packed text");
    return result;
}

} // namespace bridge
