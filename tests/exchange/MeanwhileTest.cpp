// What others do to the shared files between one step of an operation and the next, or between two calls:
// nothing is kept from before, and nothing is taken for absent that only cannot be read.
#include "exchange/ExchangeTest.h"
#include "exchange/TodayWidgetLogic.h"
#include "exchange/TodayWidgetLogicTestAccess.h"
#include "platform/plist/Reader.h"
#include "platform/storage/FileSystemCalls.h"
#include "platform/storage/GroupContainers.h"

#include <gtest/gtest.h>

#include <cerrno>
#include <csignal>
#include <filesystem>
#include <functional>

namespace exchange {
namespace {

using Access = TodayWidgetLogicTestAccess;
using Action = TodayTransactionAction;

// The system's calls for as long as it lives, with steps that a test puts between them.
class Interruptions final : public platform::FileSystemCalls {
public:
    Interruptions() { setCurrent(this); }
    ~Interruptions() override { setCurrent(nullptr); }
    Interruptions(const Interruptions&) = delete;
    Interruptions& operator=(const Interruptions&) = delete;

    std::function<void(const std::string& path)> beforeOpen = [](const std::string&) {};
    std::function<void()> afterRename = [] {};
    // Files with this in their path cannot be opened, or not be read once they are open.
    std::string closedPath = "none";
    int openError = 0;
    int readError = 0;

    int open(const char* path, int flags) override {
        beforeOpen(path);
        const bool isClosed = std::string(path).find(closedPath) != std::string::npos;
        if (isClosed && openError != 0) {
            errno = openError;
            return -1;
        }
        const int file = FileSystemCalls::open(path, flags);
        if (isClosed)
            closedFile_ = file;
        return file;
    }
    int close(int file) override {
        if (file == closedFile_)
            closedFile_ = -1;
        return FileSystemCalls::close(file);
    }
    ssize_t read(int file, void* bytes, std::size_t count) override {
        if (file != closedFile_ || readError == 0)
            return FileSystemCalls::read(file, bytes, count);
        errno = readError;
        return -1;
    }
    int rename(int folder, const char* from, const char* to) override {
        const int result = FileSystemCalls::rename(folder, from, to);
        afterRename();
        return result;
    }

private:
    int closedFile_ = -1;
};

class MeanwhileTest : public ExchangeTest {
protected:
    MeanwhileTest() { writeFeed({plist::Value(recordOf("plan", 20)), plist::Value(recordOf("plan", 30))}); }

