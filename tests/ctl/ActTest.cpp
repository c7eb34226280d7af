#include "ctl/CtlTest.h"
#include "model/GroupIdentifiers.h"
#include "platform/plist/Reader.h"
#include "platform/storage/FileSystemCalls.h"
#include "platform/storage/FolderLock.h"
#include "platform/storage/SharedDefaults.h"
#include "platform/system/Workspace.h"

#include <fcntl.h>
#include <sys/stat.h>

#include <cerrno>
#include <filesystem>

namespace ctl {
namespace {

namespace plist = platform::plist;
using namespace exchange;

struct Logged {
    std::int64_t type;
    std::string plan;
    double date;
    std::int64_t parameter;
    bool operator==(const Logged&) const = default;
};

// Takes the place of what opens URLs.
class Opener final {
public:
    explicit Opener(bool canBeStarted) {
        platform::Workspace::setOpener([this, canBeStarted](const QString&) {
            ++count_;
            return canBeStarted;
        });
    }
    ~Opener() { platform::Workspace::setOpener({}); }
    Opener(const Opener&) = delete;
    Opener& operator=(const Opener&) = delete;

    [[nodiscard]] int count() const { return count_; }

private:
    int count_ = 0;
};

const std::string
    binaryArrayOfANull("bplist00\xa1\x01\x00\x08\x0a\0\0\0\0\0\0\1\1\0\0\0\0\0\0\0\2\0\0\0\0\0\0\0\0\0\0\0"
                       "\0\0\0\0\x0b",
                       45);

class ActTest : public CtlTest {
protected:
    ActTest() {
        writeFeed({plist::Value(recordOf("plan", 10)), plist::Value(recordOf("plan", 20.5)),
                   plist::Value(recordOf("plan", 30)),
                   with(recordOf("one", 20.5), "single", plist::Value(true)),
                   plist::Value(recordOf("future", utc(2026, 3, 11)))});
    }

    [[nodiscard]] plist::Array arrayIn(const std::string& file) const {
        return *std::get<plist::Value>(plist::read(read(file).value_or("()"))).array();
    }

    [[nodiscard]] std::vector<double> datesOf(const std::string& plan) const {
        std::vector<double> dates;
        for (const plist::Value& record : arrayIn("notifications.xml"))
            if (*record.dictionary()->find("planpk")->string() == plan)
                dates.push_back(*record.dictionary()->find("date")->real());
        return dates;
    }

    [[nodiscard]] std::vector<Logged> logged() const {
        std::vector<Logged> entries;
        for (const plist::Value& value : arrayIn("-/actions.xml")) {
            const plist::Dictionary& record = *value.dictionary();
            entries.push_back({static_cast<std::int64_t>(record.find("type")->integer()->bits),
                               std::string(*record.find("pk")->string()), *record.find("date")->real(),
                               static_cast<std::int64_t>(record.find("param")->integer()->bits)});
        }
        return entries;
    }

    [[nodiscard]] static std::string settingsPath() {
        return platform::SharedDefaults::file(std::string(fullEditionGroupIdentifier));
    }

