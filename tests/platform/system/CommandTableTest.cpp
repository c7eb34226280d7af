#include "platform/system/CommandTable.h"

#include <gtest/gtest.h>

namespace platform {
namespace {

using Words = std::vector<std::string>;

constexpr CommandLineOption options[] = {
    {"--form", "json|xml", "how"},
    {"--json", "", "for programs"},
    {"--help", "", "this", "-h"},
};

const CommandTable table{"shelf",
                         {{"put", "FILE", "", "put a book there", ""},
                          {"put", "again", "", "put the last one there", "It may be gone.\n"},
                          {"show", "[NAME]", "--form", "show what is there", ""},
                          {"help", "[COMMAND]", "--json", "tell how", ""}},
                         options,
                         "--help",
                         "That is all.\n"};

CommandLine line(const Words& arguments) {
    return std::get<CommandLine>(parseCommandLine(options, Operands::Anywhere, arguments));
}

// The number of the way, or what is wrong and where.
std::string found(const Words& arguments) {
    const auto way = wayOf(table, line(arguments));
    if (const auto* error = std::get_if<CommandLineError>(&way))
        return std::to_string(error->place) + " " + error->message;
    return std::to_string(std::get<std::size_t>(way));
}

std::string printed(const Words& arguments) {
    return std::get<std::string>(helpOf(table, line(arguments)));
}

TEST(CommandTableTest, wayIsFoundByOperandsAndOptions) {
    EXPECT_EQ(found({"put", "a"}), "0");
    EXPECT_EQ(found({"show"}), "2");
    EXPECT_EQ(found({"--form", "xml", "show", "a"}), "2");
    EXPECT_EQ(found({"help", "put", "--json"}), "3");
}

TEST(CommandTableTest, wrongArgumentIsNamedWithItsPlace) {
    EXPECT_EQ(found({}), "1 a command is missing");
    EXPECT_EQ(found({"--help", "take"}), "2 unknown command take");
    EXPECT_EQ(found({"put"}), "2 FILE or again is missing");
    EXPECT_EQ(found({"show", "--", "a", "b"}), "4 show has no place for b");
    EXPECT_EQ(found({"put", "a", "--json"}), "3 --json does not go with put");
    EXPECT_EQ(std::get<CommandLineError>(helpOf(table, line({"help", "take"}))).place, 2U);
}

TEST(CommandTableTest, helpIsOfAllCommandsOrOfOne) {
    EXPECT_EQ(printed({"help"}), "shelf [--containers DIR] COMMAND\n\n"
                                 "  put FILE                       put a book there\n"
                                 "  put again                      put the last one there\n"
                                 "  show [NAME] [--form json|xml]  show what is there\n"
                                 "  help [COMMAND] [--json]        tell how\n\n"
                                 "  --form json|xml  how\n"
                                 "  --json           for programs\n"
                                 "  -h, --help       this\n\n"
                                 "That is all.\n");
    EXPECT_EQ(printed({"put", "-h"}), "  shelf put FILE   put a book there\n"
                                      "  shelf put again  put the last one there\n\n"
                                      "It may be gone.\n\n"
                                      "  -h, --help  this\n");
}

TEST(CommandTableTest, tableIsPrintedForPrograms) {
    const std::string json = printed({"help", "--json"});
    EXPECT_EQ(json, printed({"put", "--help", "--json"}));
    EXPECT_NE(
        json.find(
            R"({"command":"show","operands":["[NAME]"],"options":["--form"],"text":"show what is there"})"),
        json.npos)
        << json;
    EXPECT_NE(json.find(R"("program":"shelf")"), json.npos);
    EXPECT_EQ(json.back(), '\n');
}

} // namespace
} // namespace platform
