#include "platform/system/ZoneFile.h"

#include "ZoneBytes.h"

#include <gtest/gtest.h>

#include <functional>

using platform::ZoneFile;
using platform::ZoneOffset;
using platform_test::bigEndian;
using platform_test::ZoneBytes;

namespace {

constexpr std::int64_t beyond32Bits = 10'000'000'000;

// An hour, two hours from 1000 on, an hour from 2000 on and by the rule after that.
ZoneBytes berlin() {
    ZoneBytes zone;
    zone.transitions = {{1000, 1}, {2000, 0}};
    zone.offsets = {3600, 7200};
    zone.rule = "CET-1CEST,M3.5.0,M10.5.0/3";
    return zone;
}

// Where the parts of berlin() begin.
constexpr std::size_t oldSize = 44 + 6 + 4;
constexpr std::size_t countsAt = oldSize + 20;
constexpr std::size_t momentsAt = oldSize + 44;
constexpr std::size_t indicesAt = momentsAt + 2 * 8;
constexpr std::size_t typesAt = indicesAt + 2;
constexpr std::size_t footerAt = typesAt + 2 * 6 + 4;

struct Damage {
    const char* name;
    std::function<void(std::string&)> doIt;
};

std::function<void(std::string&)> replace(std::size_t at, std::string bytes) {
    return [=](std::string& file) { file.replace(at, bytes.size(), bytes); };
}

class BrokenZoneFileTest : public testing::TestWithParam<Damage> {};

} // namespace

TEST(ZoneFileTest, hasTheOffsetsBetweenItsTransitions) {
    const auto zone = ZoneFile::fromBytes(berlin().text());
    ASSERT_TRUE(zone);
    EXPECT_EQ(zone->offsetAt(999), (ZoneOffset{3600, 1000}));
    EXPECT_EQ(zone->offsetAt(1000), (ZoneOffset{7200, 2000}));
    EXPECT_EQ(zone->offsetAt(1999), (ZoneOffset{7200, 2000}));
}

