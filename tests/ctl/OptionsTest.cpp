#include "ctl/Options.h"
#include "ctl/CtlTest.h"
#include "model/GroupIdentifiers.h"

#include <gmock/gmock.h>

#include <algorithm>

namespace ctl {
namespace {

using testing::ElementsAre;
using testing::HasSubstr;
using testing::IsEmpty;
using testing::StartsWith;

Options parsed(const std::vector<std::string>& arguments) {
    return std::get<Options>(parseOptions(arguments));
}

TEST(OptionsTest, mayStandAnywhere) {
    const Options options = parsed({"--containers", "/c", "list", "--json", "x"});
    EXPECT_EQ(options.containers, "/c");
    EXPECT_TRUE(options.json);
    EXPECT_THAT(options.line.operands, ElementsAre("list", "x"));
}

TEST(OptionsTest, takeTheirValueAfterAnEqualsSignToo) {
    EXPECT_EQ(parsed({"--containers=/a=b"}).containers, "/a=b");
    EXPECT_EQ(parsed({"--to=json"}).to, "json");
}

TEST(OptionsTest, endAtTwoHyphens) {
    EXPECT_THAT(parsed({"settings", "set", "--", "key", "--json"}).line.operands,
                ElementsAre("settings", "set", "key", "--json"));
}

TEST(OptionsTest, leaveASingleHyphenAndNegativeNumbersToTheCommand) {
    EXPECT_THAT(parsed({"publish", "-", "-5"}).line.operands, ElementsAre("publish", "-", "-5"));
}

class MisuseTest : public CtlTest, public testing::WithParamInterface<std::vector<std::string>> {};

TEST_P(MisuseTest, isSaidOnOneLineOfStandardError) {
    EXPECT_EQ(run(GetParam()), 2);
    EXPECT_THAT(out, IsEmpty());
    EXPECT_THAT(err, StartsWith("korvel-todayctl: "));
    EXPECT_EQ(std::count(err.begin(), err.end(), '\n'), 1);
    EXPECT_TRUE(err.ends_with("; see korvel-todayctl --help\n")) << err;
}

using Words = std::vector<std::string>;

INSTANTIATE_TEST_SUITE_P(
    Lines, MisuseTest,
    testing::Values(Words{}, Words{"lists"}, Words{"list", "x"}, Words{"plist"}, Words{"plist", "a", "b"},
                    Words{"plist", "a", "--to", "yaml"}, Words{"list", "--to", "xml"}, Words{"--nope"},
                    Words{"list", "--containers"}, Words{"--containers="}, Words{"--json=1", "list"},
                    Words{"publish"}, Words{"publish", "a", "b"}, Words{"settings"}, Words{"act", "p"},
                    Words{"act", "p", "20"}, Words{"act", "p", "20", "pay"}, Words{"act", "p", "20", "later"},
                    Words{"act", "p", "20", "later", "x"}, Words{"act", "p", "20", "paid", "1"},
                    Words{"act", "p", "soon", "paid"}, Words{"consume", "x"}, Words{"settings", "get"},
                    Words{"settings", "put", "a", "b"},
                    Words{"settings", "set", "notification_days_count", "3.5"},
                    Words{"settings", "set", "edit_transaction_date", "soon"},
                    Words{"settings", "set", "name", "\xFF"}));

class ProgramTest : public CtlTest {};

TEST_F(ProgramTest, saysItsVersionAndItsGroup) {
    EXPECT_EQ(run({"--version"}), 0);
    EXPECT_THAT(out, StartsWith("korvel-todayctl "));
    EXPECT_TRUE(out.ends_with(" (" + std::string(fullEditionGroupIdentifier) + ")\n")) << out;
}

TEST_F(ProgramTest, saysHowItIsUsed) {
    EXPECT_EQ(run({"--help"}), 0);
    for (const char* command : {"act", "consume", "list", "publish", "settings get", "settings set"})
        EXPECT_THAT(out, HasSubstr(command));
}

} // namespace
} // namespace ctl
