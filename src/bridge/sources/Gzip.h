#pragma once

#include <cstddef>
#include <string>
#include <string_view>

namespace bridge {

// The size that no file's text may exceed, unpacked. Years of bookings take a tenth of it.
inline constexpr std::size_t largestText = std::size_t{64} << 20;

[[nodiscard]] bool isGzip(std::string_view bytes);

struct Unpacked {
    std::string bytes;
    std::string fault; // a sentence's end as in "is damaged"; empty where everything was unpacked
};

// What one gzip stream holds, its check sum compared; or the text itself where it is not packed. Nothing is
// given of a stream that is cut off, damaged, followed by other bytes, or larger than that.
[[nodiscard]] Unpacked unpack(std::string_view bytes, std::size_t largest = largestText);

} // namespace bridge
