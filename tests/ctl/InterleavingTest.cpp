// Two programs at once: one is stopped before each of its file calls in turn, while the other runs whole.
// Whatever both say that they have done is done, once.
#include "ctl/CtlTest.h"
#include "ctl/Program.h"
#include "exchange/SharedFiles.h"
#include "exchange/TodayWidgetLogic.h"
#include "platform/plist/Reader.h"
#include "platform/storage/Files.h"
#include "platform/storage/FolderLock.h"
#include "platform/system/Workspace.h"

#include <algorithm>
#include <filesystem>
#include <functional>

namespace ctl {
namespace {

namespace plist = platform::plist;
using namespace exchange;

// The system's calls, before one of which something else happens.
class StoppedCalls final : public platform::FileSystemCalls {
public:
    StoppedCalls(int call, std::function<void()> meanwhile)
        : left_(call)
        , meanwhile_(std::move(meanwhile)) {
        setCurrent(this);
    }
    ~StoppedCalls() override { setCurrent(nullptr); }
    StoppedCalls(const StoppedCalls&) = delete;
    StoppedCalls& operator=(const StoppedCalls&) = delete;

    // Whether the program made so many calls.
    [[nodiscard]] bool wasStopped() const { return left_ < 0; }

    int open(const char* path, int flags) override { return stop(), FileSystemCalls::open(path, flags); }
    int openAt(int folder, const char* name, int flags, mode_t mode) override {
        return stop(), FileSystemCalls::openAt(folder, name, flags, mode);
    }
    int close(int file) override { return stop(), FileSystemCalls::close(file); }
    ssize_t read(int file, void* bytes, std::size_t count) override {
        return stop(), FileSystemCalls::read(file, bytes, count);
    }
    ssize_t write(int file, const void* bytes, std::size_t count) override {
        return stop(), FileSystemCalls::write(file, bytes, count);
    }
    int status(const char* path, struct stat* result) override {
        return stop(), FileSystemCalls::status(path, result);
    }
    int statusOf(int file, struct stat* result) override {
        return stop(), FileSystemCalls::statusOf(file, result);
    }
    int statusAt(int folder, const char* name, struct stat* result) override {
        return stop(), FileSystemCalls::statusAt(folder, name, result);
    }
    ssize_t readLink(const char* path, char* bytes, std::size_t count) override {
        return stop(), FileSystemCalls::readLink(path, bytes, count);
    }
    int changeMode(int file, mode_t mode) override { return stop(), FileSystemCalls::changeMode(file, mode); }
    int changeOwner(int file, uid_t owner, gid_t group) override {
        return stop(), FileSystemCalls::changeOwner(file, owner, group);
    }
    int sync(int file) override { return stop(), FileSystemCalls::sync(file); }
    int rename(int folder, const char* from, const char* to) override {
        return stop(), FileSystemCalls::rename(folder, from, to);
    }
    int renameToFree(int folder, const char* from, const char* to) override {
        return stop(), FileSystemCalls::renameToFree(folder, from, to);
    }
    int link(int folder, const char* from, const char* to) override {
        return stop(), FileSystemCalls::link(folder, from, to);
    }
    int unlink(int folder, const char* name) override {
        return stop(), FileSystemCalls::unlink(folder, name);
    }
    int makeFolder(const char* path) override { return stop(), FileSystemCalls::makeFolder(path); }
    int names(int folder, std::vector<std::string>& result) override {
        return stop(), FileSystemCalls::names(folder, result);
    }
    int lock(int file, int operation) override { return stop(), FileSystemCalls::lock(file, operation); }
    void pause(std::chrono::milliseconds /*duration*/) override {}

private:
    void stop() {
        if (left_-- != 0)
            return;
        {
            const Unhurried others;
            meanwhile_();
        }
        setCurrent(this);
    }

    int left_;
    std::function<void()> meanwhile_;
};

struct Outcome {
    int status = -1;
    std::string out;
    std::string err;
};

class InterleavingTest : public CtlTest {
protected:
    InterleavingTest() {
        platform::Workspace::setOpener([](const QString&) { return true; });
    }
    ~InterleavingTest() override {
        platform::Workspace::setOpener({});
        platform::FolderLock::setPolicy(platform::FolderLock::optional);
    }

    Outcome outcomeOf(const std::vector<std::string>& arguments) {
        Outcome outcome;
        outcome.status = run(arguments, publishedJson);
        outcome.out = out;
        outcome.err = err;
        return outcome;
    }

    void arrange() const {
        std::filesystem::remove_all(container);
        writeFeed({plist::Value(recordOf("a", 10)), plist::Value(recordOf("b", 20)),
                   plist::Value(recordOf("c", 30))});
        setSettings({{"account_pk", plist::Value("one")}});
        makeFolder("one");
        write("one/actions.xml", arrayFile("\t<string>older</string>\n"));
    }

    // What one program has done when the other was refused the lock: nothing. It is run again after the
    // other.
    static bool wasRefused(const Outcome& outcome) {
        return outcome.status == 1 && (outcome.err.find("locked for too long") != std::string::npos ||
                                       outcome.err.find("another program is consuming") != std::string::npos);
    }

