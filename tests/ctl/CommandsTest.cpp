#include "ctl/Commands.h"
#include "ctl/CtlTest.h"

#include <gmock/gmock.h>
#include <nlohmann/json.hpp>

#include <algorithm>
#include <set>

namespace ctl {
namespace {

using testing::HasSubstr;
using testing::StartsWith;
using Words = std::vector<std::string>;

struct Case {
    const char* name;
    Words words;
    const char* sentence;
};

// Tests give the folder of containers first, which are two arguments.
class WrongWordTest : public CtlTest, public testing::WithParamInterface<Case> {};

TEST_P(WrongWordTest, isNamedWithItsPlace) {
    EXPECT_EQ(run(GetParam().words), 2);
    EXPECT_EQ(err, std::string("korvel-todayctl: argument ") + GetParam().sentence +
                       "; see korvel-todayctl --help\n");
    EXPECT_EQ(out, "");
}

INSTANTIATE_TEST_SUITE_P(
    Lines, WrongWordTest,
    testing::Values(
        Case{"noCommand", {}, "3: a command is missing"},
        Case{"unknownCommand", {"--json", "lists"}, "4: unknown command lists"},
        Case{"unknownOption", {"list", "--nope=1"}, "4: unknown option --nope=1"},
        Case{"optionOfAnother", {"list", "--to", "xml"}, "4: --to does not go with list"},
        Case{"optionOfNoUse", {"act", "p", "20", "--json", "paid"}, "6: --json does not go with act"},
        Case{"optionOfTheOtherWay",
             {"settings", "set", "k", "v", "--json"},
             "7: --json does not go with settings"},
        Case{"optionTwice", {"--json", "list", "--json"}, "5: --json is given twice"},
        Case{"valueMissing", {"plist", "f", "--to"}, "5: --to needs a value"},
        Case{"valueUnknown", {"plist", "f", "--to", "yaml"}, "5: --to takes json or xml, not yaml"},
        Case{"operandTooMany", {"list", "x"}, "4: list has no place for x"},
        Case{"operandAfterOptions", {"--json", "list", "--", "--x"}, "6: list has no place for --x"},
        Case{"planMissing", {"act"}, "4: PLANPK is missing"},
        Case{"actionMissing", {"act", "p", "20"}, "6: paid, delete, delete-future, info or later is missing"},
        Case{"actionUnknown",
             {"act", "p", "20", "pay"},
             "6: pay is not paid, delete, delete-future, info or later"},
        Case{"daysMissing", {"act", "p", "20", "later"}, "7: DAYS is missing"},
        Case{"daysNoNumber", {"act", "p", "20", "later", "2.5"}, "7: 2.5 is no whole number of days"},
        Case{"daysOfNoAction", {"act", "p", "20", "paid", "1"}, "7: act has no place for 1"},
        Case{"dateNoDate", {"act", "p", "soon", "paid"}, "5: soon is no date"},
        Case{"fileMissing", {"publish"}, "4: FILE.json is missing"},
        Case{"verbUnknown", {"settings", "put", "a", "b"}, "4: put is not get or set"},
        Case{"keyMissing", {"settings", "get"}, "5: KEY is missing"},
        Case{"valueOfSetting",
             {"settings", "set", "notification_days_count", "3.5"},
             "6: notification_days_count takes an integer, not 3.5"},
        Case{"helpForNothing", {"help", "lists"}, "4: unknown command lists"},
        Case{"helpForTwo", {"help", "list", "act"}, "5: help has no place for act"}),
    [](const auto& each) { return each.param.name; });

class HelpTest : public CtlTest {
protected:
    std::string printed(const Words& words) {
        EXPECT_EQ(run(words), 0) << err;
        EXPECT_EQ(err, "");
        return out;
    }
};

TEST_F(HelpTest, isTheSameBeyondItsSpellings) {
    const std::string all = printed({"help"});
    EXPECT_EQ(printed({"--help"}), all);
    EXPECT_EQ(printed({"-h"}), all);
    const std::string ofAct = printed({"help", "act"});
    EXPECT_EQ(printed({"act", "--help"}), ofAct);
    EXPECT_EQ(printed({"act", "p", "-h"}), ofAct);
    EXPECT_NE(ofAct, all);
}

TEST_F(HelpTest, namesEachCommandAndOption) {
    const std::string all = printed({"help"});
    for (const Command& command : commands()) {
        EXPECT_THAT(all, HasSubstr("\n  " + std::string(command.name))) << command.name;
        EXPECT_THAT(all, HasSubstr(std::string(command.text))) << command.name;
        EXPECT_THAT(printed({"help", std::string(command.name)}),
                    StartsWith("  korvel-todayctl " + std::string(command.name)));
    }
    for (const platform::CommandLineOption& option : knownOptions())
        EXPECT_THAT(all, HasSubstr(std::string(option.name)));
}

TEST_F(HelpTest, ofACommandHasItsWaysAndItsOptionsOnly) {
    const std::string text = printed({"help", "act"});
    EXPECT_THAT(text, HasSubstr("korvel-todayctl act PLANPK DATE paid|delete|delete-future|info "));
    EXPECT_THAT(text, HasSubstr("korvel-todayctl act PLANPK DATE later DAYS "));
    EXPECT_THAT(text, HasSubstr("--containers DIR"));
    EXPECT_THAT(text, testing::Not(HasSubstr("--json")));
    EXPECT_THAT(printed({"help", "settings"}), HasSubstr("settings get KEY [--json]"));
}

TEST_F(HelpTest, fitsIntoATerminal) {
    for (const Command& command : commands()) {
        std::istringstream text(printed({"help", std::string(command.name)}));
        for (std::string line; std::getline(text, line);)
            EXPECT_LE(line.size(), 120U) << line;
        EXPECT_EQ(command.text.find('\n'), std::string_view::npos) << command.name;
    }
}

TEST_F(HelpTest, isTheTableAsJson) {
    const auto table = nlohmann::json::parse(printed({"help", "--json"}));
    EXPECT_EQ(table.at("program"), "korvel-todayctl");
    std::set<std::string> options;
    for (const auto& option : table.at("options")) {
        options.insert(option.at("name").get<std::string>());
        EXPECT_EQ(option.at("text").get<std::string>().find('\n'), std::string::npos);
        EXPECT_EQ(option.at("value"), option.at("name") == "--to"           ? "json|xml"
                                      : option.at("name") == "--containers" ? "DIR"
                                                                            : "");
        EXPECT_EQ(option.at("shortName"), option.at("name") == "--help" ? "-h" : "");
    }
    EXPECT_EQ(table.at("commonOptions"), nlohmann::json({"--containers", "--version", "--help"}));
    ASSERT_EQ(table.at("commands").size(), commands().size());
    for (const auto& command : table.at("commands"))
        for (const auto& option : command.at("options"))
            EXPECT_TRUE(options.contains(option)) << option;
    const auto& later = table.at("commands").at(2);
    EXPECT_EQ(later.at("command"), "act");
    EXPECT_EQ(later.at("operands"), nlohmann::json({"PLANPK", "DATE", "later", "DAYS"}));
    EXPECT_EQ(later.at("text"), "put a transaction off to so many days from today");
}

} // namespace
} // namespace ctl
