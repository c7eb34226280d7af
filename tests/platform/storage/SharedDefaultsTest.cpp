#include "platform/storage/SharedDefaults.h"

#include "FailingCalls.h"
#include "platform/plist/Reader.h"
#include "platform/storage/FolderLock.h"
#include "platform/storage/GroupContainers.h"
#include "platform/storage/StorageError.h"
#include "support/Containers.h"

#include <gtest/gtest.h>

#include <cerrno>
#include <filesystem>

using platform::SharedDefaults;
using platform::plist::Value;
using support::Containers;

namespace {

std::string xml(const std::string& entries) {
    return "<?xml version=\"1.0\" encoding=\"UTF-8\"?>\n<plist version=\"1.0\"><dict>" + entries +
           "</dict></plist>\n";
}

// {"account_pk": "a1"} in the binary form.
const std::string
    binary("bplist00\xd1\x01\x02\x5a"
           "account_pk\x52"
           "a1\x08\x0b\x16\0\0\0\0\0\0\x01\x01\0\0\0\0\0\0\0\x03\0\0\0\0\0\0\0\0\0\0\0\0\0\0\0\x19",
           60);

class SharedDefaultsTest : public testing::Test {
protected:
    static SharedDefaults open() {
        auto defaults = SharedDefaults::open(Containers::identifier());
        if (!defaults) {
            ADD_FAILURE() << "the settings do not open";
            std::abort();
        }
        return *std::move(defaults);
    }
    static bool opens() { return SharedDefaults::open(Containers::identifier()).has_value(); }
    Value stored(const std::string& key) const {
        const auto result = platform::plist::read(containers.read(Containers::settingsName()));
        const auto* root = std::get_if<Value>(&result);
        const auto* value = root && root->dictionary() ? root->dictionary()->find(key) : nullptr;
        return value ? *value : Value();
    }

    Containers containers;
};

} // namespace

TEST_F(SharedDefaultsTest, aMissingFileOpensAsAnEmptySuite) {
    const SharedDefaults defaults = open();
    EXPECT_EQ(defaults.integerForKey("show_transactions_count"), 0);
    EXPECT_EQ(defaults.stringForKey("account_pk"), std::nullopt);
    EXPECT_EQ(defaults.valueForKey("account_pk"), nullptr);
    EXPECT_EQ(defaults.values().size(), 0U);
}

TEST_F(SharedDefaultsTest, aMissingContainerOpensAsAnEmptySuite) {
    const Containers absent(Containers::Container::Absent);
    EXPECT_EQ(open().values().size(), 0U);
    EXPECT_EQ(absent.folder().count(), 0U);
}

TEST_F(SharedDefaultsTest, anEmptyIdentifierDoesNotOpen) {
    EXPECT_FALSE(SharedDefaults::open(""));
}

TEST_F(SharedDefaultsTest, opensTheXmlForm) {
    containers.writeSettings(xml("<key>account_pk</key><string>a1</string>"));
    EXPECT_EQ(open().stringForKey("account_pk"), "a1");
}

TEST_F(SharedDefaultsTest, opensTheBinaryForm) {
    containers.writeSettings(binary);
    EXPECT_EQ(open().stringForKey("account_pk"), "a1");
}

TEST_F(SharedDefaultsTest, opensTheAsciiForm) {
    containers.writeSettings("{ account_pk = a1; show_transactions_count = \"-1\"; }");
    EXPECT_EQ(open().stringForKey("account_pk"), "a1");
    EXPECT_EQ(open().integerForKey("show_transactions_count"), -1);
}

TEST_F(SharedDefaultsTest, aFileThatIsNoDictionaryDoesNotOpen) {
    for (const char* text :
         {"", "hello", "<plist><array/></plist>", "<plist><dict>", "\xff\xff", "bplist00"}) {
        containers.writeSettings(text);
        EXPECT_FALSE(opens()) << text;
    }
}

