#include "ctl/check/CheckTest.h"
#include "ctl/check/DesktopHandlers.h"

#include <gmock/gmock.h>

#include <filesystem>

namespace ctl {
namespace {

using support::EnvironmentVariable;
using testing::ElementsAre;

class UrlHandlerCheckTest : public CheckTest {
protected:
    void remove(const std::string& name) const { std::filesystem::remove_all(desktop.path(name)); }
    void writeEntry(const std::string& lines) const {
        desktop.write("data/applications/host.desktop", "[Desktop Entry]\n" + lines);
    }
    // Associates both spellings with entries in a file, and leaves no other association.
    void associate(const std::string& file, const std::string& group, const std::string& entries) const {
        remove("data/applications/mimeinfo.cache");
        desktop.write(file, "[" + group + "]\nx-scheme-handler/korvelwidget=" + entries +
                                "\nx-scheme-handler/korvelWidget=" + entries + "\n");
    }
};

TEST_F(UrlHandlerCheckTest, namesADesktopWithoutAnOpener) {
    remove("bin/gio");
    EXPECT_THAT(checked(), ElementsAre("1", "loses noOpener - - -"));
}

TEST_F(UrlHandlerCheckTest, namesADesktopWithoutAHandler) {
    remove("data/applications/mimeinfo.cache");
    EXPECT_THAT(checked(), ElementsAre("1", "loses noHandler - - -"));
    EXPECT_NE(out.find("x-scheme-handler/korvelwidget, which gio looks up"), std::string::npos) << out;
}

TEST_F(UrlHandlerCheckTest, looksUpTheSpellingOfTheOpener) {
    desktop.write("data/applications/mimeinfo.cache",
                  "[MIME Cache]\nx-scheme-handler/korvelWidget=host.desktop\n");
    EXPECT_THAT(checked(), ElementsAre("1", "loses noHandler - - -"));
    std::filesystem::rename(desktop.path("bin/gio"), desktop.path("bin/xdg-open"));
    EXPECT_THAT(checked(), ElementsAre("0", "note otherSpellingMissing - - -"));
}

TEST_F(UrlHandlerCheckTest, notesThatTheOtherSpellingIsMissing) {
    desktop.write("data/applications/mimeinfo.cache",
                  "[MIME Cache]\nx-scheme-handler/korvelwidget=host.desktop\n");
    EXPECT_THAT(checked(), ElementsAre("0", "note otherSpellingMissing - - -"));
}

TEST_F(UrlHandlerCheckTest, namesAnEntryThatIsNotInstalled) {
    remove("data/applications/host.desktop");
    EXPECT_THAT(checked(), ElementsAre("1", "loses noHandler - - -"));
    EXPECT_NE(out.find("host.desktop, which is associated with it, is not installed"), std::string::npos)
        << out;
}

TEST_F(UrlHandlerCheckTest, anEntryThatIsHiddenOrCannotBeTriedIsNotInstalled) {
    writeEntry("Exec=host %u\nHidden=true\n");
    EXPECT_THAT(findings(), ElementsAre("loses noHandler - - -"));
    writeEntry("Exec=host %u\nTryExec=absent\n");
    EXPECT_THAT(findings(), ElementsAre("loses noHandler - - -"));
    writeEntry("Exec=host %u\nTryExec=host\n");
    EXPECT_THAT(findings(), ElementsAre());
}

TEST_F(UrlHandlerCheckTest, namesAnEntryThatCannotBeStarted) {
    const std::string finding = "loses handlerUnusable data/applications/host.desktop - Exec";
    for (const char* line : {"", "Exec=\n", "Exec=absent %u\n", "Exec=/nowhere/host %u\n"}) {
        writeEntry(line);
        EXPECT_THAT(checked(), ElementsAre("1", finding)) << line;
    }
    writeEntry("DBusActivatable=true\n");
    EXPECT_THAT(checked(), ElementsAre("0"));
}

TEST_F(UrlHandlerCheckTest, namesAnEntryThatIsNotToldTheUrl) {
    writeEntry("Exec=host\n");
    EXPECT_THAT(checked(),
                ElementsAre("0", "degrades handlerWithoutUrl data/applications/host.desktop - Exec"));
}

TEST_F(UrlHandlerCheckTest, readsAssociationsWhereverTheyMayBe) {
    const std::pair<const char*, const char*> places[] = {
        {"config/mimeapps.list", "Default Applications"},
        {"config/mimeapps.list", "Added Associations"},
        {"etc/mimeapps.list", "Default Applications"},
        {"data/applications/mimeapps.list", "Default Applications"},
        {"share/applications/mimeinfo.cache", "MIME Cache"},
    };
    for (const auto& [file, group] : places) {
        associate(file, group, "absent.desktop;host.desktop;");
        EXPECT_THAT(findings(), ElementsAre()) << file << group;
        associate(file, "Other Group", "host.desktop");
        EXPECT_THAT(findings(), ElementsAre("loses noHandler - - -")) << file << group;
        remove(file);
    }
}

TEST_F(UrlHandlerCheckTest, readsTheListOfTheDesktop) {
    associate("config/made-mimeapps.list", "Default Applications", "host.desktop");
    EXPECT_THAT(findings(), ElementsAre("loses noHandler - - -"));
    const EnvironmentVariable current("XDG_CURRENT_DESKTOP", "Other:MADE");
    EXPECT_THAT(findings(), ElementsAre());
}

TEST_F(UrlHandlerCheckTest, anAssociationCanBeRemoved) {
    desktop.write("config/mimeapps.list", "[Removed Associations]\n"
                                          "x-scheme-handler/korvelwidget=host.desktop;\n");
    EXPECT_THAT(findings(), ElementsAre("loses noHandler - - -"));
}

TEST_F(UrlHandlerCheckTest, findsEntriesInFoldersBelow) {
    std::filesystem::create_directories(desktop.path("share/applications/made/by"));
    std::filesystem::rename(desktop.path("data/applications/host.desktop"),
                            desktop.path("share/applications/made/by/host.desktop"));
    associate("config/mimeapps.list", "Default Applications", "made-by-host.desktop");
    EXPECT_THAT(findings(), ElementsAre());
    associate("config/mimeapps.list", "Default Applications", "made-host.desktop");
    EXPECT_THAT(findings(), ElementsAre("loses noHandler - - -"));
}

TEST_F(UrlHandlerCheckTest, findsThePlacesOfAUserWithoutVariables) {
    const EnvironmentVariable data("XDG_DATA_HOME", nullptr);
    const EnvironmentVariable config("XDG_CONFIG_HOME", "relative");
    std::filesystem::create_directories(desktop.path("home/.local"));
    std::filesystem::rename(desktop.path("data"), desktop.path("home/.local/share"));
    std::filesystem::remove(desktop.path("home/.local/share/applications/mimeinfo.cache"));
    EXPECT_THAT(findings(), ElementsAre("loses noHandler - - -"));
    associate("home/.config/mimeapps.list", "Default Applications", "host.desktop");
    EXPECT_THAT(findings(), ElementsAre());
}

TEST(ExecLineTest, namesItsProgram) {
    EXPECT_EQ(programOfExec("host %u"), "host");
    EXPECT_EQ(programOfExec("\"/opt/the host/host\" --url %u"), "/opt/the host/host");
    EXPECT_EQ(programOfExec("\"a\\\\\"b\" %u"), "a\"b");
    EXPECT_EQ(programOfExec(""), "");
}

} // namespace
} // namespace ctl
