#include "center/Settings.h"

#include "platform/storage/InotifyWatcher.h"
#include "support/Environment.h"
#include "support/ManualWatches.h"
#include "support/PrivateBus.h"
#include "support/TemporaryFolder.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <filesystem>
#include <memory>
#include <string>

using center::NotificationSettings;
using center::Settings;
using testing::AllOf;
using testing::HasSubstr;
using testing::StartsWith;
using Change = platform::PathWatcher::Change;

namespace {

class SettingsTest : public testing::Test {
protected:
    Settings& make() {
        auto own = std::make_unique<support::ManualWatcher>();
        watcher = own.get();
        settings = std::make_unique<Settings>(file, std::move(own));
        settings->setChanged([this] { ++changed; });
        return *settings;
    }

    // The settings of a file with this text, and what standard error is told.
    NotificationSettings read(const std::string& text) {
        file = folder.write("settings-" + std::to_string(++files) + ".ini", text);
        testing::internal::CaptureStderr();
        const NotificationSettings found = make().notifications();
        complaint = testing::internal::GetCapturedStderr();
        return found;
    }

    support::TemporaryFolder folder;
    std::string file = folder.path("settings.ini");
    int files = 0;
    std::unique_ptr<Settings> settings;
    support::ManualWatcher* watcher = nullptr;
    int changed = 0;
    std::string complaint;
};

} // namespace

TEST_F(SettingsTest, areTheDefaultOnesWithoutAFile) {
    const auto found = make().notifications();
    EXPECT_TRUE(found.isEnabled);
    EXPECT_EQ(found.minuteOfDay, 9 * 60);
    EXPECT_FALSE(folder.has("settings.ini")) << "reading makes no file";
}

TEST_F(SettingsTest, areThoseOfTheFile) {
    EXPECT_EQ(read("[notifications]\nenabled=false\ntime=18:45\n"),
              (NotificationSettings{false, 18 * 60 + 45}));
    EXPECT_EQ(read("[notifications]\ntime = 7:05\n"), (NotificationSettings{true, 7 * 60 + 5}));
    EXPECT_EQ(read("[notifications]\nenabled=TRUE\ntime=00:00\n"), (NotificationSettings{true, 0}));
    EXPECT_EQ(read("[other]\ntime=1:00\nx=y\n"), NotificationSettings());
    EXPECT_EQ(complaint, "");
}

TEST_F(SettingsTest, namesAMalformedValueAndHasTheDefault) {
    const struct {
        const char* phrase;
        const char* line;
        const char* complaint;
    } rows[] = {
        {"an hour too late", "time=24:00",
         R"(notifications/time: "24:00" is not a time of day such as 09:00)"},
        {"a minute too many", "time=09:60", R"(notifications/time: "09:60" is not a time)"},
        {"no minutes", "time=9", R"(notifications/time: "9" is not a time)"},
        {"seconds", "time=09:00:00", R"(notifications/time: "09:00:00" is not a time)"},
        {"a list", "time=09:00, 10:00", R"(notifications/time: "09:00, 10:00" is not a time)"},
        {"no time", "time=", R"(notifications/time: "" is not a time)"},
        {"control characters", R"(time="\x1b[2J")", R"(notifications/time: "\u001B[2J" is not a time)"},
        {"no truth", "enabled=perhaps", R"(notifications/enabled: "perhaps" is not true or false)"},
    };
    for (const auto& row : rows) {
        EXPECT_EQ(read(std::string("[notifications]\n") + row.line + "\n"), NotificationSettings())
            << row.phrase;
        EXPECT_THAT(complaint, AllOf(StartsWith("korvel-today: " + file + ": "), HasSubstr(row.complaint)))
            << row.phrase;
        EXPECT_EQ(std::count(complaint.begin(), complaint.end(), '\n'), 1) << row.phrase;
    }
}

TEST_F(SettingsTest, keepsTheOtherValueBesideAMalformedOne) {
    EXPECT_EQ(read("[notifications]\nenabled=no\ntime=10:00\n"), (NotificationSettings{true, 600}));
}

TEST_F(SettingsTest, namesAFileThatIsNoIni) {
    EXPECT_EQ(read("[notifications\nenabled=false"), NotificationSettings());
    EXPECT_EQ(complaint, "korvel-today: " + file + ": cannot be read as an INI file\n");
}

TEST_F(SettingsTest, areReadAgainWhenTheFileChanges) {
    make();
    EXPECT_EQ(watcher->paths.files, std::vector{file});
    folder.write("settings.ini", "[notifications]\nenabled=false\n");
    const int before = watcher->followed;
    watcher->tell(Change::Path);
    EXPECT_EQ(changed, 1);
    EXPECT_FALSE(settings->notifications().isEnabled);
    EXPECT_EQ(watcher->followed, before + 1);
    watcher->tell(Change::Path);
    EXPECT_EQ(changed, 1) << "nothing has changed";
    std::filesystem::remove(file);
    watcher->tell(Change::Path);
    EXPECT_EQ(changed, 2);
    EXPECT_TRUE(settings->notifications().isEnabled);
}

TEST_F(SettingsTest, complainsOfAFaultOnce) {
    read("[notifications]\ntime=noon\n");
    testing::internal::CaptureStderr();
    watcher->tell(Change::Path);
    EXPECT_EQ(testing::internal::GetCapturedStderr(), "");
    folder.write("settings-1.ini", "[notifications]\ntime=midnight\n");
    testing::internal::CaptureStderr();
    watcher->tell(Change::Path);
    EXPECT_THAT(testing::internal::GetCapturedStderr(), HasSubstr("midnight"));
}

TEST_F(SettingsTest, followTheFileOnTheDisk) {
    Settings real(file, std::make_unique<platform::InotifyWatcher>());
    real.setChanged([this] { ++changed; });
    folder.write("settings.ini", "[notifications]\ntime=10:30\n");
    EXPECT_TRUE(support::waitFor([this] { return changed > 0; }));
    EXPECT_EQ(real.notifications().minuteOfDay, 630);
}

TEST_F(SettingsTest, areInTheFolderOfTheUsersSettings) {
    const support::EnvironmentVariable home("HOME", "/nowhere");
    const support::EnvironmentVariable config("XDG_CONFIG_HOME", "/config");
    EXPECT_EQ(Settings::defaultFile(), "/config/korvel-today/settings.ini");
    for (const char* unset : {"", "relative"}) {
        config.set(unset);
        EXPECT_EQ(Settings::defaultFile(), "/nowhere/.config/korvel-today/settings.ini") << unset;
    }
}
