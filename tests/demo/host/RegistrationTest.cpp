#include "host/Registration.h"

#include "support/Environment.h"
#include "support/TemporaryFolder.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>

namespace host {
namespace {

using support::EnvironmentVariable;
using testing::ElementsAre;
using testing::Pair;

struct Word {
    const char* name;
    const char* word;
    const char* written;
};

class ExecWord : public testing::TestWithParam<Word> {};

TEST_P(ExecWord, isQuotedOnlyWhereItMustBe) {
    EXPECT_EQ(execWord(GetParam().word), GetParam().written);
}

INSTANTIATE_TEST_SUITE_P(
    Words, ExecWord,
    testing::Values(Word{"plain", "/opt/demo-1.0_x/host", "/opt/demo-1.0_x/host"}, Word{"empty", "", R"("")"},
                    Word{"space", "a b", R"("a b")"}, Word{"quote", "a\"b", R"("a\"b")"},
                    Word{"dollarAndBacktick", "$a`", R"("\$a\`")"}, Word{"backslash", R"(a\b)", R"("a\\b")"},
                    Word{"singleQuote", "it's", R"("it's")"}, Word{"percent", "100%u", "100%%u"},
                    Word{"letterBeyondAscii", "für", R"("für")"}),
    [](const auto& listed) { return std::string(listed.param.name); });

TEST(Registration, entryNamesBothSpellingsOfTheScheme) {
    EXPECT_EQ(desktopEntry({"/opt/host", "--deliver", "/run/box"}),
              "[Desktop Entry]\nType=Application\nName=Demo host application\nNoDisplay=true\n"
              "Exec=/opt/host --deliver /run/box %u\n"
              "MimeType=x-scheme-handler/korvelWidget;x-scheme-handler/korvelwidget;\n");
}

// A desktop entry's own escapes come on top of the quoting of its command line.
TEST(Registration, entryEscapesTheCommandLineAgain) {
    EXPECT_THAT(desktopEntry({"/a\\b", "c\nd"}), testing::HasSubstr("\nExec=\"/a\\\\\\\\b\" \"c\\nd\" %u\n"));
}

TEST(Registration, associatesBothSpellingsWithTheEntry) {
    EXPECT_EQ(associations(), "[Default Applications]\n"
                              "x-scheme-handler/korvelWidget=korvel-demo-host.desktop\n"
                              "x-scheme-handler/korvelwidget=korvel-demo-host.desktop\n");
}

TEST(Registration, isWrittenBelowItsFolder) {
    const support::TemporaryFolder folder;
    ASSERT_TRUE(writeRegistration(folder.path(), {"/opt/host"}));
    EXPECT_EQ(folder.read("data/applications/korvel-demo-host.desktop"), desktopEntry({"/opt/host"}));
    EXPECT_EQ(folder.read("config/mimeapps.list"), associations());
    EXPECT_EQ(folder.count(), 2U);
}

TEST(Registration, thatCannotBeWrittenSaysSo) {
    const support::TemporaryFolder folder;
    folder.write("data", "no folder");
    EXPECT_FALSE(writeRegistration(folder.path(), {"/opt/host"}));
}

TEST(Registration, comesBeforeTheUsersOwnFolders) {
    const EnvironmentVariable home("HOME", "/h");
    const EnvironmentVariable data("XDG_DATA_HOME", "/h/data");
    const EnvironmentVariable config("XDG_CONFIG_HOME", "/h/config");
    const EnvironmentVariable dataDirs("XDG_DATA_DIRS", "/one:/two");
    const EnvironmentVariable configDirs("XDG_CONFIG_DIRS", "/three");
    EXPECT_THAT(environmentFor("/f"),
                ElementsAre(Pair("XDG_DATA_HOME", "/f/data"), Pair("XDG_CONFIG_HOME", "/f/config"),
                            Pair("XDG_DATA_DIRS", "/h/data:/one:/two"),
                            Pair("XDG_CONFIG_DIRS", "/h/config:/three")));
}

TEST(Registration, knowsTheFoldersThatNoVariableNames) {
    const EnvironmentVariable home("HOME", "/h");
    const EnvironmentVariable data("XDG_DATA_HOME", nullptr);
    const EnvironmentVariable config("XDG_CONFIG_HOME", "relative"); // counts as absent
    const EnvironmentVariable dataDirs("XDG_DATA_DIRS", nullptr);
    const EnvironmentVariable configDirs("XDG_CONFIG_DIRS", "");
    EXPECT_THAT(environmentFor("/f"),
                ElementsAre(Pair("XDG_DATA_HOME", "/f/data"), Pair("XDG_CONFIG_HOME", "/f/config"),
                            Pair("XDG_DATA_DIRS", "/h/.local/share:/usr/local/share:/usr/share"),
                            Pair("XDG_CONFIG_DIRS", "/h/.config:/etc/xdg")));
}

} // namespace
} // namespace host
