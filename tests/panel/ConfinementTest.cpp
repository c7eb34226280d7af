#include "panel/Confinement.h"

#include "exchange/LoggedAction.h"
#include "exchange/SharedFiles.h"
#include "exchange/SharedSettings.h"
#include "model/GroupIdentifiers.h"
#include "platform/confinement/ConfinedChild.h"
#include "platform/confinement/FileConfinement.h"
#include "platform/storage/Files.h"
#include "platform/storage/SharedDefaults.h"
#include "platform/storage/StorageError.h"
#include "platform/system/DetachedProcess.h"
#include "support/Containers.h"
#include "support/Environment.h"

#include <gtest/gtest.h>

#include <arpa/inet.h>
#include <cerrno>
#include <cstdio>
#include <cstring>
#include <fcntl.h>
#include <filesystem>
#include <netinet/in.h>
#include <string_view>
#include <sys/socket.h>
#include <sys/stat.h>
#include <sys/un.h>
#include <sys/wait.h>
#include <sys/xattr.h>
#include <unistd.h>

namespace {

using support::Containers;

std::string settingsWith(const std::string& accountKey) {
    return R"(<plist version="1.0"><dict><key>account_pk</key><string>)" + accountKey +
           "</string><key>notification_days_count</key><integer>7</integer></dict></plist>";
}

// The process of the panel, before the toolkit starts.
class ConfinementTest : public testing::Test {
protected:
    ConfinementTest() {
        if (platform::landlockVersion() == 0)
            std::puts("this kernel has no Landlock"); // CTest lists the test as skipped
        homeFolder.write("secret", "secret");
        homeFolder.write(".config/korvel-today/settings.ini", "");
        homeFolder.write(".local/share/fonts/font.ttf", "font");
        containers.writeFeed("feed");
        containers.writeSettings(settingsWith("demo"));
    }

    [[nodiscard]] static std::string attempt(const std::function<long()>& what,
                                             int kept = STDERR_FILENO + 1) {
        return support::inConfinedChild([kept] { return panel::Confinement().begin(kept); }, what);
    }

    const support::TemporaryFolder homeFolder;
    const support::EnvironmentVariable home{"HOME", homeFolder.path()};
    const support::EnvironmentVariable data{"XDG_DATA_HOME", nullptr};
    const support::EnvironmentVariable config{"XDG_CONFIG_HOME", nullptr};
    const Containers containers;
};

exchange::LoggedAction logPaid() {
    const TodayTransaction transaction(TodayTransaction::Values{});
    return exchange::logAction(exchange::ActionType::Paid, transaction, 0,
                               exchange::UnreadableLog::StartsAnew);
}

} // namespace

TEST_F(ConfinementTest, leavesTheContainer) {
    EXPECT_EQ(attempt([this] { return support::readWholeFile(containers.path("notifications.xml")); }),
              "done");
    EXPECT_EQ(attempt([] { return support::asCall(logPaid().log); }), "done");
    EXPECT_TRUE(containers.has("demo/actions.xml"));
    EXPECT_EQ(attempt([] {
                  auto defaults = exchange::openSharedSettings();
                  defaults->setString("url_string", "request");
                  return support::asCall(defaults->save());
              }),
              "done");
    EXPECT_NE(containers.read(Containers::settingsName()).find("request"), std::string::npos);
}

TEST_F(ConfinementTest, closesWhatWhoeverStartedTheProcessHasLeftOpen) {
    const int kept = open(homeFolder.path("secret").c_str(), O_RDONLY | O_CLOEXEC);
    const int before = dup2(kept, kept + 10);
    const int after = dup2(kept, kept + 20);
    const auto readFrom = [&](int file, int keptFile) {
        return attempt(
            [file] {
                char byte = 0;
                return ::read(file, &byte, 1) - 1;
            },
            keptFile);
    };
    EXPECT_EQ(readFrom(kept, before), "EBADF");
    EXPECT_EQ(readFrom(before, before), "done");
    EXPECT_EQ(readFrom(after, before), "EBADF");
    for (const int file : {kept, before, after})
        close(file);
}

// What replacing a file needs beside writing one.
TEST_F(ConfinementTest, leavesWhoMayReadAFileAsItIs) {
    const std::string feed = containers.path("notifications.xml");
    ASSERT_EQ(chmod(feed.c_str(), 0640), 0);
    // A list of version 2 with an entry for user 1 beside the owner, group, mask and others (acl(5)).
    constexpr std::string_view list("\2\0\0\0"
                                    "\1\0\6\0\377\377\377\377\2\0\4\0\1\0\0\0\4\0\4\0\377\377\377\377"
                                    "\20\0\4\0\377\377\377\377\40\0\0\0\377\377\377\377",
                                    44);
    constexpr const char* attribute = "system.posix_acl_access";
    ASSERT_EQ(setxattr(feed.c_str(), attribute, list.data(), list.size(), 0), 0);
    EXPECT_EQ(attempt([&] { return support::asCall(platform::replaceFile(feed, "new")); }), "done");
    EXPECT_EQ(containers.read("notifications.xml"), "new");
    char bytes[64];
    const ssize_t size = getxattr(feed.c_str(), attribute, bytes, sizeof bytes);
    ASSERT_GT(size, 0);
    EXPECT_EQ(std::string_view(bytes, static_cast<std::size_t>(size)), list);
}

