#include "host/Mailbox.h"

#include "support/TemporaryFolder.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <climits>
#include <fcntl.h>
#include <unistd.h>

namespace host {
namespace {

using testing::ElementsAre;
using testing::IsEmpty;

class MailboxTest : public testing::Test {
protected:
    MailboxTest() { EXPECT_EQ(makeMailbox(path), std::error_code()); }

    support::TemporaryFolder folder;
    std::string path = folder.path("box");
};

TEST_F(MailboxTest, givesWhatWasDeliveredInItsOrder) {
    Mailbox box(path);
    ASSERT_TRUE(box.isOpen());
    EXPECT_EQ(deliver(path, "korvelWidget://a"), std::error_code());
    EXPECT_EQ(deliver(path, "two\nlines"), std::error_code());
    EXPECT_EQ(deliver(path, ""), std::error_code());
    EXPECT_THAT(box.take(), ElementsAre("korvelWidget://a", "two\nlines", ""));
    EXPECT_THAT(box.take(), IsEmpty());
}

TEST_F(MailboxTest, keepsWhatWaitsForAnotherReader) {
    const Mailbox session(path);
    EXPECT_EQ(deliver(path, "early"), std::error_code());
    Mailbox window(path);
    EXPECT_THAT(window.take(), ElementsAre("early"));
}

TEST_F(MailboxTest, waitsForTheRestOfAnUnfinishedUrl) {
    Mailbox box(path);
    const int writer = open(path.c_str(), O_WRONLY | O_NONBLOCK);
    ASSERT_GE(writer, 0);
    ASSERT_EQ(write(writer, "one\0tw", 6), 6);
    EXPECT_THAT(box.take(), ElementsAre("one"));
    ASSERT_EQ(write(writer, "o\0", 2), 2);
    EXPECT_THAT(box.take(), ElementsAre("two"));
    close(writer);
}

TEST_F(MailboxTest, thatNobodyHoldsOpenTakesNothingAndBlocksNobody) {
    EXPECT_EQ(deliver(path, "late"), std::errc::no_such_device_or_address);
}

TEST_F(MailboxTest, thatIsGoneTakesNothing) {
    EXPECT_EQ(deliver(folder.path("gone"), "late"), std::errc::no_such_file_or_directory);
    EXPECT_FALSE(Mailbox(folder.path("gone")).isOpen());
}

TEST_F(MailboxTest, thatIsFullSaysSo) {
    Mailbox box(path);
    const std::string url(PIPE_BUF - 1, 'x');
    std::size_t delivered = 0;
    std::error_code error;
    while (!(error = deliver(path, url)) && delivered < 10000)
        ++delivered;
    EXPECT_EQ(error, std::errc::resource_unavailable_try_again);
    EXPECT_EQ(box.take(), std::vector<std::string>(delivered, url));
}

TEST_F(MailboxTest, refusesWhatOneWriteCannotHold) {
    Mailbox box(path);
    EXPECT_EQ(deliver(path, std::string(PIPE_BUF, 'x')), std::errc::message_size);
    EXPECT_THAT(box.take(), IsEmpty());
}

} // namespace
} // namespace host
