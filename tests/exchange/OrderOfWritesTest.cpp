#include "exchange/ExchangeTest.h"
#include "exchange/TodayWidgetLogic.h"
#include "platform/plist/Reader.h"
#include "platform/storage/FileSystemCalls.h"

#include <fcntl.h>
#include <sys/resource.h>
#include <sys/stat.h>

#include <cerrno>
#include <csignal>
#include <filesystem>
#include <limits>

// What is written, and what stands as it was, where something fails on the way: the log comes first.
namespace exchange {
namespace {

using Action = TodayTransactionAction;

// Lets no file of this process grow beyond a size for as long as it lives, as a disk that is full does.
class FileSizeLimit final {
public:
    explicit FileSizeLimit(rlim_t bytes) {
        getrlimit(RLIMIT_FSIZE, &before_);
        const rlimit limit{bytes, before_.rlim_max};
        setrlimit(RLIMIT_FSIZE, &limit);
        handler_ = std::signal(SIGXFSZ, SIG_IGN);
    }
    ~FileSizeLimit() {
        setrlimit(RLIMIT_FSIZE, &before_);
        std::signal(SIGXFSZ, handler_);
    }
    FileSizeLimit(const FileSizeLimit&) = delete;
    FileSizeLimit& operator=(const FileSizeLimit&) = delete;

private:
    rlimit before_{};
    void (*handler_)(int);
};

// Lets nothing be made in a folder for as long as it lives, as one that is read-only does for all but root.
class ReadOnlyFolder final : public platform::FileSystemCalls {
public:
    explicit ReadOnlyFolder(const std::string& path) {
        EXPECT_EQ(stat(path.c_str(), &folder_), 0);
        setCurrent(this);
    }
    ~ReadOnlyFolder() override { setCurrent(nullptr); }
    ReadOnlyFolder(const ReadOnlyFolder&) = delete;
    ReadOnlyFolder& operator=(const ReadOnlyFolder&) = delete;

    [[nodiscard]] int refusals() const { return refusals_; }

    int openAt(int folder, const char* name, int flags, mode_t mode) override {
        struct stat status {};
        const bool isThis =
            fstat(folder, &status) == 0 && status.st_dev == folder_.st_dev && status.st_ino == folder_.st_ino;
        if (!isThis || (flags & O_CREAT) == 0)
            return FileSystemCalls::openAt(folder, name, flags, mode);
        ++refusals_;
        errno = EACCES;
        return -1;
    }

private:
    struct stat folder_ {};
    int refusals_ = 0;
};

class OrderOfWritesTest : public ExchangeTest {
protected:
    OrderOfWritesTest() {
        writeFeed({plist::Value(recordOf("plan", 20)), plist::Value(recordOf("plan", 30))});
    }

    static void perform(Action action) {
        TodayWidgetLogic::performTransactionAction(transactionOf("plan", 20), action, nullptr);
    }

    void expectDeath(Action action) const {
        EXPECT_EXIT(perform(action), testing::KilledBySignal(SIGABRT), "^$");
    }

    // How many records a file's array holds; none where it is absent.
    [[nodiscard]] std::optional<std::size_t> recordsIn(const std::string& file) const {
        const std::optional<std::string> bytes = read(file);
        if (!bytes)
            return std::nullopt;
        return std::get<plist::Value>(plist::read(*bytes)).array()->size();
    }

