#include "support/TemporaryFolder.h"

#include "support/Environment.h"

#include <gtest/gtest.h>

#include <csignal>
#include <cstdlib>
#include <filesystem>
#include <memory>

namespace support {
namespace {

TEST(TemporaryFolder, isEmptyAndGoesWithAllThatIsInIt) {
    std::string path;
    {
        const TemporaryFolder folder;
        path = folder.path();
        EXPECT_EQ(folder.count(), 0U);
        folder.write("deep/down/file", "text");
        EXPECT_EQ(folder.read("deep/down/file"), "text");
    }
    EXPECT_FALSE(std::filesystem::exists(path));
}

TEST(TemporaryFolder, leavesNothingBesideIt) {
    const TemporaryFolder place;
    const EnvironmentVariable folders("TMPDIR", place.path().c_str());
    {
        const TemporaryFolder folder;
        EXPECT_EQ(place.count(), 1U);
    }
    EXPECT_EQ(place.count(), 0U);
}

TEST(TemporaryFolder, mayGoBeforeALaterOne) {
    auto first = std::make_unique<TemporaryFolder>();
    const TemporaryFolder second;
    second.write("file", "text");
    first.reset();
    EXPECT_EQ(second.read("file"), "text");
}

TEST(TemporaryFolder, ofADeathGoesWithThatOfTheTest) {
    const TemporaryFolder place;
    const EnvironmentVariable folders("TMPDIR", place.path().c_str());
    {
        const TemporaryFolder folder;
        const auto die = [] {
            const TemporaryFolder own;
            own.write("file", "text");
            std::abort();
        };
        EXPECT_EXIT(die(), testing::KilledBySignal(SIGABRT), "^$");
        EXPECT_EQ(folder.count(), 0U);
        EXPECT_EQ(place.count(), 1U);
    }
    EXPECT_EQ(place.count(), 0U);
}

} // namespace
} // namespace support
