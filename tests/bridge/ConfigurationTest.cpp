#include "bridge/Configuration.h"

#include "bridge/BridgeTest.h"

#include <gtest/gtest.h>

namespace bridge {

namespace {

using ConfigurationTest = BridgeTest;

Configuration sound(std::string_view text) {
    return std::get<Configuration>(configurationOfText(text));
}

} // namespace

TEST_F(ConfigurationTest, hasDefaultsWithoutAFile) {
    const auto file = std::get<ConfigurationFile>(readConfiguration());
    EXPECT_EQ(file.text, "");
    EXPECT_TRUE(file.configuration.files.empty());
    EXPECT_EQ(file.configuration.daysAhead, 31);
    EXPECT_EQ(file.configuration.daysUntilReminder, 3);
    EXPECT_FALSE(file.configuration.hledgerFirstDay);
}

TEST_F(ConfigurationTest, isWhatTheFileSays) {
    writeHome(configurationName, R"({"days_ahead": 7, "days_until_reminder": 0,
        "hledger_first_day": "2026-01-01",
        "files": [{"id": "a1", "path": "/x/A.xhb", "program": "homebank"}]})");
    const auto configuration = std::get<ConfigurationFile>(readConfiguration()).configuration;
    EXPECT_EQ(configuration.daysAhead, 7);
    EXPECT_EQ(configuration.daysUntilReminder, 0);
    EXPECT_EQ(configuration.hledgerFirstDay, dayOf("2026-01-01"));
    EXPECT_EQ(configuration.files, (std::vector<ConnectedFile>{{"a1", "/x/A.xhb", "homebank"}}));
}

TEST_F(ConfigurationTest, saysWhatIsWrongWithTheFile) {
    const struct {
        const char* text;
        const char* fault;
    } rows[] = {
        {"[]", "it is no JSON object"},
        {"{", "it is no JSON object"},
        {R"({"days_ahead": -1})", "\"days_ahead\" is no number from 0 to 366"},
        {R"({"days_ahead": 367})", "\"days_ahead\" is no number from 0 to 366"},
        {R"({"days_ahead": 1e3})", "\"days_ahead\" is no number from 0 to 366"},
        {R"({"days_ahead": 99999999999999999999})", "\"days_ahead\" is no number from 0 to 366"},
        {R"({"days_ahead": "7"})", "\"days_ahead\" is no number from 0 to 366"},
        {R"({"hledger_first_day": 5})", "\"hledger_first_day\" is no day like \"2026-01-31\""},
        {R"({"hledger_first_day": "soon"})", "\"hledger_first_day\" is no day like \"2026-01-31\""},
        {R"({"files": {}})", "\"files\" is no array"},
        {R"({"files": [1]})", "file 1 is no object"},
        {R"({"files": [{"path": "/x", "program": "p"}]})", "file 1: \"id\" is no text"},
        {R"({"files": [{"id": "", "path": "/x", "program": "p"}]})", "file 1: \"id\" is no text"},
        {R"({"files": [{"id": "a:b", "path": "/x", "program": "p"}]})",
         "file 1: \"id\" or \"program\" holds a colon"},
        {R"({"files": [{"id": "a", "path": "/x", "program": "p"}, {"id": "a", "path": "/y", "program": "p"}]})",
         "file 2: \"id\" is that of another file"},
    };
    for (const auto& row : rows) {
        writeHome(configurationName, row.text);
        const auto result = readConfiguration();
        ASSERT_TRUE(std::holds_alternative<std::string>(result)) << row.text;
        EXPECT_EQ(std::get<std::string>(result), homePath(configurationName) + ": " + row.fault);
    }
}

TEST_F(ConfigurationTest, keepsWhatElseTheFileHolds) {
    const std::string text = R"({"note": "mine", "days_ahead": 7, "files": [], "last": [1.50]})";
    ASSERT_EQ(writeConfiguration(textWithFiles(text, {{"a1", "/x/A.xhb", "homebank"}})), "");
    EXPECT_EQ(readHome(configurationName), R"({
    "note": "mine",
    "days_ahead": 7,
    "files": [
        {
            "id": "a1",
            "path": "/x/A.xhb",
            "program": "homebank"
        }
    ],
    "last": [
        1.5
    ]
}
)");
    EXPECT_EQ(sound(readHome(configurationName)).files.size(), 1U);
}

} // namespace bridge