    [[nodiscard]] std::size_t filesIn(const std::string& folder) const {
        return static_cast<std::size_t>(std::distance(std::filesystem::directory_iterator(path(folder)),
                                                      std::filesystem::directory_iterator()));
    }
};

// --- soft: the log cannot be written, the feed is

TEST_F(OrderOfWritesTest, rewritesTheFeedWhereTheAccountFolderIsAFile) {
    write("-", "a file");
    perform(Action::Paid());
    EXPECT_EQ(read("-"), "a file");
    EXPECT_EQ(recordsIn("notifications.xml"), 1u);
}

TEST_F(OrderOfWritesTest, rewritesTheFeedWhereTheAccountFolderCannotBeMade) {
    setSettings({{"account_pk", plist::Value("file/below")}});
    write("file", "a file");
    perform(Action::Paid());
    EXPECT_EQ(read("file"), "a file");
    EXPECT_EQ(recordsIn("notifications.xml"), 1u);
}

TEST_F(OrderOfWritesTest, rewritesTheFeedWhereAFolderStandsInTheLogsPlace) {
    makeFolder("-/actions.xml");
    perform(Action::Paid());
    EXPECT_TRUE(std::filesystem::is_directory(path("-/actions.xml")));
    EXPECT_EQ(filesIn("-"), 1u) << "no debris";
    EXPECT_EQ(recordsIn("notifications.xml"), 1u);
}

TEST_F(OrderOfWritesTest, keepsTheOldLogWhereTheDiskIsFullAndRewritesTheFeed) {
    const std::string old = arrayFile("\t<string>" + std::string(20000, 'x') + "</string>\n");
    write("-/actions.xml", old);
    {
        const FileSizeLimit limit(8192);
        perform(Action::Paid());
    }
    EXPECT_EQ(log(), old);
    EXPECT_EQ(filesIn("-"), 1u) << "no debris";
    EXPECT_EQ(recordsIn("notifications.xml"), 1u);
}

TEST_F(OrderOfWritesTest, rewritesTheFeedWhereTheAccountFolderIsReadOnly) {
    const std::string old = arrayFile("\t<string>older</string>\n");
    write("-/actions.xml", old);
    const ReadOnlyFolder readOnly(path("-"));
    perform(Action::Paid());
    EXPECT_EQ(readOnly.refusals(), 1);
    EXPECT_EQ(log(), old);
    EXPECT_EQ(recordsIn("notifications.xml"), 1u);
}

// --- soft: the log is written, the feed cannot be

TEST_F(OrderOfWritesTest, keepsTheLoggedActionWhereTheContainerIsReadOnly) {
    makeFolder("-");
    const std::string before = feed();
    const ReadOnlyFolder readOnly(container);
    perform(Action::Paid());
    EXPECT_EQ(readOnly.refusals(), 1);
    EXPECT_EQ(recordsIn("-/actions.xml"), 1u);
    EXPECT_EQ(feed(), before);
}

TEST_F(OrderOfWritesTest, keepsTheLoggedActionWhereTheDiskIsFullBetweenTheTwo) {
    writeFeed({plist::Value(recordOf("plan", 20)),
               with(recordOf("other", 30), "note", plist::Value(std::string(20000, 'x')))});
    const std::string before = feed();
    {
        const FileSizeLimit limit(8192);
        perform(Action::Paid());
    }
    EXPECT_EQ(recordsIn("-/actions.xml"), 1u);
    EXPECT_EQ(feed(), before);
    EXPECT_EQ(filesIn("."), 2u) << "no debris";
}

// A binary feed of one record of the plan at 20 whose further key "x" holds an object of one byte: a null or
// an empty set, say, neither of which has an XML form.
std::string binaryFeedHolding(char object) {
    using namespace std::string_literals;
    const std::vector<std::string> objects{
        "\xA1\x01"s,                     // 0: an array of 1
        "\xD3\x02\x03\x04\x05\x06\x07"s, // 1: a dictionary of three keys, 2 to 4, and values
        "Vplanpk"s,
        "Tdate"s,
        "Qx"s, // 2 to 4: V, T and Q mark texts of 6, 4 and 1 letters
        "Tplan"s,
        "\x10\x14"s,
        std::string(1, object), // 5 to 7: a text, the integer 20, the object
    };
    std::string bytes = "bplist00";
    std::string offsets;
    for (const std::string& bytesOfObject : objects) {
        offsets += static_cast<char>(bytes.size());
        bytes += bytesOfObject;
    }
    const char tableOffset = static_cast<char>(bytes.size());
    const std::string count(1, static_cast<char>(objects.size()));
    return bytes + offsets + "\0\0\0\0\0\0\1\1"s + "\0\0\0\0\0\0\0"s + count + "\0\0\0\0\0\0\0\0"s +
           "\0\0\0\0\0\0\0"s + tableOffset;
}

TEST_F(OrderOfWritesTest, keepsAFeedWhoseNullOrSetHasNoXmlForm) {
    for (const char object : {'\x00', '\xC0'}) {
        const std::string binary = binaryFeedHolding(object);
        write("notifications.xml", binary);
        perform(Action::Later(1));
        EXPECT_EQ(feed(), binary);
    }
    EXPECT_EQ(recordsIn("-/actions.xml"), 2u) << "logged all the same";
}

TEST_F(OrderOfWritesTest, rewritesABinaryFeedInTheXmlForm) {
    write("notifications.xml", binaryFeedHolding('\x09')); // true
    perform(Action::Later(0));
    EXPECT_EQ(feed(), arrayFile("\t<dict>\n\t\t<key>date</key>\n\t\t<real>1773100800</real>\n"
                                "\t\t<key>planpk</key>\n\t\t<string>plan</string>\n"
                                "\t\t<key>x</key>\n\t\t<true/>\n\t</dict>\n"));
}

// --- fatal: without a container nothing is written

TEST_F(OrderOfWritesTest, endsWithoutAContainerAndMakesNone) {
    removeContainer();
    expectDeath(Action::Paid());
    removeContainer(); // the feed that the dying process's own arrangement wrote
    EXPECT_FALSE(std::filesystem::exists(container));
}

// --- fatal: the action is logged, the feed stands as it was

struct FeedRow {
    const char* name;
    std::string elements; // the feed's records, or the whole file where it starts with '!'
};

class FatalFeedTable : public OrderOfWritesTest, public testing::WithParamInterface<FeedRow> {
protected:
    [[nodiscard]] static std::string bytes() {
        const std::string& elements = GetParam().elements;
        return elements.starts_with('!') ? elements.substr(1) : arrayFile(elements);
    }
};

TEST_P(FatalFeedTable, endsWithTheActionLogged) {
    write("notifications.xml", bytes());
    expectDeath(Action::Delete(true));
    EXPECT_EQ(recordsIn("-/actions.xml"), 1u);
    EXPECT_EQ(feed(), bytes());
}

const std::string acted = "<dict><key>planpk</key><string>plan</string><key>date</key><real>20</real></dict>";

INSTANTIATE_TEST_SUITE_P(
    Feeds, FatalFeedTable,
    testing::Values(FeedRow{"RootIsADictionary", "!<plist><dict/></plist>"},
                    FeedRow{"NoPropertyList", "!garbage <"}, FeedRow{"NoBytes", "!"},
                    FeedRow{"CutOff", "!<plist><array><dict>"},
                    FeedRow{"ElementIsNoDictionary", acted + "<string>x</string>"},
                    FeedRow{"PlanKeyMissing", acted + "<dict><key>date</key><real>1</real></dict>"},
                    FeedRow{"PlanKeyIsANumber", acted + "<dict><key>planpk</key><integer>1</integer></dict>"},
                    FeedRow{"DateOfThePlanMissing",
                            acted + "<dict><key>planpk</key><string>plan</string></dict>"},
                    FeedRow{"DateOfThePlanIsText", "<dict><key>planpk</key><string>plan</string>"
                                                   "<key>date</key><string>20</string></dict>"}),
    [](const auto& row) { return row.param.name; });

TEST_F(OrderOfWritesTest, endsWithoutAFeedWithTheActionLogged) {
    remove("notifications.xml");
    EXPECT_EXIT(
        {
            remove("notifications.xml");
            perform(Action::Paid());
        },
        testing::KilledBySignal(SIGABRT), "^$");
    EXPECT_EQ(recordsIn("-/actions.xml"), 1u);
    EXPECT_FALSE(read("notifications.xml"));
}

TEST_F(OrderOfWritesTest, endsWhereTheCalendarYieldsNoDateWithTheActionLogged) {
    clock.set(std::numeric_limits<double>::quiet_NaN());
    expectDeath(Action::Later(1));
    EXPECT_EQ(recordsIn("-/actions.xml"), 1u);
    EXPECT_EQ(recordsIn("notifications.xml"), 2u);
}

TEST_F(OrderOfWritesTest, asksTheCalendarOnlyForAnOccurrenceThatIsThere) {
    clock.set(std::numeric_limits<double>::quiet_NaN());
    TodayWidgetLogic::performTransactionAction(transactionOf("plan", 21), Action::Later(1), nullptr);
    EXPECT_EQ(recordsIn("-/actions.xml"), 1u);
    EXPECT_EQ(recordsIn("notifications.xml"), 2u);
}

// --- files of many pieces, of which the first are written before the last record is read

class LongFilesTest : public OrderOfWritesTest {
protected:
    static constexpr std::size_t count = 400;