TEST_F(ConfinementTest, leavesFontsAndNothingElseOfTheHomeFolder) {
    EXPECT_EQ(
        attempt([this] { return support::readWholeFile(homeFolder.path(".local/share/fonts/font.ttf")); }),
        "done");
    EXPECT_EQ(attempt([this] { return support::readWholeFile(homeFolder.path("secret")); }), "EACCES");
    EXPECT_EQ(attempt([this] {
                  return support::readWholeFile(homeFolder.path(".config/korvel-today/settings.ini"));
              }),
              "EACCES");
    EXPECT_EQ(attempt([this] { return support::asCall(platform::replaceFile(homeFolder.path("new"), "x")); }),
              "EACCES");
}

TEST_F(ConfinementTest, forbidsTheContainersOfOtherGroups) {
    containers.folder().write("group.other/notifications.xml", "feed");
    EXPECT_EQ(attempt([this] {
                  return support::readWholeFile(containers.folder().path("group.other/notifications.xml"));
              }),
              "EACCES");
}

TEST_F(ConfinementTest, opensTheFreeEditionsSettingsEmpty) {
    const std::string group(freeEditionGroupIdentifier);
    containers.folder().write(group + "/Library/Preferences/" + group + ".plist", settingsWith("free"));
    const auto readsKey = [&] {
        const auto defaults = platform::SharedDefaults::open(group);
        return defaults && defaults->stringForKey("account_pk") ? 0 : -1;
    };
    EXPECT_EQ(readsKey(), 0);
    EXPECT_EQ(attempt([&] {
                  const auto defaults = platform::SharedDefaults::open(group);
                  return defaults && defaults->values().size() == 0 ? 0 : -1;
              }),
              "done");
}

// The key of an account is one component of a path as it stands, and may lead out of the container.
TEST_F(ConfinementTest, failsToWriteTheLogOfAnAccountOutsideTheContainer) {
    containers.folder().write("x/actions.xml", "kept");
    for (const char* key : {"../x", "../../x", "../../../../../../../tmp"}) {
        containers.writeSettings(settingsWith(key));
        EXPECT_EQ(attempt([] { return support::asCall(logPaid().log); }), "EACCES") << key;
    }
    EXPECT_EQ(containers.folder().read("x/actions.xml"), "kept");
    EXPECT_EQ(containers.folder().count("x"), 1U) << "no debris";
}

TEST_F(ConfinementTest, forbidsPrograms) {
    EXPECT_TRUE(platform::startDetached("/bin/true", {"true"}));
    EXPECT_EQ(attempt([] { return platform::startDetached("/bin/true", {"true"}) ? 0 : -1; }), "ENOSYS");
    EXPECT_EQ(attempt([] { return execl("/bin/true", "true", nullptr); }), "ENOSYS");
}

TEST_F(ConfinementTest, forbidsAListenerOnTheLoopbackInterface) {
    const int listener = socket(AF_INET, SOCK_STREAM | SOCK_CLOEXEC, 0);
    sockaddr_in address{};
    address.sin_family = AF_INET;
    address.sin_addr.s_addr = htonl(INADDR_LOOPBACK);
    socklen_t size = sizeof address;
    ASSERT_EQ(bind(listener, reinterpret_cast<sockaddr*>(&address), size), 0);
    ASSERT_EQ(listen(listener, 4), 0);
    ASSERT_EQ(getsockname(listener, reinterpret_cast<sockaddr*>(&address), &size), 0);
    const auto connectTo = [&](int client) {
        return connect(client, reinterpret_cast<const sockaddr*>(&address), sizeof address);
    };
    const int client = socket(AF_INET, SOCK_STREAM | SOCK_CLOEXEC, 0);
    EXPECT_EQ(connectTo(client), 0);
    close(client);
    EXPECT_EQ(attempt([] { return socket(AF_INET, SOCK_STREAM | SOCK_CLOEXEC, 0); }), "ENOSYS");
    const int former = socket(AF_INET, SOCK_STREAM | SOCK_CLOEXEC, 0);
    if (platform::landlockVersion() >= 4) {
        EXPECT_EQ(attempt([&] { return connectTo(former); }, former), "EACCES");
    }
    close(former);
    close(listener);
}

