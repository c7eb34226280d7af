#include "platform/system/CommandLine.h"

#include <gmock/gmock.h>

namespace platform {
namespace {

using testing::ElementsAre;
using testing::IsEmpty;
using Words = std::vector<std::string>;

constexpr CommandLineOption options[] = {
    {"--folder", "DIR", "where to look\nand to write"},
    {"--all", "", "everything"},
};
constexpr CommandLineOption more[] = {
    {"--form", "json|xml", "how"},
    {"--help", "", "this", "-h"},
};

CommandLine parsed(Operands operands, const Words& arguments) {
    const auto result = parseCommandLine(options, operands, arguments);
    if (const auto* error = std::get_if<CommandLineError>(&result))
        ADD_FAILURE() << error->message;
    const auto* line = std::get_if<CommandLine>(&result);
    return line ? *line : CommandLine();
}

std::string errorOf(Operands operands, const Words& arguments) {
    const auto result = parseCommandLine(options, operands, arguments);
    const auto* error = std::get_if<CommandLineError>(&result);
    return error ? error->message : "";
}

TEST(CommandLineTest, takesAValueAsTheNextArgumentOrAfterAnEqualsSign) {
    EXPECT_EQ(parsed(Operands::None, {"--folder", "/a b"}).value("--folder"), "/a b");
    EXPECT_EQ(parsed(Operands::None, {"--folder=/a=b"}).value("--folder"), "/a=b");
    EXPECT_EQ(parsed(Operands::None, {"--folder", "--all"}).value("--folder"), "--all");
}

TEST(CommandLineTest, tellsWhichOptionsAreGiven) {
    const CommandLine line = parsed(Operands::None, {"--all"});
    EXPECT_TRUE(line.has("--all"));
    EXPECT_FALSE(line.has("--folder"));
    EXPECT_EQ(line.value("--folder"), std::nullopt);
}

TEST(CommandLineTest, takesOptionsAroundOperandsUntilTwoHyphens) {
    const CommandLine line = parsed(Operands::Anywhere, {"a", "--all", "-", "-5", "--", "--folder", "--"});
    EXPECT_TRUE(line.has("--all"));
    EXPECT_FALSE(line.has("--folder"));
    EXPECT_THAT(line.operands, ElementsAre("a", "-", "-5", "--folder", "--"));
}

TEST(CommandLineTest, takesNoOptionBehindTheFirstOperandWhereThatEndsThem) {
    const CommandLine line = parsed(Operands::AfterOptions, {"--all", "a", "--folder", "--what=1"});
    EXPECT_TRUE(line.has("--all"));
    EXPECT_THAT(line.operands, ElementsAre("a", "--folder", "--what=1"));
    EXPECT_THAT(parsed(Operands::AfterOptions, {"--", "--all"}).operands, ElementsAre("--all"));
}

TEST(CommandLineTest, refusesOperandsWhereThereAreNone) {
    EXPECT_EQ(errorOf(Operands::None, {"file"}), "unknown option file");
    EXPECT_EQ(errorOf(Operands::None, {"--"}), "unknown option --");
}

TEST(CommandLineTest, saysWhatIsWrongWithAnOption) {
    for (const Operands operands : {Operands::None, Operands::Anywhere, Operands::AfterOptions}) {
        EXPECT_EQ(errorOf(operands, {"--nonsense=1"}), "unknown option --nonsense=1");
        EXPECT_EQ(errorOf(operands, {"--folder"}), "--folder needs a value");
        EXPECT_EQ(errorOf(operands, {"--folder="}), "--folder needs a value");
        EXPECT_EQ(errorOf(operands, {"--folder", ""}), "--folder needs a value");
        EXPECT_EQ(errorOf(operands, {"--all="}), "--all takes no value");
        EXPECT_EQ(errorOf(operands, {"--all", "--all"}), "--all is given twice");
        EXPECT_EQ(errorOf(operands, {"--folder=a", "--folder=b"}), "--folder is given twice");
    }
}

TEST(CommandLineTest, numbersTheArgumentsFromOne) {
    const CommandLine line = parsed(Operands::Anywhere, {"a", "--folder", "/f", "b", "--all", "--", "c"});
    EXPECT_THAT(line.operandPlaces, ElementsAre(1, 4, 7));
    EXPECT_THAT(line.optionPlaces, ElementsAre(std::pair("--all", 5), std::pair("--folder", 2)));
    const auto fault = parseCommandLine(options, Operands::Anywhere, {"--folder", "/f", "a", "--no"});
    EXPECT_EQ(std::get<CommandLineError>(fault).place, 4);
}

TEST(CommandLineTest, takesTheShortNameOfAnOptionAsItsOther) {
    const auto abbreviated = parseCommandLine(more, Operands::None, {"-h"});
    EXPECT_TRUE(std::get<CommandLine>(abbreviated).has("--help"));
    const auto ended = parseCommandLine(more, Operands::Anywhere, {"--", "-h"});
    EXPECT_THAT(std::get<CommandLine>(ended).operands, ElementsAre("-h"));
    const auto twice = parseCommandLine(more, Operands::Anywhere, {"-h", "--help"});
    EXPECT_EQ(std::get<CommandLineError>(twice).message, "--help is given twice");
    EXPECT_EQ(helpLines(more).back().subject, "-h, --help");
}

TEST(CommandLineTest, takesOnlyAValueThatTheOptionNames) {
    const auto xml = parseCommandLine(more, Operands::None, {"--form", "xml"});
    EXPECT_EQ(std::get<CommandLine>(xml).value("--form"), "xml");
    const auto other = parseCommandLine(more, Operands::None, {"--form=yaml"});
    EXPECT_EQ(std::get<CommandLineError>(other).message, "--form takes json or xml, not yaml");
}

TEST(CommandLineTest, tellsWordsThatHaveToBeGivenFromThoseThatStandForOthers) {
    EXPECT_THAT(choicesOf("paid|later|delete"), ElementsAre("paid", "later", "delete"));
    EXPECT_THAT(choicesOf("get"), ElementsAre("get"));
    EXPECT_THAT(choicesOf("FILE.json"), IsEmpty());
    EXPECT_THAT(choicesOf(""), IsEmpty());
    EXPECT_EQ(enumeration({"a"}), "a");
    EXPECT_EQ(enumeration({"a", "b", "c"}), "a, b or c");
}

TEST(CommandLineTest, setsHelpInTwoColumns) {
    std::vector<HelpLine> lines = helpLines(options);
    lines.push_back({"list", "what is there"});
    EXPECT_EQ(helpInColumns(lines), "  --folder DIR  where to look\n"
                                    "                and to write\n"
                                    "  --all         everything\n"
                                    "  list          what is there\n");
    EXPECT_THAT(helpInColumns({}), IsEmpty());
}

} // namespace
} // namespace platform