TEST_F(SharedDefaultsTest, aFileThatCannotBeReadOpensAsAnEmptySuite) {
    containers.writeSettings(xml("<key>account_pk</key><string>a1</string>"));
    for (const int error : {EACCES, EPERM, EIO}) {
        FailingCalls calls;
        calls.failAll("open", error);
        EXPECT_EQ(open().values().size(), 0U);
    }
}

TEST_F(SharedDefaultsTest, aFolderInTheFilesPlaceOpensAsAnEmptySuite) {
    std::filesystem::create_directories(containers.path(Containers::settingsName()));
    EXPECT_EQ(open().values().size(), 0U);
}

TEST_F(SharedDefaultsTest, readsAsOtherKinds) {
    containers.writeSettings(xml("<key>real</key><real>3.7</real><key>yes</key><true/>"
                                 "<key>text</key><string>12abc</string><key>list</key><array/>"));
    const SharedDefaults defaults = open();
    EXPECT_EQ(defaults.integerForKey("real"), 3);
    EXPECT_EQ(defaults.integerForKey("yes"), 1);
    EXPECT_EQ(defaults.integerForKey("text"), 12);
    EXPECT_EQ(defaults.integerForKey("list"), 0);
    EXPECT_EQ(defaults.stringForKey("real"), "3.7");
    EXPECT_EQ(defaults.stringForKey("list"), std::nullopt);
}

TEST_F(SharedDefaultsTest, whatIsSetIsSeenAtOnceAndNotYetWritten) {
    SharedDefaults defaults = open();
    defaults.setString("url_string", "tw_all_transactions");
    EXPECT_EQ(defaults.stringForKey("url_string"), "tw_all_transactions");
    EXPECT_FALSE(containers.has(Containers::settingsName()));
    EXPECT_EQ(open().stringForKey("url_string"), std::nullopt);
}

TEST_F(SharedDefaultsTest, synchronizeWritesEachKindAsItWasSet) {
    SharedDefaults defaults = open();
    defaults.setString("text", "3");
    defaults.setDouble("real", 1773153000.25);
    defaults.setInteger("integer", -3);
    EXPECT_TRUE(defaults.synchronize());
    EXPECT_EQ(stored("text"), Value("3"));
    EXPECT_EQ(stored("real"), Value(1773153000.25));
    EXPECT_EQ(stored("integer"), Value(std::int64_t{-3}));
}

TEST_F(SharedDefaultsTest, theLastOfTwoSettingsOfAKeyCounts) {
    SharedDefaults defaults = open();
    defaults.setString("key", "first");
    defaults.setDouble("key", 2.5);
    EXPECT_TRUE(defaults.synchronize());
    EXPECT_EQ(stored("key"), Value(2.5));
}

TEST_F(SharedDefaultsTest, synchronizeMakesThePreferencesFolderAlone) {
    SharedDefaults defaults = open();
    defaults.setInteger("key", 1);
    EXPECT_TRUE(defaults.synchronize());
    EXPECT_TRUE(containers.has(Containers::settingsName()));
    EXPECT_EQ(containers.folder().count(Containers::identifier()), 1U);
    EXPECT_EQ(containers.folder().count(Containers::identifier() + "/Library/Preferences"), 1U);
}

TEST_F(SharedDefaultsTest, synchronizeKeepsOtherKeysWithTheirKinds) {
    containers.writeSettings(
        xml("<key>i</key><integer>1</integer><key>r</key><real>1</real><key>b</key><true/>"
            "<key>s</key><string>1</string><key>d</key><data>AQ==</data>"
            "<key>t</key><date>2026-03-10T12:00:00Z</date>"
            "<key>a</key><array><dict><key>k</key><integer>2</integer></dict></array>"));
    const auto before = open().values();
    SharedDefaults defaults = open();
    defaults.setString("url_string", "tw_new_transaction");
    EXPECT_TRUE(defaults.synchronize());
    ASSERT_EQ(before.size(), 7U);
    for (const auto& [key, value] : before)
        EXPECT_EQ(stored(key), value) << key;
    EXPECT_EQ(stored("url_string"), Value("tw_new_transaction"));
}

