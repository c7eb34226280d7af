#include "platform/confinement/HeldPlace.h"

#include "support/TemporaryFolder.h"

#include <gtest/gtest.h>

#include <filesystem>
#include <fstream>

namespace platform {
namespace {

class HeldPlaceTest : public testing::Test {
protected:
    void make() const { std::ofstream(path) << "text"; }

    support::TemporaryFolder folder;
    std::string path = folder.path("file");
};

TEST_F(HeldPlaceTest, isAnotherOnceAnotherFileHasTakenItsPlace) {
    make();
    const HeldPlace place(path);
    EXPECT_FALSE(place.isAnother());
    std::filesystem::remove(path);
    EXPECT_FALSE(place.isAnother()) << "nothing is there";
    make();
    EXPECT_TRUE(place.isAnother());
    EXPECT_FALSE(place.isOutOfReach()) << "it can be read";
}

TEST_F(HeldPlaceTest, isAnotherOnceSomethingIsWhereNothingWas) {
    const HeldPlace place(path);
    EXPECT_FALSE(place.file().isOpen());
    EXPECT_FALSE(place.isAnother());
    make();
    EXPECT_TRUE(place.isAnother());
}

TEST_F(HeldPlaceTest, followsLinks) {
    make();
    const std::string link = folder.path("link");
    std::filesystem::create_symlink(path, link);
    const HeldPlace place(link);
    std::filesystem::rename(path, path + "2");
    std::filesystem::remove(link);
    std::filesystem::create_symlink(path + "2", link);
    EXPECT_FALSE(place.isAnother()) << "the same file by another way";
}

} // namespace
} // namespace platform