    using Check = std::function<void(const Outcome& stopped, const Outcome& other)>;

    // Both orders of the two.
    void interleave(const std::vector<std::string>& a, const std::vector<std::string>& b,
                    const Check& check) {
        stopBeforeEachCall(a, b, check);
        if (a != b)
            stopBeforeEachCall(b, a,
                               [&](const Outcome& second, const Outcome& first) { check(first, second); });
    }

    void stopBeforeEachCall(const std::vector<std::string>& a, const std::vector<std::string>& b,
                            const Check& check) {
        for (int call = 0;; ++call) {
            SCOPED_TRACE(a[0] + " stopped before call " + std::to_string(call) + " for " + b[0]);
            arrange();
            Outcome first;
            Outcome second;
            {
                const StoppedCalls calls(call, [&] { second = outcomeOf(b); });
                first = outcomeOf(a);
                if (!calls.wasStopped()) {
                    EXPECT_GT(call, 10);
                    return;
                }
            }
            ASSERT_FALSE(wasRefused(first)) << "nobody holds a lock for longer than it runs: " << first.err;
            if (wasRefused(second))
                second = outcomeOf(b);
            check(first, second);
            if (HasFailure())
                FAIL() << first.status << ": " << first.err << second.status << ": " << second.err;
        }
    }

    [[nodiscard]] plist::Array arrayIn(const std::string& file) const {
        return exchange::arrayFromFile(path(file)).value_or(plist::Array());
    }
    [[nodiscard]] std::vector<std::string> plansIn(const std::string& file, const std::string& key) const {
        std::vector<std::string> plans;
        for (const plist::Value& record : arrayIn(file))
            plans.emplace_back(record.dictionary() ? *record.dictionary()->find(key)->string()
                                                   : *record.string());
        return plans;
    }
    [[nodiscard]] std::vector<std::string> feedPlans() const {
        return plansIn("notifications.xml", "planpk");
    }
    // The plans in the log, and in what consumers printed, in their alphabetical order.
    [[nodiscard]] std::vector<std::string> loggedPlans(const std::string& printed = {}) const {
        std::vector<std::string> plans = plansIn("one/actions.xml", "pk");
        std::istringstream lines(printed);
        for (std::string line; std::getline(lines, line);)
            plans.push_back(line == "\"older\"" ? "older" : line.substr(line.rfind(' ') + 1));
        std::sort(plans.begin(), plans.end());
        return plans;
    }
    [[nodiscard]] std::size_t temporaryFiles() const {
        std::size_t count = 0;
        for (const auto& entry : std::filesystem::recursive_directory_iterator(container))
            count += entry.path().filename().string().starts_with(".korvel-");
        return count;
    }

    const std::string publishedJson = R"([{"date": 10, "name": "n", "image": "i", "amount": "5", "income": 0,
        "expense": 1, "planpk": "a", "single": false}, {"date": 40, "name": "n", "image": "i", "amount": "5",
        "income": 0, "expense": 1, "planpk": "d", "single": false}])";
    const std::vector<std::string> payA{"act", "a", "10", "paid"};
    const std::vector<std::string> payB{"act", "b", "20", "paid"};
    const std::vector<std::string> consume{"consume"};
    const std::vector<std::string> publish{"publish", "-"};
    const std::vector<std::string> switchAccount{"settings", "set", "account_pk", "two"};
    const std::vector<std::string> info{"act", "a", "10", "info"};
};

using Plans = std::vector<std::string>;

TEST_F(InterleavingTest, actAndAct) {
    interleave(payA, payB, [&](const Outcome& a, const Outcome& b) {
        EXPECT_EQ(a.status, 0);
        EXPECT_EQ(b.status, 0);
        EXPECT_EQ(loggedPlans(), (Plans{"a", "b", "older"}));
        EXPECT_EQ(feedPlans(), (Plans{"c"}));
        EXPECT_EQ(temporaryFiles(), 0u);
    });
}

TEST_F(InterleavingTest, actAndActOnTheSameOccurrence) {
    interleave(payA, payA, [&](const Outcome& a, const Outcome& b) {
        EXPECT_EQ(a.status + b.status, 1) << "one of the two comes too late";
        EXPECT_EQ(loggedPlans(), (Plans{"a", "older"}));
        EXPECT_EQ(feedPlans(), (Plans{"b", "c"}));
    });
}

TEST_F(InterleavingTest, actAndConsume) {
    interleave(payA, consume, [&](const Outcome& act, const Outcome& consumed) {
        EXPECT_EQ(act.status, 0);
        EXPECT_EQ(consumed.status, 0);
        EXPECT_EQ(loggedPlans(consumed.out), (Plans{"a", "older"}));
        EXPECT_FALSE(std::filesystem::exists(path("one/actions.xml.aside")));
        EXPECT_EQ(feedPlans(), (Plans{"b", "c"}));
    });
}

TEST_F(InterleavingTest, consumeAndConsume) {
    interleave(consume, consume, [&](const Outcome& a, const Outcome& b) {
        EXPECT_EQ(a.status, 0);
        EXPECT_EQ(b.status, 0);
        EXPECT_EQ(loggedPlans(a.out + b.out), (Plans{"older"}));
        EXPECT_FALSE(std::filesystem::exists(path("one/actions.xml.aside")));
    });
}

