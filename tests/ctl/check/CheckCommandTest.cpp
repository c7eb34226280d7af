#include "ctl/check/CheckTest.h"
#include "ctl/check/Finding.h"

#include <gmock/gmock.h>

#include <nlohmann/json.hpp>

#include <filesystem>
#include <fstream>
#include <regex>
#include <sstream>

namespace ctl {
namespace {

namespace plist = platform::plist;

using exchange::recordOf;
using exchange::tenthOfMarch;
using exchange::without;
using plist::Value;
using testing::ElementsAre;

class CheckCommandTest : public CheckTest {};

std::string textOfFile(const std::string& path) {
    std::stringstream text;
    text << std::ifstream(path).rdbuf();
    return text.str();
}

std::string nameOf(Severity severity) {
    constexpr const char* names[] = {"ends", "loses", "degrades", "note"};
    return names[static_cast<std::size_t>(severity)];
}

TEST_F(CheckCommandTest, printsForPeople) {
    writeFeed({Value(recordOf("p", tenthOfMarch)), without(recordOf("q", tenthOfMarch), "name"),
               without(recordOf("r", tenthOfMarch), "amount")});
    EXPECT_EQ(run({"check"}), 1);
    const std::string feed = path("notifications.xml");
    EXPECT_EQ(out, "These end the panel:\n"
                   "  " +
                       feed +
                       ", record 2, \"name\": the key is missing\n"
                       "  " +
                       feed +
                       ", record 3, \"amount\": the key is missing\n"
                       "    panel: the panel ends when it opens\n"
                       "    cure: write all eight keys of every record\n"
                       "\n");
    EXPECT_EQ(err,
              "korvel-todayctl: " + container + ": findings that end the panel: 2, that lose an action: 0\n");
}

TEST_F(CheckCommandTest, saysWhereNothingIsLost) {
    setSettings({{"notification_days_count", Value("0")}});
    EXPECT_EQ(run({"check"}), 0);
    EXPECT_TRUE(out.ends_with("\nNothing ends the panel, and no action is lost.\n")) << out;
    EXPECT_EQ(err, "");
}

TEST_F(CheckCommandTest, printsForPrograms) {
    writeFeed({without(recordOf("q", tenthOfMarch), "name")});
    EXPECT_EQ(run({"check", "--json"}), 1);
    const std::string feed = path("notifications.xml");
    EXPECT_EQ(out, "[\n"
                   "  {\"severity\": \"ends\", \"finding\": \"keyMissing\", \"file\": \"" +
                       feed +
                       "\", "
                       "\"record\": 1, \"key\": \"name\", \"wrong\": \"the key is missing\", "
                       "\"consequence\": \"the panel ends when it opens\", "
                       "\"remedy\": \"write all eight keys of every record\", \"more\": 0}\n"
                       "]\n");
}

TEST_F(CheckCommandTest, printsAnEmptyArrayForASoundContainer) {
    EXPECT_EQ(run({"check", "--json"}), 0);
    EXPECT_EQ(out, "[]\n");
}

TEST_F(CheckCommandTest, printsNothingRawToATerminal) {
    writeFeed({exchange::with(recordOf("p", tenthOfMarch), "a\x1B[31m\xE2\x80\xAE\n", Value("\x01")),
               exchange::with(recordOf("p", tenthOfMarch), "image", Value("\x1B]0;x\x07"))});
    EXPECT_EQ(run({"check"}), 1);
    for (const char character : out)
        EXPECT_TRUE(character == '\n' || static_cast<unsigned char>(character) >= 0x20) << out;
    EXPECT_EQ(out.find("\xE2\x80\xAE"), std::string::npos) << out;
}

TEST_F(CheckCommandTest, keepsSoManyOfAKindAndCountsTheOthers) {
    const std::vector<Value> records(Findings::limit + 234, without(recordOf("q", tenthOfMarch), "name"));
    writeFeed(records);
    EXPECT_EQ(run({"check", "--json"}), 1);
    std::size_t missing = 0;
    for (const auto& finding : nlohmann::json::parse(out))
        if (finding.at("finding") == "keyMissing") {
            ++missing;
            EXPECT_EQ(finding.at("more"), 234);
        }
    EXPECT_EQ(missing, Findings::limit);
    EXPECT_EQ(run({"check"}), 1);
    EXPECT_NE(out.find("  and 234 more of this kind\n"), std::string::npos);
    EXPECT_NE(err.find("findings that end the panel: 1234,"), std::string::npos) << err;
}

TEST_F(CheckCommandTest, takesNoOperand) {
    EXPECT_EQ(run({"check", "feed"}), 2);
    EXPECT_EQ(err, "korvel-todayctl: argument 4: check has no place for feed; see korvel-todayctl --help\n");
}

// docs/check.md has the table of the findings.
TEST_F(CheckCommandTest, isDocumentedFindingByFinding) {
    const std::string page = textOfFile(KORVEL_SOURCE_DIR "/docs/check.md");
    for (const FaultKind& kind : faultKinds()) {
        const std::string start = "| `" + std::string(kind.name) + "` | " + nameOf(kind.severity) + " | ";
        const std::string end =
            " | " + std::string(kind.consequence) + " | " + std::string(kind.remedy) + " |\n";
        const std::size_t row = page.find(start);
        ASSERT_NE(row, std::string::npos) << start;
        const std::size_t lineEnd = page.find('\n', row);
        EXPECT_EQ(page.substr(lineEnd + 1 - end.size(), end.size()), end);
    }
    const std::regex row("\\| `\\w+` \\| \\w+ \\| ");
    const auto rows =
        std::distance(std::sregex_iterator(page.begin(), page.end(), row), std::sregex_iterator());
    EXPECT_EQ(static_cast<std::size_t>(rows), faultKinds().size());
}

// Each kind of finding is expected somewhere in the tests of this folder, with its severity.
TEST_F(CheckCommandTest, isTestedFindingByFinding) {
    std::string tests;
    for (const auto& entry : std::filesystem::directory_iterator(KORVEL_SOURCE_DIR "/tests/ctl/check"))
        tests += textOfFile(entry.path());
    for (const FaultKind& kind : faultKinds()) {
        const std::string expected = nameOf(kind.severity) + " " + std::string(kind.name);
        EXPECT_NE(tests.find('"' + expected), std::string::npos) << expected;
    }
}

} // namespace
} // namespace ctl
