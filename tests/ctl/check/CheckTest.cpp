#include "ctl/check/CheckTest.h"

#include "model/GroupIdentifiers.h"

#include <QBuffer>
#include <QByteArray>
#include <QImage>

#include <nlohmann/json.hpp>

#include <algorithm>
#include <cstdio>
#include <filesystem>
#include <grp.h>
#include <sys/stat.h>
#include <sys/wait.h>
#include <unistd.h>

namespace ctl {

namespace files = std::filesystem;

namespace {

constexpr uid_t otherUser = 65534;

std::string part(const nlohmann::json& value) {
    return value.is_null() ? "-" : value.is_string() ? value.get<std::string>() : value.dump();
}

void give(const std::string& folder, uid_t user) {
    ASSERT_EQ(lchown(folder.c_str(), user, user), 0) << folder;
    for (const auto& entry : files::recursive_directory_iterator(folder))
        ASSERT_EQ(lchown(entry.path().c_str(), user, user), 0) << entry.path();
}

} // namespace

CheckTest::CheckTest()
    : path_("PATH", desktop.path("bin"))
    , home_("HOME", desktop.path("home"))
    , dataHome_("XDG_DATA_HOME", desktop.path("data"))
    , dataFolders_("XDG_DATA_DIRS", desktop.path("share"))
    , configHome_("XDG_CONFIG_HOME", desktop.path("config"))
    , configFolders_("XDG_CONFIG_DIRS", desktop.path("etc"))
    , currentDesktop_("XDG_CURRENT_DESKTOP", nullptr) {
    for (const char* program : {"bin/gio", "bin/host"}) {
        desktop.write(program, "#!/bin/sh\n");
        chmod(desktop.path(program).c_str(), 0755);
    }
    desktop.write("data/applications/host.desktop", "[Desktop Entry]\nType=Application\nExec=host %u\n");
    desktop.write("data/applications/mimeinfo.cache", "[MIME Cache]\n"
                                                      "x-scheme-handler/korvelwidget=host.desktop;\n"
                                                      "x-scheme-handler/korvelWidget=host.desktop;\n");
    writeFeed({exchange::plist::Value(exchange::recordOf("p", exchange::tenthOfMarch)),
               exchange::plist::Value(exchange::recordOf("p", exchange::tenthOfMarch + 10 * exchange::day))});
    writeIcon("house", pngBytes(4, 4));
}

void CheckTest::TearDown() {
    std::reverse(closed_.begin(), closed_.end()); // so that an outer folder is opened before what is in it
    for (const std::string& name : closed_)
        chmod(name.c_str(), 0755);
    CtlTest::TearDown();
}

std::string CheckTest::settingsFile() {
    return "Library/Preferences/" + std::string(fullEditionGroupIdentifier) + ".plist";
}

std::string CheckTest::pngBytes(int width, int height) {
    QImage image(width, height, QImage::Format_Mono); // also a large one is made quickly
    image.fill(0);
    QByteArray bytes;
    QBuffer buffer(&bytes);
    EXPECT_TRUE(buffer.open(QIODevice::WriteOnly) && image.save(&buffer, "PNG"));
    return bytes.toStdString();
}

void CheckTest::writeIcon(const std::string& name, const std::string& bytes) const {
    write("-/icons/" + name + ".png", bytes);
}

void CheckTest::link(const std::string& relative, const std::string& target) const {
    files::remove_all(path(relative));
    files::create_directories(files::path(path(relative)).parent_path());
    files::create_symlink(target, path(relative));
}

void CheckTest::setMode(const std::string& relative, mode_t mode) {
    const std::string name = relative == "." ? container : path(relative);
    ASSERT_EQ(chmod(name.c_str(), mode), 0) << name;
    closed_.push_back(name);
}

void CheckTest::setAccountKey(const std::string& key) const {
    setSettings({{"account_pk", exchange::plist::Value(key)}});
}

std::vector<std::string> CheckTest::linesOf(const std::string& json) const {
    std::vector<std::string> lines;
    for (const auto& finding : nlohmann::json::parse(json)) {
        std::string file = part(finding.at("file"));
        for (const std::string& folder : {container, desktop.path(), scratch})
            if (file == folder)
                file = ".";
            else if (file.starts_with(folder + "/"))
                file.erase(0, folder.size() + 1);
        EXPECT_FALSE(part(finding.at("wrong")).empty());
        EXPECT_FALSE(part(finding.at("consequence")).empty());
        EXPECT_FALSE(part(finding.at("remedy")).empty());
        lines.push_back(part(finding.at("severity")) + " " + part(finding.at("finding")) + " " + file + " " +
                        part(finding.at("record")) + " " + part(finding.at("key")));
    }
    return lines;
}

std::vector<std::string> CheckTest::checked() {
    const int status = run({"check", "--json"});
    EXPECT_EQ(err.empty(), status == 0) << err;
    std::vector<std::string> lines = linesOf(out);
    lines.insert(lines.begin(), std::to_string(status));
    return lines;
}

std::vector<std::string> CheckTest::findings() {
    std::vector<std::string> lines = checked();
    lines.erase(lines.begin());
    return lines;
}

// Root becomes another user in a child process, to whom all files belong.
std::vector<std::string> CheckTest::checkedByAUser() {
    if (geteuid() != 0)
        return checked();
    give(scratch, otherUser);
    give(desktop.path(), otherUser);
    // The folders above it are root's own and closed.
    const std::string holder = files::path(desktop.path()).parent_path();
    chmod(holder.c_str(), 0711);
    FILE* const output = std::tmpfile();
    const pid_t child = fork();
    if (child == 0) {
        if (setgroups(0, nullptr) != 0 || setresgid(otherUser, otherUser, otherUser) != 0 ||
            setresuid(otherUser, otherUser, otherUser) != 0)
            _exit(99);
        const int status = run({"check", "--json"});
        std::fputs(out.c_str(), output);
        std::fflush(output);
        _exit(status);
    }
    int status = 0;
    EXPECT_EQ(waitpid(child, &status, 0), child);
    EXPECT_TRUE(WIFEXITED(status));
    std::rewind(output);
    std::string json;
    char buffer[4096];
    for (std::size_t count = 0; (count = std::fread(buffer, 1, sizeof buffer, output)) > 0;)
        json.append(buffer, count);
    std::fclose(output);
    std::vector<std::string> lines = linesOf(json);
    lines.insert(lines.begin(), std::to_string(WEXITSTATUS(status)));
    return lines;
}

} // namespace ctl
