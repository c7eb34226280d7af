#include "bridge/sources/Gzip.h"

#include "bridge/sources/Packed.h"

#include <gtest/gtest.h>

using bridge::unpack;
using bridge_test::packed;

namespace {

const std::string text = "<?xml version=\"1.0\"?>\n<homebank v=\"1.4\"/>\n";

} // namespace

TEST(Gzip, givesBackWhatWasPacked) {
    for (const std::string& original : {std::string(), text, std::string(300'000, 'a')}) {
        EXPECT_TRUE(bridge::isGzip(packed(original)));
        const auto [bytes, fault] = unpack(packed(original));
        EXPECT_EQ(bytes, original);
        EXPECT_EQ(fault, "");
    }
}

TEST(Gzip, leavesTextThatIsNotPacked) {
    EXPECT_EQ(unpack(text).bytes, text);
    EXPECT_EQ(unpack("").bytes, "");
    EXPECT_EQ(unpack("").fault, "");
}

TEST(Gzip, isCutOffAtEveryLength) {
    const std::string whole = packed(text);
    for (std::size_t length = 2; length < whole.size(); ++length) {
        const auto [bytes, fault] = unpack(whole.substr(0, length));
        EXPECT_EQ(fault, "is cut off: its packed text has no end") << length;
        EXPECT_EQ(bytes, "") << length;
    }
}

TEST(Gzip, isDamagedWhereAByteIsAnother) {
    const std::string whole = packed(std::string(500, 'x') + text);
    // The ten bytes of the header tell a time, hints and a system, which no check sum covers.
    for (std::size_t at = 10; at < whole.size(); ++at) {
        std::string other = whole;
        other[at] = static_cast<char>(other[at] ^ 0x5A);
        const auto [bytes, fault] = unpack(other);
        EXPECT_NE(fault, "") << at;
        EXPECT_EQ(bytes, "") << at;
    }
}

TEST(Gzip, isDamagedWhereMoreFollows) {
    EXPECT_EQ(unpack(packed(text) + "x").fault, "is damaged: other bytes follow its packed text");
    EXPECT_EQ(unpack(packed(text) + packed(text)).fault, "is damaged: other bytes follow its packed text");
}

TEST(Gzip, isNoLargerThanAsked) {
    const std::string million(std::size_t{1} << 20, 'a');
    EXPECT_EQ(unpack(packed(million), million.size()).bytes.size(), million.size());
    EXPECT_EQ(unpack(packed(million + "a"), million.size()).fault, "is larger than 1 MiB");
    EXPECT_EQ(unpack(million + "a", million.size()).fault, "is larger than 1 MiB");
}
