#include "channel/Message.h"

#include "fuzz/Targets.h"

#include <gtest/gtest.h>

#include <limits>
#include <string>
#include <string_view>
#include <vector>

using namespace channel;
using namespace std::string_literals;

namespace {

struct Case {
    const char* name;
    std::string packet;
};

std::string caseName(const testing::TestParamInfo<Case>& info) {
    return info.param.name;
}

template <class Messages>
void expectPacket(const Messages& message, const std::string& packet) {
    EXPECT_EQ(packetOf(message), packet);
    EXPECT_EQ(messageOf<Messages>(packet), message);
}

} // namespace

// The packets of docs/messages.md, field by field.
TEST(Message, showHasThreeFields) {
    expectPacket<ToExtension>(Show{"DP-1", "token", true}, "show\0DP-1\0token\0001"s);
    expectPacket<ToExtension>(Show{}, "show\0\0\0000"s);
}

TEST(Message, hideAndQuitHaveNone) {
    expectPacket<ToExtension>(Hide{}, "hide");
    expectPacket<ToExtension>(Quit{}, "quit");
}

TEST(Message, motionHasOne) {
    expectPacket<ToExtension>(Motion{true}, "motion\0001"s);
}

TEST(Message, sourceNamesAFileByANumber) {
    expectPacket<ToExtension>(channel::Source{1, "HomeBank", "/home/anna/bills.xhb"},
                              "source\0001\0HomeBank\0/home/anna/bills.xhb"s);
}

TEST(Message, sourceFaultHasNumberAndReason) {
    expectPacket<ToExtension>(channel::SourceFault{0, "it is gone"}, "source-fault\0000\0it is gone"s);
}

TEST(Message, readyStatesTheVersion) {
    expectPacket<FromExtension>(Ready{1}, "ready\0001"s);
    expectPacket<FromExtension>(Ready{std::numeric_limits<int>::max()}, "ready\0002147483647"s);
}

TEST(Message, shownAndClosedHaveNone) {
    expectPacket<FromExtension>(Shown{}, "shown");
    expectPacket<FromExtension>(Closed{}, "closed");
}

TEST(Message, countsHasTwoNumbers) {
    expectPacket<FromExtension>(Counts{12, 0}, "counts\00012\0000"s);
}

TEST(Message, pendingHasOne) {
    expectPacket<FromExtension>(Pending{false}, "pending\0000"s);
}

TEST(Message, restartHasNoFields) {
    expectPacket<FromExtension>(channel::Restart{}, "restart"s);
}

TEST(Message, openHasAUrl) {
    expectPacket<FromExtension>(OpenUrl{"a://b"}, "open\0a://b"s);
}

TEST(Message, findSourcesHasNone) {
    expectPacket<FromExtension>(channel::FindSources{}, "find-sources");
}

TEST(Message, connectSourceHasANumberAndNoPath) {
    expectPacket<FromExtension>(channel::ConnectSource{3}, "connect-source\0003"s);
    EXPECT_FALSE(messageOf<FromExtension>("connect-source\0/home/anna/bills.xhb"s));
}

TEST(Message, commandHasANameAndAToken) {
    expectPacket<FromFurtherStart>(Command{"toggle", "t"}, "command\0toggle\0t"s);
}

TEST(Message, doneHasNone) {
    expectPacket<ToFurtherStart>(Done{}, "done");
}

TEST(Message, goesOneWayOnly) {
    EXPECT_FALSE(messageOf<ToExtension>("shown"));
    EXPECT_FALSE(messageOf<FromExtension>("hide"));
    EXPECT_FALSE(messageOf<FromFurtherStart>("done"));
    EXPECT_FALSE(messageOf<ToFurtherStart>("command\0show\0"s));
}

TEST(Message, isNotWrittenWithWhatAPacketCannotHold) {
    EXPECT_FALSE(packetOf(ToExtension(Show{"a\0b"s, "", false})));
    EXPECT_FALSE(packetOf(ToExtension(Show{"", std::string(longestPacket / 4 + 1, 'x'), false})));
    EXPECT_TRUE(packetOf(ToExtension(Show{"", std::string(longestPacket / 4, 'x'), false})));
    EXPECT_FALSE(packetOf(FromExtension(Counts{-1, 0})));
}

class Malformed : public testing::TestWithParam<Case> {};

TEST_P(Malformed, packetHoldsNoMessage) {
    EXPECT_FALSE(messageOf<ToExtension>(GetParam().packet));
    EXPECT_FALSE(messageOf<FromExtension>(GetParam().packet));
    EXPECT_FALSE(messageOf<FromFurtherStart>(GetParam().packet));
    EXPECT_FALSE(messageOf<ToFurtherStart>(GetParam().packet));
}

INSTANTIATE_TEST_SUITE_P(
    Packets, Malformed,
    testing::Values(Case{"empty", ""}, Case{"onlyASeparator", "\0"s}, Case{"unknownName", "shout"},
                    Case{"otherCase", "Hide"}, Case{"nameWithMore", "hidden"},
                    Case{"fieldTooMany", "hide\0"s}, Case{"fieldTooFew", "counts\0001"s},
                    Case{"noNumber", "counts\0one\0002"s}, Case{"negative", "counts\000-1\0002"s},
                    Case{"minusZero", "counts\000-0\0002"s}, Case{"plus", "counts\000+1\0002"s},
                    Case{"beyondAnInt", "ready\0002147483648"s}, Case{"numberWithMore", "ready\0001x"s},
                    Case{"emptyNumber", "ready\0"s}, Case{"truthOfTwo", "pending\0002"s},
                    Case{"truthInWords", "pending\0true"s},
                    Case{"longText", "open\0"s + std::string(longestPacket / 4 + 1, 'x')},
                    Case{"longPacket", std::string(longestPacket + 1, '\0')}),
    caseName);

// Each packet cut short, grown, and with each of its bytes changed. What does not hold ends the process.
TEST(Message, survivesDamage) {
    for (const std::string& packet :
         {"show\0DP-1\0token\0001"s, "source\0001\0HomeBank\0/b.xhb"s, "ready\0001"s, "counts\00012\0003"s,
          "open\0a://b"s, "command\0show\0t"s}) {
        for (std::size_t at = 0; at < packet.size(); ++at) {
            fuzz::readMessage(packet.substr(0, at));
            for (const char other : {'\0', '0', '-', '\xff'}) {
                std::string changed = packet;
                changed[at] = other;
                fuzz::readMessage(changed);
                fuzz::readMessage(changed + other);
            }
        }
    }
}
