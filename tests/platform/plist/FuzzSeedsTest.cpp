#include "fuzz/Targets.h"

#include <gtest/gtest.h>

#include <filesystem>
#include <fstream>
#include <iterator>
#include <string>

// The fuzz targets over their seeds: the corpus, and inputs that fuzzing once found to be worth keeping.
namespace {

std::size_t replay(void (*target)(std::string_view)) {
    std::size_t count = 0;
    for (const char* const folder : {"plist/input", "fuzz"})
        for (const auto& entry :
             std::filesystem::directory_iterator(std::filesystem::path(KORVEL_TEST_DATA) / folder)) {
            std::ifstream file(entry.path(), std::ios::binary);
            const std::string bytes(std::istreambuf_iterator<char>(file), {});
            SCOPED_TRACE(entry.path());
            target(bytes);
            ++count;
        }
    return count;
}

} // namespace

TEST(FuzzSeeds, holdForXml) {
    EXPECT_GT(replay(fuzz::readXml), 180U);
}
TEST(FuzzSeeds, holdForBinary) {
    EXPECT_GT(replay(fuzz::readBinary), 180U);
}
TEST(FuzzSeeds, holdForAscii) {
    EXPECT_GT(replay(fuzz::readAscii), 180U);
}
TEST(FuzzSeeds, holdForWriteAfterRead) {
    EXPECT_GT(replay(fuzz::writeAfterRead), 180U);
}
TEST(FuzzSeeds, holdForEditThenRead) {
    EXPECT_GT(replay(fuzz::editThenRead), 180U);
}
