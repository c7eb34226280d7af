// The built program on hostile containers, and what its confinement leaves to it.
#include "ctl/ConfinementTest.h"

#include "ctl/Confinement.h"
#include "platform/confinement/ConfinedChild.h"

#include <gmock/gmock.h>

#include <cerrno>
#include <csignal>
#include <fstream>
#include <functional>
#include <sys/ptrace.h>
#include <sys/socket.h>
#include <sys/stat.h>
#include <sys/syscall.h>
#include <unistd.h>

namespace ctl {
namespace {

namespace plist = platform::plist;
using namespace exchange;
using testing::HasSubstr;

const std::string settingsName = "Library/Preferences/" + std::string(fullEditionGroupIdentifier) + ".plist";
const std::string record = "<dict><key>type</key><integer>1</integer><key>pk</key><string>old</string>"
                           "<key>date</key><real>1</real><key>param</key><integer>0</integer></dict>";

std::string attempt(const platform::AllowedFiles& files, const std::function<long()>& what) {
    return support::inConfinedChild([&] { return confineProcess(files); }, what);
}

// --- what is left to a process

TEST_F(CtlConfinementTest, leavesTheContainerAlone) {
    writeOutside("group.other/notifications.xml", "feed");
    const platform::AllowedFiles readable{{container}, {}};
    const platform::AllowedFiles writable{{}, {container}};
    for (const platform::AllowedFiles& files : {readable, writable}) {
        EXPECT_EQ(attempt(files, [this] { return support::readWholeFile(path("notifications.xml")); }),
                  "done");
        EXPECT_EQ(attempt(files, [this] { return support::readWholeFile(outside("secret")); }), "EACCES");
        EXPECT_EQ(
            attempt(files,
                    [this] { return support::readWholeFile(outside("group.other/notifications.xml")); }),
            "EACCES");
        EXPECT_EQ(
            attempt(files, [this] { return support::asCall(platform::replaceFile(outside("new"), "x")); }),
            "EACCES");
    }
    const auto replaceFeed = [this] {
        return support::asCall(platform::replaceFile(path("notifications.xml"), "new"));
    };
    EXPECT_EQ(attempt(readable, replaceFeed), "EACCES");
    EXPECT_EQ(attempt(writable, replaceFeed), "done");
    EXPECT_EQ(feed(), "new");
}

TEST_F(CtlConfinementTest, leavesNoSocketsProgramsSignalsAndTracing) {
    const auto attemptAlone = [](const std::function<long()>& what) { return attempt({}, what); };
    EXPECT_EQ(attemptAlone([] { return socket(AF_UNIX, SOCK_STREAM, 0); }), "ENOSYS");
    EXPECT_EQ(attemptAlone([] { return socket(AF_INET, SOCK_STREAM, 0); }), "ENOSYS");
    EXPECT_EQ(attemptAlone([] { return execl("/bin/true", "true", nullptr); }), "ENOSYS");
    EXPECT_EQ(attemptAlone([] { return syscall(SYS_clone, SIGCHLD, nullptr, nullptr, nullptr, nullptr); }),
              "ENOSYS");
    EXPECT_EQ(attemptAlone([] { return kill(getppid(), 0); }), "ENOSYS");
    EXPECT_EQ(attemptAlone([] { return ptrace(PTRACE_TRACEME, 0, nullptr, nullptr); }), "ENOSYS");
}

// --- links and keys that lead out of the container

TEST_F(CtlConfinementTest, listReadsNoFeedThroughALinkOut) {
    moveOut("notifications.xml", "feed");
    EXPECT_EQ(shell("$CTL list"), 1);
    EXPECT_EQ(out, "");
    EXPECT_EQ(err, errorOf("notifications.xml", "Permission denied"));
}

TEST_F(CtlConfinementTest, statusReadsNoFeedThroughALinkOut) {
    moveOut("notifications.xml", "feed");
    EXPECT_EQ(shell("$CTL status --json"), 1);
    EXPECT_THAT(out, testing::StartsWith("{\"overdue\": null, "));
    EXPECT_EQ(err, errorOf("notifications.xml", "Permission denied"));
}

TEST_F(CtlConfinementTest, noCommandReadsSettingsThroughALinkOut) {
    setAccount("one");
    moveOut(settingsName, "settings");
    for (const char* command : {"list", "status", "consume", "act plan 20 info"}) {
        EXPECT_EQ(shell(std::string("$CTL ") + command), 1) << command;
        EXPECT_EQ(err, errorOf(settingsName, "Permission denied")) << command;
    }
}

TEST_F(CtlConfinementTest, actReadsNoFeedThroughALinkOut) {
    moveOut("notifications.xml", "feed");
    const std::string before = textOf(outside("feed"));
    EXPECT_EQ(shell("$CTL act plan 20 paid"), 1);
    EXPECT_EQ(err, errorOf("notifications.xml", "Permission denied"));
    EXPECT_EQ(textOf(outside("feed")), before);
    EXPECT_FALSE(std::filesystem::exists(path("-"))) << "nothing is logged";
}

TEST_F(CtlConfinementTest, actLogsNothingOutsideTheContainer) {
    std::filesystem::create_directory(outside("there"));
    for (const char* key : {"../there", "../absent", "../there/new"}) {
        setAccount(key);
        writeFeed({plist::Value(recordOf("plan", 20))});
        EXPECT_EQ(shell("$CTL act plan 20 paid"), 1) << key;
        EXPECT_EQ(err, errorOf(std::string(key) + "/actions.xml",
                               "the action could not be logged; the feed is rewritten: Permission denied"));
        EXPECT_EQ(feed(), arrayFile(""));
    }
    EXPECT_TRUE(std::filesystem::is_empty(outside("there")));
    EXPECT_FALSE(std::filesystem::exists(outside("absent")));
}

TEST_F(CtlConfinementTest, consumeTakesNoLogOutsideTheContainer) {
    writeOutside("there/actions.xml", arrayFile(record));
    setAccount("../there");
    EXPECT_EQ(shell("$CTL consume"), 1);
    EXPECT_EQ(out, "");
    EXPECT_EQ(err, errorOf("../there/actions.xml", "the log's folder cannot be opened: Permission denied"));
    EXPECT_EQ(textOf(outside("there/actions.xml")), arrayFile(record));
}

TEST_F(CtlConfinementTest, consumeTakesNoLogThroughALinkOut) {
    writeOutside("log", arrayFile(record));
    linkOut("-/actions.xml", "log");
    EXPECT_EQ(shell("$CTL consume"), 1);
    EXPECT_EQ(out, "");
    EXPECT_EQ(textOf(outside("log")), arrayFile(record));
}

TEST_F(CtlConfinementTest, checkSaysWhatIsOutsideTheContainer) {
    setAccount("one");
    write("one/actions.xml", arrayFile(record));
    writeOutside("icons/house.png", "no picture");
    linkOut("one/icons", "icons");
    for (const auto& [file, target] : {std::pair<std::string, const char*>{"notifications.xml", "feed"},
                                       {settingsName, "settings"},
                                       {"one/actions.xml", "log"}}) {
        moveOut(file, target);
        EXPECT_EQ(shell("$CTL check"), 1);
        EXPECT_THAT(out,
                    HasSubstr(path(file) +
                              ": the file cannot be read: Permission denied; it is outside the container"));
        EXPECT_THAT(out,
                    HasSubstr(path(file) + ": the link leads out of the container, to " + outside(target)));
        EXPECT_THAT(out, HasSubstr(path(file) + ": the file cannot be replaced: Permission denied; it is "
                                                "outside the container"));
        std::filesystem::remove(path(file));
        std::filesystem::rename(outside(target), path(file));
    }
    EXPECT_EQ(shell("$CTL check"), 1);
    EXPECT_THAT(out, HasSubstr("house.png cannot be read: Permission denied; it is outside the container"));
}

TEST_F(CtlConfinementTest, checkOfAnAbsentContainerSaysSo) {
    removeContainer();
    EXPECT_EQ(shell("$CTL check"), 1);
    EXPECT_THAT(out, HasSubstr(container + ": there is no container"));
    std::ofstream(container) << "file";
    EXPECT_EQ(shell("$CTL check"), 1);
    EXPECT_THAT(out, HasSubstr(container + ": what is there is no folder"));
}

// As those of programs that are installed in folders of their own.
TEST_F(CtlConfinementTest, checkFollowsTheLinksOfTheDesktop) {
    writeOutside("application/host.desktop", "[Desktop Entry]\nExec=sh %u\n");
    writeOutside("lists/mimeapps.list", "[Default Applications]\nx-scheme-handler/korvelwidget=host.desktop\n"
                                        "x-scheme-handler/korvelWidget=host.desktop\n");
    std::filesystem::create_directories(outside("data/applications"));
    std::filesystem::create_symlink(outside("application/host.desktop"),
                                    outside("data/applications/host.desktop"));
    std::filesystem::create_symlink(outside("lists"), outside("config"));
    EXPECT_EQ(shell("XDG_DATA_HOME=" + outside("data") + " XDG_CONFIG_HOME=" + outside("config") +
                    " $CTL check --json"),
              1);
    EXPECT_THAT(out, testing::Not(HasSubstr("andler\""))) << "noHandler, handlerUnusable, ...";
}

TEST_F(CtlConfinementTest, aContainerMayBeALinkItself) {
    setAccount("one");
    std::filesystem::rename(container, outside("elsewhere"));
    std::filesystem::create_directory_symlink(outside("elsewhere"), container);
    EXPECT_EQ(shell("TZ=UTC $CTL list"), 0) << err;
    EXPECT_THAT(out, HasSubstr("Rent\n"));
    EXPECT_EQ(shell("$CTL act plan 20 paid"), 0) << err;
    EXPECT_EQ(shell("TZ=UTC $CTL consume"), 0) << err;
    EXPECT_EQ(out, "1970-01-01 00:00  paid           plan\n");
    EXPECT_EQ(textOf(outside("elsewhere/one/actions.xml")), arrayFile(""));
}

TEST_F(CtlConfinementTest, theContainerMayBeGivenByARelativePath) {
    EXPECT_EQ(shell("cd " + scratch + "/.. && unset KORVEL_GROUP_CONTAINERS && TZ=UTC $CTL --containers " +
                    std::filesystem::path(scratch).filename().string() + " act plan 20 paid"),
              0)
        << err;
    EXPECT_NE(log().find("plan"), std::string::npos);
}

TEST_F(CtlConfinementTest, dropsNoRightOfAFileThatItReplaces) {
    write("-/actions.xml", arrayFile(""));
    ASSERT_EQ(chmod(path("-/actions.xml").c_str(), 0660), 0);
    EXPECT_EQ(shell("$CTL act plan 20 paid"), 0) << err;
    struct stat status {};
    ASSERT_EQ(stat(path("-/actions.xml").c_str(), &status), 0);
    EXPECT_EQ(status.st_mode & 07777, 0660U);
}

// --- plist

TEST_F(CtlConfinementTest, plistReadsTheFileThatItIsGiven) {
    writeOutside("home/list", "(a)");
    std::filesystem::create_symlink(outside("home/list"), outside("link"));
    const std::string list = outside("home/list");
    for (const std::string& line :
         {"$CTL plist " + list, "$CTL plist " + outside("link"),
          "cd " + outside("home") + "; $CTL plist list", "cd " + container + "; $CTL plist ../link",
          "$CTL plist - < " + list, "cat " + list + " | $CTL plist -", "$CTL plist /dev/stdin < " + list,
          "$CTL plist /proc/self/fd/7 7< " + list}) {
        EXPECT_EQ(shell(line), 0) << line << ": " << err;
        EXPECT_EQ(out, "[\"a\"]\n") << line;
    }
}

TEST_F(CtlConfinementTest, plistSaysWhatIsNoFile) {
    EXPECT_EQ(shell("cat " + outside("secret") + " | $CTL plist /dev/stdin"), 1);
    EXPECT_EQ(err, "korvel-todayctl: /dev/stdin: Invalid argument\n");
    EXPECT_EQ(shell("$CTL plist " + scratch), 1);
    EXPECT_EQ(err, "korvel-todayctl: " + scratch + ": Is a directory\n");
    EXPECT_EQ(shell("$CTL plist " + outside("absent")), 1);
    EXPECT_EQ(err, "korvel-todayctl: " + outside("absent") + ": No such file or directory\n");
}

} // namespace
} // namespace ctl