TEST_F(SharedDefaultsTest, synchronizeSeesWhatTheHostHasWritten) {
    SharedDefaults defaults = open();
    containers.writeSettings(xml("<key>account_pk</key><string>a2</string>"));
    EXPECT_EQ(defaults.stringForKey("account_pk"), std::nullopt);
    EXPECT_TRUE(defaults.synchronize());
    EXPECT_EQ(defaults.stringForKey("account_pk"), "a2");
}

TEST_F(SharedDefaultsTest, synchronizeForgetsWhatTheHostHasRemoved) {
    containers.writeSettings(xml("<key>account_pk</key><string>a1</string>"));
    SharedDefaults defaults = open();
    std::filesystem::remove(containers.path(Containers::settingsName()));
    EXPECT_TRUE(defaults.synchronize());
    EXPECT_EQ(defaults.stringForKey("account_pk"), std::nullopt);
}

TEST_F(SharedDefaultsTest, whatIsPendingWinsOverTheHostsChange) {
    SharedDefaults defaults = open();
    defaults.setString("key", "ours");
    containers.writeSettings(xml("<key>key</key><string>theirs</string><key>other</key><string>o</string>"));
    EXPECT_TRUE(defaults.synchronize());
    EXPECT_EQ(stored("key"), Value("ours"));
    EXPECT_EQ(stored("other"), Value("o"));
}

TEST_F(SharedDefaultsTest, whatWasWrittenIsPendingNoMore) {
    SharedDefaults defaults = open();
    defaults.setString("key", "ours");
    EXPECT_TRUE(defaults.synchronize());
    containers.writeSettings(xml("<key>key</key><string>theirs</string>"));
    EXPECT_TRUE(defaults.synchronize());
    EXPECT_EQ(defaults.stringForKey("key"), "theirs");
    EXPECT_EQ(stored("key"), Value("theirs"));
}

TEST_F(SharedDefaultsTest, withNothingPendingNothingIsWritten) {
    containers.writeSettings("{ account_pk = a1; }");
    EXPECT_TRUE(open().synchronize());
    EXPECT_EQ(containers.read(Containers::settingsName()), "{ account_pk = a1; }");
}

TEST_F(SharedDefaultsTest, aFileThatHoldsItAllAlreadyIsLeftAlone) {
    containers.writeSettings("{ account_pk = a1; }");
    SharedDefaults defaults = open();
    defaults.setString("account_pk", "a1");
    EXPECT_TRUE(defaults.synchronize());
    EXPECT_EQ(containers.read(Containers::settingsName()), "{ account_pk = a1; }");
}

TEST_F(SharedDefaultsTest, aMissingContainerIsNotMade) {
    const Containers absent(Containers::Container::Absent);
    SharedDefaults defaults = open();
    defaults.setString("key", "value");
    EXPECT_FALSE(defaults.synchronize());
    EXPECT_EQ(absent.folder().count(), 0U);
    EXPECT_EQ(defaults.stringForKey("key"), "value");
}

TEST_F(SharedDefaultsTest, whatWasNotWrittenStaysPending) {
    SharedDefaults defaults = open();
    defaults.setString("key", "value");
    {
        FailingCalls calls;
        calls.failAll("rename", EIO);
        EXPECT_FALSE(defaults.synchronize());
    }
    EXPECT_FALSE(containers.has(Containers::settingsName()));
    EXPECT_TRUE(defaults.synchronize());
    EXPECT_EQ(stored("key"), Value("value"));
}

TEST_F(SharedDefaultsTest, aRefusedFolderIsSoft) {
    SharedDefaults defaults = open();
    defaults.setString("key", "value");
    FailingCalls calls;
    calls.failAll("makeFolder", EACCES);
    EXPECT_FALSE(defaults.synchronize());
    EXPECT_FALSE(containers.has("Library"));
}