    LongFilesTest() {
        plist::Array records{plist::Value(recordOf("plan", 20))};
        while (records.size() < count)
            records.push_back(with(recordOf("other", 30), "note", plist::Value(std::string(400, 'x'))));
        writeFeed(records);
        write("-/actions.xml", feed());
    }

    // The file without its last two tags.
    void cutOff(const std::string& file) const {
        const std::string bytes = read(file).value();
        write(file, bytes.substr(0, bytes.rfind("</array>")));
    }
    void expectNoDebris() const {
        EXPECT_EQ(filesIn("."), 2u);
        EXPECT_EQ(filesIn("-"), 1u);
    }
};

TEST_F(LongFilesTest, areRewrittenWhole) {
    const std::string before = feed();
    perform(Action::Later(0));
    const std::string logged = log();
    const std::size_t tail = before.rfind("</array>");
    EXPECT_EQ(logged.substr(0, tail), before.substr(0, tail));
    EXPECT_EQ(recordsIn("-/actions.xml"), count + 1);
    const std::string after = feed();
    const std::string old = "<real>20</real>";
    const std::string today = "<real>1773100800</real>";
    EXPECT_EQ(after, std::string(before).replace(before.find(old), old.size(), today));
    expectNoDebris();
}

TEST_F(LongFilesTest, aFeedThatIsCutOffStandsAsItWas) {
    cutOff("notifications.xml");
    const std::string before = feed();
    EXPECT_EXIT(
        {
            cutOff("notifications.xml");
            perform(Action::Paid());
        },
        testing::KilledBySignal(SIGABRT), "^$");
    EXPECT_EQ(feed(), before);
    EXPECT_EQ(recordsIn("-/actions.xml"), count + 1);
    expectNoDebris();
}

TEST_F(LongFilesTest, aLogThatIsCutOffStartsAnew) {
    cutOff("-/actions.xml");
    perform(Action::Paid());
    EXPECT_EQ(recordsIn("-/actions.xml"), 1u);
    EXPECT_EQ(recordsIn("notifications.xml"), count - 1);
    expectNoDebris();
}

TEST_F(LongFilesTest, standAsTheyWereWhereTheDiskIsFullAfterTheFirstPiece) {
    const std::string before = feed();
    {
        const FileSizeLimit limit(100000);
        perform(Action::Paid());
    }
    EXPECT_EQ(feed(), before);
    EXPECT_EQ(log(), before);
    expectNoDebris();
}

} // namespace
} // namespace exchange