TEST_F(InterleavingTest, actAndPublish) {
    interleave(payA, publish, [&](const Outcome& act, const Outcome& published) {
        EXPECT_EQ(act.status, 0);
        EXPECT_EQ(published.status, 0);
        EXPECT_EQ(loggedPlans(), (Plans{"a", "older"}));
        const Plans plans = feedPlans();
        EXPECT_TRUE(plans == (Plans{"d"}) || plans == (Plans{"a", "d"})) << "published last, or acted last";
    });
}

TEST_F(InterleavingTest, actAndASwitchOfTheAccount) {
    interleave(payA, switchAccount, [&](const Outcome& act, const Outcome& settings) {
        EXPECT_EQ(act.status, 0);
        EXPECT_EQ(settings.status, 0);
        EXPECT_EQ(*this->settings().find("account_pk"), plist::Value("two"));
        EXPECT_EQ(arrayIn("one/actions.xml").size() + arrayIn("two/actions.xml").size(), 2u);
        EXPECT_EQ(feedPlans(), (Plans{"b", "c"}));
    });
}

TEST_F(InterleavingTest, infoAndASwitchOfTheAccount) {
    interleave(info, switchAccount, [&](const Outcome& asked, const Outcome& settings) {
        EXPECT_EQ(asked.status, 0);
        EXPECT_EQ(settings.status, 0);
        EXPECT_EQ(*this->settings().find("account_pk"), plist::Value("two"));
        EXPECT_EQ(*this->settings().find("url_string"), plist::Value("tw_edit_transaction"));
        EXPECT_EQ(*this->settings().find("edit_transaction_plan_pk"), plist::Value("a"));
    });
}

// A host that takes no lock may lose what is written between its reading and its writing, or the other way
// round; but each file stays whole, and what is logged is in the log or has been taken.

TEST_F(InterleavingTest, actBesideAHostThatPublishesWithoutTheLock) {
    for (int call = 0;; ++call) {
        SCOPED_TRACE(call);
        arrange();
        bool wasStopped = false;
        Outcome act;
        {
            const StoppedCalls calls(call, [&] {
                write("new", arrayFile(""));
                std::filesystem::rename(path("new"), path("notifications.xml"));
            });
            act = outcomeOf(payA);
            wasStopped = calls.wasStopped();
        }
        if (!wasStopped)
            break;
        EXPECT_TRUE(act.status == 0 || act.status == 1) << act.status;
        EXPECT_TRUE(exchange::arrayFromFile(path("notifications.xml")));
        const bool isLogged = loggedPlans() == (Plans{"a", "older"});
        EXPECT_TRUE(isLogged || act.status == 1) << "the host's feed had no such occurrence any more";
    }
}

TEST_F(InterleavingTest, actBesideAHostThatConsumesWithoutTheLock) {
    for (int call = 0;; ++call) {
        SCOPED_TRACE(call);
        arrange();
        bool wasStopped = false;
        Outcome act;
        {
            const StoppedCalls calls(
                call, [&] { std::filesystem::rename(path("one/actions.xml"), path("one/taken.xml")); });
            act = outcomeOf(payA);
            wasStopped = calls.wasStopped();
        }
        if (!wasStopped)
            break;
        EXPECT_EQ(act.status, 0) << act.err;
        Plans plans = plansIn("one/taken.xml", "pk");
        for (const std::string& plan : plansIn("one/actions.xml", "pk"))
            plans.push_back(plan);
        EXPECT_EQ(std::count(plans.begin(), plans.end(), "a"), 1);
        EXPECT_GE(std::count(plans.begin(), plans.end(), "older"), 1) << "at least once";
        EXPECT_EQ(feedPlans(), (Plans{"b", "c"}));
    }
}

// The panel goes on without the lock after a while: an action never waits for a program that hangs.
TEST_F(InterleavingTest, actBesideAPanelThatDoesNotWaitAnyLonger) {
    for (int call = 0;; ++call) {
        SCOPED_TRACE(call);
        arrange();
        bool wasStopped = false;
        {
            const StoppedCalls calls(call, [&] {
                platform::FolderLock::setPolicy(platform::FolderLock::optional);
                TodayWidgetLogic::performTransactionAction(transactionOf("b", 20),
                                                           TodayTransactionAction::Paid(), nullptr);
                platform::FolderLock::setPolicy(platform::FolderLock::required);
            });
            EXPECT_EQ(outcomeOf(payA).status, 0) << err;
            wasStopped = calls.wasStopped();
        }
        if (!wasStopped)
            break;
        const Plans logged = loggedPlans();
        EXPECT_EQ(std::count(logged.begin(), logged.end(), "a"), 1) << "the companion wrote last";
        EXPECT_EQ(std::count(logged.begin(), logged.end(), "older"), 1);
        EXPECT_TRUE(exchange::arrayFromFile(path("notifications.xml")));
        EXPECT_EQ(temporaryFiles(), 0u);
    }
}

} // namespace
} // namespace ctl
