#include "bridge/sources/Gzip.h"
#include "fuzz/SourceTargets.h"

#include <gtest/gtest.h>

#include <filesystem>
#include <fstream>
#include <iterator>
#include <string>
#include <utility>

// The fuzz targets over their seeds: files that the programs wrote, whole and cut off, and with one byte of
// each changed.
namespace {

void replayBytes(std::string bytes, void (*target)(std::string_view)) {
    constexpr std::size_t mostSteps = 60;
    target(bytes);
    for (std::size_t at = 0; at < bytes.size(); at += bytes.size() / mostSteps + 1) {
        target(std::string_view(bytes).substr(0, at));
        const char kept = std::exchange(bytes[at], '9');
        target(bytes);
        bytes[at] = kept;
    }
}

int replay(const char* folder, void (*target)(std::string_view)) {
    int count = 0;
    const std::filesystem::path path = std::filesystem::path(KORVEL_TEST_DATA) / "bridge" / folder;
    for (const auto& entry : std::filesystem::directory_iterator(path)) {
        std::ifstream file(entry.path(), std::ios::binary);
        const std::string bytes(std::istreambuf_iterator<char>(file), {});
        SCOPED_TRACE(entry.path());
        replayBytes(bytes, target);
        if (bridge::isGzip(bytes))
            replayBytes(bridge::unpack(bytes).bytes, target);
        ++count;
    }
    return count;
}

} // namespace

TEST(SourceFuzzSeeds, holdForGnuCash) {
    EXPECT_GE(replay("gnucash", fuzz::readGnuCash), 3);
}
TEST(SourceFuzzSeeds, holdForHledger) {
    EXPECT_GE(replay("hledger", fuzz::readHledger), 3);
}
TEST(SourceFuzzSeeds, holdForHomeBank) {
    EXPECT_GE(replay("homebank", fuzz::readHomeBank), 4);
}
TEST(SourceFuzzSeeds, holdForKMyMoney) {
    EXPECT_GE(replay("kmymoney", fuzz::readKMyMoney), 4);
}