    static void perform(const Action& action) {
        TodayWidgetLogic::performTransactionAction(transactionOf("plan", 20), action, nullptr);
    }
    [[nodiscard]] static std::size_t shownPlans() {
        return TodayWidgetLogic::getTodayTransactionsArray().size();
    }
    [[nodiscard]] std::size_t recordsIn(const std::string& file) const {
        const plist::ReadResult result = plist::read(read(file).value_or(""));
        const auto* value = std::get_if<plist::Value>(&result);
        return value && value->array() ? value->array()->size() : 0;
    }
};

TEST_F(MeanwhileTest, anAccountKeyWrittenWhileTheSettingsAreOpenedCounts) {
    setSettings({{"account_pk", plist::Value("before")}});
    Interruptions calls;
    int opened = 0;
    calls.beforeOpen = [&](const std::string& path) {
        if (path.ends_with(".plist") && ++opened == 2)
            setSettings({{"account_pk", plist::Value("after")}});
    };
    EXPECT_EQ(Access::accountPk(), "after");
}

TEST_F(MeanwhileTest, theContainerIsLookedUpAgainBetweenLogAndFeed) {
    const std::string feedBefore = feed();
    const std::filesystem::path other = std::filesystem::path(scratch) / "other";
    const std::filesystem::path otherContainer = other / std::filesystem::path(container).filename();
    std::filesystem::create_directories(otherContainer);
    std::filesystem::copy(path("notifications.xml"), otherContainer / "notifications.xml");
    const std::string folderBefore = platform::GroupContainers::folder();
    {
        Interruptions calls;
        calls.afterRename = [&] { platform::GroupContainers::setFolder(other.string()); };
        perform(Action::Paid());
    }
    platform::GroupContainers::setFolder(folderBefore);
    EXPECT_EQ(recordsIn("-/actions.xml"), 1u);
    EXPECT_EQ(feed(), feedBefore);
    EXPECT_EQ(recordsIn("../other/" + otherContainer.filename().string() + "/notifications.xml"), 1u);
}

struct UnreadableRow {
    const char* name;
    int openError;
    int readError;
};
const auto unreadable =
    testing::Values(UnreadableRow{"MayNotBeOpened", EACCES, 0}, UnreadableRow{"FailsAsItIsRead", 0, EIO});
constexpr auto nameOf = [](const auto& row) { return row.param.name; };

class UnreadableTable : public MeanwhileTest, public testing::WithParamInterface<UnreadableRow> {
protected:
    static void close(Interruptions& calls, const std::string& path) {
        calls.closedPath = path;
        calls.openError = GetParam().openError;
        calls.readError = GetParam().readError;
    }
};

TEST_P(UnreadableTable, aLogStartsAnew) {
    perform(Action::Later(1));
    perform(Action::Later(2));
    ASSERT_EQ(recordsIn("-/actions.xml"), 2u);
    {
        Interruptions calls;
        close(calls, "-/actions.xml");
        perform(Action::Later(3));
    }
    EXPECT_EQ(recordsIn("-/actions.xml"), 1u);
}

TEST_P(UnreadableTable, aFeedIsFatalOnceTheActionIsLogged) {
    EXPECT_EXIT(
        {
            Interruptions calls;
            close(calls, "notifications.xml");
            perform(Action::Paid());
        },
        testing::KilledBySignal(SIGABRT), "^$");
    EXPECT_EQ(recordsIn("-/actions.xml"), 1u);
    EXPECT_EQ(recordsIn("notifications.xml"), 2u);
}

TEST_P(UnreadableTable, aFeedShowsNothing) {
    ASSERT_EQ(shownPlans(), 2u);
    Interruptions calls;
    close(calls, "notifications.xml");
    EXPECT_EQ(shownPlans(), 0u);
}

INSTANTIATE_TEST_SUITE_P(Files, UnreadableTable, unreadable, nameOf);

TEST_F(MeanwhileTest, aFolderInTheFeedsPlaceIsFatalOnceTheActionIsLogged) {
    EXPECT_EXIT(
        {
            remove("notifications.xml");
            makeFolder("notifications.xml");
            perform(Action::Paid());
        },
        testing::KilledBySignal(SIGABRT), "^$");
    EXPECT_EQ(recordsIn("-/actions.xml"), 1u);
}

TEST_F(MeanwhileTest, aDayCountIsNotKeptBetweenTwoCalls) {
    writeFeed({plist::Value(recordOf("in two days", tenthOfMarch + 2 * day))});
    EXPECT_EQ(shownPlans(), 0u);
    setSettings({{"notification_days_count", plist::Value(std::int64_t(2))}});
    EXPECT_EQ(shownPlans(), 1u);
    setSettings({{"notification_days_count", plist::Value(std::int64_t(1))}});
    EXPECT_EQ(shownPlans(), 0u);
}

TEST_F(MeanwhileTest, anAccountIsNotKeptBetweenTwoActions) {
    setSettings({{"account_pk", plist::Value("one")}});
    perform(Action::Later(1));
    setSettings({{"account_pk", plist::Value("two")}});
    perform(Action::Later(1));
    EXPECT_EQ(recordsIn("one/actions.xml"), 1u);
    EXPECT_EQ(recordsIn("two/actions.xml"), 1u);
}

} // namespace
} // namespace exchange