// Local sockets are not files to the kernel's confinement, so that a process needs its connections first.
TEST_F(ConfinementTest, forbidsTheSessionBusOnceConnectionsAreForbidden) {
    const int listener = socket(AF_UNIX, SOCK_STREAM | SOCK_CLOEXEC, 0);
    sockaddr_un address{};
    address.sun_family = AF_UNIX;
    std::strncpy(address.sun_path, homeFolder.path("bus").c_str(), sizeof address.sun_path - 1);
    ASSERT_EQ(bind(listener, reinterpret_cast<sockaddr*>(&address), sizeof address), 0);
    ASSERT_EQ(listen(listener, 4), 0);
    const auto connectToBus = [&]() -> long {
        const int client = socket(AF_UNIX, SOCK_STREAM | SOCK_CLOEXEC, 0);
        return client < 0 ? -1 : connect(client, reinterpret_cast<const sockaddr*>(&address), sizeof address);
    };
    EXPECT_EQ(attempt(connectToBus), "done");
    EXPECT_EQ(attempt([&]() -> long { return panel::Confinement::forbidConnections() ? 0 : connectToBus(); }),
              "EPERM");
    close(listener);
}

// Each in a process of its own, which confines itself, and then looks again after something has changed.
class OutdatedTest : public ConfinementTest {
protected:
    // What isOutdated() says after the change, which a process makes that is not confined.
    [[nodiscard]] static std::string after(const std::function<void()>& change) {
        int ends[2];
        EXPECT_EQ(socketpair(AF_UNIX, SOCK_STREAM | SOCK_CLOEXEC, 0, ends), 0);
        const pid_t other = fork();
        char byte = 0;
        if (other == 0) {
            close(ends[0]);
            if (::read(ends[1], &byte, 1) == 1) {
                change();
                (void)!write(ends[1], "x", 1);
            }
            _exit(0);
        }
        panel::Confinement confinement;
        const std::string result =
            support::inConfinedChild([&] { return confinement.begin(ends[0]); },
                                     [&] {
                                         const bool isOutdatedBefore = confinement.isOutdated();
                                         const bool isChanged =
                                             write(ends[0], "x", 1) == 1 && ::read(ends[0], &byte, 1) == 1;
                                         const bool isOutdatedAfter = confinement.isOutdated();
                                         errno = isOutdatedBefore || !isChanged ? EIO : ESTALE;
                                         return isOutdatedBefore || !isChanged || isOutdatedAfter ? -1 : 0;
                                     });
        for (const int end : ends)
            close(end);
        EXPECT_EQ(waitpid(other, nullptr, 0), other);
        return result == "ESTALE" ? "outdated" : result == "done" ? "as before" : result;
    }

    [[nodiscard]] std::string container() const { return containers.path(); }
};

TEST_F(OutdatedTest, aContainerThatChanges) {
    EXPECT_EQ(after([this] { containers.writeFeed("other"); }), "as before");
}

TEST_F(OutdatedTest, aContainerThatGoes) {
    EXPECT_EQ(after([this] { std::filesystem::remove_all(container()); }), "as before");
}

TEST_F(OutdatedTest, aContainerThatIsReplaced) {
    EXPECT_EQ(after([this] {
                  std::filesystem::rename(container(), container() + ".old");
                  std::filesystem::create_directory(container());
              }),
              "outdated");
}

// The file system may give a new folder the number of one that has been removed.
TEST_F(OutdatedTest, aContainerThatIsRemovedAndMadeAnew) {
    EXPECT_EQ(after([this] {
                  std::filesystem::remove_all(container());
                  std::filesystem::create_directory(container());
              }),
              "outdated");
}

TEST_F(OutdatedTest, aContainerThatComes) {
    std::filesystem::remove_all(container());
    EXPECT_EQ(after([this] { std::filesystem::create_directory(container()); }), "outdated");
}

TEST_F(OutdatedTest, aContainerThatIsALinkToAnotherFolderNow) {
    std::filesystem::rename(container(), container() + ".first");
    std::filesystem::create_directory(container() + ".second");
    std::filesystem::create_directory_symlink(container() + ".first", container());
    EXPECT_EQ(after([this] {
                  std::filesystem::remove(container());
                  std::filesystem::create_directory_symlink(container() + ".second", container());
              }),
              "outdated");
}

TEST_F(OutdatedTest, theTimeZonesFileWhereTheNewOneCannotBeRead) {
    const std::string file = homeFolder.write("zone", "TZif");
    const support::EnvironmentVariable zone("TZ", ":" + file);
    tzset();
    EXPECT_EQ(after([&] { EXPECT_FALSE(platform::replaceFile(file, "TZif2")); }), "outdated");
    EXPECT_EQ(after([&] { std::filesystem::remove(file); }), "as before");
    const std::string link = homeFolder.path("link");
    const support::EnvironmentVariable linked("TZ", ":" + link);
    std::filesystem::create_symlink("/usr/share/zoneinfo/Etc/UTC", link);
    EXPECT_EQ(after([&] {
                  std::filesystem::remove(link);
                  std::filesystem::create_symlink("/usr/share/zoneinfo/Europe/Berlin", link);
              }),
              "as before")
        << "which it may read";
}