    void expectRefused(const std::vector<std::string>& words, const std::string& sentence) {
        const std::string before = feed();
        EXPECT_EQ(run(words), 1);
        EXPECT_EQ(err, "korvel-todayctl: " + path("notifications.xml") + ": " + sentence + "\n");
        EXPECT_EQ(feed(), before);
        EXPECT_FALSE(std::filesystem::exists(path("-"))) << "nothing is written";
    }
};

using Dates = std::vector<double>;

TEST_F(ActTest, pays) {
    EXPECT_EQ(run({"act", "plan", "20.5", "paid"}), 0) << err;
    EXPECT_EQ(logged(), (std::vector<Logged>{{1, "plan", 20.5, 0}}));
    EXPECT_EQ(datesOf("plan"), (Dates{10, 30}));
}

TEST_F(ActTest, postpones) {
    EXPECT_EQ(run({"act", "plan", "20.5", "later", "3"}), 0) << err;
    EXPECT_EQ(logged(), (std::vector<Logged>{{2, "plan", 20.5, 3}}));
    EXPECT_EQ(datesOf("plan"), (Dates{10, utc(2026, 3, 13), 30}));
}

TEST_F(ActTest, deletesOneOccurrence) {
    EXPECT_EQ(run({"act", "plan", "20.5", "delete"}), 0) << err;
    EXPECT_EQ(logged(), (std::vector<Logged>{{3, "plan", 20.5, 0}}));
    EXPECT_EQ(datesOf("plan"), (Dates{10, 30}));
}

TEST_F(ActTest, deletesTheFutureToo) {
    EXPECT_EQ(run({"act", "plan", "20.5", "delete-future"}), 0) << err;
    EXPECT_EQ(logged(), (std::vector<Logged>{{3, "plan", 20.5, 1}}));
    EXPECT_EQ(datesOf("plan"), (Dates{10}));
}

TEST_F(ActTest, opensTheHostForInfo) {
    std::vector<std::string> opened;
    platform::Workspace::setOpener([&](const QString& url) {
        opened.push_back(url.toStdString());
        return true;
    });
    const std::string before = feed();
    EXPECT_EQ(run({"act", "plan", "20.5", "info"}), 0) << err;
    platform::Workspace::setOpener({});
    EXPECT_EQ(opened, (std::vector<std::string>{"korvelWidget://tw_edit_transaction"}));
    EXPECT_EQ(*settings().find("edit_transaction_plan_pk"), plist::Value("plan"));
    EXPECT_EQ(feed(), before);
    EXPECT_FALSE(std::filesystem::exists(path("-")));
}

TEST_F(ActTest, findsADateThatIsNamedAsAText) {
    writeFeed({plist::Value(recordOf("plan", utc(2026, 3, 9, 18)))});
    EXPECT_EQ(run({"act", "plan", "today-1 18:00", "paid"}), 0) << err;
    EXPECT_EQ(feed(), arrayFile(""));
}

TEST_F(ActTest, refusesWhatIsNotInTheWidgetsList) {
    expectRefused({"act", "plan", "20", "paid"}, "the widget's list has no transaction of plan plan at 20");
    expectRefused({"act", "other", "20.5", "paid"},
                  "the widget's list has no transaction of plan other at 20.5");
    expectRefused({"act", "future", "2026-03-11", "paid"},
                  "the widget's list has no transaction of plan future at 2026-03-11");
}

TEST_F(ActTest, refusesToDeleteTheFutureOfASinglePlan) {
    expectRefused({"act", "one", "20.5", "delete-future"},
                  "plan one is a single one and has no later occurrences to delete");
}

TEST_F(ActTest, namesTheRecordOverWhichTheWidgetWouldEndBeforeAnythingIsWritten) {
    // Past the limit, so that only the rewrite looks at its plan.
    writeFeed({plist::Value(recordOf("plan", 20)), without(recordOf("future", utc(2026, 3, 11)), "planpk")});
    expectRefused({"act", "plan", "20", "paid"}, "record 2: \"planpk\" is missing");
}

TEST_F(ActTest, infoFailsWhereTheRequestCannotBeLeft) {
    breakSettings();
    const Opener opener(true);
    EXPECT_EQ(run({"act", "plan", "20.5", "info"}), 1);
    EXPECT_EQ(err, "korvel-todayctl: " + settingsPath() + ": its root is no dictionary\n");
    EXPECT_EQ(opener.count(), 0) << "the host would show an earlier request's transaction";
}

TEST_F(ActTest, infoFailsWhereNoOpenerCanBeStarted) {
    const Opener opener(false);
    EXPECT_EQ(run({"act", "plan", "20.5", "info"}), 1);
    EXPECT_EQ(err, "korvel-todayctl: neither gio nor xdg-open could be started to open the host\n");
    EXPECT_EQ(*settings().find("url_string"), plist::Value("tw_edit_transaction"));
}

// --- what became of the two files

// Lets writes below a folder fail, and after a number of renames the syncs of folders.
class FailingWrites final : public platform::FileSystemCalls {
public:
    FailingWrites() { setCurrent(this); }
    ~FailingWrites() override { setCurrent(nullptr); }

    std::string closedFolder;
    bool syncsFolders = true;

