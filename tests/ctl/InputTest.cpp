#include "ctl/Input.h"

#include <gtest/gtest.h>

#include <sstream>

namespace ctl {
namespace {

TEST(InputTest, readsToTheEndInWhateverPieces) {
    for (const std::size_t length : {0u, 1u, 131071u, 131072u, 131073u, 400000u}) {
        const std::string bytes(length, 'a');
        std::istringstream stream(bytes);
        std::error_code error;
        EXPECT_EQ(readToEnd(stream, length, error), bytes) << length;
        EXPECT_FALSE(error);
    }
}

TEST(InputTest, refusesWhatIsLongerThanTheLimit) {
    for (const std::size_t longest : {0u, 5u, 131072u, 300000u}) {
        std::istringstream stream(std::string(longest + 1, 'a') + "not read");
        std::error_code error;
        EXPECT_FALSE(readToEnd(stream, longest, error));
        EXPECT_EQ(error, std::errc::file_too_large);
        EXPECT_EQ(stream.tellg(), std::streampos(std::streamoff(longest)));
    }
}

TEST(InputTest, saysThatAStreamCannotBeRead) {
    std::istringstream stream;
    stream.setstate(std::ios::badbit);
    std::error_code error;
    EXPECT_FALSE(readToEnd(stream, 10, error));
    EXPECT_EQ(error, std::errc::io_error);
}

} // namespace
} // namespace ctl
