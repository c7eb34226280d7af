#include "host/Options.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>

namespace host {
namespace {

using Words = std::vector<std::string>;
using testing::ElementsAre;
using testing::IsEmpty;

struct Line {
    const char* name;
    Words arguments;
    Task task;
    Words words;
};

class CommandLine : public testing::TestWithParam<Line> {};

TEST_P(CommandLine, namesATaskAndWhatItIsAbout) {
    const Options options = parseOptions(GetParam().arguments);
    EXPECT_EQ(options.task, GetParam().task);
    EXPECT_EQ(options.words, GetParam().words);
}

INSTANTIATE_TEST_SUITE_P(
    Lines, CommandLine,
    testing::Values(Line{"session", {"dir", "panel"}, Task::Session, {"dir", "panel"}},
                    Line{"sessionWithThePanelsOptions",
                         {"dir", "panel", "--help", "--x=1"},
                         Task::Session,
                         {"dir", "panel", "--help", "--x=1"}},
                    Line{"delivery", {"--deliver", "box", "a:b"}, Task::Deliver, {"box", "a:b"}},
                    Line{"deliveryOfWhatLooksLikeAnOption",
                         {"--deliver", "box", "--help"},
                         Task::Deliver,
                         {"box", "--help"}},
                    Line{"window", {"--window", "box", "dir"}, Task::Window, {"box", "dir"}},
                    Line{"help", {"--help"}, Task::Help, {}}, Line{"nothing", {}, Task::Misused, {}},
                    Line{"noPanel", {"dir"}, Task::Misused, {}},
                    Line{"deliveryOfNothing", {"--deliver", "box"}, Task::Misused, {}},
                    Line{"windowWithoutContainers", {"--window", "box"}, Task::Misused, {}},
                    Line{"unknownOption", {"--what", "panel"}, Task::Misused, {}}),
    [](const auto& listed) { return std::string(listed.param.name); });

} // namespace
} // namespace host