    int openAt(int folder, const char* name, int flags, mode_t mode) override {
        if ((flags & O_CREAT) != 0 && !closedFolder.empty() && isClosed(folder))
            return errno = EACCES, -1;
        return FileSystemCalls::openAt(folder, name, flags, mode);
    }
    int sync(int file) override {
        struct stat status {};
        if (!syncsFolders && fstat(file, &status) == 0 && S_ISDIR(status.st_mode))
            return errno = EIO, -1;
        return FileSystemCalls::sync(file);
    }

private:
    [[nodiscard]] bool isClosed(int folder) const {
        struct stat own {};
        struct stat closed {};
        return fstat(folder, &own) == 0 && stat(closedFolder.c_str(), &closed) == 0 &&
               own.st_ino == closed.st_ino;
    }
};

TEST_F(ActTest, saysThatTheLogCannotBeWritten) {
    write("-", "a file");
    EXPECT_EQ(run({"act", "plan", "20.5", "paid"}), 1);
    EXPECT_EQ(err, "korvel-todayctl: " + path("-/actions.xml") +
                       ": the action could not be logged; the feed is rewritten: Not a directory\n");
    EXPECT_EQ(datesOf("plan"), (Dates{10, 30})) << "the feed is rewritten all the same, as the widget does";
}

TEST_F(ActTest, keepsALogThatCannotBeRead) {
    class Unreadable final : public platform::FileSystemCalls {
    public:
        Unreadable() { setCurrent(this); }
        ~Unreadable() override { setCurrent(nullptr); }
        int open(const char* path, int flags) override {
            return std::string(path).ends_with("actions.xml") ? (errno = ENOMEM, -1)
                                                              : FileSystemCalls::open(path, flags);
        }
    };
    write("-/actions.xml", arrayFile("\t<string>older</string>\n"));
    {
        const Unreadable calls;
        EXPECT_EQ(run({"act", "plan", "20.5", "paid"}), 1);
    }
    EXPECT_EQ(err, "korvel-todayctl: " + path("-/actions.xml") +
                       ": the action could not be logged; the feed is rewritten: Cannot allocate memory\n");
    EXPECT_EQ(log(), arrayFile("\t<string>older</string>\n"));
}

TEST_F(ActTest, saysThatTheFeedCannotBeWritten) {
    makeFolder("-");
    FailingWrites calls;
    calls.closedFolder = container;
    EXPECT_EQ(run({"act", "plan", "20.5", "paid"}), 1);
    EXPECT_EQ(err, "korvel-todayctl: " + path("notifications.xml") +
                       ": the feed could not be rewritten; the action is logged: Permission denied\n");
    EXPECT_EQ(logged().size(), 1u);
    EXPECT_EQ(datesOf("plan"), (Dates{10, 20.5, 30}));
}

TEST_F(ActTest, saysThatNeitherCanBeWritten) {
    write("-", "a file");
    FailingWrites calls;
    calls.closedFolder = container;
    EXPECT_EQ(run({"act", "plan", "20.5", "paid"}), 1);
    EXPECT_EQ(err, "korvel-todayctl: " + path("-/actions.xml") +
                       ": the action could not be logged: Not a directory; nor could the feed be rewritten: "
                       "Permission denied\n");
    EXPECT_EQ(datesOf("plan"), (Dates{10, 20.5, 30}));
}

TEST_F(ActTest, saysWhichFileHoldsWhatHasNoXmlForm) {
    write("-/actions.xml", binaryArrayOfANull);
    EXPECT_EQ(run({"act", "plan", "20.5", "paid"}), 1);
    EXPECT_EQ(err, "korvel-todayctl: " + path("-/actions.xml") +
                       ": the action could not be logged; the feed is rewritten: a value has no XML form\n");
    EXPECT_EQ(log(), binaryArrayOfANull);
}

TEST_F(ActTest, isDoneWhereAFileMayBeLostInACrashAndSaysSo) {
    makeFolder("-");
    FailingWrites calls;
    calls.syncsFolders = false;
    EXPECT_EQ(run({"act", "plan", "20.5", "paid"}), 0);
    const std::string unsafe = ": written, but perhaps not safe yet: Input/output error\n";
    EXPECT_EQ(err, "korvel-todayctl: " + path("-/actions.xml") + unsafe +
                       "korvel-todayctl: " + path("notifications.xml") + unsafe);
    EXPECT_EQ(logged().size(), 1u);
}

TEST_F(ActTest, isDoneWhereAConsumerTakesTheRecordAtOnce) {
    class Consumer final : public platform::FileSystemCalls {
    public:
        explicit Consumer(std::string log)
            : log_(std::move(log)) {
            setCurrent(this);
        }
        ~Consumer() override { setCurrent(nullptr); }
        int rename(int folder, const char* from, const char* to) override {
            const int result = FileSystemCalls::rename(folder, from, to);
            std::filesystem::remove(log_);
            return result;
        }

    private:
        std::string log_;
    };
    {
        const Consumer consumer(path("-/actions.xml"));
        EXPECT_EQ(run({"act", "plan", "20.5", "paid"}), 0) << err;
    }
    EXPECT_EQ(datesOf("plan"), (Dates{10, 30}));
}

TEST_F(ActTest, doesNothingWhileAnotherProgramHoldsTheLock) {
    const platform::FolderLock others(container);
    const std::string before = feed();
    const Unhurried calls;
    EXPECT_EQ(run({"act", "plan", "20.5", "paid"}), 1);
    EXPECT_EQ(err, "korvel-todayctl: " + container +
                       ": another program has kept the container locked for too long\n");
    EXPECT_EQ(feed(), before);
    EXPECT_FALSE(std::filesystem::exists(path("-")));
}

} // namespace
} // namespace ctl