TEST(ZoneFileTest, followsTheRuleAfterTheLastTransition) {
    const auto zone = ZoneFile::fromBytes(berlin().text());
    ASSERT_TRUE(zone);
    EXPECT_EQ(zone->offsetAt(2000).seconds, 3600);
    EXPECT_EQ(zone->offsetAt(1'783'684'800).seconds, 7200); // 10 July 2026
}

TEST(ZoneFileTest, keepsTheLastOffsetWithoutARule) {
    ZoneBytes bytes = berlin();
    bytes.rule.clear();
    const auto zone = ZoneFile::fromBytes(bytes.text());
    ASSERT_TRUE(zone);
    EXPECT_EQ(zone->offsetAt(1'783'684'800), (ZoneOffset{3600, ZoneOffset::never}));
}

TEST(ZoneFileTest, readsMomentsOf64Bits) {
    ZoneBytes bytes;
    bytes.transitions = {{-beyond32Bits, 1}, {beyond32Bits, 0}};
    bytes.offsets = {60, -60};
    const auto zone = ZoneFile::fromBytes(bytes.text());
    ASSERT_TRUE(zone);
    EXPECT_EQ(zone->offsetAt(-beyond32Bits - 1), (ZoneOffset{60, -beyond32Bits}));
    EXPECT_EQ(zone->offsetAt(0), (ZoneOffset{-60, beyond32Bits}));
    EXPECT_EQ(zone->offsetAt(beyond32Bits), (ZoneOffset{60, ZoneOffset::never}));
}

TEST(ZoneFileTest, readsAFileOfVersion1) {
    ZoneBytes bytes = berlin();
    bytes.transitions[0].moment = -1000;
    const auto zone = ZoneFile::fromBytes(bytes.textOfVersion1());
    ASSERT_TRUE(zone);
    EXPECT_EQ(zone->offsetAt(-1001), (ZoneOffset{3600, -1000}));
    EXPECT_EQ(zone->offsetAt(0), (ZoneOffset{7200, 2000}));
    EXPECT_EQ(zone->offsetAt(2000), (ZoneOffset{3600, ZoneOffset::never}));
}

TEST(ZoneFileTest, readsAFileOfVersion3And4) {
    for (const char version : {'3', '4'}) {
        ZoneBytes bytes = berlin();
        bytes.version = version;
        bytes.rule = "<-02>2<-01>,M3.5.0/-1,M10.5.0/0";
        EXPECT_TRUE(ZoneFile::fromBytes(bytes.text())) << version;
    }
}

TEST(ZoneFileTest, skipsLeapSecondsAndIndicators) {
    std::string bytes = berlin().text();
    bytes.insert(footerAt, bigEndian(500, 8) + bigEndian(1, 4) + std::string(4, '\1'));
    replace(countsAt, bigEndian(2, 4) + bigEndian(2, 4) + bigEndian(1, 4))(bytes);
    const auto zone = ZoneFile::fromBytes(bytes);
    ASSERT_TRUE(zone);
    EXPECT_EQ(zone->offsetAt(1500), (ZoneOffset{7200, 2000}));
    EXPECT_EQ(zone->offsetAt(1'783'684'800).seconds, 7200);
}

TEST(ZoneFileTest, isNoneIfItEndsEarly) {
    ZoneBytes old = berlin();
    for (const std::string& bytes : {berlin().text(), old.textOfVersion1()}) {
        ASSERT_TRUE(ZoneFile::fromBytes(bytes));
        for (std::size_t size = 0; size < bytes.size(); ++size)
            EXPECT_FALSE(ZoneFile::fromBytes(bytes.substr(0, size))) << size << " of " << bytes.size();
    }
}

// Whatever a byte is changed to, the zone has an offset in the allowed range or is none.
TEST(ZoneFileTest, survivesAnyChangeOfAByte) {
    const std::string bytes = berlin().text();
    int read = 0;
    for (std::size_t i = 0; i < bytes.size(); ++i)
        for (const int value : {0, 1, 2, 0x0a, 0x2c, 0x7f, 0x80, 0xff}) {
            std::string changed = bytes;
            changed[i] = static_cast<char>(value);
            const auto zone = ZoneFile::fromBytes(changed);
            if (!zone)
                continue;
            ++read;
            for (const std::int64_t moment :
                 {-beyond32Bits, std::int64_t{0}, std::int64_t{1500}, beyond32Bits}) {
                const ZoneOffset offset = zone->offsetAt(moment);
                ASSERT_LE(std::abs(offset.seconds), 26 * 3600) << i << ": " << value;
                ASSERT_GT(offset.end, moment) << i << ": " << value;
            }
        }
    EXPECT_GT(read, 0);
}

TEST_P(BrokenZoneFileTest, isNone) {
    std::string bytes = berlin().text();
    GetParam().doIt(bytes);
    EXPECT_FALSE(ZoneFile::fromBytes(bytes));
}

INSTANTIATE_TEST_SUITE_P(
    ZoneFile, BrokenZoneFileTest,
    testing::Values(Damage{"noMagic", replace(0, "TZjf")},
                    Damage{"noMagicInTheSecondHeader", replace(oldSize, "tzif")},
                    Damage{"otherFile", [](std::string& file) { file = "root:x:0:0:root:/:/bin/sh\n"; }},
                    Damage{"oldCountsBeyondTheFile", replace(20, std::string(24, '\xff'))},
                    Damage{"countsBeyondTheFile", replace(countsAt, std::string(24, '\xff'))},
                    Damage{"oneLeapSecondTooMany", replace(countsAt + 8, bigEndian(1, 4))},
                    Damage{"oneTransitionTooMany", replace(countsAt + 12, bigEndian(3, 4))},
                    Damage{"oneTransitionTooFew", replace(countsAt + 12, bigEndian(1, 4))},
                    Damage{"hugeNumberOfTransitions", replace(countsAt + 12, bigEndian(0x7fffffff, 4))},
                    Damage{"noTypes",
                           [](std::string& file) {
                               ZoneBytes zone;
                               zone.offsets.clear();
                               file = zone.text();
                           }},
                    Damage{"oneTypeTooFew", replace(countsAt + 16, bigEndian(1, 4))},
                    Damage{"typeOutOfRange", replace(indicesAt, "\2")},
                    Damage{"lastTypeOutOfRange", replace(indicesAt + 1, "\xff")},
                    Damage{"equalTransitions", replace(momentsAt + 8, bigEndian(1000, 8))},
                    Damage{"descendingTransitions", replace(momentsAt + 8, bigEndian(-1, 8))},
                    Damage{"offsetTooFarEast", replace(typesAt, bigEndian(93600, 4))},
                    Damage{"offsetTooFarWest", replace(typesAt + 6, bigEndian(-90000, 4))},
                    Damage{"smallestOffset", replace(typesAt, bigEndian(-2147483648LL, 4))},
                    Damage{"noNewlineBeforeTheRule", replace(footerAt, " ")},
                    Damage{"noRule", replace(footerAt + 1, "12")},
                    Damage{"noNewlineAfterTheRule", [](std::string& file) { file.back() = ' '; }},
                    Damage{"newlineInTheRule", replace(footerAt + 8, "\n")}),
    [](const auto& row) { return row.param.name; });
