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