// Writing the file would lose its other keys.
TEST_F(SharedDefaultsTest, aFileThatCannotBeReadIsNotReplaced) {
    containers.writeSettings(xml("<key>other</key><string>o</string>"));
    SharedDefaults defaults = open();
    defaults.setString("key", "value");
    {
        FailingCalls calls;
        calls.failAt(2, EACCES); // after the container's status and its opening for the lock
        EXPECT_FALSE(defaults.synchronize());
        EXPECT_EQ(calls.made().at(2), "open");
    }
    EXPECT_EQ(stored("key"), Value());
    EXPECT_EQ(stored("other"), Value("o"));
    EXPECT_EQ(defaults.stringForKey("other"), "o");
    EXPECT_EQ(defaults.stringForKey("key"), "value");
}

TEST_F(SharedDefaultsTest, aFileThatIsNoDictionaryIsNotReplaced) {
    SharedDefaults defaults = open();
    defaults.setString("key", "value");
    containers.writeSettings("no dictionary");
    EXPECT_FALSE(defaults.synchronize());
    EXPECT_EQ(containers.read(Containers::settingsName()), "no dictionary");
}

TEST_F(SharedDefaultsTest, aValueWithoutAnXmlFormIsNotLost) {
    // {"k": null}, which XML cannot represent.
    const std::string null("bplist00\xd1\x01\x02\x51k\0\x08\x0b\x0d\0\0\0\0\0\0\x01\x01\0\0\0\0\0\0\0\x03"
                           "\0\0\0\0\0\0\0\0\0\0\0\0\0\0\0\x0e",
                           49);
    containers.writeSettings(null);
    SharedDefaults defaults = open();
    ASSERT_EQ(defaults.values().size(), 1U);
    defaults.setString("key", "value");
    EXPECT_FALSE(defaults.synchronize());
    EXPECT_EQ(containers.read(Containers::settingsName()), null);
}

// --- saving, which tells why

TEST_F(SharedDefaultsTest, saveTellsThatThereIsNoContainer) {
    const Containers absent(Containers::Container::Absent);
    SharedDefaults defaults = open();
    defaults.setString("key", "value");
    EXPECT_EQ(defaults.save(), std::errc::no_such_file_or_directory);
}

TEST_F(SharedDefaultsTest, saveTellsThatTheRootIsNoDictionary) {
    SharedDefaults defaults = open();
    containers.writeSettings("(a)");
    defaults.setString("key", "value");
    EXPECT_EQ(defaults.save(), platform::StorageError::NotADictionary);
}

TEST_F(SharedDefaultsTest, saveTellsThatWhatItHasWrittenMayBeLost) {
    containers.writeSettings(xml(""));
    SharedDefaults defaults = open();
    defaults.setString("key", "value");
    class Calls final : public FailingCalls {
        int rename(int folder, const char* from, const char* to) override {
            failAll("sync", EIO);
            return FailingCalls::rename(folder, from, to);
        }
    };
    {
        Calls calls;
        const std::error_code error = defaults.save();
        EXPECT_EQ(error, std::errc::io_error);
        EXPECT_TRUE(platform::isMade(error));
    }
    EXPECT_EQ(stored("key"), Value("value"));
}

TEST_F(SharedDefaultsTest, saveFailsWhereTheLockIsRequiredAndHeld) {
    containers.writeSettings(xml(""));
    SharedDefaults defaults = open();
    EXPECT_FALSE(defaults.save()) << "there is nothing to write";
    defaults.setString("key", "value");
    const platform::FolderLock others(
        *platform::GroupContainers::containerForGroup(Containers::identifier()));
    {
        FailingCalls calls; // which does not pause
        platform::FolderLock::setPolicy(platform::FolderLock::required);
        EXPECT_EQ(defaults.save(), platform::StorageError::LockHeld);
        EXPECT_EQ(stored("key"), Value());
        platform::FolderLock::setPolicy(platform::FolderLock::optional);
        EXPECT_FALSE(defaults.save()) << "goes on without it";
    }
    EXPECT_EQ(stored("key"), Value("value"));
}
