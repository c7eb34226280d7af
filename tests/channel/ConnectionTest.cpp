#include "channel/Connection.h"

#include <QCoreApplication>

#include <gtest/gtest.h>

#include <array>
#include <memory>
#include <optional>
#include <string>
#include <sys/socket.h>
#include <unistd.h>
#include <vector>

using namespace channel;
using namespace std::string_literals;

namespace {

// The centre's end of a connection, and the bare socket of the other.
class ConnectionTest : public testing::Test {
protected:
    ConnectionTest() {
        int ends[2];
        EXPECT_EQ(socketpair(AF_UNIX, SOCK_SEQPACKET | SOCK_CLOEXEC, 0, ends), 0);
        connection = std::make_unique<ConnectionToExtension>(ends[0]);
        other = ends[1];
        connection->setReceived([this](const FromExtension& message) { received.push_back(message); });
        connection->setEnded([this] { ++ended; });
    }
    ~ConnectionTest() override { close(other); }

    void put(const std::string& packet) const {
        ASSERT_EQ(send(other, packet.data(), packet.size(), MSG_NOSIGNAL),
                  static_cast<ssize_t>(packet.size()));
    }
    [[nodiscard]] std::optional<std::string> taken() const {
        std::array<char, 2 * longestPacket> buffer;
        const ssize_t size = recv(other, buffer.data(), buffer.size(), MSG_DONTWAIT);
        return size < 0 ? std::nullopt
                        : std::optional(std::string(buffer.data(), static_cast<std::size_t>(size)));
    }
    static void turn() {
        for (int i = 0; i < 20; ++i)
            application().processEvents();
    }
    static QCoreApplication& application() {
        static int count = 1;
        static char name[] = "test";
        static char* arguments[] = {name, nullptr};
        static QCoreApplication made(count, arguments);
        return made;
    }

    QCoreApplication& needed = application();
    std::unique_ptr<ConnectionToExtension> connection;
    int other = -1;
    std::vector<FromExtension> received;
    int ended = 0;
};

} // namespace

TEST_F(ConnectionTest, keepsMessagesApartAndInOrder) {
    put("shown");
    put("counts\0001\0002"s);
    put("closed");
    turn();
    EXPECT_EQ(received, (std::vector<FromExtension>{Shown{}, Counts{1, 2}, Closed{}}));
    EXPECT_EQ(ended, 0);
}

TEST_F(ConnectionTest, sendsOnePacketAMessage) {
    EXPECT_TRUE(connection->send(Show{"s", "t", false}));
    EXPECT_TRUE(connection->send(Quit{}));
    EXPECT_EQ(taken(), "show\0s\0t\0000"s);
    EXPECT_EQ(taken(), "quit");
    EXPECT_EQ(taken(), std::nullopt);
}

TEST_F(ConnectionTest, tellsTheOtherEndsEndOnceAfterAllThatItHasSaid) {
    put("shown");
    close(std::exchange(other, -1));
    turn();
    EXPECT_EQ(received.size(), 1U);
    EXPECT_EQ(ended, 1);
}

TEST_F(ConnectionTest, endsWithAMalformedPacketAndHearsNothingAfterIt) {
    put("counts\000-1\0000"s);
    put("shown");
    turn();
    EXPECT_TRUE(received.empty());
    EXPECT_EQ(ended, 1);
    EXPECT_EQ(taken(), "") << "the other end sees that";
}

TEST_F(ConnectionTest, endsWithAPacketThatIsTooLongAlsoWhereItsBeginningIsAMessage) {
    put("open\0"s + std::string(longestPacket, 'x'));
    turn();
    EXPECT_TRUE(received.empty());
    EXPECT_EQ(ended, 1);
}

TEST_F(ConnectionTest, doesNotBlockWhereTheOtherEndTakesNothing) {
    const Show request{"", std::string(longestPacket / 4, 'x'), false};
    int sent = 0;
    while (sent < 100'000 && connection->send(request))
        ++sent;
    EXPECT_GT(sent, 0);
    EXPECT_LT(sent, 100'000);
    EXPECT_EQ(ended, 0);
}

TEST_F(ConnectionTest, doesNotSendToAnEndThatIsGone) {
    close(std::exchange(other, -1));
    EXPECT_FALSE(connection->send(Hide{}));
}

TEST_F(ConnectionTest, mayBeDestroyedByItsEnd) {
    connection->setEnded([this] {
        connection.reset();
        ++ended;
    });
    close(std::exchange(other, -1));
    turn();
    EXPECT_EQ(ended, 1);
    EXPECT_EQ(connection, nullptr);
}
